#include "arf/match/address_text.h"

namespace arf {
namespace {

constexpr std::string_view kUnnamedUnit = "UNIT";

}  // namespace

void AppendNumber(BoundedText& text, const Point& point)
{
  if (point.numberFirst == 0) return;
  text << point.numberPrefix << point.numberFirst << point.numberFirstSuffix;
  if (point.numberLast != 0) text << '-' << point.numberLast << point.numberLastSuffix;
}

void AppendOccupancy(BoundedText& text, const Point& point)
{
  const bool isUntyped = point.unitType.empty() && !point.unitNumber.empty();
  text.Word(isUntyped ? kUnnamedUnit : point.unitType).Word(point.unitNumber);
  text.Word(point.levelType).Word(point.levelNumber);
}

void AppendStreet(BoundedText& text, const Street& street)
{
  text.Word(street.name).Word(street.type).Word(street.suffix);
}

void AppendStreetLine(BoundedText& text, const Point& point, const Street& street)
{
  AppendOccupancy(text, point);
  if (!point.lot.empty() && point.numberFirst == 0) text.Word("LOT").Word(point.lot);
  if (street.isPostal) AppendStreet(text, street);
  if (point.numberFirst != 0) AppendNumber(text.Gap(), point);
  if (!street.isPostal) AppendStreet(text, street);
}

void AppendLocality(BoundedText& text, const Locality& locality)
{
  text.Word(locality.name).Word(locality.state).Word(locality.postcode);
}

void AppendAddress(BoundedText& text, const Database& database, std::uint32_t ordinal)
{
  const Point point = database.PointAt(ordinal);
  const Street street = database.StreetAt(point.street);
  if (!point.building.empty()) text.Word(point.building) << ',';
  const std::size_t before = text.Length();
  AppendStreetLine(text, point, street);
  if (text.Length() > before) text << ',';
  AppendLocality(text, database.LocalityAt(street.locality));
}

}  // namespace arf
