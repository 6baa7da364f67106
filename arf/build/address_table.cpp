#include "arf/build/address_table.h"

#include <algorithm>
#include <initializer_list>

#include "arf/build/build_error.h"
#include "arf/format/layout.h"

namespace arf {
namespace {

constexpr std::uint32_t kBitsPerWord = 64;

std::size_t Combine(std::initializer_list<std::uint32_t> values)
{
  std::uint64_t hash = 0;
  for (const std::uint32_t value : values) hash = (hash ^ value) * 0x9E3779B97F4A7C15;
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

/** The number of an entry in a list where each is once; it is added when it is new. */
template <class Entry, class Numbers>
std::uint32_t NumberFor(const Entry& entry, std::vector<Entry>& entries, Numbers& numbers)
{
  const auto [place, isNew] = numbers.try_emplace(entry, static_cast<std::uint32_t>(entries.size()));
  if (isNew) entries.push_back(entry);
  return place->second;
}

/** Removes the entries that `isUsed` does not mark. Returns the new places of the others. */
template <class Entry>
std::vector<std::uint32_t> DropUnused(std::vector<Entry>& entries, const std::vector<bool>& isUsed)
{
  std::vector<std::uint32_t> places(entries.size());
  std::uint32_t kept = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    places[i] = kept;
    if (isUsed[i]) entries[kept++] = entries[i];
  }
  entries.resize(kept);
  return places;
}

}  // namespace

bool DpidSet::Add(std::uint32_t dpid)
{
  if (bits_.empty()) bits_.resize(layout::dpid_index::kMaxDpid / kBitsPerWord + 1);
  std::uint64_t& word = bits_[dpid / kBitsPerWord];
  const std::uint64_t bit = std::uint64_t{1} << (dpid % kBitsPerWord);
  const bool isNew = (word & bit) == 0;
  word |= bit;
  return isNew;
}

std::size_t AddressTable::EntryHash::operator()(const LocalityEntry& entry) const
{
  return Combine({entry.name, entry.state, entry.postcode});
}

std::size_t AddressTable::EntryHash::operator()(const StreetEntry& entry) const
{
  return Combine({entry.locality, entry.name, entry.type, entry.suffix, entry.isPostal});
}

AddressTable::AddressTable(const std::vector<std::string>& attributeNames) : partUses(1)
{
  attributes.resize(attributeNames.size());
  for (std::size_t i = 0; i < attributeNames.size(); ++i) attributes[i].name = attributeNames[i];
}

void AddressTable::Reserve(std::size_t count)
{
  rows.reserve(count);
  for (AttributeTable& attribute : attributes) attribute.values.Reserve(count);
}

std::optional<std::uint32_t> AddressTable::Add(const ParsedRow& row, std::uint32_t line)
{
  if (const std::optional<std::uint32_t> other = Claim(row.dpid)) return other;
  AddressRow entry;
  entry.street = StreetOf(row);
  entry.numberFirst = row.numberFirst;
  entry.numberLast = row.numberLast;
  entry.numberPrefix = Part(row.numberPrefix);
  entry.numberFirstSuffix = Part(row.numberFirstSuffix);
  entry.numberLastSuffix = Part(row.numberLastSuffix);
  entry.unitNumber = Part(row.unitNumber);
  entry.unitType = Part(row.unitType);
  entry.levelNumber = Part(row.levelNumber);
  entry.levelType = Part(row.levelType);
  entry.lot = Part(row.lot);
  entry.building = Part(row.building);
  entry.dpid = row.dpid;
  entry.latitude = row.latitude;
  entry.longitude = row.longitude;
  entry.line = line;
  entry.input = static_cast<std::uint32_t>(rows.size());
  for (std::size_t i = 0; i < attributes.size(); ++i) attributes[i].values.Add(row.attributes[i]);
  rows.push_back(entry);
  return std::nullopt;
}

/** Nothing when a row may have the DPID, otherwise the line of the row that has it. */
std::optional<std::uint32_t> AddressTable::Claim(std::uint32_t dpid)
{
  if (rows.size() >= kNoIndex) throw BuildError("more than four thousand million addresses");
  if (dpid == 0 || dpids_.Add(dpid)) return std::nullopt;
  return LineOf(dpid);
}

std::vector<AddressTable::RepeatedDpid> AddressTable::Append(const AddressTable& other)
{
  std::vector<RepeatedDpid> repeated;
  const Renumbering to = Renumber(other);
  std::vector<bool> taken(other.rows.size(), true);
  for (std::size_t i = 0; i < other.rows.size(); ++i) {
    AddressRow row = other.rows[i];
    if (const std::optional<std::uint32_t> line = Claim(row.dpid)) {
      repeated.push_back({row.dpid, row.line, *line});
      taken[i] = false;
      continue;
    }
    row.street = to.streets[row.street];
    for (std::uint32_t* part : PartsOf(row)) {
      *part = to.parts[*part];
      if (*part != 0) ++partUses[*part];
    }
    row.input = static_cast<std::uint32_t>(rows.size());
    rows.push_back(row);
  }
  for (std::size_t i = 0; i < attributes.size(); ++i) attributes[i].values.Append(other.attributes[i].values, taken);
  return repeated;
}

/** The numbers that the other table's streets and parts have in this one, which has all of them afterwards. */
AddressTable::Renumbering AddressTable::Renumber(const AddressTable& other)
{
  const auto internAll = [](StringPool& pool, const StringPool& from) {
    std::vector<std::uint32_t> numbers;
    numbers.reserve(from.Count());
    for (std::uint32_t i = 0; i < from.Count(); ++i) numbers.push_back(pool.Intern(from.At(i)));
    return numbers;
  };
  Renumbering to;
  const std::vector<std::uint32_t> nameNumbers = internAll(names, other.names);
  std::vector<std::uint32_t> localityNumbers;
  for (const LocalityEntry& entry : other.localities) {
    const LocalityEntry own{nameNumbers[entry.name], nameNumbers[entry.state], nameNumbers[entry.postcode]};
    localityNumbers.push_back(NumberFor(own, localities, localityNumbers_));
  }
  for (const StreetEntry& entry : other.streets) {
    const StreetEntry own{localityNumbers[entry.locality], nameNumbers[entry.name], nameNumbers[entry.type],
                          nameNumbers[entry.suffix], entry.isPostal};
    to.streets.push_back(NumberFor(own, streets, streetNumbers_));
  }
  to.parts = internAll(parts, other.parts);
  partUses.resize(parts.Count());
  return to;
}

void AddressTable::Keep(const std::vector<bool>& keep)
{
  std::size_t kept = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!keep[i]) continue;
    rows[kept] = rows[i];
    rows[kept].input = static_cast<std::uint32_t>(kept);
    ++kept;
  }
  rows.resize(kept);
  for (AttributeTable& attribute : attributes) attribute.values.Keep(keep);
}

