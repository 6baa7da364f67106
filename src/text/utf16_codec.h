// Surrogate pairs, held one code unit in each wide element.
#ifndef QXPAF_SRC_TEXT_UTF16_CODEC_H
#define QXPAF_SRC_TEXT_UTF16_CODEC_H

#include <cstdint>

#include "text/utf8_codec.h"

namespace qxpaf {

// A high surrogate followed by a low one. Free of branches, for loops over many values.
inline constexpr bool IsSurrogatePair(std::uint32_t high, std::uint32_t low)
{
  return (((high ^ 0xD800) | (low ^ 0xDC00)) & ~0x3FFU) == 0;
}

inline constexpr std::uint32_t CombineSurrogates(std::uint32_t high, std::uint32_t low)
{
  return ((high - 0xD800) << 10) + (low - 0xDC00) + kFirstSupplementary;
}

// Writes the one or two code units of a code point and returns the position behind them.
inline wchar_t* PutUtf16(wchar_t* to, std::uint32_t codePoint)
{
  if (codePoint < kFirstSupplementary) {
    *to++ = static_cast<wchar_t>(codePoint);
    return to;
  }
  *to++ = static_cast<wchar_t>(0xD800 + ((codePoint - kFirstSupplementary) >> 10));
  *to++ = static_cast<wchar_t>(0xDC00 + (codePoint & 0x3FF));
  return to;
}

}  // namespace qxpaf

#endif
