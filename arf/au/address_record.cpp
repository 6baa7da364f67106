#include "arf/au/address_record.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

#include "arf/barcode/four_state.h"
#include "arf/match/address_text.h"

namespace arf {
namespace {

constexpr std::string_view kCountry = "AUSTRALIA";

/** Separates fields, and cleans them at the end. */
class RecordWriter
{
 public:
  RecordWriter(BoundedText& text, char delimiter) : text_(text), delimiter_(delimiter) {}

  BoundedText& Begin()
  {
    if (count_ > 0) text_ << delimiter_;
    text_.StartPart();
    starts_[count_++] = text_.Length();
    return text_;
  }

  void Finish()
  {
    if (count_ == 0 || IsClean()) return;
    for (std::size_t i = 0; i < count_; ++i)
      text_.Clean(starts_[i], i + 1 < count_ ? starts_[i + 1] - 1 : text_.Length(), delimiter_);
  }

 private:
  /** Whether there are no delimiters but those between the fields; most records are so, and this is quick to see. */
  bool IsClean() const
  {
    constexpr std::size_t kChunk = 128;  // counts in a byte, which the processor adds sixteen at a time
    std::size_t delimiters = 0, controls = 0;
    for (std::string_view rest = text_.View().substr(starts_[0]); !rest.empty();
         rest.remove_prefix(std::min(kChunk, rest.size()))) {
      std::uint8_t delimitersHere = 0, controlsHere = 0;
      for (const char c : rest.substr(0, kChunk)) {
        delimitersHere = static_cast<std::uint8_t>(delimitersHere + (c == delimiter_));
        controlsHere = static_cast<std::uint8_t>(controlsHere + (static_cast<unsigned char>(c) < ' '));
      }
      delimiters += delimitersHere;
      controls += controlsHere;
    }
    const bool isControl = static_cast<unsigned char>(delimiter_) < ' ';
    return delimiters == count_ - 1 && controls == (isControl ? delimiters : 0);
  }

  BoundedText& text_;
  char delimiter_;
  std::array<std::size_t, FieldList::kMax> starts_;
  std::size_t count_ = 0;
};
static_assert(FieldList::kMax >= PAF_AU_FIELD_COUNT);

/** The last so many digits of a number, with leading zeros. */
template <std::size_t Count>
void AppendDigits(BoundedText& text, std::uint32_t number)
{
  std::array<char, Count> digits;
  for (std::size_t i = Count; i-- > 0; number /= 10) digits[i] = static_cast<char>('0' + number % 10);
  text << std::string_view(digits.data(), Count);
}

/** Millionths of a degree as degrees. */
void AppendDegrees(BoundedText& text, std::int32_t millionths)
{
  if (millionths == kNoCoordinate) return;
  constexpr std::uint32_t kMillion = 1'000'000;
  const auto magnitude = static_cast<std::uint32_t>(std::abs(millionths));
  if (millionths < 0) text << '-';
  text << magnitude / kMillion << '.';
  AppendDigits<6>(text, magnitude);
}

void AppendUnlessZero(BoundedText& text, std::uint32_t number)
{
  if (number != 0) text << number;
}

/** One address with what it belongs to. */
struct Address
{
  const OpenData& source;
  const Database& database;
  const Point& point;
  const Street& street;
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
  const std::uint32_t column = address.source.fieldColumns.ColumnOf(field);
  if (column == kNoIndex) return;
  AttributeText buffer;
  text << address.database.AttributeOf(address.point.ordinal, column, buffer);
}

/** Numbers that the builder minted are no delivery point identifiers and must not be printed as barcodes on mail. */
void AppendBarcode(BoundedText& text, const Address& address)
{
  if (address.source.hasMintedIdentifiers) return;
  char digits[kDpidDigits + 1];
  BoundedText dpid(digits, sizeof digits);
  AppendDpid(dpid, address.point.dpid);
  FourStateBars bars;
  if (EncodeFourState({dpid.View()}, bars) == FourStateFault::None) text << bars.View();
}

/** The sort plan's number, or without a plan the data's own. */
void AppendSortPlanNumber(BoundedText& text, const Address& address)
{
  const SortPlan* plan = address.source.sortPlan.plan.get();
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
    case PAF_AU_FIELD_ALTERNATIVE_LOCALITY:
      text << address.source.otherLocalityNames.First(street.locality);
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

void AppendRecord(BoundedText& text, const OpenData& source, const Point& point, const Street& street,
                  const FieldList& fields, char delimiter)
{
  const Database& database = source.engine->Data();
  const Locality locality = fields.NeedPoint() ? database.LocalityAt(street.locality) : Locality();
  const Address address{source, database, point, street, locality};
  RecordWriter record(text, delimiter);
  for (const FieldChoice& field : fields.Fields()) {
    record.Begin();
    AttributeText buffer;
    if (field.IsAttribute())
      text << database.AttributeOf(point.ordinal, field.Column(), buffer);
    else
      AppendField(text, address, field.Number());
  }
  record.Finish();
}

}  // namespace

void AppendDpid(BoundedText& text, std::uint32_t dpid)
{
  AppendDigits<kDpidDigits>(text, dpid);
}

void AppendAddressRecord(BoundedText& text, const OpenData& source, const Point& point, const FieldList& fields,
                         char delimiter)
{
  AppendRecord(text, source, point, source.engine->Data().StreetAt(point.street), fields, delimiter);
}

void AppendAddressRecord(BoundedText& text, const OpenData& source, std::uint32_t ordinal, const FieldList& fields,
                         char delimiter)
{
  const Database& database = source.engine->Data();
  Street street;
  Point point;
  if (fields.NeedPoint()) {
    point = database.PointAt(ordinal, street);
  } else {
    point.ordinal = ordinal;
    point.dpid = database.DpidOf(ordinal);
  }
  AppendRecord(text, source, point, street, fields, delimiter);
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
  }
  record.Finish();
}

}  // namespace arf
