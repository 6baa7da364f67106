// A quick look at the beginnings of two texts that tells most pairs far apart without a search.
//
// A way from a to b that takes at most k slips never leaves the diagonals -k to k, that is, it compares a[i] only with
// b[i - k] to b[i + k]: each insertion or deletion moves it by one diagonal. A character of a that has no equal there
// is substituted or deleted, and each such character is a slip of its own; the two characters of a transposition do
// find their equals, one diagonal to either side, and a transposition leaves one slip less to move with. So more than k
// characters without an equal mean more than k slips. That holds for the first lanes alone, although a way may pair
// characters of a with some of b behind the last lane: when that begins n characters before the end of the lanes, the
// way has moved up by n diagonals, with as many insertions (one of them may be the transposition that the character is
// part of), and those are n slips that took no character of a.
//
// Fixed digits only rule ways out. The converse does not hold: the pairs that pass need a search. (H. Xin et al.,
// Shifted Hamming distance: a fast and accurate SIMD-friendly filter to accelerate alignment verification in read
// mapping, Bioinformatics 31 (10), 2015.)
#ifndef QXPAF_SRC_TEXT_SLIP_FILTER_H
#define QXPAF_SRC_TEXT_SLIP_FILTER_H

#include "text/byte_lanes.h"

namespace qxpaf {

// The lanes of a that have an equal within kSlips lanes.
template <int kSlips, class Lanes>
Lanes WithEqualNearby(Lanes a, Lanes b)
{
  if constexpr (kSlips == 0)
    return a.EqualTo(b);
  else
    return WithEqualNearby<kSlips - 1>(a, b) | a.EqualTo(b.template Up<kSlips>()) |
           a.EqualTo(b.template Down<kSlips>());
}

template <int kSlips, class Lanes>
bool HasMoreUnequal(Lanes withEqual)
{
  unsigned int unequal = ~withEqual.TopBits() & ((1U << Lanes::kCount) - 1);
  for (int i = 0; i < kSlips; ++i) unequal &= unequal - 1;
  return unequal != 0;
}

// True only when the distance exceeds kSlips. Neither text is empty.
template <int kSlips, class Lanes = ByteLanes>
bool NeedsMoreSlips(const char* a, std::size_t aLength, const char* b, std::size_t bLength)
{
  const Lanes lanesA = Lanes::FirstOf(a, aLength);
  const Lanes behindEnd = lanesA.EqualTo(Lanes::Of('\0'));
  return HasMoreUnequal<kSlips>(behindEnd | WithEqualNearby<kSlips>(lanesA, Lanes::FirstOf(b, bLength)));
}

inline bool HasEightCharacters(const char* text)
{
  return text[0] != 0 && text[1] != 0 && text[2] != 0 && text[3] != 0 && text[4] != 0 && text[5] != 0 && text[6] != 0 &&
         text[7] != 0;
}

// The same before the lengths are known; true for fewer pairs. Lanes behind the eighth are zero, and so equal, in both.
template <int kSlips, class Lanes = ByteLanes>
bool NeedsMoreSlipsAtOnce(const char* a, const char* b)
{
  if (!HasEightCharacters(a) || !HasEightCharacters(b)) return false;
  return HasMoreUnequal<kSlips>(WithEqualNearby<kSlips>(Lanes::FirstEightOf(a), Lanes::FirstEightOf(b)));
}

}  // namespace qxpaf

#endif
