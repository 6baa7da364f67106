#include <algorithm>
#include <cstdint>
#include <memory>

#include "qxpaf/text/fuzzy.h"
#include "text/compared_text.h"
#include "text/jaro_match.h"

namespace qxpaf {
namespace {

using Index = std::ptrdiff_t;

// For longer texts: the free places of b form a list for each low byte, in ascending order. Windows only move to the
// right, so places that they have left are dropped for good, and each text is walked once.
template <class Char>
class LongMatcher
{
 public:
  explicit LongMatcher(const JaroTexts<Char>& texts)
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

  JaroMatches Run()
  {
    for (Index i = 0; i < texts_.aLength; ++i)
      if (TakePartner(texts_.a[i], i - texts_.reach, i + texts_.reach)) matched_[AsSize(count_++)] = texts_.a[i];
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

  const JaroTexts<Char>& texts_;
  Index heads_[256];  // the length of b ends a list
  std::unique_ptr<Index[]> next_;
  std::unique_ptr<bool[]> used_;
  std::unique_ptr<Char[]> matched_;
  Index count_ = 0;
};

template <class Char>
[[gnu::noinline]] JaroMatches MatchLong(const JaroTexts<Char>& texts)
{
  return LongMatcher<Char>(texts).Run();
}

template <class Char>
JaroMatches Match(const JaroTexts<Char>& texts)
{
  if (texts.aLength == 0 || texts.bLength == 0) return {};
  if (std::max(texts.aLength, texts.bLength) <= kShortText) return MatchShort(texts);
  return MatchLong(texts);
}

// Every operation, and their order, decides about the last bits. A number divided by itself is 1 to the last bit, which
// saves a division for most pairs.
float Similarity(const JaroMatches& matches, Index aLength, Index bLength)
{
  const auto count = static_cast<float>(matches.count);
  const Index misplaced = matches.outOfOrder / 2;
  const float inOrder = misplaced == 0 ? 1.0F : static_cast<float>(matches.count - misplaced) / count;
  return (inOrder + count / static_cast<float>(aLength) + count / static_cast<float>(bLength)) / 3.0F;
}

// Short texts take so little time that the calls in between would show.
template <class String>
[[gnu::noinline, gnu::flatten]] float JaroOfDifferent(const String& a, const String& b)
{
  const std::size_t common = CommonLength(a.data(), b.data(), std::min(a.size(), b.size()));
  const auto skipped = static_cast<Index>(common);
  const auto aLength = static_cast<Index>(a.size());
  const auto bLength = static_cast<Index>(b.size());
  const Index reach = std::max<Index>(std::max(aLength, bLength) / 2 - 1, 0);
  JaroMatches matches = Match<typename String::value_type>(
      {a.data() + common, b.data() + common, aLength - skipped, bLength - skipped, reach});
  matches.count += skipped;
  return matches.count == 0 ? 0.0F : Similarity(matches, aLength, bLength);
}

template <class String>
float Jaro(const String& a, const String& b)
{
  // Each character finds itself first, so that all three quotients are 1.
  if (a == b) return a.empty() ? 0.0F : 1.0F;
  return JaroOfDifferent(a, b);
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
