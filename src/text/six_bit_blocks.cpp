// Six-bit packing in blocks of eight, sixteen and thirty-two characters.
#include <bit>
#include <cstdint>
#include <cstring>

#include "text/six_bit.h"

#ifdef __x86_64__
#include <immintrin.h>
#define QXPAF_SIX_BIT_X86 1
#endif

namespace qxpaf {
namespace {

constexpr std::size_t kGroupChars = 4;
constexpr std::size_t kGroupBytes = 3;

// Covers groups, at least kBlockGroups of them, by blocks of so many. What is left at the end is covered by a block
// that reaches back over groups that were done already: the same bytes are written twice. A block is a function
// (std::size_t group) on the groups from there on; inlined, since only then may the caller be compiled for another
// processor than this function.
template <std::size_t kBlockGroups, class Block>
[[gnu::always_inline]] inline void InBlocks(std::size_t groups, Block block)
{
  std::size_t group = 0;
  for (; groups - group >= kBlockGroups; group += kBlockGroups) block(group);
  if (group != groups) block(groups - kBlockGroups);
}

// ---- Words ----------------------------------------------------------------------------------------------------------

constexpr std::size_t kWordGroups = 2;

constexpr std::uint64_t FromBigEndian(std::uint64_t word)
{
  return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
}

// Packs kGroups groups, one or two, by bringing ever wider neighbours together.
template <std::size_t kGroups>
void PackWord(char* to, const char* from)
{
  std::uint64_t x = 0;
  std::memcpy(&x, from, kGroups * kGroupChars);
  // Subtracting 0x20 modulo 64 is flipping bit 5.
  x = (FromBigEndian(x) ^ 0x2020202020202020) & 0x3F3F3F3F3F3F3F3F;
  x = ((x >> 2) & 0x0FC00FC00FC00FC0) | (x & 0x003F003F003F003F);
  x = ((x >> 4) & 0x00FFF00000FFF000) | (x & 0x00000FFF00000FFF);
  x = ((x >> 8) & 0x0000FFFFFF000000) | (x & 0x0000000000FFFFFF);
  x = FromBigEndian(x << 16);
  std::memcpy(to, &x, kGroups * kGroupBytes);
}

template <std::size_t kGroups>
void UnpackWord(char* to, const char* from)
{
  std::uint64_t x = 0;
  std::memcpy(&x, from, kGroups * kGroupBytes);
  x = FromBigEndian(x) >> 16;
  x = ((x & 0x0000FFFFFF000000) << 8) | (x & 0x0000000000FFFFFF);
  x = ((x & 0x00FFF00000FFF000) << 4) | (x & 0x00000FFF00000FFF);
  x = ((x & 0x0FC00FC00FC00FC0) << 2) | (x & 0x003F003F003F003F);
  x = FromBigEndian(x + 0x2020202020202020);
  std::memcpy(to, &x, kGroups * kGroupChars);
}

void PackWords(char* to, const char* from, std::size_t groups)
{
  const auto block = [=](std::size_t group) {
    PackWord<kWordGroups>(to + group * kGroupBytes, from + group * kGroupChars);
  };
  if (groups >= kWordGroups) {
    InBlocks<kWordGroups>(groups, block);
  } else if (groups != 0) {
    PackWord<1>(to, from);
  }
}

void UnpackWords(char* to, const char* from, std::size_t groups)
{
  const auto block = [=](std::size_t group) {
    UnpackWord<kWordGroups>(to + group * kGroupChars, from + group * kGroupBytes);
  };
  if (groups >= kWordGroups) {
    InBlocks<kWordGroups>(groups, block);
  } else if (groups != 0) {
    UnpackWord<1>(to, from);
  }
}

#ifdef QXPAF_SIX_BIT_X86

// ---- Sixteen bytes --------------------------------------------------------------------------------------------------

constexpr std::size_t kSsse3Groups = 4;

[[gnu::target("ssse3")]] inline __m128i Load16(const char* from)
{
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

[[gnu::target("ssse3")]] inline void Store16(char* to, __m128i value)
{
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value);
}

[[gnu::target("ssse3")]] inline __m128i Load12(const char* from)
{
  std::int64_t low;
  std::int32_t high;
  std::memcpy(&low, from, sizeof low);
  std::memcpy(&high, from + sizeof low, sizeof high);
  return _mm_unpacklo_epi64(_mm_cvtsi64_si128(low), _mm_cvtsi32_si128(high));
}

[[gnu::target("ssse3")]] inline void Store12(char* to, __m128i value)
{
  const std::int64_t low = _mm_cvtsi128_si64(value);
  const std::int32_t high = _mm_cvtsi128_si32(_mm_srli_si128(value, sizeof low));
  std::memcpy(to, &low, sizeof low);
  std::memcpy(to + sizeof low, &high, sizeof high);
}

[[gnu::target("ssse3")]] inline void PackSixteen(char* to, const char* from)
{
  const __m128i codes = _mm_and_si128(_mm_xor_si128(Load16(from), _mm_set1_epi8(0x20)), _mm_set1_epi8(0x3F));
  const __m128i pairs = _mm_maddubs_epi16(codes, _mm_set1_epi16(0x0140));   // first * 64 + second
  const __m128i quads = _mm_madd_epi16(pairs, _mm_set1_epi32(0x00011000));  // first * 4096 + second
  Store12(to, _mm_shuffle_epi8(quads, _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1)));
}

// Each 32-bit lane of the argument holds the bytes 1, 0, 2, 1 of a group. The multiplications shift the codes of one
// pair of 16-bit lanes by different amounts: right through the high half of the product, left through the low one.
[[gnu::target("ssse3")]] inline __m128i UnpackLanes(__m128i lanes)
{
  const __m128i odd = _mm_mulhi_epu16(_mm_and_si128(lanes, _mm_set1_epi32(0x0FC0FC00)), _mm_set1_epi32(0x04000040));
  const __m128i even = _mm_mullo_epi16(_mm_and_si128(lanes, _mm_set1_epi32(0x003F03F0)), _mm_set1_epi32(0x01000010));
  return _mm_add_epi8(_mm_or_si128(odd, even), _mm_set1_epi8(0x20));
}

[[gnu::target("ssse3")]] inline void UnpackSixteen(char* to, const char* from)
{
  const __m128i order = _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
  Store16(to, UnpackLanes(_mm_shuffle_epi8(Load12(from), order)));
}

[[gnu::target("ssse3")]] void PackSsse3(char* to, const char* from, std::size_t groups)
{
  InBlocks<kSsse3Groups>(
      groups, [=](std::size_t group) __attribute__((target("ssse3"))) {
        PackSixteen(to + group * kGroupBytes, from + group * kGroupChars);
      });
}

[[gnu::target("ssse3")]] void UnpackSsse3(char* to, const char* from, std::size_t groups)
{
  InBlocks<kSsse3Groups>(
      groups, [=](std::size_t group) __attribute__((target("ssse3"))) {
        UnpackSixteen(to + group * kGroupChars, from + group * kGroupBytes);
      });
}

// ---- Thirty-two bytes, each half as above
// -----------------------------------------------------------------------------

constexpr std::size_t kAvx2Groups = 8;

[[gnu::target("avx2")]] inline void PackThirtyTwo(char* to, const char* from)
{
  const __m256i text = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
  const __m256i codes = _mm256_and_si256(_mm256_xor_si256(text, _mm256_set1_epi8(0x20)), _mm256_set1_epi8(0x3F));
  const __m256i pairs = _mm256_maddubs_epi16(codes, _mm256_set1_epi16(0x0140));
  const __m256i quads = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
  const __m256i order = _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,  //
                                         2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
  const __m256i joined =
      _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(quads, order), _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm256_castsi256_si128(joined));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 16), _mm256_extracti128_si256(joined, 1));
}

