// Six-bit and five-bit packing character by character, to compare the library with. It shares no code with the library.
#ifndef QXPAF_TESTS_REFERENCE_PACKING_REFERENCE_H
#define QXPAF_TESTS_REFERENCE_PACKING_REFERENCE_H

namespace reference {

// dstSize is at least 1.
inline unsigned long Compress6(char* dst, unsigned long dstSize, const char* src, unsigned long srcLen)
{
  auto* const out = reinterpret_cast<unsigned char*>(dst);
  const unsigned long last = dstSize - 1;
  unsigned long current = 0;
  unsigned int o = 0;
  out[0] = 0;
  for (unsigned long i = 0; i < srcLen; ++i) {
    const unsigned int v = (static_cast<unsigned char>(src[i]) - 0x20U) & 0x3FU;
    if (o < 3) {
      out[current] = static_cast<unsigned char>(out[current] | v << (2 - o));
    } else {
      out[current] = static_cast<unsigned char>(out[current] | v >> (o - 2));
      if (current == last) return dstSize;
      out[current + 1] = static_cast<unsigned char>(v << (10 - o));
    }
    o += 6;
    if (o > 7) {
      o -= 8;
      ++current;
      if (current > last) return dstSize;
      if (current < last) out[current + 1] = 0;
    }
  }
  return current + (o != 0 ? 1 : 0);
}

inline void Decompress6(char* dst, const char* src, int count)
{
  const auto* p = reinterpret_cast<const unsigned char*>(src);
  int o = 0;
  for (int i = 0; i < count; ++i) {
    const int v = o > 2 ? (p[0] << (o - 2)) | (p[1] >> (10 - o)) : p[0] >> (2 - o);
    dst[i] = static_cast<char>((v & 0x3F) + 0x20);
    o += 6;
    if (o > 7) {
      o -= 8;
      ++p;
    }
  }
}

inline unsigned int FiveBitCode(unsigned char c)
{
  if (c == 0) return 0;
  if (c >= '0' && c <= '9') return c - '0' + 1U;
  if (c >= 'A' && c <= 'H') return c - 'A' + 11U;
  switch (c) {
    case 'I':
    case 'J':
      return 19;
    case 'K':
      return 20;
    case 'L':
      return 21;
    case 'M':
      return 22;
    case 'N':
      return 23;
    case 'O':
    case 'Q':
      return 24;
    case 'P':
      return 25;
    case 'R':
      return 26;
    case 'S':
      return 27;
    case 'T':
      return 28;
    case 'U':
    case 'V':
      return 29;
    case 'W':
      return 30;
    default:
      return 31;
  }
}

// The write position, counted from dst, starts at -1.
struct FiveBitWriter
{
  unsigned char* dst;
  long size;
  long at = -1;

  void Or(unsigned int bits) { dst[at] = static_cast<unsigned char>(dst[at] | bits); }
  void Advance(unsigned int bits)
  {
    ++at;
    if (at < size) dst[at] = static_cast<unsigned char>(bits);
  }
};

inline long Compress5(char* dst, unsigned long dstSize, const char* src, unsigned long srcLen)
{
  FiveBitWriter out{reinterpret_cast<unsigned char*>(dst), static_cast<long>(dstSize)};
  for (unsigned long i = 0; i < srcLen && out.at < out.size; ++i) {
    const unsigned int v = FiveBitCode(static_cast<unsigned char>(src[i]));
    switch (i % 8) {
      case 0:
        out.Advance(v << 3);
        break;
      case 1:
        out.Or(v >> 2);
        out.Advance(v << 6);
        break;
      case 2:
        out.Or(v << 1);
        break;
      case 3:
        out.Or(v >> 4);
        out.Advance(v << 4);
        break;
      case 4:
        out.Or(v >> 1);
        out.Advance(v << 7);
        break;
      case 5:
        out.Or(v << 2);
        break;
      case 6:
        out.Or(v >> 3);
        out.Advance(v << 5);
        break;
      default:
        out.Or(v);
    }
  }
  return out.at + 1;
}

}  // namespace reference

#endif
