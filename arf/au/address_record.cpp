#include "arf/au/address_record.h"

#include <array>
#include <charconv>
#include <cstdlib>

#include "arf/barcode/four_state.h"
#include "arf/match/address_text.h"

namespace arf {
namespace {

constexpr std::string_view kCountry = "AUSTRALIA";

/** Separates fields and cleans each when it ends. */
class RecordWriter
{
 public:
  RecordWriter(BoundedText& text, char delimiter) : text_(text), delimiter_(delimiter) {}

  BoundedText& Begin()
  {
    if (count_++ > 0) text_ << delimiter_;
    text_.StartPart();
    return text_;
  }
  void End() { text_.CleanPart(delimiter_); }

 private:
  BoundedText& text_;
  char delimiter_;
  std::size_t count_ = 0;
};

/** Millionths of a degree as degrees. */
void AppendDegrees(BoundedText& text, std::int32_t millionths)
{
  if (millionths == kNoCoordinate) return;
  constexpr std::uint32_t kMillion = 1'000'000;
  const auto magnitude = static_cast<std::uint32_t>(std::abs(millionths));
  if (millionths < 0) text << '-';
  text << magnitude / kMillion << '.';
  for (std::uint32_t place = kMillion / 10; place > 0; place /= 10)
    text << static_cast<char>('0' + magnitude / place % 10);
}

void AppendUnlessZero(BoundedText& text, std::uint32_t number)
{
  if (number != 0) text << number;
}

/** One address with what it belongs to. */
struct Address
{
  const RecordSource& source;
  const Database& database;
  const Point& point;
  Street street;
  Locality locality;
};

void AppendLine(BoundedText& text, const Address& address, unsigned line)
{
  const bool hasBuilding = !address.point.building.empty();
  if (hasBuilding && line == 1) text << address.point.building;
  if (line == (hasBuilding ? 2U : 1U)) AppendStreetLine(text, address.point, address.street);
}

void AppendAttribute(BoundedText& text, const Address& address, unsigned field)
{
  const std::string_view name = FieldAttribute(field);
  if (name.empty()) return;
  AttributeText buffer;
  if (const auto column = address.database.FindAttribute(name))
    text << address.database.AttributeOf(address.point.ordinal, *column, buffer);
}

/** Numbers that the builder minted are no delivery point identifiers and must not be printed as barcodes on mail. */
void AppendBarcode(BoundedText& text, const Address& address)
{
  if (address.database.Info(kIdentifiersKey) == kMintedIdentifiers) return;
  char digits[kDpidDigits + 1];
  BoundedText dpid(digits, sizeof digits);
  AppendDpid(dpid, address.point.dpid);
  FourStateBars bars;
  if (EncodeFourState({dpid.View()}, bars) == FourStateFault::None) text << bars.View();
}

/** The sort plan's number, or without a plan the data's own. */
void AppendSortPlanNumber(BoundedText& text, const Address& address)
{
  const SortPlan* plan = address.source.sortPlan;
  if (!plan) return AppendAttribute(text, address, PAF_AU_FIELD_SORT_PLAN_NUMBER);
  if (const SortPlan::Entry* entry = plan->Find(address.locality.postcode)) text << entry->bsp;
}

void AppendPremiseField(BoundedText& text, const Point& point, bool isPostal, unsigned field)
{
  switch (field) {
    case PAF_AU_FIELD_BUILDING:
      text << point.building;
      return;
    case PAF_AU_FIELD_UNIT_TYPE:
      text << point.unitType;
      return;
    case PAF_AU_FIELD_UNIT_NUMBER:
      text << point.unitNumber;
      return;
    case PAF_AU_FIELD_LEVEL_TYPE:
      text << point.levelType;
      return;
    case PAF_AU_FIELD_LEVEL_NUMBER:
      text << point.levelNumber;
      return;
    case PAF_AU_FIELD_LOT:
      text << point.lot;
      return;
    default:
      break;
  }
  if (isPostal) return;
  switch (field) {
    case PAF_AU_FIELD_NUMBER_FIRST:
      return AppendUnlessZero(text, point.numberFirst);
    case PAF_AU_FIELD_NUMBER_FIRST_SUFFIX:
      text << point.numberFirstSuffix;
      return;
    case PAF_AU_FIELD_NUMBER_LAST:
      return AppendUnlessZero(text, point.numberLast);
    case PAF_AU_FIELD_NUMBER_LAST_SUFFIX:
      text << point.numberLastSuffix;
      return;
    default:
      return;
  }
}

void AppendField(BoundedText& text, const Address& address, unsigned field)
{
  const Street& street = address.street;
  switch (field) {
    case PAF_AU_FIELD_ADDRESS_LINE_1:
      return AppendLine(text, address, 1);
    case PAF_AU_FIELD_ADDRESS_LINE_2:
      return AppendLine(text, address, 2);
    case PAF_AU_FIELD_LOCALITY:
      text << address.locality.name;
      return;
    case PAF_AU_FIELD_STATE:
      text << address.locality.state;
      return;
    case PAF_AU_FIELD_POSTCODE:
      text << address.locality.postcode;
      return;
    case PAF_AU_FIELD_COUNTRY:
      text << kCountry;
      return;
    case PAF_AU_FIELD_DPID:
      return AppendDpid(text, address.point.dpid);
    case PAF_AU_FIELD_MATCH_QUALITY:
      text << std::uint32_t{PAF_AU_FIND_MATCHED};
      return;
    case PAF_AU_FIELD_STREET_NAME:
      text << street.name;
      return;
    case PAF_AU_FIELD_STREET_TYPE:
      text << (street.isPostal ? std::string_view() : street.type);
      return;
    case PAF_AU_FIELD_STREET_SUFFIX:
      text << street.suffix;
      return;
    case PAF_AU_FIELD_POSTAL_TYPE:
      text << (street.isPostal ? street.type : std::string_view());
      return;
    case PAF_AU_FIELD_POSTAL_NUMBER:
      if (street.isPostal) AppendNumber(text, address.point);
      return;
    case PAF_AU_FIELD_LATITUDE:
      return AppendDegrees(text, address.point.latitude);
    case PAF_AU_FIELD_LONGITUDE:
      return AppendDegrees(text, address.point.longitude);
    case PAF_AU_FIELD_SORT_PLAN_NUMBER:
      return AppendSortPlanNumber(text, address);
    case PAF_AU_FIELD_BARCODE:
      return AppendBarcode(text, address);
    default:
      break;
  }
  AppendPremiseField(text, address.point, street.isPostal, field);
  AppendAttribute(text, address, field);
}

void AppendParsedPremise(BoundedText& text, const InputText& input, const Premise& premise, unsigned field)
{
  switch (field) {
    case PAF_AU_FIELD_BUILDING:
      text << input.Text(premise.building);
      return;
    case PAF_AU_FIELD_UNIT_TYPE:
      text << premise.unit.type;
      return;
    case PAF_AU_FIELD_UNIT_NUMBER:
      text << premise.unit.number.View();
      return;
    case PAF_AU_FIELD_LEVEL_TYPE:
      text << premise.level.type;
      return;
    case PAF_AU_FIELD_LEVEL_NUMBER:
      text << premise.level.number.View();
      return;
    case PAF_AU_FIELD_LOT:
      text << premise.lot.View();
      return;
    case PAF_AU_FIELD_NUMBER_FIRST:
      return AppendUnlessZero(text, premise.numberFirst);
    case PAF_AU_FIELD_NUMBER_FIRST_SUFFIX:
      text << premise.numberFirstSuffix;
      return;
    case PAF_AU_FIELD_NUMBER_LAST:
      return AppendUnlessZero(text, premise.numberLast);
    case PAF_AU_FIELD_NUMBER_LAST_SUFFIX:
      text << premise.numberLastSuffix;
      return;
    default:
      return;
  }
}

void AppendParsedField(BoundedText& text, const InputText& input, const Reading& reading, unsigned field)
{
  switch (field) {
    case PAF_AU_FIELD_LOCALITY:
      text << input.Text(reading.locality);
      return;
    case PAF_AU_FIELD_STATE:
      text << reading.place.state;
      return;
    case PAF_AU_FIELD_POSTCODE:
      text << reading.place.postcode.View();
      return;
    case PAF_AU_FIELD_STREET_NAME:
      text << input.Text(reading.streetName);
      return;
    case PAF_AU_FIELD_STREET_TYPE:
      text << reading.streetType;
      return;
    case PAF_AU_FIELD_STREET_SUFFIX:
      text << reading.streetSuffix;
      return;
    case PAF_AU_FIELD_POSTAL_TYPE:
      text << reading.postalType;
      return;
    case PAF_AU_FIELD_POSTAL_NUMBER:
      text << reading.postalNumber;
      return;
    case PAF_AU_FIELD_MATCHED_TEXT:
      text << input.Text(0, input.Count());
      return;
    default:
      AppendParsedPremise(text, input, reading.premise, field);
  }
}

}  // namespace

void AppendDpid(BoundedText& text, std::uint32_t dpid)
{
  for (std::uint32_t place = 10'000'000; place > 0; place /= 10) text << static_cast<char>('0' + dpid / place % 10);
}

void AppendAddressRecord(BoundedText& text, const RecordSource& source, const Point& point, const FieldList& fields,
                         char delimiter)
{
  const Database& database = source.database;
  const Street street = database.StreetAt(point.street);
  const Address address{source, database, point, street, database.LocalityAt(street.locality)};
  RecordWriter record(text, delimiter);
  for (const FieldChoice& field : fields.Fields()) {
    record.Begin();
    AttributeText buffer;
    if (field.IsAttribute())
      text << database.AttributeOf(point.ordinal, field.Column(), buffer);
    else
      AppendField(text, address, field.Number());
    record.End();
  }
}

void AppendEmptyRecord(BoundedText& text, const FieldList& fields, char delimiter)
{
  for (std::size_t i = 1; i < fields.Fields().size(); ++i) text << delimiter;
}

void AppendParsedRecord(BoundedText& text, const InputText& input, const Reading& reading, PafAuFindStatus status,
                        char delimiter)
{
  RecordWriter record(text, delimiter);
  for (unsigned field = 1; field <= PAF_AU_FIELD_COUNT; ++field) {
    record.Begin();
    if (field == PAF_AU_FIELD_MATCH_QUALITY)
      text << static_cast<std::uint32_t>(status);
    else
      AppendParsedField(text, input, reading, field);
    record.End();
  }
}

}  // namespace arf
