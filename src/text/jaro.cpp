#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>

#include "qxpaf/text/fuzzy.h"

namespace qxpaf {
namespace {

using Index = std::ptrdiff_t;

constexpr Index kShort = 64;

// Characters are sorted by their low byte; for wide text several may share a place.
template <class Char>
std::size_t LowByte(Char c)
{
  return static_cast<std::uint8_t>(c);
}

template <class Char>
struct TextPair
{
  const Char* a;
  const Char* b;
  Index aLength;
  Index bLength;

  // How far from its own place the partner of a character may stand.
  Index Reach() const { return std::max<Index>(std::max(aLength, bLength) / 2 - 1, 0); }
};

// The pairs found, and how many of them differ when both sides are read in the order of their texts.
struct Matches
{
  Index count = 0;
  Index outOfOrder = 0;
};

// For texts of at most 64 characters: places in b are bits. The lowest free place of a character that lies in the
// window is the one that a scan of b from the left finds first.
template <class Char>
class ShortMatcher
{
 public:
  explicit ShortMatcher(const TextPair<Char>& texts) : texts_(texts)
  {
    for (Index i = 0; i < texts.aLength; ++i) free_[LowByte(texts.a[i])] = 0;
    for (Index j = 0; j < texts.bLength; ++j) free_[LowByte(texts.b[j])] = 0;
    for (Index j = 0; j < texts.bLength; ++j) free_[LowByte(texts.b[j])] |= std::uint64_t{1} << j;
  }

  Matches Run()
  {
    const Index reach = texts_.Reach();
    std::uint64_t window = (std::uint64_t{2} << reach) - 1;
    for (Index i = 0; i < texts_.aLength; ++i) {
      const Char c = texts_.a[i];
      std::uint64_t& free = free_[LowByte(c)];
      const std::uint64_t partner = FirstOf(c, free & window);
      free ^= partner;
      used_ |= partner;
      matched_[count_] = c;
      count_ += partner != 0;
      window = window << 1 | (i < reach);
    }
    return {count_, CountOutOfOrder()};
  }

 private:
  std::uint64_t FirstOf(Char c, std::uint64_t places) const
  {
    if constexpr (sizeof(Char) > 1)
      while (places != 0 && texts_.b[std::countr_zero(places)] != c) places &= places - 1;
    return places & (~places + 1);
  }

  Index CountOutOfOrder() const
  {
    Index outOfOrder = 0;
    std::uint64_t used = used_;
    for (Index k = 0; k < count_; ++k, used &= used - 1) outOfOrder += matched_[k] != texts_.b[std::countr_zero(used)];
    return outOfOrder;
  }

  const TextPair<Char>& texts_;
  std::uint64_t free_[256];  // set up for the characters that occur
  std::uint64_t used_ = 0;
  Char matched_[kShort];  // the matched characters of a, in their order
  Index count_ = 0;
};

// For longer texts: the free places of b form a list for each low byte, in ascending order. Windows only move to the
// right, so places that they have left are dropped for good, and each text is walked once.
template <class Char>
class LongMatcher
{
 public:
  explicit LongMatcher(const TextPair<Char>& texts)
      : texts_(texts),
        next_(std::make_unique_for_overwrite<Index[]>(static_cast<std::size_t>(texts.bLength))),
        used_(std::make_unique<bool[]>(static_cast<std::size_t>(texts.bLength))),
        matched_(std::make_unique_for_overwrite<Char[]>(static_cast<std::size_t>(texts.aLength)))
  {
    std::fill_n(heads_, 256, texts.bLength);
    for (Index j = texts.bLength - 1; j >= 0; --j) {
      Index& head = heads_[LowByte(texts.b[j])];
      next_[AsSize(j)] = head;
      head = j;
    }
  }

  Matches Run()
  {
    const Index reach = texts_.Reach();
    for (Index i = 0; i < texts_.aLength; ++i)
      if (TakePartner(texts_.a[i], i - reach, i + reach)) matched_[AsSize(count_++)] = texts_.a[i];
    return {count_, CountOutOfOrder()};
  }

 private:
  static std::size_t AsSize(Index i) { return static_cast<std::size_t>(i); }

  bool TakePartner(Char c, Index first, Index last)
  {
    Index* link = &heads_[LowByte(c)];
    while (*link < first && *link != texts_.bLength) *link = next_[AsSize(*link)];
    last = std::min(last, texts_.bLength - 1);
    while (*link <= last && texts_.b[*link] != c) link = &next_[AsSize(*link)];
    if (*link > last) return false;
    used_[AsSize(*link)] = true;
    *link = next_[AsSize(*link)];
    return true;
  }

  Index CountOutOfOrder() const
  {
    Index outOfOrder = 0;
    Index k = 0;
    for (Index j = 0; j < texts_.bLength; ++j)
      if (used_[AsSize(j)]) outOfOrder += matched_[AsSize(k++)] != texts_.b[j];
    return outOfOrder;
  }

  const TextPair<Char>& texts_;
  Index heads_[256];  // the length of b ends a list
  std::unique_ptr<Index[]> next_;
  std::unique_ptr<bool[]> used_;
  std::unique_ptr<Char[]> matched_;
  Index count_ = 0;
};

template <class Char>
Matches Match(const TextPair<Char>& texts)
{
  if (std::max(texts.aLength, texts.bLength) <= kShort) return ShortMatcher<Char>(texts).Run();
  return LongMatcher<Char>(texts).Run();
}

// Every operation, and their order, decides about the last bits.
float Similarity(const Matches& matches, Index aLength, Index bLength)
{
  const auto count = static_cast<float>(matches.count);
  const auto inOrder = static_cast<float>(matches.count - matches.outOfOrder / 2);
  return (inOrder / count + count / static_cast<float>(aLength) + count / static_cast<float>(bLength)) / 3.0F;
}

template <class String>
float Jaro(const String& a, const String& b)
{
  // Each character finds itself first, so that all three quotients are 1.
  if (a == b) return a.empty() ? 0.0F : 1.0F;
  using Char = typename String::value_type;
  const TextPair<Char> texts{a.data(), b.data(), static_cast<Index>(a.size()), static_cast<Index>(b.size())};
  const Matches matches = Match(texts);
  return matches.count == 0 ? 0.0F : Similarity(matches, texts.aLength, texts.bLength);
}

}  // namespace
}  // namespace qxpaf

float CompareJaro(const std::string& a, const std::string& b)
{
  return qxpaf::Jaro(a, b);
}

float CompareJaro(const std::wstring& a, const std::wstring& b)
{
  return qxpaf::Jaro(a, b);
}
