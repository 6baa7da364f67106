// Five-bit packing.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "qxpaf/text/packing.h"

namespace qxpaf {
namespace {

struct CodeRow
{
  std::uint8_t code;  // of the first character; those behind it have the codes that follow
  char first;
  char last;
};

// 'I' and 'J', 'O' and 'Q', 'U' and 'V' share a code. The form serves for keys that differ little in such letters.
constexpr CodeRow kCodeRows[] = {
    {0, '\0', '\0'}, {1, '0', '9'},  {11, 'A', 'H'}, {19, 'I', 'I'}, {19, 'J', 'J'}, {20, 'K', 'N'}, {24, 'O', 'O'},
    {24, 'Q', 'Q'},  {25, 'P', 'P'}, {26, 'R', 'T'}, {29, 'U', 'U'}, {29, 'V', 'V'}, {30, 'W', 'W'},
};
constexpr std::uint8_t kOtherCode = 31;

constexpr std::array<std::uint8_t, 256> kCodes = [] {
  std::array<std::uint8_t, 256> codes{};
  codes.fill(kOtherCode);
  for (const CodeRow& row : kCodeRows) {
    for (int c = row.first; c <= row.last; ++c)
      codes[static_cast<std::size_t>(c)] = static_cast<std::uint8_t>(row.code + (c - row.first));
  }
  return codes;
}();

constexpr std::size_t kCodeBits = 5;
constexpr std::size_t kByteBits = 8;

// Bytes that so many characters take; written so that it cannot overflow.
std::size_t PackedSize(std::size_t chars)
{
  return chars / kByteBits * kCodeBits + (chars % kByteBits * kCodeBits + kByteBits - 1) / kByteBits;
}

}  // namespace
}  // namespace qxpaf

long Compress5(char* dst, unsigned long dstSize, const char* src, unsigned long srcLen)
{
  std::size_t written = 0;
  std::uint32_t bits = 0;  // its lowest pending bits are still to be written
  std::size_t pending = 0;
  for (std::size_t i = 0; i < srcLen && written < dstSize; ++i) {
    bits = bits << qxpaf::kCodeBits | qxpaf::kCodes[static_cast<unsigned char>(src[i])];
    pending += qxpaf::kCodeBits;
    if (pending < qxpaf::kByteBits) continue;
    pending -= qxpaf::kByteBits;
    dst[written++] = static_cast<char>(bits >> pending & 0xFF);
  }
  if (pending != 0 && written < dstSize) dst[written] = static_cast<char>(bits << (qxpaf::kByteBits - pending) & 0xFF);
  // One more than dstSize says that not everything went in.
  return static_cast<long>(std::min<std::size_t>(qxpaf::PackedSize(srcLen), dstSize + 1));
}
