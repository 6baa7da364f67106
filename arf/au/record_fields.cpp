#include "arf/au/record_fields.h"

#include <algorithm>
#include <charconv>

#include "arf/format/ascii.h"

namespace arf {
namespace {

struct FieldRow
{
  unsigned number;
  std::string_view name;
  std::string_view attribute;  ///< the column that fills it, if it is filled from one
};

constexpr FieldRow kFields[] = {
    {PAF_AU_FIELD_ADDRESS_LINE_1, "AddressLine1", ""},
    {PAF_AU_FIELD_ADDRESS_LINE_2, "AddressLine2", ""},
    {PAF_AU_FIELD_ADDRESS_LINE_3, "AddressLine3", ""},
    {PAF_AU_FIELD_LOCALITY, "Locality", ""},
    {PAF_AU_FIELD_STATE, "State", ""},
    {PAF_AU_FIELD_POSTCODE, "Postcode", ""},
    {PAF_AU_FIELD_COUNTRY, "Country", ""},
    {PAF_AU_FIELD_DPID, "DPID", ""},
    {PAF_AU_FIELD_MATCH_QUALITY, "MatchQuality", ""},
    {PAF_AU_FIELD_BUILDING, "Building", ""},
    {PAF_AU_FIELD_UNIT_TYPE, "UnitType", ""},
    {PAF_AU_FIELD_UNIT_NUMBER, "UnitNumber", ""},
    {PAF_AU_FIELD_LEVEL_TYPE, "LevelType", ""},
    {PAF_AU_FIELD_LEVEL_NUMBER, "LevelNumber", ""},
    {PAF_AU_FIELD_LOT, "Lot", ""},
    {PAF_AU_FIELD_NUMBER_FIRST, "NumberFirst", ""},
    {PAF_AU_FIELD_NUMBER_FIRST_SUFFIX, "NumberFirstSuffix", ""},
    {PAF_AU_FIELD_NUMBER_LAST, "NumberLast", ""},
    {PAF_AU_FIELD_NUMBER_LAST_SUFFIX, "NumberLastSuffix", ""},
    {PAF_AU_FIELD_STREET_NAME, "StreetName", ""},
    {PAF_AU_FIELD_STREET_TYPE, "StreetType", ""},
    {PAF_AU_FIELD_STREET_SUFFIX, "StreetSuffix", ""},
    {PAF_AU_FIELD_POSTAL_TYPE, "PostalType", ""},
    {PAF_AU_FIELD_POSTAL_NUMBER, "PostalNumber", ""},
    {PAF_AU_FIELD_ALTERNATIVE_LOCALITY, "AlternativeLocality", ""},
    {PAF_AU_FIELD_MATCHED_TEXT, "MatchedText", ""},
    {PAF_AU_FIELD_SORT_PLAN_NUMBER, "SortPlanNumber", "sort_plan_number"},
    {PAF_AU_FIELD_BARCODE, "Barcode", ""},
    {PAF_AU_FIELD_SOURCE_IDENTIFIER, "SourceIdentifier", "source_identifier"},
    {PAF_AU_FIELD_LATITUDE, "Latitude", ""},
    {PAF_AU_FIELD_LONGITUDE, "Longitude", ""},
    {PAF_AU_FIELD_GEOCODE_RELIABILITY, "GeocodeReliability", "geocode_reliability"},
    {PAF_AU_FIELD_MESH_BLOCK, "MeshBlock", "mesh_block"},
    {PAF_AU_FIELD_STATISTICAL_AREA, "StatisticalArea", "statistical_area"},
    {PAF_AU_FIELD_LOCAL_GOVERNMENT_AREA, "LocalGovernmentArea", "local_government_area"},
};

constexpr FieldRow kReserved{};
constexpr unsigned kDefaultFields = PAF_AU_FIELD_DPID;

const FieldRow& RowOf(unsigned number)
{
  const auto row =
      std::find_if(std::begin(kFields), std::end(kFields), [number](const FieldRow& r) { return r.number == number; });
  return row == std::end(kFields) ? kReserved : *row;
}

std::optional<FieldChoice> FindByNumber(std::string_view text)
{
  unsigned number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isField = result.ec == std::errc() && result.ptr == text.data() + text.size() && number >= 1 &&
                       number <= PAF_AU_FIELD_COUNT;
  return isField ? std::optional(FieldChoice::Field(number)) : std::nullopt;
}

std::optional<FieldChoice> FindAttributeColumn(const Database& database, std::string_view name)
{
  for (std::uint32_t column = 0; column < database.AttributeCount(); ++column)
    if (EqualIgnoringCase(database.AttributeName(column), name)) return FieldChoice::Attribute(column);
  return std::nullopt;
}

/** Takes the next entry off a list, without the white space around it. */
std::string_view TakeEntry(std::string_view& list)
{
  const std::size_t end = std::min(list.find_first_of(",;"), list.size());
  const std::string_view entry = Trimmed(list.substr(0, end));
  list.remove_prefix(std::min(end + 1, list.size()));
  return entry;
}

/** Whether a field tells more of an address than its identifiers and attributes. */
bool NeedsPoint(const FieldChoice& field)
{
  if (field.IsAttribute()) return false;
  switch (field.Number()) {
    case PAF_AU_FIELD_COUNTRY:
    case PAF_AU_FIELD_DPID:
    case PAF_AU_FIELD_MATCH_QUALITY:
    case PAF_AU_FIELD_BARCODE:
    case PAF_AU_FIELD_SOURCE_IDENTIFIER:
    case PAF_AU_FIELD_GEOCODE_RELIABILITY:
    case PAF_AU_FIELD_MESH_BLOCK:
    case PAF_AU_FIELD_STATISTICAL_AREA:
    case PAF_AU_FIELD_LOCAL_GOVERNMENT_AREA:
      return false;
    default:
      return true;
  }
}

}  // namespace

std::string_view FieldName(unsigned number)
{
  return RowOf(number).name;
}

FieldColumns::FieldColumns(const Database& database)
{
  columns_.fill(kNoIndex);
  for (const FieldRow& row : kFields)
    if (const auto column = database.FindAttribute(row.attribute); column && !row.attribute.empty())
      columns_[row.number] = *column;
}

std::optional<FieldChoice> FindField(const Database& database, std::string_view text)
{
  for (const FieldRow& row : kFields)
    if (EqualIgnoringCase(row.name, text)) return FieldChoice::Field(row.number);
  if (const std::optional<FieldChoice> field = FindByNumber(text)) return field;
  return FindAttributeColumn(database, text);
}

FieldList::FieldList()
{
  for (unsigned number = 1; number <= kDefaultFields; ++number) fields_[count_++] = FieldChoice::Field(number);
}

FieldList FieldList::Whole()
{
  FieldList list;
  list.count_ = 0;
  for (unsigned number = 1; number <= PAF_AU_FIELD_COUNT; ++number)
    list.fields_[list.count_++] = FieldChoice::Field(number);
  return list;
}

std::string_view FieldList::Read(const Database& database, std::string_view text)
{
  FieldList list;
  list.count_ = 0;
  while (!text.empty()) {
    const std::string_view entry = TakeEntry(text);
    if (entry.empty()) continue;
    const std::optional<FieldChoice> field = FindField(database, entry);
    if (!field) return entry;
    if (list.count_ == kMax) return "too many fields";
    list.fields_[list.count_++] = *field;
  }
  if (list.count_ == 0) return "no field";
  const auto fields = list.Fields();
  list.needPoint_ = std::any_of(fields.begin(), fields.end(), NeedsPoint);
  *this = list;
  return {};
}

void FieldList::Write(const Database* database, BoundedText& text) const
{
  for (const FieldChoice& field : Fields()) {
    if (text.Length() > 0) text << ';';
    const bool isAttribute = field.IsAttribute() && database;
    const std::string_view name = isAttribute ? database->AttributeName(field.Column()) : FieldName(field.Number());
    if (name.empty())
      text << std::uint32_t{field.Number()};
    else
      text << name;
  }
}

}  // namespace arf
