#include "arf/build/columns.h"

#include <algorithm>

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
  for (std::size_t field = 0; field < header.size(); ++field) {
    const std::string name = ColumnName(header[field]);
    if (name.empty()) {
      faults.push_back("column " + std::to_string(field + 1) + " has no name");
    } else if (!Place(name, field)) {
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
  const auto known = std::find(kColumnNames.begin(), kColumnNames.end(), name);
  if (known != kColumnNames.end()) {
    std::size_t& place = fields_[static_cast<std::size_t>(known - kColumnNames.begin())];
    if (place != kMissing) return false;
    place = field;
    return true;
  }
  const auto isSame = [&](const Attribute& attribute) { return attribute.name == name; };
  if (std::any_of(attributes_.begin(), attributes_.end(), isSame)) return false;
  attributes_.push_back({name, field});
  return true;
}

void ColumnMap::CheckRequired(std::vector<std::string>& faults) const
{
  for (const Column column : {Column::Dpid, Column::Locality, Column::State, Column::Postcode}) {
    if (!Has(column)) faults.push_back("the required column " + Quoted(NameOf(column)) + " is missing");
  }
  if (!Has(Column::StreetName) && !Has(Column::PostalType)) {
    faults.push_back("neither \"street_name\" nor \"postal_type\" is among the columns");
  }
}

}  // namespace arf
