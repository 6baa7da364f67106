// ASCII stretches, many elements at a time. Every function takes the ASCII elements at the start of its input, reads
// nothing behind from + n, writes exactly the elements it counts, and returns how many they are.
#ifndef QXPAF_SRC_TEXT_ASCII_RUN_H
#define QXPAF_SRC_TEXT_ASCII_RUN_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "text/utf8_codec.h"

namespace qxpaf {

// A kind of block converts kLength elements in one step, false without writing when one of them is not ASCII. Convert
// reads a whole block before it writes, so that narrowing may work in place.
struct WordBlocks
{
  static constexpr std::size_t kLength = 8;

  static bool IsAscii(const char* from) { return (Load(from) & kTopBits) == 0; }

  static bool IsAscii(const wchar_t* from)
  {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < kLength; ++i) bits |= static_cast<std::uint32_t>(from[i]);
    return bits < 0x80;
  }

  static bool Convert(char* to, const char* from)
  {
    const std::uint64_t word = Load(from);
    if ((word & kTopBits) != 0) return false;
    std::memcpy(to, &word, sizeof word);
    return true;
  }

  static bool Convert(wchar_t* to, const char* from)
  {
    if (!IsAscii(from)) return false;
    for (std::size_t i = 0; i < kLength; ++i) to[i] = static_cast<unsigned char>(from[i]);
    return true;
  }

  static bool Convert(char* to, const wchar_t* from)
  {
    if (!IsAscii(from)) return false;
    char narrow[kLength];
    for (std::size_t i = 0; i < kLength; ++i) narrow[i] = static_cast<char>(from[i]);
    std::memcpy(to, narrow, kLength);
    return true;
  }

  // Of `blocks` blocks.
  static std::size_t CountContinuations(const char* from, std::size_t blocks)
  {
    std::size_t count = 0;
    for (const char* const end = from + blocks * kLength; from != end; from += kLength) count += CountIn(Load(from));
    return count;
  }

  // Of the last `some` bytes before end, less than a block, where there is a whole block before end.
  static std::size_t CountContinuationsAtEnd(const char* end, std::size_t some)
  {
    const std::uint64_t word = Load(end - kLength);
    const std::size_t others = 8 * (kLength - some);
    return CountIn(std::endian::native == std::endian::little ? word >> others : word << others);
  }

 private:
  static constexpr std::uint64_t kTopBits = 0x8080808080808080;
  static constexpr std::uint64_t kLowBits = 0x0101010101010101;

  static std::size_t CountIn(std::uint64_t word)
  {
    return static_cast<std::size_t>((((word >> 7) & (~word >> 6) & kLowBits) * kLowBits) >> 56);
  }

  static std::uint64_t Load(const char* from)
  {
    std::uint64_t word;
    std::memcpy(&word, from, sizeof word);
    return word;
  }
};

#ifdef __SSE2__
struct Sse2Blocks
{
  static constexpr std::size_t kLength = 16;

  static bool IsAscii(const char* from) { return IsAscii(Load(from)); }

  static bool IsAscii(const wchar_t* from)
  {
    return AreBelow<0x80>(Or(Or(Load(from), Load(from + 4)), Or(Load(from + 8), Load(from + 12))));
  }

  static bool Convert(char* to, const char* from)
  {
    const __m128i bytes = Load(from);
    if (!IsAscii(bytes)) return false;
    Store(to, bytes);
    return true;
  }

  static bool Convert(wchar_t* to, const char* from)
  {
    const __m128i bytes = Load(from);
    if (!IsAscii(bytes)) return false;
    StoreWide(to, bytes);
    return true;
  }

  static bool Convert(char* to, const wchar_t* from)
  {
    __m128i bytes;
    if (!LoadNarrow(bytes, from) || !IsAscii(bytes)) return false;
    Store(to, bytes);
    return true;
  }
  static std::size_t CountContinuations(const char* from, std::size_t blocks)
  {
    __m128i sums = _mm_setzero_si128();
    while (blocks != 0) {
      const std::size_t some = std::min(blocks, kCountable);
      sums = _mm_add_epi64(sums, _mm_sad_epu8(CountInLanes(from, some), _mm_setzero_si128()));
      from += some * kLength;
      blocks -= some;
    }
    sums = _mm_add_epi64(sums, _mm_unpackhi_epi64(sums, sums));
    return static_cast<std::size_t>(_mm_cvtsi128_si64(sums));
  }

