/**
 * The layout of the sections that hints are found by; docs/index-format.md explains it. All numbers have four bytes
 * and are little-endian, unless a field says otherwise.
 */
#ifndef QXPAF_ARF_HINT_HINT_LAYOUT_H
#define QXPAF_ARF_HINT_HINT_LAYOUT_H

#include <cstddef>
#include <cstdint>

namespace arf::hint_layout {

/** The section "hint tree": two counts of nodes, then the nodes of the street names, then those of the localities. */
inline constexpr std::size_t kStreetNodes = 0;
inline constexpr std::size_t kLocalityNodes = 4;
inline constexpr std::size_t kHeaderSize = 16;

/**
 * A node stands for a range of names that have their first `depth` bytes in common. Its children, ascending by letter,
 * share that range out by the byte behind them. The root is the first node.
 */
struct Node
{
  std::uint32_t firstName = 0;
  std::uint32_t nameCount = 0;
  std::uint32_t firstChild = 0;
  std::uint32_t firstListed = 0;  ///< in the section "hint weights"
  std::uint8_t childCount = 0;    ///< 0: a leaf
  std::uint8_t listed = 0;        ///< 0: there is no list, all that bear the names are few
  std::uint8_t depth = 0;
  std::uint8_t letter = 0;  ///< what led here; 0: nothing, the name ends
  bool IsLeaf() const { return childCount == 0; }
};

/** Bytes of a node; its fields stand in the file as they do in the structure. */
inline constexpr std::size_t kNodeSize = 20;
static_assert(sizeof(Node) == kNodeSize && offsetof(Node, letter) == kNodeSize - 1);

/** A node whose names are borne by more streets (localities) than this lists that many of the largest. */
inline constexpr std::uint32_t kMaxListed = 64;

/** A node of no more names than this, and without a list, is a leaf. */
inline constexpr std::uint32_t kLeafNames = 8;

/**
 * The section "postal lists": the number of kinds of postal deliveries, where the list of each begins and the end of
 * the last one, and the lists: the "streets" of a kind with the most numbers, the largest first.
 */
inline constexpr std::size_t kMaxPostalListed = 96;

}  // namespace arf::hint_layout

#endif
