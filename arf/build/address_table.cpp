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

std::size_t AddressTable::EntryHash::operator()(const AddressDetails& entry) const
{
  return Combine({entry.numberPrefix, entry.numberFirstSuffix, entry.numberLast, entry.numberLastSuffix,
                  entry.unitNumber, entry.unitType, entry.levelNumber, entry.levelType, entry.lot, entry.building});
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

std::optional<AddressTable::OtherRow> AddressTable::Add(const ParsedRow& row, std::uint32_t line)
{
  if (const std::optional<OtherRow> other = Claim(row.dpid)) return other;
  AddressRow entry;
  entry.street = StreetOf(row);
  entry.numberFirst = row.numberFirst;
  entry.details = DetailsOf(row);
  entry.dpid = row.dpid;
  entry.latitude = row.latitude;
  entry.longitude = row.longitude;
  entry.line = line;
  entry.input = static_cast<std::uint32_t>(rows.size());
  for (std::size_t i = 0; i < attributes.size(); ++i) attributes[i].values.Add(row.attributes[i]);
  rows.push_back(entry);
  return std::nullopt;
}

/** Nothing when a row may have the DPID, otherwise the row that has it. */
std::optional<AddressTable::OtherRow> AddressTable::Claim(std::uint32_t dpid)
{
  if (rows.size() >= kNoIndex) throw BuildError("more than four thousand million addresses");
  if (dpid == 0 || dpids_.Add(dpid)) return std::nullopt;
  return RowOf(dpid);
}

std::vector<AddressTable::RepeatedDpid> AddressTable::Append(const AddressTable& other)
{
  std::vector<RepeatedDpid> repeated;
  const Renumbering to = Renumber(other);
  std::vector<bool> taken(other.rows.size(), true);
  for (std::size_t i = 0; i < other.rows.size(); ++i) {
    AddressRow row = other.rows[i];
    if (const std::optional<OtherRow> claimed = Claim(row.dpid)) {
      repeated.push_back({row.dpid, row.line, *claimed});
      taken[i] = false;
      continue;
    }
    row.street = to.streets[row.street];
    row.details = to.details[row.details];
    if (row.details != 0) CountParts(details[row.details]);
    row.input = static_cast<std::uint32_t>(rows.size());
    rows.push_back(row);
  }
  for (std::size_t i = 0; i < attributes.size(); ++i) attributes[i].values.Append(other.attributes[i].values, taken);
  return repeated;
}

/** The numbers that the other table's streets and details have in this one, which has all of them afterwards. */
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
  const std::vector<std::uint32_t> partNumbers = internAll(parts, other.parts);
  partUses.resize(parts.Count());
  to.details.push_back(0);
  for (std::size_t i = 1; i < other.details.size(); ++i) {
    AddressDetails own = other.details[i];
    for (std::uint32_t* part : PartsOf(own)) *part = partNumbers[*part];
    to.details.push_back(NumberFor(own, details, detailNumbers_));
  }
  return to;
}

void AddressTable::CountParts(AddressDetails entry)
{
  for (const std::uint32_t* part : PartsOf(entry)) {
    if (*part != 0) ++partUses[*part];
  }
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

std::uint32_t AddressTable::DetailsOf(const ParsedRow& row)
{
  const AddressDetails entry{Part(row.numberPrefix),     Part(row.numberFirstSuffix), row.numberLast,
                             Part(row.numberLastSuffix), Part(row.unitNumber),        Part(row.unitType),
                             Part(row.levelNumber),      Part(row.levelType),         Part(row.lot),
                             Part(row.building)};
  return entry == AddressDetails() ? 0 : NumberFor(entry, details, detailNumbers_);
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
  dpids_ = {};
  localityNumbers_ = {};
  streetNumbers_ = {};
  detailNumbers_ = {};
}

/** Only for messages, so a search through all rows will do. */
AddressTable::OtherRow AddressTable::RowOf(std::uint32_t dpid) const
{
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const AddressRow& r) { return r.dpid == dpid; });
  if (row == rows.end()) return {};
  const auto number = static_cast<std::size_t>(row - rows.begin());
  auto input = inputs_.rbegin();
  while (input != inputs_.rend() && input->first > number) ++input;
  const bool isOther = input != inputs_.rbegin() && input != inputs_.rend();
  return {row->line, isOther ? input->second : std::string()};
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
