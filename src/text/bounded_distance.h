// The searches behind CompareStrings2, on what is left of two texts behind their common beginning.
//
// The distance of two rests: the length of the other when one is empty; the distance behind the first characters when
// those are equal; infinite when both start with digits, which may not differ; otherwise one more than the least of the
// distances behind a substitution, a deletion, an insertion and a transposition.
#ifndef QXPAF_SRC_TEXT_BOUNDED_DISTANCE_H
#define QXPAF_SRC_TEXT_BOUNDED_DISTANCE_H

#include <cstddef>
#include <optional>

namespace qxpaf {

// Bounds up to this one need no memory from the heap.
inline constexpr int kLargestBoundOnStack = 255;

template <class Char>
struct RestPair
{
  const Char* a;
  const Char* b;
  std::ptrdiff_t aLength;
  std::ptrdiff_t bLength;

  bool AreTransposed(std::ptrdiff_t i, std::ptrdiff_t j) const
  {
    return i + 1 < aLength && j + 1 < bLength && a[i] == b[j + 1] && a[i + 1] == b[j];
  }
};

// The distance when it is at most bound, which is at least 1 and at least the difference of the lengths. Slower where
// digits may not differ and both rests hold some.
template <class Char>
std::optional<int> BoundedDistance(const RestPair<Char>& rests, int bound, bool digitsMayDiffer);

}  // namespace qxpaf

#endif
