#include "arf/build/columns.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "arf/build/text_input.h"
#include "arf/format/layout.h"

namespace arf {
namespace {

std::string ColumnName(std::string_view field)
{
  std::string scratch;
  std::string name(ToPlainText(field, scratch));
  for (char& c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return name;
}

constexpr std::string_view kRegisterIdentifier = "address_detail_pid";

/** Columns of the national address file that have other names there. */
constexpr std::pair<std::string_view, Column> kRegisterColumns[] = {
    {"building_name", Column::Building},   {"address_site_name", Column::SiteName},
    {"flat_type", Column::UnitType},       {"flat_number", Column::UnitNumber},
    {"lot_number", Column::Lot},           {"locality_name", Column::Locality},
    {"state_abbreviation", Column::State}, {"alias_principal", Column::AliasPrincipal},
    {"date_retired", Column::DateRetired},
};

/** Columns of the national address file that become attributes, under these names. */
constexpr std::pair<std::string_view, std::string_view> kRegisterAttributes[] = {
    {kRegisterIdentifier, kSourceIdentifier}, {"mb_code", "mesh_block"},
    {"geocode_type", "geocode_reliability"},  {"statistical_area", "statistical_area"},
    {"sa1_code", "statistical_area"},         {"local_government_area", "local_government_area"},
    {"lga_name", "local_government_area"},    {"principal_pid", kPrincipalIdentifier},
    {"primary_pid", kPrimaryIdentifier},
};

/** What stands beside a name in a list of pairs. */
template <class Pairs>
const auto* Beside(const Pairs& pairs, std::string_view name)
{
  const auto* pair = std::find_if(std::begin(pairs), std::end(pairs), [&](const auto& p) { return p.first == name; });
  return pair == std::end(pairs) ? nullptr : &pair->second;
}

std::string Quoted(std::string_view name)
{
  return std::string("\"").append(name) += '"';
}

}  // namespace

std::vector<std::string> ColumnMap::Read(std::span<const std::string_view> header)
{
  std::vector<std::string> faults;
  fields_.fill(kMissing);
  attributes_.clear();
  fieldCount_ = header.size();
  isRegister_ = std::any_of(header.begin(), header.end(),
                            [](std::string_view field) { return ColumnName(field) == kRegisterIdentifier; });
  for (std::size_t field = 0; field < header.size(); ++field) {
    const std::string name = ColumnName(header[field]);
    if (name.empty()) {
      faults.push_back("column " + std::to_string(field + 1) + " has no name");
    } else if (!(isRegister_ ? PlaceOfRegister(name, field) : Place(name, field))) {
      faults.push_back("the column " + Quoted(name) + " is there twice");
    }
  }
  std::sort(attributes_.begin(), attributes_.end(),
            [](const Attribute& a, const Attribute& b) { return a.name < b.name; });
  if (attributes_.size() > layout::attribute::kMaxColumns) faults.push_back("there are too many columns");
  CheckRequired(faults);
  return faults;
}

bool ColumnMap::Place(const std::string& name, std::size_t field)
{
  const auto* const end = kColumnNames.begin() + kGeneralColumns;
  const auto* const known = std::find(kColumnNames.begin(), end, name);
  return known == end ? PlaceAttribute(name, field) : PlaceColumn(Column(known - kColumnNames.begin()), field);
}

bool ColumnMap::PlaceOfRegister(const std::string& name, std::size_t field)
{
  if (const Column* column = Beside(kRegisterColumns, name)) return PlaceColumn(*column, field);
  if (const std::string_view* attribute = Beside(kRegisterAttributes, name)) {
    return HasAttribute(*attribute) || PlaceAttribute(std::string(*attribute), field);
  }
  const auto* const known = std::find(kColumnNames.begin(), kColumnNames.end(), name);
  return known == kColumnNames.end() || PlaceColumn(Column(known - kColumnNames.begin()), field);
}

bool ColumnMap::PlaceColumn(Column column, std::size_t field)
{
  std::size_t& place = fields_[static_cast<std::size_t>(column)];
  if (place != kMissing) return false;
  place = field;
  return true;
}

bool ColumnMap::PlaceAttribute(const std::string& name, std::size_t field)
{
  if (HasAttribute(name)) return false;
  attributes_.push_back({name, field});
  return true;
}

bool ColumnMap::HasAttribute(std::string_view name) const
{
  return AttributePlace(name) != kMissing;
}

std::size_t ColumnMap::AttributePlace(std::string_view name) const
{
  const auto has =
      std::find_if(attributes_.begin(), attributes_.end(), [&](const Attribute& a) { return a.name == name; });
  return has == attributes_.end() ? kMissing : static_cast<std::size_t>(has - attributes_.begin());
}

std::string_view ColumnMap::AttributeField(std::span<const std::string_view> row, std::string_view name) const
{
  const std::size_t place = AttributePlace(name);
  const std::size_t field = place == kMissing ? kMissing : attributes_[place].field;
  return field < row.size() ? row[field] : std::string_view();
}

void ColumnMap::SetAttributes(const std::vector<std::string>& names)
{
  std::vector<Attribute> aligned;
  for (const std::string& name : names) {
    const std::size_t place = AttributePlace(name);
    aligned.push_back({name, place == kMissing ? kMissing : attributes_[place].field});
  }
  attributes_ = std::move(aligned);
}

/** Identifiers can be made from those of the source, so one of the two is enough. */
void ColumnMap::CheckRequired(std::vector<std::string>& faults) const
{
  for (const Column column : {Column::Dpid, Column::Locality, Column::State, Column::Postcode}) {
    const bool isMissing = !Has(column) && (column != Column::Dpid || !HasAttribute(kSourceIdentifier));
    if (isMissing) faults.push_back("the required column " + Quoted(NameOf(column)) + " is missing");
  }
  if (!Has(Column::StreetName) && !Has(Column::PostalType)) {
    faults.push_back("neither \"street_name\" nor \"postal_type\" is among the columns");
  }
}

}  // namespace arf
