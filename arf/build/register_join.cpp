#include "arf/build/register_join.h"

#include <charconv>
#include <cmath>

#include "arf/build/register_table.h"
#include "arf/build/text_input.h"
#include "arf/format/fold.h"
#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr double kUnitsPerDegree = 1e6;

/** Calls `take` with each row of a table in use; does nothing when the table is missing. The report is told of one that
    was cut off. */
template <class TakeRow>
void ForEachRow(const TablePaths& tables, ReportWriter& report, std::string_view table,
                std::initializer_list<std::string_view> columns, TakeRow take)
{
  const auto path = tables.find(table);
  if (path == tables.end()) return;
  RegisterTable rows(path->second, columns);
  while (rows.Next()) take(rows);
  if (const auto& row = rows.CutOffRow()) report.AddBadRow(path->second, *row);
}

/** The entry of an identifier, added when it is new. */
template <class Entry>
Entry& EntryOf(StringPool& pids, std::vector<Entry>& entries, std::string_view pid)
{
  const std::uint32_t number = pids.Intern(pid);
  if (number >= entries.size()) entries.resize(number + 1);
  return entries[number];
}

std::int32_t Degrees(std::string_view text, double limit)
{
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool fits = error == std::errc() && end == text.data() + text.size() && std::abs(value) <= limit;
  return fits ? static_cast<std::int32_t>(std::lround(value * kUnitsPerDegree)) : kNoCoordinate;
}

/** Names and types as the table of addresses has them. */
class TableNames
{
 public:
  explicit TableNames(AddressTable& table) : table_(table) {}

  std::uint32_t Name(std::string_view text) { return table_.names.Intern(ToDisplayForm(text, scratch_)); }
  std::uint32_t StreetType(std::string_view text) { return Full(text, ExpandStreetType); }
  std::uint32_t StreetSuffix(std::string_view text) { return Full(text, ExpandStreetSuffix); }

 private:
  std::uint32_t Full(std::string_view text, std::string_view (*expand)(std::string_view))
  {
    const std::string_view full = expand(MatchKey(text));
    return full.empty() ? Name(text) : table_.names.Intern(full);
  }

  AddressTable& table_;
  std::string scratch_;
};

/** Where the columns are that are taken from ADDRESS_DETAIL. */
class DetailColumns
{
 public:
  explicit DetailColumns(const std::vector<std::string_view>& header) : header_(header) {}

  std::size_t operator[](std::string_view column) const
  {
    for (std::size_t i = 0; i < header_.size(); ++i) {
      if (IsColumn(header_[i], column)) return i;
    }
    return SIZE_MAX;
  }

 private:
  const std::vector<std::string_view>& header_;
};

class JoinedRows : public RowMaker
{
 public:
  JoinedRows(const RegisterJoin& join, const std::vector<std::string_view>& header) : join_(join)
  {
    const DetailColumns at(header);
    const std::array<std::string_view, kCopied> copied = {"ADDRESS_DETAIL_PID", "BUILDING_NAME",   "FLAT_TYPE_CODE",
                                                          "LEVEL_TYPE_CODE",    "ALIAS_PRINCIPAL", "DATE_RETIRED"};
    for (std::size_t i = 0; i < kCopied; ++i) copied_[i] = at[copied[i]];
    const std::array<std::string_view, kNumbers> numbers = {"FLAT_NUMBER", "LEVEL_NUMBER", "LOT_NUMBER", "NUMBER_FIRST",
                                                            "NUMBER_LAST"};
    for (std::size_t i = 0; i < kNumbers; ++i) {
      const std::string name(numbers[i]);
      numbers_[i] = {at[name + "_PREFIX"], at[name], at[name + "_SUFFIX"]};
    }
    street_ = at["STREET_LOCALITY_PID"];
    locality_ = at["LOCALITY_PID"];
    postcode_ = at["POSTCODE"];
    site_ = at["ADDRESS_SITE_PID"];
  }

  std::span<const std::string_view> Make(std::span<const std::string_view> fields) override
  {
    fields_ = fields;
    made_.fill({});
    static constexpr std::array<std::size_t, kCopied> kCopiedTo = {0, 1, 3, 5, 20, 21};
    static constexpr std::array<std::size_t, kNumbers> kNumbersTo = {4, 6, 7, 8, 9};
    for (std::size_t i = 0; i < kCopied; ++i) made_[kCopiedTo[i]] = FieldAt(copied_[i]);
    for (std::size_t i = 0; i < kNumbers; ++i) made_[kNumbersTo[i]] = NumberText(i);
    made_[2] = join_.SiteName(FieldAt(site_));
    PutStreet();
    PutPlace();
    return made_;
  }

 private:
  static constexpr std::size_t kCopied = 6, kNumbers = 5;

