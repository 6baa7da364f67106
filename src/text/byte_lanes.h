// The first bytes of a text as the lanes of one register, the first byte in the lowest lane. Lanes behind the end of
// the text are zero; nothing behind it is read.
#ifndef QXPAF_SRC_TEXT_BYTE_LANES_H
#define QXPAF_SRC_TEXT_BYTE_LANES_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace qxpaf {

// The first byte is the lowest, whatever the byte order of the machine.
template <class Word>
Word LoadLowestFirst(const char* from)
{
  Word word = 0;
  if constexpr (std::endian::native == std::endian::little)
    std::memcpy(&word, from, sizeof word);
  else
    for (std::size_t i = sizeof word; i-- > 0;)
      word = static_cast<Word>(word << 8 | static_cast<unsigned char>(from[i]));
  return word;
}

// Eight bytes, or all n where that is less and at least 1.
inline std::uint64_t LoadUpToEight(const char* text, std::size_t n)
{
  if (n >= 8) return LoadLowestFirst<std::uint64_t>(text);
  if (n >= 4) {
    const std::uint64_t end = LoadLowestFirst<std::uint32_t>(text + n - 4);
    return LoadLowestFirst<std::uint32_t>(text) | end << (8 * (n - 4));
  }
  const auto at = [text](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(text[i])} << (8 * i); };
  return at(0) | at(n / 2) | at(n - 1);
}

// Eight lanes in plain arithmetic.
class WordLanes
{
 public:
  static constexpr int kCount = 8;

  // n is at least 1.
  static WordLanes FirstOf(const char* text, std::size_t n) { return WordLanes(LoadUpToEight(text, n)); }
  static WordLanes FirstEightOf(const char* text) { return WordLanes(LoadLowestFirst<std::uint64_t>(text)); }

  // All lanes of one value.
  static WordLanes Of(char c) { return WordLanes(kLowBits * static_cast<unsigned char>(c)); }

  // Each lane moved to a higher or to a lower one; zeros follow.
  template <int kLanes>
  WordLanes Up() const
  {
    return WordLanes(word_ << (8 * kLanes));
  }

  template <int kLanes>
  WordLanes Down() const
  {
    return WordLanes(word_ >> (8 * kLanes));
  }

  WordLanes operator|(WordLanes other) const { return WordLanes(word_ | other.word_); }

  // The top bit of each lane that is equal in both.
  WordLanes EqualTo(WordLanes other) const
  {
    const std::uint64_t difference = word_ ^ other.word_;
    return WordLanes(~(((difference & ~kTopBits) + ~kTopBits) | difference) & kTopBits);
  }

  // The top bit of each lane.
  unsigned int TopBits() const { return static_cast<unsigned int>(((word_ >> 7) & kLowBits) * kGather >> 56); }

 private:
  static constexpr std::uint64_t kLowBits = 0x0101010101010101;
  static constexpr std::uint64_t kTopBits = 0x8080808080808080;
  static constexpr std::uint64_t kGather = 0x0102040810204080;  // brings the lowest bit of every lane to the top byte

  explicit WordLanes(std::uint64_t word) : word_(word) {}

  std::uint64_t word_;
};

#ifdef __SSE2__
class Sse2Lanes
{
 public:
  static constexpr int kCount = 16;

  Sse2Lanes() = default;

  static Sse2Lanes FirstOf(const char* text, std::size_t n)
  {
    if (n >= 16) return Sse2Lanes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text)));
    const std::uint64_t low = LoadUpToEight(text, n);
    const std::uint64_t high = n > 8 ? LoadLowestFirst<std::uint64_t>(text + n - 8) >> (8 * (16 - n)) : 0;
    return Sse2Lanes(_mm_set_epi64x(static_cast<std::int64_t>(high), static_cast<std::int64_t>(low)));
  }

  static Sse2Lanes FirstEightOf(const char* text)
  {
    return Sse2Lanes(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(text)));
  }

  static Sse2Lanes Of(char c) { return Sse2Lanes(_mm_set1_epi8(c)); }

  template <int kLanes>
  Sse2Lanes Up() const
  {
    return Sse2Lanes(_mm_slli_si128(lanes_, kLanes));
  }

  template <int kLanes>
  Sse2Lanes Down() const
  {
    return Sse2Lanes(_mm_srli_si128(lanes_, kLanes));
  }

  Sse2Lanes operator|(Sse2Lanes other) const { return Sse2Lanes(_mm_or_si128(lanes_, other.lanes_)); }
  Sse2Lanes EqualTo(Sse2Lanes other) const { return Sse2Lanes(_mm_cmpeq_epi8(lanes_, other.lanes_)); }
  unsigned int TopBits() const { return static_cast<unsigned int>(_mm_movemask_epi8(lanes_)); }

 private:
  explicit Sse2Lanes(__m128i lanes) : lanes_(lanes) {}

  __m128i lanes_;
};

using ByteLanes = Sse2Lanes;
#else
using ByteLanes = WordLanes;
#endif

}  // namespace qxpaf

#endif
