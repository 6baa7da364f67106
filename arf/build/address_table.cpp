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

}  // namespace

DpidSet::DpidSet() : bits_(layout::dpid_index::kMaxDpid / kBitsPerWord + 1) {}

bool DpidSet::Add(std::uint32_t dpid)
{
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

AddressTable::AddressTable(const std::vector<ColumnMap::Attribute>& columns) : partUses(1)
{
  attributes.resize(columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) attributes[i].name = columns[i].name;
}

void AddressTable::Reserve(std::size_t count)
{
  rows.reserve(count);
  for (AttributeColumn& attribute : attributes) attribute.codes.reserve(count);
}

std::optional<std::uint32_t> AddressTable::Add(const ParsedRow& row, std::uint32_t line)
{
  if (!dpids_.Add(row.dpid)) return LineOf(row.dpid);
  if (rows.size() >= kNoIndex) throw BuildError("more than four thousand million addresses");
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
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    attributes[i].codes.push_back(attributes[i].values.Intern(row.attributes[i]));
  }
  rows.push_back(entry);
  return std::nullopt;
}

std::uint32_t AddressTable::Part(std::string_view text)
{
  if (text.empty()) return 0;
  const std::uint32_t number = parts.Intern(text);
  if (number >= partUses.size()) partUses.resize(number + 1);
  ++partUses[number];
  return number;
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