  std::string_view FieldAt(std::size_t place) const
  {
    return place < fields_.size() ? fields_[place] : std::string_view();
  }

  /** Prefix, number and suffix, which stand in columns of their own. */
  std::string_view NumberText(std::size_t number)
  {
    std::string& text = numberTexts_[number];
    text.clear();
    for (const std::size_t place : numbers_[number]) text += FieldAt(place);
    return text;
  }

  void PutStreet()
  {
    const RegisterJoin::Street* street = join_.FindStreet(FieldAt(street_));
    if (street) {
      made_[10] = join_.Text(street->name);
      made_[11] = join_.Text(street->type);
      made_[12] = join_.Text(street->suffix);
    }
    const RegisterJoin::Locality* locality = join_.FindLocality(FieldAt(locality_));
    made_[15] = FieldAt(postcode_);
    if (!locality) return;
    made_[13] = join_.Text(locality->name);
    made_[14] = join_.Text(locality->state);
    if (made_[15].empty()) made_[15] = join_.Text(locality->postcode);
  }

  void PutPlace()
  {
    const RegisterJoin::Place* place = join_.FindPlace(made_[0]);
    if (!place) return;
    if (place->latitude != kNoCoordinate && place->longitude != kNoCoordinate) {
      made_[16] = DegreesText(place->latitude, latitude_);
      made_[17] = DegreesText(place->longitude, longitude_);
    }
    made_[18] = join_.Text(place->meshBlock);
    made_[19] = join_.Text(place->geocodeType);
    made_[22] = join_.AddressPid(place->principal);
    made_[23] = join_.AddressPid(place->primary);
  }

  static std::string_view DegreesText(std::int32_t degrees, std::array<char, 32>& text)
  {
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), degrees / kUnitsPerDegree, std::chars_format::fixed, 6);
    return {text.data(), static_cast<std::size_t>(end.ptr - text.data())};
  }

  const RegisterJoin& join_;
  std::array<std::size_t, kCopied> copied_{};
  std::array<std::array<std::size_t, 3>, kNumbers> numbers_{};
  std::size_t street_ = 0, locality_ = 0, postcode_ = 0, site_ = 0;
  std::span<const std::string_view> fields_;
  std::array<std::string_view, kJoinedColumns.size()> made_;
  std::array<std::string, kNumbers> numberTexts_;
  std::array<char, 32> latitude_{}, longitude_{};
};

}  // namespace

RegisterJoin::RegisterJoin(const TablePaths& tables, ReportWriter& report) : report_(report)
{
  ReadLocalities(tables);
  ReadStreets(tables);
  ReadSites(tables);
  ReadGeocodes(tables);
  ReadRelatedAddresses(tables);
  ReadMeshBlocks(tables, "2016");
  ReadMeshBlocks(tables, "2021");  // the later ones hold
}

void RegisterJoin::ReadLocalities(const TablePaths& tables)
{
  std::map<std::string, std::uint32_t, std::less<>> states;
  ForEachRow(tables, report_, "STATE", {"STATE_PID", "STATE_ABBREVIATION"},
             [&](const RegisterTable& row) { states[std::string(row.At(0))] = texts_.Intern(row.At(1)); });
  ForEachRow(tables, report_, "LOCALITY", {"LOCALITY_PID", "LOCALITY_NAME", "STATE_PID", "PRIMARY_POSTCODE"},
             [&](const RegisterTable& row) {
               const auto state = states.find(row.At(2));
               EntryOf(localityPids_, localities_, row.At(0)) = {
                   texts_.Intern(row.At(1)), state == states.end() ? 0 : state->second, texts_.Intern(row.At(3))};
             });
}

void RegisterJoin::ReadStreets(const TablePaths& tables)
{
  ForEachRow(tables, report_, "STREET_LOCALITY",
             {"STREET_LOCALITY_PID", "STREET_NAME", "STREET_TYPE_CODE", "STREET_SUFFIX_CODE", "LOCALITY_PID"},
             [&](const RegisterTable& row) {
               EntryOf(streetPids_, streets_, row.At(0)) = {texts_.Intern(row.At(1)), texts_.Intern(row.At(2)),
                                                            texts_.Intern(row.At(3)), localityPids_.Intern(row.At(4))};
             });
}

void RegisterJoin::ReadSites(const TablePaths& tables)
{
  ForEachRow(tables, report_, "ADDRESS_SITE", {"ADDRESS_SITE_PID", "ADDRESS_SITE_NAME"}, [&](const RegisterTable& row) {
    if (!row.At(1).empty()) EntryOf(sitePids_, siteNames_, row.At(0)) = texts_.Intern(row.At(1));
  });
}

