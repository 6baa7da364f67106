// Counting the characters of UTF-8 text.
#include "text/utf8_count.h"

#include <algorithm>
#include <cstdint>

#ifdef __x86_64__
#include <immintrin.h>
#endif

#include "text/ascii_run.h"

namespace qxpaf {
namespace {

#ifdef __x86_64__

constexpr std::size_t kLength = 32;
constexpr std::size_t kRow = 4 * kLength;

// The rows that can be counted in lanes of a byte, one for each block of a row.
constexpr std::size_t kCountable = 255;

// As signed bytes, continuations are the values below -64. Their marks are -1 each.
[[gnu::target("avx2")]] inline __m256i CountBlock(__m256i count, const char* from)
{
  const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
  return _mm256_sub_epi8(count, _mm256_cmpgt_epi8(_mm256_set1_epi8('\xC0'), bytes));
}

// The sums of the lanes of `rows` rows, as four numbers of 64 bits.
[[gnu::target("avx2")]] inline __m256i CountRows(const char* from, std::size_t rows)
{
  const __m256i zero = _mm256_setzero_si256();
  __m256i a = zero, b = zero, c = zero, d = zero;
  for (const char* const end = from + rows * kRow; from != end; from += kRow) {
    a = CountBlock(a, from);
    b = CountBlock(b, from + kLength);
    c = CountBlock(c, from + 2 * kLength);
    d = CountBlock(d, from + 3 * kLength);
  }
  return _mm256_add_epi64(_mm256_add_epi64(_mm256_sad_epu8(a, zero), _mm256_sad_epu8(b, zero)),
                          _mm256_add_epi64(_mm256_sad_epu8(c, zero), _mm256_sad_epu8(d, zero)));
}

[[gnu::target("avx2")]] std::size_t CountContinuationsAvx2(const char* from, std::size_t rows)
{
  __m256i sums = _mm256_setzero_si256();
  while (rows != 0) {
    const std::size_t some = std::min(rows, kCountable);
    sums = _mm256_add_epi64(sums, CountRows(from, some));
    from += some * kRow;
    rows -= some;
  }
  std::uint64_t parts[4];
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(parts), sums);
  return parts[0] + parts[1] + parts[2] + parts[3];
}

#endif

}  // namespace

std::size_t CountUtf8Characters(const char* s, std::size_t n)
{
#ifdef __x86_64__
  if (n >= kRow && __builtin_cpu_supports("avx2")) {
    const std::size_t rows = n / kRow;
    const std::size_t done = rows * kRow;
    return done - CountContinuationsAvx2(s, rows) + AsciiRuns::CountCharacters(s + done, n - done);
  }
#endif
  return AsciiRuns::CountCharacters(s, n);
}

}  // namespace qxpaf