std::uint32_t AddressTable::Part(std::string_view text)
{
  if (text.empty()) return 0;
  const std::uint32_t number = parts.Intern(text);
  if (number >= partUses.size()) partUses.resize(number + 1);
  ++partUses[number];
  return number;
}

void AddressTable::DropEmpty()
{
  std::vector<bool> hasRows(streets.size()), hasStreets(localities.size());
  for (const AddressRow& row : rows) hasRows[row.street] = true;
  const std::vector<std::uint32_t> streetPlaces = DropUnused(streets, hasRows);
  for (AddressRow& row : rows) row.street = streetPlaces[row.street];
  for (const StreetEntry& street : streets) hasStreets[street.locality] = true;
  const std::vector<std::uint32_t> localityPlaces = DropUnused(localities, hasStreets);
  for (StreetEntry& street : streets) street.locality = localityPlaces[street.locality];
}

/** Only for messages, so a search through all rows will do. */
std::uint32_t AddressTable::LineOf(std::uint32_t dpid) const
{
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const AddressRow& r) { return r.dpid == dpid; });
  return row != rows.end() ? row->line : 0;
}

std::uint32_t AddressTable::LocalityOf(const ParsedRow& row)
{
  const LocalityEntry entry{names.Intern(row.locality), names.Intern(row.state), names.Intern(row.postcode)};
  return NumberFor(entry, localities, localityNumbers_);
}

std::uint32_t AddressTable::StreetOf(const ParsedRow& row)
{
  const StreetEntry entry{LocalityOf(row), names.Intern(row.streetName), names.Intern(row.streetType),
                          names.Intern(row.streetSuffix), row.isPostal};
  return NumberFor(entry, streets, streetNumbers_);
}

}  // namespace arf