 protected:
  template <class Element>
  static __m128i Load(const Element* from)
  {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  }

  template <class Element>
  static void Store(Element* to, __m128i value)
  {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value);
  }

  static void StoreWide(wchar_t* to, __m128i bytes)
  {
    const __m128i zero = _mm_setzero_si128();
    const __m128i low = _mm_unpacklo_epi8(bytes, zero);
    const __m128i high = _mm_unpackhi_epi8(bytes, zero);
    Store(to, _mm_unpacklo_epi16(low, zero));
    Store(to + 4, _mm_unpackhi_epi16(low, zero));
    Store(to + 8, _mm_unpacklo_epi16(high, zero));
    Store(to + 12, _mm_unpackhi_epi16(high, zero));
  }

  // False when an element is no byte.
  static bool LoadNarrow(__m128i& bytes, const wchar_t* from)
  {
    const __m128i a = Load(from);
    const __m128i b = Load(from + 4);
    const __m128i c = Load(from + 8);
    const __m128i d = Load(from + 12);
    if (!AreBelow<0x100>(Or(Or(a, b), Or(c, d)))) return false;
    bytes = _mm_packus_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d));
    return true;
  }

 private:
  // The blocks whose continuation bytes can be counted in lanes of a byte.
  static constexpr std::size_t kCountable = 252;

  static __m128i CountInLanes(const char* from, std::size_t blocks)
  {
    // As signed bytes, continuations are the values below -64. Their marks are -1 each.
    const __m128i limit = _mm_set1_epi8('\xC0');
    __m128i even = _mm_setzero_si128();
    __m128i odd = _mm_setzero_si128();
    for (; blocks >= 2; blocks -= 2, from += 2 * kLength) {
      even = _mm_sub_epi8(even, _mm_cmplt_epi8(Load(from), limit));
      odd = _mm_sub_epi8(odd, _mm_cmplt_epi8(Load(from + kLength), limit));
    }
    if (blocks != 0) even = _mm_sub_epi8(even, _mm_cmplt_epi8(Load(from), limit));
    return _mm_add_epi8(even, odd);
  }

  static bool IsAscii(__m128i bytes) { return _mm_movemask_epi8(bytes) == 0; }

  // The limit is a power of two.
  template <int limit>
  static bool AreBelow(__m128i elements)
  {
    const __m128i above = _mm_andnot_si128(_mm_set1_epi32(limit - 1), elements);
    return _mm_movemask_epi8(_mm_cmpeq_epi32(above, _mm_setzero_si128())) == 0xFFFF;
  }

  static __m128i Or(__m128i a, __m128i b) { return _mm_or_si128(a, b); }
};

// Blocks of what is the same in Windows-1252 and in Unicode: ASCII and U+00A0-U+00FF.
struct Latin1Sse2Blocks : private Sse2Blocks
{
  using Sse2Blocks::kLength;

  static bool Convert(wchar_t* to, const char* from)
  {
    const __m128i bytes = Load(from);
    if (!AreSame(bytes)) return false;
    StoreWide(to, bytes);
    return true;
  }

  static bool Convert(char* to, const wchar_t* from)
  {
    __m128i bytes;
    if (!LoadNarrow(bytes, from) || !AreSame(bytes)) return false;
    Store(to, bytes);
    return true;
  }

 private:
  static bool AreSame(__m128i bytes)
  {
    const __m128i rows = _mm_and_si128(bytes, _mm_set1_epi8('\xE0'));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(rows, _mm_set1_epi8('\x80'))) == 0;
  }
};
#endif

// The functions on whole stretches: blocks of the given kinds, longest first, then single elements.
template <class... Kinds>
class AsciiRunsOf
{
 public:
  // char or wchar_t.
  template <class In>
  static std::size_t Length(const In* from, std::size_t n)
  {
    std::size_t done = 0;
    (SkipBlocks<Kinds>(from, n, done), ...);
    while (done < n && IsAscii(from[done])) ++done;
    return done;
  }