void RegisterJoin::ReadGeocodes(const TablePaths& tables)
{
  std::map<std::string, std::uint32_t, std::less<>> types;
  ForEachRow(tables, report_, "GEOCODE_TYPE_AUT", {"CODE", "NAME"},
             [&](const RegisterTable& row) { types[std::string(row.At(0))] = texts_.Intern(row.At(1)); });
  ForEachRow(tables, report_, "ADDRESS_DEFAULT_GEOCODE",
             {"ADDRESS_DETAIL_PID", "LATITUDE", "LONGITUDE", "GEOCODE_TYPE_CODE"}, [&](const RegisterTable& row) {
               Place& place = EntryOf(addressPids_, places_, row.At(0));
               place.latitude = Degrees(row.At(1), 90);
               place.longitude = Degrees(row.At(2), 180);
               const auto type = types.find(row.At(3));
               place.geocodeType = type == types.end() ? texts_.Intern(row.At(3)) : type->second;
             });
}

void RegisterJoin::ReadRelatedAddresses(const TablePaths& tables)
{
  ForEachRow(tables, report_, "ADDRESS_ALIAS", {"ALIAS_PID", "PRINCIPAL_PID"}, [&](const RegisterTable& row) {
    const std::uint32_t principal = addressPids_.Intern(row.At(1));
    EntryOf(addressPids_, places_, row.At(0)).principal = principal;
  });
  ForEachRow(tables, report_, "PRIMARY_SECONDARY", {"SECONDARY_PID", "PRIMARY_PID"}, [&](const RegisterTable& row) {
    const std::uint32_t primary = addressPids_.Intern(row.At(1));
    EntryOf(addressPids_, places_, row.At(0)).primary = primary;
  });
}

void RegisterJoin::ReadMeshBlocks(const TablePaths& tables, const std::string& year)
{
  StringPool pids;
  std::vector<std::uint32_t> codes;
  ForEachRow(tables, report_, "MB_" + year, {"MB_" + year + "_PID", "MB_" + year + "_CODE"},
             [&](const RegisterTable& row) { EntryOf(pids, codes, row.At(0)) = texts_.Intern(row.At(1)); });
  ForEachRow(tables, report_, "ADDRESS_MESH_BLOCK_" + year, {"ADDRESS_DETAIL_PID", "MB_" + year + "_PID"},
             [&](const RegisterTable& row) {
               if (const std::uint32_t* code = Find(pids, codes, row.At(1)))
                 EntryOf(addressPids_, places_, row.At(0)).meshBlock = *code;
             });
}

std::string_view RegisterJoin::SiteName(std::string_view pid) const
{
  const std::uint32_t* name = pid.empty() ? nullptr : Find(sitePids_, siteNames_, pid);
  return name ? Text(*name) : std::string_view();
}

void RegisterJoin::AddRelations(const TablePaths& tables, AddressTable& table) const
{
  TableNames names(table);
  const auto nameOf = [&](const Locality& locality) {
    return LocalityName{names.Name(Text(locality.name)), names.Name(Text(locality.state))};
  };
  ForEachRow(tables, report_, "STREET_LOCALITY_ALIAS",
             {"STREET_LOCALITY_PID", "STREET_NAME", "STREET_TYPE_CODE", "STREET_SUFFIX_CODE"},
             [&](const RegisterTable& row) {
               const Street* street = FindStreet(row.At(0));
               if (!street || street->locality >= localities_.size() || row.At(1).empty()) return;
               table.streetAliases.push_back({nameOf(localities_[street->locality]), names.Name(Text(street->name)),
                                              names.StreetType(Text(street->type)),
                                              names.StreetSuffix(Text(street->suffix)), names.Name(row.At(1)),
                                              names.StreetType(row.At(2)), names.StreetSuffix(row.At(3))});
             });
  ForEachRow(tables, report_, "LOCALITY_ALIAS", {"LOCALITY_PID", "NAME"}, [&](const RegisterTable& row) {
    const Locality* locality = FindLocality(row.At(0));
    if (locality && !row.At(1).empty()) table.localityAliases.push_back({nameOf(*locality), names.Name(row.At(1))});
  });
  ForEachRow(tables, report_, "LOCALITY_NEIGHBOUR", {"LOCALITY_PID", "NEIGHBOUR_LOCALITY_PID"},
             [&](const RegisterTable& row) {
               const Locality *locality = FindLocality(row.At(0)), *other = FindLocality(row.At(1));
               if (locality && other) table.neighbours.emplace_back(nameOf(*locality), nameOf(*other));
             });
}

std::unique_ptr<RowMaker> MakeJoinedRows(const RegisterJoin& join, const std::vector<std::string_view>& header)
{
  return std::make_unique<JoinedRows>(join, header);
}

}  // namespace arf
