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

}  // namespace

bool PointEncoder::HasSameHead(const AddressRow& row) const
{
  const AddressDetails& details = details_[row.details];
  return row.numberFirst == before_.numberFirst && details.numberPrefix == inherited_.numberPrefix &&
         details.numberFirstSuffix == inherited_.numberFirstSuffix && details.numberLast == inherited_.numberLast &&
         details.numberLastSuffix == inherited_.numberLastSuffix;
}

std::uint32_t PointEncoder::HighestNumber(std::span<const AddressRow> points) const
{
  std::uint32_t highest = 0;
  for (const AddressRow& row : points) {
    highest = std::max({highest, row.numberFirst, details_[row.details].numberLast});
  }
  return highest;
}

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
  inherited_ = {};
  latitude_ = startLatitude_;
  longitude_ = startLongitude_;
  for (const AddressRow& row : points) PutPoint(row);
}

void PointEncoder::PutPoint(const AddressRow& row)
{
  namespace point = layout::point;
  const AddressDetails& details = details_[row.details];
  const bool hasHead = !HasSameHead(row);
  if (hasHead) inherited_ = {};
  const bool hasUnitType = details.unitType != inherited_.unitType;
  const bool hasUnitNumber = details.unitNumber != inherited_.unitNumber;
  const bool hasLevel = details.levelType != inherited_.levelType || details.levelNumber != inherited_.levelNumber;
  const bool hasLot = details.lot != inherited_.lot, hasBuilding = details.building != inherited_.building;
  const bool isMoved =
      IsLocated(row) && (!IsLocated(before_) || row.latitude != before_.latitude || row.longitude != before_.longitude);
  const bool isLost = !IsLocated(row) && IsLocated(before_);
  PutVarint(blocks_, hasHead * point::kHead | isMoved * point::kMoved | hasUnitNumber * point::kUnitNumber |
                         hasUnitType * point::kUnitType | hasBuilding * point::kBuilding | hasLot * point::kLot |
                         hasLevel * point::kLevel | isLost * point::kUnlocated);
  if (hasHead) PutHead(row.numberFirst, details);
  PutPart(hasUnitType, details.unitType);
  PutPart(hasUnitNumber, details.unitNumber);
  PutPart(hasLevel, details.levelType);
  PutPart(hasLevel, details.levelNumber);
  PutPart(hasLot, details.lot);
  PutPart(hasBuilding, details.building);
  if (isMoved) PutPlace(row);
  before_ = row;
  inherited_ = details;
}

void PointEncoder::PutHead(std::uint32_t number, const AddressDetails& details)
{
  namespace head = layout::head;
  const std::uint32_t flags =
      (details.numberPrefix != 0) * head::kPrefix | (details.numberFirstSuffix != 0) * head::kFirstSuffix |
      (details.numberLast != 0) * head::kLast | (details.numberLastSuffix != 0) * head::kLastSuffix;
  PutVarint(blocks_, (number - before_.numberFirst) << 1 | (flags != 0));
  if (flags == 0) return;
  PutVarint(blocks_, flags);
  PutPart(flags & head::kPrefix, details.numberPrefix);
  PutPart(flags & head::kFirstSuffix, details.numberFirstSuffix);
  if (flags & head::kLast) PutVarint(blocks_, details.numberLast - number);
  PutPart(flags & head::kLastSuffix, details.numberLastSuffix);
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
