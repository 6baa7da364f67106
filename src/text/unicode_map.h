// Mapping every element of a text in place, sixteen bytes of it in one step where they are ASCII.
#ifndef QXPAF_SRC_TEXT_UNICODE_MAP_H
#define QXPAF_SRC_TEXT_UNICODE_MAP_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "text/unicode_tables.h"

namespace qxpaf {

// What becomes of ASCII letters.
enum class AsciiCase
{
  kKept,
  kUpper,
  kLower
};

// Sixteen bytes of elements as one value. A compiler extension (GCC and Clang, any machine): the loops that it stands
// for are not reliably turned into vector instructions.
template <class Element>
using LaneOf = std::conditional_t<sizeof(Element) == 1, signed char, std::int32_t>;
template <class Lane>
using BlockOf [[gnu::vector_size(16)]] = Lane;

template <class Element>
inline constexpr std::size_t kBlockLength = 16 / sizeof(Element);

// The bits that are set in one of the block's elements.
inline std::uint32_t BitsOfBlock(const wchar_t* s)
{
  std::uint64_t halves[2];
  std::memcpy(&halves[0], s, sizeof halves[0]);
  std::memcpy(&halves[1], s + 2, sizeof halves[1]);
  const std::uint64_t bits = halves[0] | halves[1];
  return static_cast<std::uint32_t>(bits | bits >> 32);
}

inline bool IsAsciiBlock(const char* s)
{
  std::uint64_t halves[2];
  std::memcpy(&halves, s, sizeof halves);
  return ((halves[0] | halves[1]) & 0x8080808080808080) == 0;
}

template <AsciiCase asciiCase, class Element>
void MapAsciiBlock(Element* s)
{
  if constexpr (asciiCase != AsciiCase::kKept) {
    using Lane = LaneOf<Element>;
    constexpr Lane kFirst = asciiCase == AsciiCase::kUpper ? 'a' : 'A';
    constexpr Lane kLast = kFirst + ('z' - 'a');
    constexpr Lane kCaseBit = 'a' ^ 'A';
    BlockOf<Lane> block;
    std::memcpy(&block, s, sizeof block);
    block ^= ((block >= kFirst) & (block <= kLast)) & kCaseBit;
    std::memcpy(s, &block, sizeof block);
  }
}

// A mapping of wide characters through a table whose entries are characters. Others have the same members.
template <const auto& table, AsciiCase asciiCase>
struct TableMapping
{
  static constexpr AsciiCase kAsciiCase = asciiCase;
  static constexpr const auto& kTable = table;

  wchar_t operator()(wchar_t c, std::uint32_t entry) const { return entry != 0 ? static_cast<wchar_t>(entry) : c; }
};

template <class Mapping>
wchar_t MapCharacter(wchar_t c, Mapping& map)
{
  return map(c, Mapping::kTable.Entry(c));
}

template <class Mapping>
void MapWideBlock(wchar_t* s, Mapping& map)
{
  const std::uint32_t bits = BitsOfBlock(s);
  if (bits < 0x80) {
    MapAsciiBlock<Mapping::kAsciiCase>(s);
  } else if (bits < kLeadingPages * 256) {
    for (std::size_t i = 0; i < kBlockLength<wchar_t>; ++i) s[i] = map(s[i], Mapping::kTable.LeadingEntry(s[i]));
  } else {
    for (std::size_t i = 0; i < kBlockLength<wchar_t>; ++i) s[i] = MapCharacter(s[i], map);
  }
}

template <class Mapping>
void MapWide(wchar_t* s, std::size_t n, Mapping& map)
{
  std::size_t i = 0;
  for (; n - i >= kBlockLength<wchar_t>; i += kBlockLength<wchar_t>) MapWideBlock(s + i, map);
  for (; i < n; ++i) s[i] = MapCharacter(s[i], map);
}

// The same for mappings without a state.
template <class Mapping>
wchar_t MapCharacter(wchar_t c)
{
  Mapping map;
  return MapCharacter(c, map);
}

template <class Mapping>
void MapWide(wchar_t* s, std::size_t n)
{
  Mapping map;
  MapWide(s, n, map);
}

// Through a table of all bytes.
template <AsciiCase asciiCase>
void MapBytes(char* s, std::size_t n, const std::uint8_t (&table)[256])
{
  std::size_t i = 0;
  while (i < n) {
    if (n - i >= kBlockLength<char> && IsAsciiBlock(s + i)) {
      MapAsciiBlock<asciiCase>(s + i);
      i += kBlockLength<char>;
      continue;
    }
    const std::size_t stop = std::min(n, i + kBlockLength<char>);
    for (; i < stop; ++i) s[i] = static_cast<char>(table[static_cast<unsigned char>(s[i])]);
  }
}

}  // namespace qxpaf

#endif
