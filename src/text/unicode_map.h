// Mapping every element of a text in place, sixteen bytes of it in one step where they are ASCII.
#ifndef QXPAF_SRC_TEXT_UNICODE_MAP_H
#define QXPAF_SRC_TEXT_UNICODE_MAP_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
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

// All bits that are set in one of the block's elements, as those of 8 / sizeof(Element) elements.
template <class Element>
std::uint64_t BitsOfBlock(const Element* s)
{
  std::uint64_t a;
  std::uint64_t b;
  std::memcpy(&a, s, sizeof a);
  std::memcpy(&b, s + kBlockLength<Element> / 2, sizeof b);
  return a | b;
}

inline bool IsAsciiBlock(const char* s)
{
  return (BitsOfBlock(s) & 0x8080808080808080) == 0;
}

inline bool IsAsciiBlock(const wchar_t* s)
{
  return (BitsOfBlock(s) & 0xFFFFFF80FFFFFF80) == 0;
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

// A mapping has
//
//     static constexpr AsciiCase kAsciiCase    what it does to ASCII
//     Element operator()(Element c)
template <class Element, class Mapping>
void MapText(Element* s, std::size_t n, Mapping& map)
{
  std::size_t i = 0;
  for (; n - i >= kBlockLength<Element>; i += kBlockLength<Element>) {
    if (IsAsciiBlock(s + i)) {
      MapAsciiBlock<Mapping::kAsciiCase>(s + i);
    } else {
      for (std::size_t k = i; k < i + kBlockLength<Element>; ++k) s[k] = map(s[k]);
    }
  }
  for (; i < n; ++i) s[i] = map(s[i]);
}

// The mapping of wide characters through a table whose entries are characters.
template <const auto& table, AsciiCase asciiCase>
struct TableMapping
{
  static constexpr AsciiCase kAsciiCase = asciiCase;

  wchar_t operator()(wchar_t c) const
  {
    const std::uint32_t entry = table.Entry(c);
    return entry != 0 ? static_cast<wchar_t>(entry) : c;
  }
};

// The mapping of bytes through a table of all of them.
template <const auto& table, AsciiCase asciiCase>
struct ByteMapping
{
  static constexpr AsciiCase kAsciiCase = asciiCase;

  char operator()(char byte) const { return static_cast<char>(table[static_cast<unsigned char>(byte)]); }
};

// Maps the text of a string object, zeros included, or of a zero-terminated buffer, in place.
template <class Mapping, class String>
void MapString(String& s)
{
  const Mapping map;
  MapText(s.data(), s.size(), map);
}

template <class Mapping>
void MapTerminated(wchar_t* s)
{
  const Mapping map;
  MapText(s, std::wcslen(s), map);
}

}  // namespace qxpaf

#endif
