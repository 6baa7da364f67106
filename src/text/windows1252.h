// Windows-1252, both ways. The table below is the only place that knows what bytes 0x80-0x9F stand for.
#ifndef QXPAF_SRC_TEXT_WINDOWS1252_H
#define QXPAF_SRC_TEXT_WINDOWS1252_H

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

inline constexpr std::size_t kAnsiPageSize = 256;
inline constexpr std::size_t kAnsiPages = 5;

// kAnsiSpecials turned round, for characters above 0xFF: the pages of 256 code points that have any, behind an empty
// one.
struct AnsiPages
{
  std::array<unsigned char, 0x100> pageOf{};                      // by the high byte of a code point
  std::array<unsigned char, kAnsiPages * kAnsiPageSize> bytes{};  // 0 for none
};

inline constexpr AnsiPages kAnsiByPage = [] {
  AnsiPages pages;
  unsigned char used = 1;
  for (std::size_t i = 0; i < kAnsiSpecials.size(); ++i) {
    const std::size_t high = kAnsiSpecials[i] / kAnsiPageSize;
    if (high == 0) continue;
    if (pages.pageOf[high] == 0) pages.pageOf[high] = used++;
    pages.bytes[pages.pageOf[high] * kAnsiPageSize + kAnsiSpecials[i] % kAnsiPageSize] =
        static_cast<unsigned char>(kFirstAnsiSpecial + i);
  }
  return pages;
}();

// The byte of a character above 0xFF, false when it has none.
inline constexpr bool SpecialToAnsi(std::int32_t character, char& byte)
{
  if (character > 0xFFFF) return false;
  const auto codePoint = static_cast<std::size_t>(character);
  const unsigned char found =
      kAnsiByPage.bytes[kAnsiByPage.pageOf[codePoint / kAnsiPageSize] * kAnsiPageSize + codePoint % kAnsiPageSize];
  if (found == 0) return false;
  byte = static_cast<char>(found);
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
