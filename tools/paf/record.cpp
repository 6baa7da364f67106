#include "record.h"

#include <algorithm>
#include <iterator>

#include "qxpaf/arf_au.h"

namespace tool {
namespace {

constexpr char kDelimiter = '\t';  // of an instance whose "Delimiter" property nobody has set

struct NamedField
{
  PafAuField number;
  std::string_view name;
};

/** The plug-ins' own names for the fields; those that are not listed are reserved. */
constexpr NamedField kFieldNames[] = {
    {PAF_AU_FIELD_ADDRESS_LINE_1, "AddressLine1"},
    {PAF_AU_FIELD_ADDRESS_LINE_2, "AddressLine2"},
    {PAF_AU_FIELD_ADDRESS_LINE_3, "AddressLine3"},
    {PAF_AU_FIELD_LOCALITY, "Locality"},
    {PAF_AU_FIELD_STATE, "State"},
    {PAF_AU_FIELD_POSTCODE, "Postcode"},
    {PAF_AU_FIELD_COUNTRY, "Country"},
    {PAF_AU_FIELD_DPID, "DPID"},
    {PAF_AU_FIELD_MATCH_QUALITY, "MatchQuality"},
    {PAF_AU_FIELD_BUILDING, "Building"},
    {PAF_AU_FIELD_UNIT_TYPE, "UnitType"},
    {PAF_AU_FIELD_UNIT_NUMBER, "UnitNumber"},
    {PAF_AU_FIELD_LEVEL_TYPE, "LevelType"},
    {PAF_AU_FIELD_LEVEL_NUMBER, "LevelNumber"},
    {PAF_AU_FIELD_LOT, "Lot"},
    {PAF_AU_FIELD_NUMBER_FIRST, "NumberFirst"},
    {PAF_AU_FIELD_NUMBER_FIRST_SUFFIX, "NumberFirstSuffix"},
    {PAF_AU_FIELD_NUMBER_LAST, "NumberLast"},
    {PAF_AU_FIELD_NUMBER_LAST_SUFFIX, "NumberLastSuffix"},
    {PAF_AU_FIELD_STREET_NAME, "StreetName"},
    {PAF_AU_FIELD_STREET_TYPE, "StreetType"},
    {PAF_AU_FIELD_STREET_SUFFIX, "StreetSuffix"},
    {PAF_AU_FIELD_POSTAL_TYPE, "PostalType"},
    {PAF_AU_FIELD_POSTAL_NUMBER, "PostalNumber"},
    {PAF_AU_FIELD_ALTERNATIVE_LOCALITY, "AlternativeLocality"},
    {PAF_AU_FIELD_MATCHED_TEXT, "MatchedText"},
    {PAF_AU_FIELD_SORT_PLAN_NUMBER, "SortPlanNumber"},
    {PAF_AU_FIELD_BARCODE, "Barcode"},
    {PAF_AU_FIELD_SOURCE_IDENTIFIER, "SourceIdentifier"},
    {PAF_AU_FIELD_LATITUDE, "Latitude"},
    {PAF_AU_FIELD_LONGITUDE, "Longitude"},
    {PAF_AU_FIELD_GEOCODE_RELIABILITY, "GeocodeReliability"},
    {PAF_AU_FIELD_MESH_BLOCK, "MeshBlock"},
    {PAF_AU_FIELD_STATISTICAL_AREA, "StatisticalArea"},
    {PAF_AU_FIELD_LOCAL_GOVERNMENT_AREA, "LocalGovernmentArea"},
};

void AppendPart(std::string& text, std::string_view separator, const std::string& part)
{
  if (part.empty()) {
    return;
  }
  if (!text.empty()) {
    text += separator;
  }
  text += part;
}

}  // namespace

std::string_view FieldName(std::size_t number)
{
  const auto* found = std::find_if(std::begin(kFieldNames), std::end(kFieldNames), [number](const NamedField& field) {
    return static_cast<std::size_t>(field.number) == number;
  });
  return found == std::end(kFieldNames) ? std::string_view() : found->name;
}

Record::Record(std::string_view text)
{
  std::size_t begin = 0;
  while (true) {
    const std::size_t end = text.find(kDelimiter, begin);
    fields_.emplace_back(text.substr(begin, end - begin));
    if (end == std::string_view::npos) {
      return;
    }
    begin = end + 1;
  }
}

const std::string& Record::Field(std::size_t number) const
{
  static const std::string empty;
  return number >= 1 && number <= fields_.size() ? fields_[number - 1] : empty;
}

bool Record::IsEmpty() const
{
  return std::all_of(fields_.begin(), fields_.end(), [](const std::string& field) { return field.empty(); });
}

const std::string& Record::Dpid() const
{
  return Field(PAF_AU_FIELD_DPID);
}

std::string Record::OneLine() const
{
  std::string text;
  for (const auto line : {PAF_AU_FIELD_ADDRESS_LINE_1, PAF_AU_FIELD_ADDRESS_LINE_2, PAF_AU_FIELD_ADDRESS_LINE_3}) {
    AppendPart(text, ", ", Field(line));
  }
  std::string lastLine;
  for (const auto part : {PAF_AU_FIELD_LOCALITY, PAF_AU_FIELD_STATE, PAF_AU_FIELD_POSTCODE}) {
    AppendPart(lastLine, " ", Field(part));
  }
  AppendPart(text, ", ", lastLine);
  return text;
}

std::string LocalityQuery(const std::string& lastLine)
{
  std::string query(PAF_AU_FIELD_LOCALITY - 1, kDelimiter);
  std::replace_copy(lastLine.begin(), lastLine.end(), std::back_inserter(query), kDelimiter, ' ');
  return query;
}

std::string NearestQuery(const std::string& latitude, const std::string& longitude)
{
  return std::string(PAF_AU_FIELD_LATITUDE - 1, kDelimiter) + latitude + kDelimiter + longitude;
}

std::string AllFields()
{
  std::string numbers;
  for (int number = 1; number <= PAF_AU_FIELD_COUNT; ++number) {
    numbers.append(numbers.empty() ? "" : ";").append(std::to_string(number));
  }
  return numbers;
}

}  // namespace tool
