#include "record.h"

#include <algorithm>

namespace tool {
namespace {

constexpr char kDelimiter = '\t';  // of an instance whose "Delimiter" property nobody has set
constexpr std::size_t kFirstLine = 1;
constexpr std::size_t kLastLine = 3;
constexpr std::size_t kLocality = 4;
constexpr std::size_t kState = 5;
constexpr std::size_t kPostcode = 6;
constexpr std::size_t kDpid = 8;

struct NamedField
{
  std::size_t number;
  std::string_view name;
};

/** Fields that are not listed are reserved. */
constexpr NamedField kFieldNames[] = {
    {1, "line_1"},
    {2, "line_2"},
    {3, "line_3"},
    {4, "locality"},
    {5, "state"},
    {6, "postcode"},
    {7, "country"},
    {8, "dpid"},
    {9, "match_quality"},
    {10, "building"},
    {11, "unit_type"},
    {12, "unit_number"},
    {13, "level_type"},
    {14, "level_number"},
    {15, "lot"},
    {16, "number_first"},
    {17, "number_first_suffix"},
    {18, "number_last"},
    {19, "number_last_suffix"},
    {20, "street_name"},
    {21, "street_type"},
    {22, "street_suffix"},
    {23, "postal_type"},
    {24, "postal_number"},
    {25, "alternative_locality"},
    {26, "matched"},
    {40, "sort_plan"},
    {41, "barcode"},
    {42, "source_id"},
    {43, "latitude"},
    {44, "longitude"},
    {45, "geocode_reliability"},
    {46, "mesh_block"},
    {47, "statistical_area"},
    {48, "local_government_area"},
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
  const auto* found = std::find_if(std::begin(kFieldNames), std::end(kFieldNames),
                                   [number](const NamedField& field) { return field.number == number; });
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
  return Field(kDpid);
}

std::string Record::OneLine() const
{
  std::string text;
  for (std::size_t line = kFirstLine; line <= kLastLine; ++line) {
    AppendPart(text, ", ", Field(line));
  }
  std::string lastLine;
  for (const std::size_t part : {kLocality, kState, kPostcode}) {
    AppendPart(lastLine, " ", Field(part));
  }
  AppendPart(text, ", ", lastLine);
  return text;
}

std::string LocalityQuery(const std::string& lastLine)
{
  return std::string(kLocality - 1, kDelimiter) + lastLine;
}

}  // namespace tool
