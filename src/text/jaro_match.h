// The pairs of characters that the Jaro similarity finds in two texts: each character of a, from the left, takes the
// first free place of b that holds its equal and lies no further than reach from its own place.
//
// Texts that begin alike may be given from where they begin to differ: the first character of a common beginning finds
// the first place of b, and each further one finds the places before its own taken and its own free, so that all of
// them are paired in order, and none of their places is free for the rest.
#ifndef QXPAF_SRC_TEXT_JARO_MATCH_H
#define QXPAF_SRC_TEXT_JARO_MATCH_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "text/byte_lanes.h"

namespace qxpaf {

// Texts of up to this length have their places in the bits of a word.
inline constexpr std::ptrdiff_t kShortText = 64;

template <class Char>
struct JaroTexts
{
  const Char* a;
  const Char* b;
  std::ptrdiff_t aLength;
  std::ptrdiff_t bLength;
  std::ptrdiff_t reach;
};

// The pairs found, and how many of them differ when both sides are read in the order of their texts.
struct JaroMatches
{
  std::ptrdiff_t count = 0;
  std::ptrdiff_t outOfOrder = 0;
};

// Characters are sorted by their low byte; for wide text several may share a place.
template <class Char>
std::size_t LowByte(Char c)
{
  return static_cast<std::uint8_t>(c);
}

// Where the characters of a short text b stand, by a table of all of them.
template <class Char>
class TabledPlaces
{
 public:
  explicit TabledPlaces(const JaroTexts<Char>& texts) : b_(texts.b)
  {
    for (std::ptrdiff_t i = 0; i < texts.aLength; ++i) places_[LowByte(texts.a[i])] = 0;
    for (std::ptrdiff_t j = 0; j < texts.bLength; ++j) places_[LowByte(texts.b[j])] = 0;
    for (std::ptrdiff_t j = 0; j < texts.bLength; ++j) places_[LowByte(texts.b[j])] |= std::uint64_t{1} << j;
  }

  // The places in the window that are free and hold c, or at least the lowest of them. c is a character of a.
  std::uint64_t Of(Char c, std::uint64_t window, std::uint64_t free) const
  {
    std::uint64_t places = places_[LowByte(c)] & window & free;
    if constexpr (sizeof(Char) > 1)
      while (places != 0 && b_[std::countr_zero(places)] != c) places &= places - 1;
    return places;
  }

 private:
  const Char* b_;
  std::uint64_t places_[256];  // set up for the characters that occur
};

#ifdef __SSE2__
// The same for narrow text by comparing with all characters of b, which are held in registers of sixteen lanes; the
// last register overlaps the one before it. Up to 16 * kRegisters characters, and at least one.
template <std::size_t kRegisters>
class ComparedPlaces
{
 public:
  explicit ComparedPlaces(const JaroTexts<char>& texts)
  {
    const std::ptrdiff_t last = std::max<std::ptrdiff_t>(texts.bLength - Sse2Lanes::kCount, 0);
    for (std::size_t k = 0; k < kRegisters; ++k) {
      starts_[k] = std::min(static_cast<std::ptrdiff_t>(k) * Sse2Lanes::kCount, last);
      lanes_[k] = Sse2Lanes::FirstOf(texts.b + starts_[k], static_cast<std::size_t>(texts.bLength - starts_[k]));
    }
  }

  std::uint64_t Of(char c, std::uint64_t window, std::uint64_t free) const
  {
    const Sse2Lanes sought = Sse2Lanes::Of(c);
    std::uint64_t places = 0;
    for (std::size_t k = 0; k < kRegisters; ++k)
      places |= std::uint64_t{sought.EqualTo(lanes_[k]).TopBits()} << starts_[k];
    return places & window & free;
  }

 private:
  Sse2Lanes lanes_[kRegisters];
  std::ptrdiff_t starts_[kRegisters];
};
#endif

// Of the matched characters of a, in their order, and of the places of b that they have taken.
template <class Char>
std::ptrdiff_t CountOutOfOrder(const Char* matched, const Char* b, std::uint64_t taken)
{
  std::ptrdiff_t outOfOrder = 0;
  for (; taken != 0; taken &= taken - 1) outOfOrder += *matched++ != b[std::countr_zero(taken)];
  return outOfOrder;
}

// For texts of 1 to kShortText characters. The lowest free place in the window around a character's own place is the
// one that a scan of b from the left finds first.
template <class Places, class Char>
JaroMatches MatchShortBy(const JaroTexts<Char>& texts)
{
  const auto [a, b, aLength, bLength, fullReach] = texts;
  const std::ptrdiff_t reach = std::min(fullReach, kShortText - 1);
  const Places places(texts);
  const std::uint64_t all = ~std::uint64_t{0} >> (kShortText - bLength);
  std::uint64_t window = (std::uint64_t{2} << reach) - 1;
  std::uint64_t below = ~(~std::uint64_t{0} >> reach);  // what of the window lies before the start
  std::uint64_t free = all;
  Char matched[kShortText];
  std::ptrdiff_t count = 0;
  for (std::ptrdiff_t i = 0; i < aLength; ++i) {
    const Char c = a[i];
    const std::uint64_t partners = places.Of(c, window, free);
    const std::uint64_t first = partners & (~partners + 1);
    free ^= first;
    matched[count] = c;
    count += first != 0;
    window = window << 1 | below >> 63;
    below <<= 1;
  }
  return {count, CountOutOfOrder(matched, b, free ^ all)};
}

// The path that needs no special registers.
template <class Char>
JaroMatches MatchShortByTable(const JaroTexts<Char>& texts)
{
  return MatchShortBy<TabledPlaces<Char>>(texts);
}

#ifdef __SSE2__
inline JaroMatches MatchShort(const JaroTexts<char>& texts)
{
  if (texts.bLength <= 16) return MatchShortBy<ComparedPlaces<1>>(texts);
  if (texts.bLength <= 32) return MatchShortBy<ComparedPlaces<2>>(texts);
  return MatchShortByTable(texts);
}
#else
inline JaroMatches MatchShort(const JaroTexts<char>& texts)
{
  return MatchShortByTable(texts);
}
#endif

inline JaroMatches MatchShort(const JaroTexts<wchar_t>& texts)
{
  return MatchShortByTable(texts);
}

}  // namespace qxpaf

#endif
