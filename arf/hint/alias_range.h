/** Other names of streets and localities, found by how they begin. */
#ifndef QXPAF_ARF_HINT_ALIAS_RANGE_H
#define QXPAF_ARF_HINT_ALIAS_RANGE_H

#include <cstdint>
#include <string_view>

#include "arf/format/file_view.h"
#include "arf/format/partition_point.h"

namespace arf {

/**
 * The entries whose key is the name; if it is open, those whose key begins with it.
 *
 * @param keyOf  the key of an entry; keys ascend
 */
template <class KeyOf>
IndexRange AliasesNamed(std::string_view name, bool open, std::uint32_t count, KeyOf keyOf)
{
  const std::uint32_t first = PartitionPoint(0, count, [&](std::uint32_t i) { return keyOf(i) < name; });
  const std::uint32_t end = PartitionPoint(
      first, count - first, [&](std::uint32_t i) { return open ? keyOf(i).starts_with(name) : keyOf(i) == name; });
  return {first, end - first};
}

}  // namespace arf

#endif
