#include "arf/format/point_cursor.h"

#include <algorithm>

#include "arf/format/file_view.h"
#include "arf/format/partition_point.h"

namespace arf {

using layout::SectionId;

PointCursor::PointCursor(const FileView& file, ByteReader data, std::uint32_t street, IndexRange points)
    : file_(&file), blocks_(data), street_(street), points_(points)
{
  start_.latitude = blocks_.TakeZigzag();
  start_.longitude = blocks_.TakeZigzag();
  if (points.count > file.blockPoints) {
    const std::uint64_t tableSize = std::uint64_t{BlockCount()} * layout::block::kSize;
    table_ = blocks_.Part(0, tableSize);
    blocks_ = blocks_.From(tableSize);
  }
}

std::uint32_t PointCursor::BlockCount() const
{
  const std::uint32_t size = file_->blockPoints;
  return points_.count / size + (points_.count % size != 0);
}

void PointCursor::DecodeHead(ByteReader& block, State& state)
{
  namespace head = layout::head;
  const std::uint32_t coded = block.TakeVarint();
  state.numberFirst += coded >> 1;
  state.premise = {};
  if ((coded & 1) == 0) return;
  Premise& premise = state.premise;
  const std::uint32_t flags = block.TakeVarint();
  if (flags & head::kPrefix) premise.numberPrefix = block.TakeVarint();
  if (flags & head::kFirstSuffix) premise.numberFirstSuffix = block.TakeVarint();
  if (flags & head::kLast) premise.numberLast = state.numberFirst + block.TakeVarint();
  if (flags & head::kLastSuffix) premise.numberLastSuffix = block.TakeVarint();
}

void PointCursor::Decode(ByteReader& block, State& state)
{
  namespace point = layout::point;
  const std::uint32_t flags = block.TakeVarint();
  if (flags & point::kHead) DecodeHead(block, state);
  Premise& premise = state.premise;
  if (flags & point::kUnitType) premise.unitType = block.TakeVarint();
  if (flags & point::kUnitNumber) premise.unitNumber = block.TakeVarint();
  if (flags & point::kLevel) {
    premise.levelType = block.TakeVarint();
    premise.levelNumber = block.TakeVarint();
  }
  if (flags & point::kLot) premise.lot = block.TakeVarint();
  if (flags & point::kBuilding) premise.building = block.TakeVarint();
  if (flags & point::kMoved) {
    state.latitude += block.TakeZigzag();
    state.longitude += block.TakeZigzag();
    state.located = true;
  }
  if (flags & point::kUnlocated) state.located = false;
}

bool PointCursor::Next(Point& point)
{
  while (next_ < blockEnd_ || EnterBlock()) {
    Decode(block_, state_);
    ++next_;
    if (IsWanted()) {
      Fill(point);
      return true;
    }
    if (state_.numberFirst > wanted_) break;
  }
  next_ = blockEnd_;
  nextBlock_ = UINT32_MAX;
  return false;
}

bool PointCursor::Seek(std::uint32_t place)
{
  if (!file_ || place >= points_.count) return false;
  nextBlock_ = place / file_->blockPoints;
  OpenBlock();
  for (; next_ <= place; ++next_) Decode(block_, state_);
  return true;
}

bool PointCursor::EnterBlock()
{
  if (!file_ || !SkipToWantedBlock() || nextBlock_ >= BlockCount()) return false;
  OpenBlock();
  return true;
}

std::uint32_t PointCursor::BlockField(std::uint32_t block, std::size_t field) const
{
  return table_.U32At(std::uint64_t{block} * layout::block::kSize + field);
}

/** Passes over blocks that cannot hold the wanted number; false when none of the rest can. */
bool PointCursor::SkipToWantedBlock()
{
  if (wanted_ == kNoIndex || table_.Size() == 0) return true;
  if (nextBlock_ == 0) {
    nextBlock_ = PartitionPoint(
        0, BlockCount(), [&](std::uint32_t block) { return BlockField(block, layout::block::kReach) < wanted_; });
  }
  for (; nextBlock_ < BlockCount(); ++nextBlock_) {
    if (BlockField(nextBlock_, layout::block::kFirstNumber) > wanted_) return false;
    if (BlockField(nextBlock_, layout::block::kMaxNumber) >= wanted_) return true;
  }
  return false;
}

void PointCursor::OpenBlock()
{
  block_ = blocks_;
  if (table_.Size() > 0) {
    const std::uint32_t begin = nextBlock_ == 0 ? 0 : BlockField(nextBlock_ - 1, layout::block::kEnd);
    block_ = blocks_.Part(begin, BlockField(nextBlock_, layout::block::kEnd) - begin);
  }
  state_ = start_;
  next_ = nextBlock_ * file_->blockPoints;
  blockEnd_ = next_ + std::min(file_->blockPoints, points_.count - next_);
  ++nextBlock_;
}

bool PointCursor::IsWanted() const
{
  if (onlyNamed_ && state_.premise.lot == 0 && state_.premise.building == 0) return false;
  if (wanted_ == kNoIndex) return true;
  return state_.numberFirst == wanted_ || (state_.numberFirst < wanted_ && wanted_ <= state_.premise.numberLast);
}

void PointCursor::Fill(Point& point) const
{
  const FileView& file = *file_;
  point.ordinal = points_.first + next_ - 1;
  point.street = street_;
  point.dpid = file.Dpid(point.ordinal);
  point.numberFirst = state_.numberFirst;
  point.numberLast = state_.premise.numberLast;
  point.numberPrefix = file.String(state_.premise.numberPrefix);
  point.numberFirstSuffix = file.String(state_.premise.numberFirstSuffix);
  point.numberLastSuffix = file.String(state_.premise.numberLastSuffix);
  point.unitType = file.String(state_.premise.unitType);
  point.unitNumber = file.String(state_.premise.unitNumber);
  point.levelType = file.String(state_.premise.levelType);
  point.levelNumber = file.String(state_.premise.levelNumber);
  point.lot = file.String(state_.premise.lot);
  point.building = file.String(state_.premise.building);
  point.latitude = state_.located ? static_cast<std::int32_t>(state_.latitude) : kNoCoordinate;
  point.longitude = state_.located ? static_cast<std::int32_t>(state_.longitude) : kNoCoordinate;
}

}  // namespace arf
