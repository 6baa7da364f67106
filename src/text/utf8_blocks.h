// Counting the sequences of well-formed UTF-8 sixteen bytes at a time.
#ifndef QXPAF_SRC_TEXT_UTF8_BLOCKS_H
#define QXPAF_SRC_TEXT_UTF8_BLOCKS_H

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "text/ascii_run.h"

namespace qxpaf {

#ifdef __SSE2__
// The sequences longer than a byte at the start of a text. Stops before a block with anything that is not well-formed,
// overlong forms of three and four bytes and surrogates being let through, and before what is less than a block.
class Utf8BlockCount
{
 public:
  // p stands where a character begins; it is moved behind the last complete sequence that was counted.
  Utf8BlockCount(const char*& p, const char* end)
  {
    const char* const start = p;
    while (end - p >= kLength && Sse2Blocks::IsAscii(p)) p += kLength;
    if (p == start) {
      if (end - p < kLength || !TakeFirst(p)) return;
      p += kLength;
    }
    while (end - p >= kLength && Take(p, _mm_set1_epi8(-1))) p += kLength;
    if (end - p < kLength && end - start >= kLength + kBefore && TakeLast(p, end)) p = end;
    DropIncomplete(p);
  }

  std::uint64_t Sequences() const
  {
    const __m128i sum = _mm_add_epi64(sequences_, _mm_unpackhi_epi64(sequences_, sequences_));
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(sum)) - dropped_;
  }

 private:
  static constexpr std::ptrdiff_t kLength = 16;
  static constexpr std::ptrdiff_t kBefore = 3;  // what a byte's place in a sequence depends on

  static __m128i Load(const char* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); }

  // With nothing before the first byte.
  bool TakeFirst(const char* p)
  {
    const __m128i bytes = Load(p);
    return Take(bytes, _mm_slli_si128(bytes, 1), _mm_slli_si128(bytes, 2), _mm_slli_si128(bytes, 3), _mm_set1_epi8(-1));
  }

  bool Take(const char* p, __m128i counted) { return Take(Load(p), Load(p - 1), Load(p - 2), Load(p - 3), counted); }

  // The bytes from p on by the last block of the text, of which those before p have been counted.
  bool TakeLast(const char* p, const char* end)
  {
    alignas(16) static constexpr signed char kMasks[2 * kLength] = {
        0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    const auto* mask = kMasks + (end - p);
    return Take(end - kLength, _mm_loadu_si128(reinterpret_cast<const __m128i*>(mask)));
  }

  // `one`, `two` and `three` are the bytes so many places before those of the block. The top bits of differences tell
  // bytes from a limit on; those that a sequence must go on with are to be exactly the continuation bytes.
  bool Take(__m128i bytes, __m128i one, __m128i two, __m128i three, __m128i counted)
  {
    const __m128i demanded = _mm_or_si128(_mm_or_si128(_mm_subs_epu8(one, From(0xC2)), _mm_subs_epu8(two, From(0xE0))),
                                          _mm_subs_epu8(three, From(0xF0)));
    const __m128i continuations = _mm_cmplt_epi8(bytes, _mm_set1_epi8('\xC0'));
    const __m128i never =
        _mm_or_si128(_mm_cmpeq_epi8(_mm_and_si128(bytes, _mm_set1_epi8('\xFE')), _mm_set1_epi8('\xC0')),
                     _mm_subs_epu8(bytes, From(0xF5)));
    if (_mm_movemask_epi8(_mm_or_si128(_mm_xor_si128(demanded, continuations), never)) != 0) return false;
    const __m128i leads = _mm_andnot_si128(continuations, _mm_cmplt_epi8(bytes, _mm_setzero_si128()));
    const __m128i ones = _mm_and_si128(_mm_and_si128(leads, counted), _mm_set1_epi8(1));
    sequences_ = _mm_add_epi64(sequences_, _mm_sad_epu8(ones, _mm_setzero_si128()));
    return true;
  }

  // Subtracted with saturation, leaves the top bit to bytes from `limit` on, which is above 0x80.
  static __m128i From(int limit) { return _mm_set1_epi8(static_cast<char>(limit - 0x80)); }

  // Back to the lead of a sequence that p stands in.
  void DropIncomplete(const char*& p)
  {
    static constexpr unsigned char kLeads[kBefore] = {0xC2, 0xE0, 0xF0};
    for (std::ptrdiff_t back = 1; back <= kBefore; ++back) {
      if (static_cast<unsigned char>(p[-back]) < kLeads[back - 1]) continue;
      p -= back;
      dropped_ = 1;
      return;
    }
  }

  __m128i sequences_ = _mm_setzero_si128();
  std::uint64_t dropped_ = 0;
};
#else
// Nothing is counted here where there are no such blocks.
class Utf8BlockCount
{
 public:
  Utf8BlockCount(const char*&, const char*) {}
  std::uint64_t Sequences() const { return 0; }
};
#endif

}  // namespace qxpaf

#endif
