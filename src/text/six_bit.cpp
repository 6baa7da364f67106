// Six-bit packing: capacity, tails, and what becomes of the bytes behind the packed ones.
#include "text/six_bit.h"

#include <algorithm>
#include <cstddef>

#include "qxpaf/text/packing.h"

namespace qxpaf {
namespace {

constexpr unsigned int kFirstChar = 0x20;
constexpr unsigned int kCodeMask = 0x3F;
constexpr std::size_t kGroupChars = 4;
constexpr std::size_t kGroupBytes = 3;

unsigned int CodeAt(const char* src, std::size_t i, std::size_t length)
{
  return i < length ? (static_cast<unsigned char>(src[i]) - kFirstChar) & kCodeMask : 0;
}

// Packs up to three characters, one byte for each of them, as far as there is room. Returns the number of bytes.
std::size_t PackTail(char* dst, std::size_t room, const char* src, std::size_t chars)
{
  const unsigned int bits = CodeAt(src, 0, chars) << 18 | CodeAt(src, 1, chars) << 12 | CodeAt(src, 2, chars) << 6;
  const std::size_t bytes = std::min(chars, room);
  for (std::size_t i = 0; i < bytes; ++i) dst[i] = static_cast<char>(bits >> (16 - 8 * i) & 0xFF);
  return bytes;
}

// Unpacks up to three characters from as many bytes.
void UnpackTail(char* dst, const char* src, std::size_t chars)
{
  unsigned int bits = 0;
  for (std::size_t i = 0; i < chars; ++i)
    bits |= static_cast<unsigned int>(static_cast<unsigned char>(src[i])) << (16 - 8 * i);
  for (std::size_t i = 0; i < chars; ++i) dst[i] = static_cast<char>((bits >> (18 - 6 * i) & kCodeMask) + kFirstChar);
}

// Packing moves from byte to byte and clears the one ahead when it arrives at a byte that is not the last: so the byte
// behind the one in which the next character would start is zero, once there were two characters. Callers may depend
// on the bytes behind the result.
void ClearAhead(char* dst, std::size_t dstSize, std::size_t used, std::size_t srcLen)
{
  if (srcLen < 2) return;
  const std::size_t current = srcLen / kGroupChars * kGroupBytes + srcLen % kGroupChars * kGroupBytes / kGroupChars;
  const std::size_t stop = std::min(current + 2, dstSize);
  for (std::size_t i = used; i < stop; ++i) dst[i] = '\0';
}

}  // namespace
}  // namespace qxpaf

unsigned char CharToSixBits(char c)
{
  const unsigned int code = static_cast<unsigned char>(c) - qxpaf::kFirstChar;
  return static_cast<unsigned char>(code <= qxpaf::kCodeMask ? code : 0);
}

unsigned long Compress6(char* dst, unsigned long dstSize, const char* src, unsigned long srcLen)
{
  if (dstSize == 0) return 0;
  if (srcLen == 0) {
    *dst = '\0';
    return 0;
  }
  const std::size_t groups = std::min(srcLen / qxpaf::kGroupChars, dstSize / qxpaf::kGroupBytes);
  qxpaf::PackSixBitGroups(qxpaf::BestSixBitPath(), dst, src, groups);
  const std::size_t packed = groups * qxpaf::kGroupBytes;
  const std::size_t taken = groups * qxpaf::kGroupChars;
  const std::size_t tail = std::min(srcLen - taken, qxpaf::kGroupChars - 1);
  const std::size_t used = packed + qxpaf::PackTail(dst + packed, dstSize - packed, src + taken, tail);
  qxpaf::ClearAhead(dst, dstSize, used, srcLen);
  return used;
}

void Decompress6(char* dst, const char* src, int count)
{
  if (count <= 0) return;
  const std::size_t chars = static_cast<std::size_t>(count);
  const std::size_t groups = chars / qxpaf::kGroupChars;
  qxpaf::UnpackSixBitGroups(qxpaf::BestSixBitPath(), dst, src, groups);
  qxpaf::UnpackTail(dst + groups * qxpaf::kGroupChars, src + groups * qxpaf::kGroupBytes, chars % qxpaf::kGroupChars);
}
