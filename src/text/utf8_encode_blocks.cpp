// Encoding wide elements in blocks: the form of every element is made in a lane of its own, with the first byte lowest,
// and a table moves together the bytes that count.
#include "text/utf8_encode_blocks.h"

#ifdef __x86_64__
#include <immintrin.h>

#include <array>
#include <cstddef>
#endif

namespace qxpaf {

#ifdef __x86_64__
namespace {

// For a block of eight lanes of two bytes, or of four lanes of four.
struct Packing
{
  std::array<signed char, 16> from;
  unsigned char length;
};
using Packings = std::array<Packing, 256>;

// `lengthOf(index, lane)` is the number of bytes that count in a lane of the block with that index.
template <std::size_t kLanes, class LengthOf>
constexpr Packings MakePackings(LengthOf lengthOf)
{
  Packings packings{};
  for (std::size_t index = 0; index < packings.size(); ++index) {
    Packing& packing = packings[index];
    for (std::size_t lane = 0; lane < kLanes; ++lane)
      for (std::size_t i = 0; i < lengthOf(index, lane); ++i)
        packing.from[packing.length++] = static_cast<signed char>(lane * (16 / kLanes) + i);
  }
  return packings;
}

// By the lanes that are ASCII, a bit for each.
constexpr Packings kOfEight = MakePackings<8>(
    [](std::size_t index, std::size_t lane) -> std::size_t { return (index >> lane & 1) != 0 ? 1 : 2; });

// By the lanes that are below U+0800, four bits, and by those that are ASCII, four bits below them.
constexpr Packings kOfFour = MakePackings<4>([](std::size_t index, std::size_t lane) -> std::size_t {
  if ((index >> lane & 1) != 0) return 1;
  return (index >> (lane + 4) & 1) != 0 ? 2 : 3;
});

[[gnu::target("ssse3")]] inline __m128i Load(const void* from)
{
  return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

[[gnu::target("ssse3")]] inline char* Put(char* to, __m128i forms, const Packing& packing)
{
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_shuffle_epi8(forms, Load(packing.from.data())));
  return to + packing.length;
}

[[gnu::target("ssse3")]] inline __m128i Choose(__m128i mask, __m128i yes, __m128i no)
{
  return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

// Elements below U+0800.
[[gnu::target("ssse3")]] inline char* PutEight(char* to, __m128i low, __m128i high)
{
  const __m128i values = _mm_packs_epi32(low, high);
  const __m128i isAscii = _mm_cmplt_epi16(values, _mm_set1_epi16(0x80));
  const __m128i first = _mm_or_si128(_mm_srli_epi16(values, 6), _mm_set1_epi16(0xC0));
  const __m128i second = _mm_or_si128(_mm_and_si128(values, _mm_set1_epi16(0x3F)), _mm_set1_epi16(0x80));
  const __m128i two = _mm_or_si128(first, _mm_slli_epi16(second, 8));
  const int index = _mm_movemask_epi8(_mm_packs_epi16(isAscii, _mm_setzero_si128()));
  return Put(to, Choose(isAscii, values, two), kOfEight[static_cast<std::size_t>(index)]);
}

// Elements below U+D800.
[[gnu::target("ssse3")]] inline char* PutFour(char* to, __m128i values)
{
  const __m128i isAscii = _mm_cmplt_epi32(values, _mm_set1_epi32(0x80));
  const __m128i isShort = _mm_cmplt_epi32(values, _mm_set1_epi32(0x800));
  const __m128i six = _mm_set1_epi32(0x3F);
  const __m128i mark = _mm_set1_epi32(0x80);
  const __m128i shifted = _mm_srli_epi32(values, 6);
  const __m128i last = _mm_or_si128(_mm_and_si128(values, six), mark);
  const __m128i middle = _mm_or_si128(_mm_and_si128(shifted, six), mark);
  const __m128i two = _mm_or_si128(_mm_or_si128(shifted, _mm_set1_epi32(0xC0)), _mm_slli_epi32(last, 8));
  const __m128i lead = _mm_or_si128(_mm_srli_epi32(values, 12), _mm_set1_epi32(0xE0));
  const __m128i three = _mm_or_si128(_mm_or_si128(lead, _mm_slli_epi32(middle, 8)), _mm_slli_epi32(last, 16));
  const __m128i forms = Choose(isAscii, values, Choose(isShort, two, three));
  const int index = _mm_movemask_ps(_mm_castsi128_ps(isAscii)) | _mm_movemask_ps(_mm_castsi128_ps(isShort)) << 4;
  return Put(to, forms, kOfFour[static_cast<std::size_t>(index)]);
}

// Whether all values are from 0 to the limit.
[[gnu::target("ssse3")]] inline bool AreWithin(__m128i values, int limit)
{
  const __m128i outside = _mm_or_si128(_mm_cmpgt_epi32(values, _mm_set1_epi32(limit)), values);
  return _mm_movemask_ps(_mm_castsi128_ps(outside)) == 0;
}

[[gnu::target("ssse3")]] char* EncodeSsse3(const wchar_t*& p, const wchar_t* stop, char* to)
{
  for (; stop - p >= 8; p += 8) {
    const __m128i low = Load(p);
    const __m128i high = Load(p + 4);
    if (AreWithin(_mm_or_si128(low, high), 0x7FF)) {  // as each of the two is, then
      to = PutEight(to, low, high);
      continue;
    }
    if (!AreWithin(low, 0xD7FF) || !AreWithin(high, 0xD7FF)) break;
    to = PutFour(to, low);
    to = PutFour(to, high);
  }
  return to;
}

}  // namespace

char* EncodeBlocks(const wchar_t*& p, const wchar_t* stop, char* to)
{
  return __builtin_cpu_supports("ssse3") ? EncodeSsse3(p, stop, to) : to;
}

#else

char* EncodeBlocks(const wchar_t*&, const wchar_t*, char* to)
{
  return to;
}

#endif

}  // namespace qxpaf
