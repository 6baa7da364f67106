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

bool PointCursor::Next(Point& point)
{
  while (next_ < blockEnd_ || EnterBlock()) {
    DecodeNext();
    if (wanted_ == kNoIndex || IsWanted()) {
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
  while (next_ <= place) DecodeNext();
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

void PointCursor::DecodeNext()
{
  namespace point = layout::point;
  const std::uint32_t flags = block_.TakeVarint();
  if (flags & point::kHead) DecodeHead();
  if (flags & point::kUnitType) state_.unitType = block_.TakeVarint();
  if (flags & point::kUnitNumber) state_.unitNumber = block_.TakeVarint();
  if (flags & point::kLevel) {
    state_.levelType = block_.TakeVarint();
    state_.levelNumber = block_.TakeVarint();
  }
  if (flags & point::kLot) state_.lot = block_.TakeVarint();
  if (flags & point::kBuilding) state_.building = block_.TakeVarint();
  if (flags & point::kMoved) {
    state_.latitude += block_.TakeZigzag();
    state_.longitude += block_.TakeZigzag();
    state_.located = true;
  }
  if (flags & point::kUnlocated) state_.located = false;
  ++next_;
}

void PointCursor::DecodeHead()
{
  namespace head = layout::head;
  State fresh;
  fresh.latitude = state_.latitude;
  fresh.longitude = state_.longitude;
  fresh.located = state_.located;
  const std::uint32_t coded = block_.TakeVarint();
  fresh.numberFirst = state_.numberFirst + (coded >> 1);
  if (coded & 1) {
    const std::uint32_t flags = block_.TakeVarint();
    if (flags & head::kPrefix) fresh.numberPrefix = block_.TakeVarint();
    if (flags & head::kFirstSuffix) fresh.numberFirstSuffix = block_.TakeVarint();
    if (flags & head::kLast) fresh.numberLast = fresh.numberFirst + block_.TakeVarint();
    if (flags & head::kLastSuffix) fresh.numberLastSuffix = block_.TakeVarint();
  }
  state_ = fresh;
}

bool PointCursor::IsWanted() const
{
  return state_.numberFirst == wanted_ || (state_.numberFirst < wanted_ && wanted_ <= state_.numberLast);
}

void PointCursor::Fill(Point& point) const
{
  const FileView& file = *file_;
  point.ordinal = points_.first + next_ - 1;
  point.street = street_;
  point.dpid = file.Section(SectionId::Dpids).U32At(std::uint64_t{point.ordinal} * sizeof(std::uint32_t));
  point.numberFirst = state_.numberFirst;
  point.numberLast = state_.numberLast;
  point.numberPrefix = file.String(state_.numberPrefix);
  point.numberFirstSuffix = file.String(state_.numberFirstSuffix);
  point.numberLastSuffix = file.String(state_.numberLastSuffix);
  point.unitType = file.String(state_.unitType);
  point.unitNumber = file.String(state_.unitNumber);
  point.levelType = file.String(state_.levelType);
  point.levelNumber = file.String(state_.levelNumber);
  point.lot = file.String(state_.lot);
  point.building = file.String(state_.building);
  point.latitude = state_.located ? static_cast<std::int32_t>(state_.latitude) : kNoCoordinate;
  point.longitude = state_.located ? static_cast<std::int32_t>(state_.longitude) : kNoCoordinate;
}

}  // namespace arf
