#include "arf/spatial/spatial_tree.h"

#include <cstring>

#include "arf/format/point_cursor.h"

namespace arf {

namespace field = tree_layout::header;

void SpatialLeaf::Read(Ordinals& ordinals) const
{
  ByteReader rest = ordinals_;
  std::uint32_t ordinal = 0;
  for (std::uint32_t i = 0; i < count_; ++i) {
    ordinal += rest.TakeVarint();
    ordinals[i] = ordinal < pointCount_ ? ordinal : kNoIndex;
  }
}

SpatialTree::SpatialTree(ByteReader section, std::uint32_t pointCount) : pointCount_(pointCount)
{
  const std::uint32_t points = section.U32At(field::kPoints);
  if (points == 0 || points > pointCount) return;
  const std::uint32_t leaves = tree_layout::CeilDiv(points, tree_layout::kLeafPoints);
  std::uint64_t offset = field::kSize;
  std::uint32_t count = leaves;
  std::uint32_t levels = 0;
  for (;; count = tree_layout::CeilDiv(count, tree_layout::kFanOut)) {
    const std::uint64_t length = std::uint64_t{count} * tree_layout::box::kSize;
    if (levels == tree_layout::kMaxLevels || !section.Holds(offset, length)) return;
    levels_[levels++] = {section.Data() + offset, count};
    offset += length;
    if (count == 1) break;
  }
  const std::uint64_t offsetsLength = (std::uint64_t{leaves} + 1) * sizeof(std::uint32_t);
  const std::uint64_t dataLength = section.U64At(field::kDataLength);
  if (!section.Holds(offset, offsetsLength) || dataLength > section.Size()) return;
  offsets_ = section.Part(offset, offsetsLength);
  if (!section.Holds(offset + offsetsLength, dataLength + tree_layout::kPadding)) return;
  data_ = section.Part(offset + offsetsLength, dataLength + tree_layout::kPadding);
  levelCount_ = levels;
  points_ = points;
}

GeoBox SpatialTree::Box(std::uint32_t level, std::uint32_t node) const
{
  GeoBox box;
  static_assert(sizeof box == tree_layout::box::kSize);
  std::memcpy(&box, levels_[level].boxes + std::size_t{node} * sizeof box, sizeof box);
  return box;
}

SpatialLeaf SpatialTree::Leaf(std::uint32_t node) const
{
  SpatialLeaf leaf;
  leaf.box_ = Box(0, node);
  leaf.pointCount_ = pointCount_;
  leaf.latitudeBits_ = tree_layout::BitsFor(leaf.box_.south, leaf.box_.north);
  leaf.longitudeBits_ = tree_layout::BitsFor(leaf.box_.west, leaf.box_.east);
  const std::uint32_t bits = leaf.latitudeBits_ + leaf.longitudeBits_;
  if (bits > tree_layout::kMaxPointBits) return leaf;
  const std::uint32_t count = std::min(tree_layout::kLeafPoints, points_ - node * tree_layout::kLeafPoints);
  const std::uint32_t packed = tree_layout::PackedBytes(count, bits);
  const std::uint32_t begin = offsets_.U32At(std::uint64_t{node} * sizeof begin);
  const std::uint32_t end = offsets_.U32At((std::uint64_t{node} + 1) * sizeof end);
  const std::uint64_t dataEnd = data_.Size() - tree_layout::kPadding;
  if (begin > end || end > dataEnd || end - begin < packed) return leaf;
  leaf.packed_ = data_.Data() + begin;
  leaf.ordinals_ = data_.Part(begin + std::uint64_t{packed}, end - begin - packed);
  leaf.count_ = count;
  return leaf;
}

}  // namespace arf
