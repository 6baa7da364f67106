#include "arf/build/point_encoder.h"

#include <algorithm>
#include <cstddef>

#include "arf/build/build_error.h"
#include "arf/format/layout.h"

namespace arf {
namespace {

using Bytes = std::vector<std::uint8_t>;

void PutVarint(Bytes& out, std::uint32_t number)
{
  for (; number >= 0x80; number >>= 7) out.push_back(static_cast<std::uint8_t>(number | 0x80));
  out.push_back(static_cast<std::uint8_t>(number));
}

/** A difference of two 32-bit numbers, as a signed number with the sign in the lowest bit. */
void PutZigzag(Bytes& out, std::uint32_t difference)
{
  const std::uint32_t sign = 0U - (difference >> 31);
  PutVarint(out, (difference << 1) ^ sign);
}

void PutWord(Bytes& out, std::uint32_t number)
{
  for (int shift = 0; shift < 32; shift += 8) out.push_back(static_cast<std::uint8_t>(number >> shift));
}

bool IsLocated(const AddressRow& row)
{
  return row.latitude != kNoCoordinate;
}

bool HasSameHead(const AddressRow& a, const AddressRow& b)
{
  return a.numberFirst == b.numberFirst && a.numberPrefix == b.numberPrefix &&
         a.numberFirstSuffix == b.numberFirstSuffix && a.numberLast == b.numberLast &&
         a.numberLastSuffix == b.numberLastSuffix;
}

std::uint32_t HighestNumber(std::span<const AddressRow> points)
{
  std::uint32_t highest = 0;
  for (const AddressRow& row : points) highest = std::max({highest, row.numberFirst, row.numberLast});
  return highest;
}

}  // namespace

const std::vector<std::uint8_t>& PointEncoder::Encode(std::span<const AddressRow> points)
{
  code_.clear();
  blocks_.clear();
  PutStart(points);
  const bool hasTable = points.size() > blockPoints_;
  for (std::uint32_t reach = 0; !points.empty();) {
    const std::span<const AddressRow> block = points.first(std::min<std::size_t>(points.size(), blockPoints_));
    points = points.subspan(block.size());
    PutBlock(block);
    if (!hasTable) continue;
    if (blocks_.size() > UINT32_MAX) throw BuildError("a street has too many addresses");
    PutWord(code_, static_cast<std::uint32_t>(blocks_.size()));
    PutWord(code_, block.front().numberFirst);
    PutWord(code_, HighestNumber(block));
    reach = std::max(reach, HighestNumber(block));
    PutWord(code_, reach);
  }
  code_.insert(code_.end(), blocks_.begin(), blocks_.end());
  return code_;
}

/** The coordinates that every block starts from: those of the first point that has some. */
void PointEncoder::PutStart(std::span<const AddressRow> points)
{
  const auto located = std::find_if(points.begin(), points.end(), IsLocated);
  startLatitude_ = located == points.end() ? 0 : static_cast<std::uint32_t>(located->latitude);
  startLongitude_ = located == points.end() ? 0 : static_cast<std::uint32_t>(located->longitude);
  PutZigzag(code_, startLatitude_);
  PutZigzag(code_, startLongitude_);
}

void PointEncoder::PutBlock(std::span<const AddressRow> points)
{
  before_ = {};
  latitude_ = startLatitude_;
  longitude_ = startLongitude_;
  for (const AddressRow& row : points) PutPoint(row);
}

void PointEncoder::PutPoint(const AddressRow& row)
{
  namespace point = layout::point;
  const bool hasHead = !HasSameHead(row, before_);
  if (hasHead) {
    before_.unitType = before_.unitNumber = before_.levelType = before_.levelNumber = 0;
    before_.lot = before_.building = 0;
  }
  const bool hasUnitType = row.unitType != before_.unitType, hasUnitNumber = row.unitNumber != before_.unitNumber;
  const bool hasLevel = row.levelType != before_.levelType || row.levelNumber != before_.levelNumber;
  const bool hasLot = row.lot != before_.lot, hasBuilding = row.building != before_.building;
  const bool isMoved =
      IsLocated(row) && (!IsLocated(before_) || row.latitude != before_.latitude || row.longitude != before_.longitude);
  const bool isLost = !IsLocated(row) && IsLocated(before_);
  PutVarint(blocks_, hasHead * point::kHead | isMoved * point::kMoved | hasUnitNumber * point::kUnitNumber |
                         hasUnitType * point::kUnitType | hasBuilding * point::kBuilding | hasLot * point::kLot |
                         hasLevel * point::kLevel | isLost * point::kUnlocated);
  if (hasHead) PutHead(row);
  PutPart(hasUnitType, row.unitType);
  PutPart(hasUnitNumber, row.unitNumber);
  PutPart(hasLevel, row.levelType);
  PutPart(hasLevel, row.levelNumber);
  PutPart(hasLot, row.lot);
  PutPart(hasBuilding, row.building);
  if (isMoved) PutPlace(row);
  before_ = row;
}

void PointEncoder::PutHead(const AddressRow& row)
{
  namespace head = layout::head;
  const std::uint32_t flags = (row.numberPrefix != 0) * head::kPrefix |
                              (row.numberFirstSuffix != 0) * head::kFirstSuffix | (row.numberLast != 0) * head::kLast |
                              (row.numberLastSuffix != 0) * head::kLastSuffix;
  PutVarint(blocks_, (row.numberFirst - before_.numberFirst) << 1 | (flags != 0));
  if (flags == 0) return;
  PutVarint(blocks_, flags);
  PutPart(flags & head::kPrefix, row.numberPrefix);
  PutPart(flags & head::kFirstSuffix, row.numberFirstSuffix);
  if (flags & head::kLast) PutVarint(blocks_, row.numberLast - row.numberFirst);
  PutPart(flags & head::kLastSuffix, row.numberLastSuffix);
}

void PointEncoder::PutPart(bool isPut, std::uint32_t part)
{
  if (isPut) PutVarint(blocks_, partStrings_[part]);
}

void PointEncoder::PutPlace(const AddressRow& row)
{
  const auto latitude = static_cast<std::uint32_t>(row.latitude), longitude = static_cast<std::uint32_t>(row.longitude);
  PutZigzag(blocks_, latitude - latitude_);
  PutZigzag(blocks_, longitude - longitude_);
  latitude_ = latitude;
  longitude_ = longitude;
}

}  // namespace arf
