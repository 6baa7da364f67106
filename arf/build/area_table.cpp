#include "arf/build/area_table.h"

#include <algorithm>
#include <span>

#include "arf/build/build_error.h"
#include "arf/build/csv_reader.h"
#include "arf/build/register_table.h"

namespace arf {
namespace {

constexpr std::string_view kMeshBlock = "mesh_block";
constexpr std::array<std::string_view, 2> kAttributes = {"statistical_area", "local_government_area"};

/** Names of a column, in upper case and without years, those to be preferred first. */
constexpr std::string_view kMeshBlockNames[] = {"MESH_BLOCK", "MB_CODE"};
constexpr std::string_view kStatisticalAreaNames[] = {"STATISTICAL_AREA", "SA2_CODE", "SA2_MAINCODE", "SA1_CODE",
                                                      "SA1_MAINCODE"};
constexpr std::string_view kLocalGovernmentAreaNames[] = {"LOCAL_GOVERNMENT_AREA", "LGA_CODE"};

/** A name without "_2021" behind it. */
std::string_view WithoutYear(std::string_view name)
{
  constexpr std::size_t kYearLength = 5;
  if (name.size() <= kYearLength) return name;
  const std::string_view year = name.substr(name.size() - kYearLength);
  const bool isYear = year[0] == '_' && year.find_first_not_of("0123456789", 1) == std::string_view::npos;
  return isYear ? name.substr(0, name.size() - kYearLength) : name;
}

/** The place of the first name that a header has, of several years that of the latest; SIZE_MAX for none. */
std::size_t FindColumn(std::span<const std::string_view> header, std::span<const std::string_view> names)
{
  for (const std::string_view name : names) {
    std::size_t found = SIZE_MAX;
    for (std::size_t i = 0; i < header.size(); ++i) {
      const bool isIt = IsColumn(WithoutYear(header[i]), name);
      if (isIt && (found == SIZE_MAX || header[found].substr(name.size()) < header[i].substr(name.size()))) found = i;
    }
    if (found != SIZE_MAX) return found;
  }
  return SIZE_MAX;
}

/** The attribute of a name; it is added, empty, where the addresses have none. */
AttributeTable& AttributeOf(AddressTable& table, std::string_view name)
{
  const auto place =
      std::lower_bound(table.attributes.begin(), table.attributes.end(), name,
                       [](const AttributeTable& attribute, std::string_view n) { return attribute.name < n; });
  if (place != table.attributes.end() && place->name == name) return *place;
  AttributeTable added;
  added.name = name;
  for (std::size_t i = 0; i < table.rows.size(); ++i) added.values.Add({});
  return *table.attributes.insert(place, std::move(added));
}

}  // namespace

AreaTable::AreaTable(const std::string& path) : path_(path)
{
  CsvReader csv(path, ',');
  if (csv.Next() != CsvReader::Result::Row) throw BuildError(path + ": has no row that names its columns");
  const Columns columns = FindColumns(csv.Fields());
  for (CsvReader::Result result; (result = csv.Next()) != CsvReader::Result::End;) {
    const std::span<const std::string_view> fields = csv.Fields();
    if (result != CsvReader::Result::Row || columns.meshBlock >= fields.size()) continue;
    const std::uint32_t number = meshBlocks_.Intern(fields[columns.meshBlock]);
    if (number < areas_.size() || number == 0) continue;
    areas_.resize(number + std::size_t{1});
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
      if (columns.areas[kind] < fields.size()) areas_[number][kind] = texts_.Intern(fields[columns.areas[kind]]);
    }
  }
  if (areas_.empty()) throw BuildError(path + ": has no mesh blocks");
}

AreaTable::Columns AreaTable::FindColumns(std::span<const std::string_view> header)
{
  Columns columns{FindColumn(header, kMeshBlockNames),
                  {FindColumn(header, kStatisticalAreaNames), FindColumn(header, kLocalGovernmentAreaNames)}};
  if (columns.meshBlock == SIZE_MAX) {
    throw BuildError(path_ +
                     ": has no column of mesh blocks (MB_CODE_2021, MB_CODE or mesh_block); take the file that "
                     "allocates mesh blocks to areas");
  }
  columns_.emplace_back(header[columns.meshBlock]);
  for (std::size_t kind = 0; kind < kKinds; ++kind) {
    hasKind_[kind] = columns.areas[kind] != SIZE_MAX;
    if (hasKind_[kind]) columns_.emplace_back(header[columns.areas[kind]]);
  }
  if (columns_.size() == 1) {
    throw BuildError(path_ +
                     ": has a column neither of statistical areas (SA2_CODE_2021, SA1_CODE_2021) nor of local "
                     "government areas (LGA_CODE_2023)");
  }
  return columns;
}

const std::array<std::uint32_t, AreaTable::kKinds>* AreaTable::Find(std::string_view meshBlock) const
{
  const std::optional<std::uint32_t> number = meshBlocks_.Find(meshBlock);
  return number && *number != 0 && *number < areas_.size() ? &areas_[*number] : nullptr;
}

AreaReport AreaTable::Fill(AddressTable& table) const
{
  const auto blocks = std::find_if(table.attributes.begin(), table.attributes.end(),
                                   [](const AttributeTable& attribute) { return attribute.name == kMeshBlock; });
  if (blocks == table.attributes.end() || blocks->values.IsEmpty()) {
    throw BuildError(path_ + ": the addresses have no mesh blocks (a column mesh_block or MB_CODE) to look up in it");
  }
  AreaReport report{path_, columns_, meshBlocks_.Count() - 1, 0, 0, 0};
  std::string text;
  std::uint64_t lastCode = 0;
  bool isKnown = false;
  for (std::size_t row = 0; row < blocks->values.Size(); ++row) {
    const std::uint64_t code = blocks->values.CodeOf(row);
    if (code != lastCode) isKnown = Find(blocks->values.TextOfCode(lastCode = code, text)) != nullptr;
    ++(code == 0 ? report.without : isKnown ? report.addresses : report.unknown);
  }
  if (report.addresses == 0) {
    throw BuildError(path_ + ": has none of the addresses' mesh blocks; it may be of another issue than these");
  }
  for (std::size_t kind = 0; kind < kKinds; ++kind) {
    if (hasKind_[kind]) FillKind(table, kind);
  }
  return report;
}

void AreaTable::FillKind(AddressTable& table, std::size_t kind) const
{
  AttributeValues& values = AttributeOf(table, kAttributes[kind]).values;
  const AttributeValues& blocks = AttributeOf(table, kMeshBlock).values;
  AttributeValues filled;
  filled.Reserve(values.Size());
  std::string text;
  std::uint64_t lastCode = 0;
  std::string_view area;
  for (std::size_t row = 0; row < values.Size(); ++row) {
    const std::uint64_t code = blocks.CodeOf(row);
    if (code != lastCode) {
      const auto* areas = Find(blocks.TextOfCode(lastCode = code, text));
      area = areas ? texts_.At((*areas)[kind]) : std::string_view();
    }
    filled.Add(values.CodeOf(row) == 0 ? area : values.TextOf(row, text));
  }
  values = std::move(filled);
}

}  // namespace arf
