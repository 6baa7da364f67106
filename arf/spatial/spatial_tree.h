/**
 * The points of a database by place: a packed tree over a section of the file. Nodes are not stored; a level is a list
 * of boxes, and sixteen after each other have one parent on the level above. Leaves hold 64 points.
 *
 * A tree is a view: opening it compares a few numbers. Whatever the bytes are, nothing outside the section is read, no
 * walk is longer than the counts say, and ordinals are those of points that the database has.
 */
#ifndef QXPAF_ARF_SPATIAL_SPATIAL_TREE_H
#define QXPAF_ARF_SPATIAL_SPATIAL_TREE_H

#include <array>
#include <cstdint>
#include <span>

#include "arf/format/byte_reader.h"
#include "arf/spatial/geo.h"
#include "arf/spatial/tree_layout.h"

namespace arf {

/** A leaf's points, decoded: places first, ordinals only when they are asked. */
class SpatialLeaf
{
 public:
  const GeoBox& Box() const { return box_; }
  std::uint32_t Count() const { return count_; }
  GeoPoint operator[](std::uint32_t i) const
  {
    const std::uint32_t at = i * (latitudeBits_ + longitudeBits_);
    std::uint64_t word;
    std::memcpy(&word, packed_ + at / 8, sizeof word);
    word >>= at % 8;
    const auto latitude = static_cast<std::uint32_t>(word & ((std::uint64_t{1} << latitudeBits_) - 1));
    const auto longitude =
        static_cast<std::uint32_t>((word >> latitudeBits_) & ((std::uint64_t{1} << longitudeBits_) - 1));
    return {static_cast<std::int32_t>(static_cast<std::uint32_t>(box_.south) + latitude),
            static_cast<std::int32_t>(static_cast<std::uint32_t>(box_.west) + longitude)};
  }

  using Ordinals = std::array<std::uint32_t, tree_layout::kLeafPoints>;
  /** Fills the first Count() ordinals, which ascend. Those of a broken leaf are kNoIndex where they are none. */
  void Read(Ordinals& ordinals) const;

 private:
  friend class SpatialTree;
  GeoBox box_;
  const std::uint8_t* packed_ = nullptr;
  std::uint32_t latitudeBits_ = 0, longitudeBits_ = 0;
  std::uint32_t count_ = 0;
  std::uint32_t pointCount_ = 0;
  ByteReader ordinals_;
};

class SpatialTree
{
 public:
  SpatialTree() = default;
  /**
   * @param section     the bytes of the section; empty, or anything that is no tree, gives a tree without points
   * @param pointCount  of the database
   */
  SpatialTree(ByteReader section, std::uint32_t pointCount);

  std::uint32_t PointCount() const { return points_; }
  /** Levels of boxes; the topmost has one. 0 where there are no points. */
  std::uint32_t LevelCount() const { return levelCount_; }
  std::uint32_t NodeCount(std::uint32_t level) const { return levels_[level].count; }
  /** @param node  below NodeCount(level) */
  GeoBox Box(std::uint32_t level, std::uint32_t node) const;
  /** A leaf, node `node` of level 0; one that is broken has no points. */
  SpatialLeaf Leaf(std::uint32_t node) const;

 private:
  struct Level
  {
    const std::uint8_t* boxes = nullptr;
    std::uint32_t count = 0;
  };

  std::array<Level, tree_layout::kMaxLevels> levels_{};
  std::uint32_t levelCount_ = 0;
  std::uint32_t points_ = 0;
  std::uint32_t pointCount_ = 0;
  ByteReader offsets_;
  ByteReader data_;
};

}  // namespace arf

#endif