  // char to char, char to wchar_t or wchar_t to char.
  template <class Out, class In>
  static std::size_t Convert(Out* to, const In* from, std::size_t n)
  {
    std::size_t done = 0;
    (ConvertBlocks<Kinds>(to, from, n, done), ...);
    for (; done < n && IsAscii(from[done]); ++done) to[done] = static_cast<Out>(from[done]);
    return done;
  }

  // The same for whole blocks of the longest kind that fits: stops before a block that is not all ASCII, or too short.
  template <class Out, class In>
  static std::size_t ConvertWholeBlocks(Out* to, const In* from, std::size_t n)
  {
    std::size_t done = 0;
    (ConvertBlocks<Kinds>(to, from, n, done), ...);
    return done;
  }

  // UTF-8 characters in any n bytes: those that are no continuation bytes.
  static std::size_t CountCharacters(const char* from, std::size_t n)
  {
    std::size_t done = 0;
    std::size_t continuations = 0;
    ((continuations += CountInBlocks<Kinds>(from, n, done)), ...);
    if (done < n && n - done < WordBlocks::kLength && n >= WordBlocks::kLength)
      return n - continuations - WordBlocks::CountContinuationsAtEnd(from + n, n - done);
    for (; done < n; ++done) continuations += IsUtf8Continuation(from[done]);
    return n - continuations;
  }

 private:
  static bool IsAscii(char element) { return IsAsciiByte(element); }
  static bool IsAscii(wchar_t element) { return static_cast<std::uint32_t>(element) < 0x80; }

  // Where less than a block is left, the last block of the whole stretch takes the rest, some elements a second time.
  // In place that is safe from two blocks on: its source then lies behind everything that narrowing has written.
  template <class Blocks>
  static bool EndsInBlock(std::size_t n, std::size_t done)
  {
    return n - done < Blocks::kLength && n >= 2 * Blocks::kLength;
  }

  template <class Blocks, class In>
  static void SkipBlocks(const In* from, std::size_t n, std::size_t& done)
  {
    while (n - done >= Blocks::kLength && Blocks::IsAscii(from + done)) done += Blocks::kLength;
    if (EndsInBlock<Blocks>(n, done) && Blocks::IsAscii(from + n - Blocks::kLength)) done = n;
  }

  template <class Blocks, class Out, class In>
  static void ConvertBlocks(Out* to, const In* from, std::size_t n, std::size_t& done)
  {
    constexpr std::size_t kLength = Blocks::kLength;
    while (n - done >= kLength && Blocks::Convert(to + done, from + done)) done += kLength;
    if (EndsInBlock<Blocks>(n, done) && Blocks::Convert(to + n - kLength, from + n - kLength)) done = n;
  }

  template <class Blocks>
  static std::size_t CountInBlocks(const char* from, std::size_t n, std::size_t& done)
  {
    const std::size_t blocks = (n - done) / Blocks::kLength;
    const std::size_t start = done;
    done += blocks * Blocks::kLength;
    return Blocks::CountContinuations(from + start, blocks);
  }
};

using PortableAsciiRuns = AsciiRunsOf<WordBlocks>;
#ifdef __SSE2__
using AsciiRuns = AsciiRunsOf<Sse2Blocks, WordBlocks>;
using Latin1Runs = AsciiRunsOf<Latin1Sse2Blocks, WordBlocks>;
#else
using AsciiRuns = PortableAsciiRuns;
using Latin1Runs = PortableAsciiRuns;
#endif

// Converts the blocks at p, if any, and moves both positions behind them.
template <class Runs, class Out, class In>
void TakeWholeBlocks(const In*& p, const In* stop, Out*& to)
{
  const std::size_t run = Runs::ConvertWholeBlocks(to, p, static_cast<std::size_t>(stop - p));
  p += run;
  to += run;
}

// Converts the ASCII elements at p, if any, and moves both positions behind them.
template <class Out, class In>
void TakeAscii(const In*& p, const In* stop, Out*& to)
{
  const std::size_t run = AsciiRuns::Convert(to, p, static_cast<std::size_t>(stop - p));
  p += run;
  to += run;
}

}  // namespace qxpaf

#endif
