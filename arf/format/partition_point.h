/** Binary search over indexes. */
#ifndef QXPAF_ARF_FORMAT_PARTITION_POINT_H
#define QXPAF_ARF_FORMAT_PARTITION_POINT_H

#include <cstdint>

namespace arf {

/**
 * The first index in [first, first + count) for which `isBefore` is false; first + count when there is none. Ends after
 * at most 33 steps even where `isBefore` is not true for a first part and false for the rest.
 */
template <class IsBefore>
std::uint32_t PartitionPoint(std::uint32_t first, std::uint32_t count, IsBefore isBefore)
{
  while (count > 0) {
    const std::uint32_t half = count / 2;
    if (isBefore(first + half)) {
      first += half + 1;
      count -= half + 1;
    } else {
      count = half;
    }
  }
  return first;
}

}  // namespace arf

#endif
