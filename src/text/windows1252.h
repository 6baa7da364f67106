// Windows-1252, both ways. The table below is the only place that knows what bytes 0x80-0x9F stand for.
#ifndef QXPAF_SRC_TEXT_WINDOWS1252_H
#define QXPAF_SRC_TEXT_WINDOWS1252_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace qxpaf {

inline constexpr unsigned char kFirstAnsiSpecial = 0x80;

// Code points of bytes 0x80-0x9F. The five unassigned bytes stand for themselves.
inline constexpr std::array<char16_t, 32> kAnsiSpecials = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

inline constexpr char32_t AnsiToCodePoint(unsigned char byte)
{
  const auto index = static_cast<std::size_t>(byte - kFirstAnsiSpecial);
  return index < kAnsiSpecials.size() ? kAnsiSpecials[index] : byte;
}

struct AnsiSpecial
{
  char16_t codePoint;
  unsigned char byte;
};

// kAnsiSpecials turned round, ascending by code point.
inline constexpr auto kAnsiSpecialsByCodePoint = [] {
  std::array<AnsiSpecial, kAnsiSpecials.size()> rows{};
  for (std::size_t i = 0; i < rows.size(); ++i)
    rows[i] = {kAnsiSpecials[i], static_cast<unsigned char>(kFirstAnsiSpecial + i)};
  std::sort(rows.begin(), rows.end(), [](AnsiSpecial a, AnsiSpecial b) { return a.codePoint < b.codePoint; });
  return rows;
}();

inline constexpr std::int32_t kLastAnsiSpecial = kAnsiSpecialsByCodePoint.back().codePoint;

// Bit i: some special lies in U+ii00-U+iiFF. Spares most characters of other scripts the search.
inline constexpr std::uint64_t kAnsiSpecialPages = [] {
  static_assert(kLastAnsiSpecial >> 8 < 64);
  std::uint64_t pages = 0;
  for (const char16_t codePoint : kAnsiSpecials) pages |= std::uint64_t{1} << (codePoint >> 8);
  return pages;
}();

// The byte of a character above 0xFF, false when it has none.
inline constexpr bool SpecialToAnsi(std::int32_t character, char& byte)
{
  if (character > kLastAnsiSpecial || (kAnsiSpecialPages >> (character >> 8) & 1) == 0) return false;
  const auto row = std::lower_bound(kAnsiSpecialsByCodePoint.begin(), kAnsiSpecialsByCodePoint.end(), character,
                                    [](AnsiSpecial special, std::int32_t value) { return special.codePoint < value; });
  if (row->codePoint != character) return false;
  byte = static_cast<char>(row->byte);
  return true;
}

// The byte of a character, false (byte untouched) when it has none. Negative values count as ASCII: they keep their low
// byte. U+0080-U+009F have no byte, so the five unassigned bytes convert in one direction only.
inline constexpr bool CodePointToAnsi(std::int32_t character, char& byte)
{
  if (character <= 0x7F || (character >= 0xA0 && character <= 0xFF)) {
    byte = static_cast<char>(character);
    return true;
  }
  return character > 0xFF && SpecialToAnsi(character, byte);
}

}  // namespace qxpaf

#endif
