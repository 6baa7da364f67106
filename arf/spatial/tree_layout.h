/** The layout of the spatial tree in a database file, in numbers; docs/index-format.md explains it. */
#ifndef QXPAF_ARF_SPATIAL_TREE_LAYOUT_H
#define QXPAF_ARF_SPATIAL_TREE_LAYOUT_H

#include <bit>
#include <cstddef>
#include <cstdint>

namespace arf::tree_layout {

inline constexpr std::uint32_t kLeafPoints = 64;  ///< all leaves but the last have so many
inline constexpr std::uint32_t kFanOut = 16;      ///< children of a node; the last of a level may have fewer
inline constexpr std::uint32_t kMaxLevels = 8;    ///< enough for 2^32 points
inline constexpr std::uint32_t kMaxLatitude = 90'000'000;
inline constexpr std::uint32_t kMaxLongitude = 180'000'000;

namespace header {
inline constexpr std::size_t kPoints = 0;
inline constexpr std::size_t kDataLength = 8;  ///< of the leaves' data, 64 bits
inline constexpr std::size_t kSize = 16;       ///< the boxes follow, level by level from the leaves up
}  // namespace header

namespace box {
inline constexpr std::size_t kSize = 16;  ///< south, west, north, east
}

/** Zeros behind the leaves' data, so that eight bytes can be loaded at any point. */
inline constexpr std::size_t kPadding = 8;

constexpr std::uint32_t CeilDiv(std::uint32_t number, std::uint32_t by)
{
  return number / by + (number % by != 0);
}

/** How wide the codes of a leaf's points are: what the extent of its box needs. */
constexpr std::uint32_t BitsFor(std::int32_t low, std::int32_t high)
{
  return static_cast<std::uint32_t>(std::bit_width(static_cast<std::uint32_t>(high) - static_cast<std::uint32_t>(low)));
}

/** Codes of both coordinates, the latitude in the low bits, fit into a load of eight bytes at any bit of a byte. */
inline constexpr std::uint32_t kMaxPointBits = 57;

constexpr std::uint32_t PackedBytes(std::uint32_t points, std::uint32_t bits)
{
  return CeilDiv(points * bits, 8);
}

}  // namespace arf::tree_layout

#endif
