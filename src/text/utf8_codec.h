// One UTF-8 sequence at a time: the decoder and the encoder behind every conversion.
#ifndef QXPAF_SRC_TEXT_UTF8_CODEC_H
#define QXPAF_SRC_TEXT_UTF8_CODEC_H

#include <cstddef>
#include <cstdint>

namespace qxpaf {

inline constexpr std::uint32_t kLastCodePoint = 0x10FFFF;
inline constexpr std::uint32_t kFirstSupplementary = 0x10000;
inline constexpr int kMaxUtf8Length = 4;

inline constexpr bool IsUtf8Continuation(char byte)
{
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

inline constexpr bool IsAsciiByte(char byte)
{
  return (static_cast<unsigned char>(byte) & 0x80) == 0;
}

// Decodes the sequence of kLength bytes at p, whose lead byte carries the bits of kLeadMask; false at the first byte
// that is no continuation. A terminator is none, so nothing behind it is read.
template <int kLength, unsigned int kLeadMask>
inline bool DecodeUtf8Sequence(const char*& p, std::uint32_t& codePoint)
{
  std::uint32_t value = static_cast<unsigned char>(p[0]) & kLeadMask;
  for (int i = 1; i < kLength; ++i) {
    if (!IsUtf8Continuation(p[i])) return false;
    value = (value << 6) | (static_cast<unsigned char>(p[i]) & 0x3F);
  }
  p += kLength;
  codePoint = value;
  return true;
}

// Decodes a sequence of three bytes at p, where three may be read, with one test for both continuations; p stays.
inline bool DecodeThreeBytes(const char* p, std::uint32_t& codePoint)
{
  const unsigned int lead = static_cast<unsigned char>(p[0]);
  const unsigned int second = static_cast<unsigned char>(p[1]) ^ 0x80U;
  const unsigned int third = static_cast<unsigned char>(p[2]) ^ 0x80U;
  if ((lead & 0xF0) != 0xE0 || (second | third) > 0x3F) return false;
  codePoint = (lead & 0x0F) << 12 | second << 6 | third;
  return true;
}

// Decodes the sequence at p and moves p behind it. False when there is none, with p and codePoint untouched; but a
// sequence above U+10FFFF is passed and stored before it is refused, as callers of the strict stepping functions can
// see. Overlong forms and surrogates are let through.
inline bool DecodeUtf8Char(const char*& p, std::uint32_t& codePoint)
{
  const auto lead = static_cast<unsigned char>(*p);
  if (lead < 0x80) return DecodeUtf8Sequence<1, 0x7F>(p, codePoint);
  if ((lead & 0xE0) == 0xC0) return DecodeUtf8Sequence<2, 0x1F>(p, codePoint);
  if ((lead & 0xF0) == 0xE0) return DecodeUtf8Sequence<3, 0x0F>(p, codePoint);
  if ((lead & 0xF8) == 0xF0) return DecodeUtf8Sequence<4, 0x07>(p, codePoint) && codePoint <= kLastCodePoint;
  return false;
}

// Bytes of the UTF-8 form of value, 0 above U+10FFFF. Free of branches, for loops over many values.
inline constexpr std::uint32_t Utf8Length(std::uint32_t value)
{
  return 1U + (value >= 0x80) + (value >= 0x800) + (value >= kFirstSupplementary) - 4U * (value > kLastCodePoint);
}

template <int kCount>
inline char* PutContinuations(char* to, std::uint32_t value)
{
  for (int shift = 6 * (kCount - 1); shift >= 0; shift -= 6)
    *to++ = static_cast<char>(0x80 | ((value >> shift) & 0x3F));
  return to;
}

// Writes the UTF-8 form of value, 1 to 4 bytes, and returns the position behind it. There is no upper bound: what does
// not fit the lead byte of four is cut off.
inline char* PutUtf8(char* to, std::uint32_t value)
{
  if (value < 0x80) {
    *to++ = static_cast<char>(value);
    return to;
  }
  if (value < 0x800) {
    *to++ = static_cast<char>(0xC0 | (value >> 6));
    return PutContinuations<1>(to, value);
  }
  if (value < kFirstSupplementary) {
    *to++ = static_cast<char>(0xE0 | (value >> 12));
    return PutContinuations<2>(to, value);
  }
  *to++ = static_cast<char>(0xF0 | (value >> 18));
  return PutContinuations<3>(to, value);
}

}  // namespace qxpaf

#endif