[[gnu::target("avx2")]] inline void UnpackThirtyTwo(char* to, const char* from)
{
  // The second half starts four bytes early, so that both loads stay within the 24 bytes.
  const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + 8));
  const __m256i order = _mm256_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10,  //
                                         5, 4, 6, 5, 8, 7, 9, 8, 11, 10, 12, 11, 14, 13, 15, 14);
  const __m256i lanes = _mm256_shuffle_epi8(_mm256_set_m128i(second, first), order);
  const __m256i odd =
      _mm256_mulhi_epu16(_mm256_and_si256(lanes, _mm256_set1_epi32(0x0FC0FC00)), _mm256_set1_epi32(0x04000040));
  const __m256i even =
      _mm256_mullo_epi16(_mm256_and_si256(lanes, _mm256_set1_epi32(0x003F03F0)), _mm256_set1_epi32(0x01000010));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to),
                      _mm256_add_epi8(_mm256_or_si256(odd, even), _mm256_set1_epi8(0x20)));
}

[[gnu::target("avx2")]] void PackAvx2(char* to, const char* from, std::size_t groups)
{
  InBlocks<kAvx2Groups>(
      groups, [=](std::size_t group) __attribute__((target("avx2"))) {
        PackThirtyTwo(to + group * kGroupBytes, from + group * kGroupChars);
      });
}

[[gnu::target("avx2")]] void UnpackAvx2(char* to, const char* from, std::size_t groups)
{
  InBlocks<kAvx2Groups>(
      groups, [=](std::size_t group) __attribute__((target("avx2"))) {
        UnpackThirtyTwo(to + group * kGroupChars, from + group * kGroupBytes);
      });
}

#endif

}  // namespace

#ifdef QXPAF_SIX_BIT_X86

SixBitPath BestSixBitPath()
{
  if (__builtin_cpu_supports("avx2")) return SixBitPath::kAvx2;
  return __builtin_cpu_supports("ssse3") ? SixBitPath::kSsse3 : SixBitPath::kPortable;
}

void PackSixBitGroups(SixBitPath path, char* to, const char* from, std::size_t groups)
{
  if (path == SixBitPath::kAvx2 && groups >= kAvx2Groups) {
    PackAvx2(to, from, groups);
  } else if (path != SixBitPath::kPortable && groups >= kSsse3Groups) {
    PackSsse3(to, from, groups);
  } else {
    PackWords(to, from, groups);
  }
}

void UnpackSixBitGroups(SixBitPath path, char* to, const char* from, std::size_t groups)
{
  if (path == SixBitPath::kAvx2 && groups >= kAvx2Groups) {
    UnpackAvx2(to, from, groups);
  } else if (path != SixBitPath::kPortable && groups >= kSsse3Groups) {
    UnpackSsse3(to, from, groups);
  } else {
    UnpackWords(to, from, groups);
  }
}

#else

SixBitPath BestSixBitPath()
{
  return SixBitPath::kPortable;
}

void PackSixBitGroups(SixBitPath, char* to, const char* from, std::size_t groups)
{
  PackWords(to, from, groups);
}

void UnpackSixBitGroups(SixBitPath, char* to, const char* from, std::size_t groups)
{
  UnpackWords(to, from, groups);
}

#endif

}  // namespace qxpaf
