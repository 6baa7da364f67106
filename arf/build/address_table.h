/**
 * Addresses of a build, in memory: 32 bytes an address, eight more for each attribute column that it has a value in,
 * and every distinct text once. Parts of the input are read into tables of their own, which are appended to one.
 */
#ifndef QXPAF_ARF_BUILD_ADDRESS_TABLE_H
#define QXPAF_ARF_BUILD_ADDRESS_TABLE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#include "arf/build/attribute_values.h"
#include "arf/build/row_parser.h"
#include "arf/build/string_pool.h"

namespace arf {

/** Texts are numbers of AddressTable::names. */
struct LocalityEntry
{
  std::uint32_t name = 0, state = 0, postcode = 0;
  bool operator==(const LocalityEntry&) const = default;
};

/** Texts are numbers of AddressTable::names. */
struct StreetEntry
{
  std::uint32_t locality = 0, name = 0, type = 0, suffix = 0;
  bool isPostal = false;
  bool operator==(const StreetEntry&) const = default;
};

/** What an address may have besides a number. Texts are numbers of AddressTable::parts. */
struct AddressDetails
{
  std::uint32_t numberPrefix = 0, numberFirstSuffix = 0, numberLast = 0, numberLastSuffix = 0;
  std::uint32_t unitNumber = 0, unitType = 0, levelNumber = 0, levelType = 0, lot = 0, building = 0;
  auto operator<=>(const AddressDetails&) const = default;
};

struct AddressRow
{
  std::uint32_t street = 0;
  std::uint32_t numberFirst = 0;
  std::uint32_t details = 0;  ///< number in AddressTable::details
  std::uint32_t dpid = 0;
  std::int32_t latitude = kNoCoordinate, longitude = kNoCoordinate;
  std::uint32_t line = 0;   ///< in the file it came from
  std::uint32_t input = 0;  ///< place among the rows taken, which is that of its attribute values
};

/** A locality of the register, which may have several postcodes. Texts are numbers of AddressTable::names. */
struct LocalityName
{
  std::uint32_t name = 0, state = 0;
  auto operator<=>(const LocalityName&) const = default;
};

/** Another name of a street. */
struct StreetAlias
{
  LocalityName locality;
  std::uint32_t name = 0, type = 0, suffix = 0;  ///< of the street
  std::uint32_t aliasName = 0, aliasType = 0, aliasSuffix = 0;
};

/** Another name of a locality. */
struct LocalityAlias
{
  LocalityName locality;
  std::uint32_t aliasName = 0;
};

/** The members that are parts. */
constexpr std::array<std::uint32_t*, 9> PartsOf(AddressDetails& details)
{
  return {&details.numberPrefix, &details.numberFirstSuffix, &details.numberLastSuffix, &details.unitNumber,
          &details.unitType,     &details.levelNumber,       &details.levelType,        &details.lot,
          &details.building};
}

/** One further column: the values in the order of AddressRow::input. */
struct AttributeTable
{
  std::string name;
  AttributeValues values;
};

/** The DPIDs in use, one bit for each that there can be; takes memory once there is one. */
class DpidSet
{
 public:
  /** False when it is there already. */
  bool Add(std::uint32_t dpid);

 private:
  std::vector<std::uint64_t> bits_;
};

class AddressTable
{
 public:
  /** A row that was taken before. */
  struct OtherRow
  {
    std::uint32_t line = 0;
    std::string input;  ///< the path of its file; empty when that is the file of the row which is to be taken
  };

  /** What is wrong with a row whose DPID is that of another. */
  struct RepeatedDpid
  {
    std::uint32_t dpid = 0, line = 0;
    OtherRow other;
  };

  explicit AddressTable(const std::vector<std::string>& attributeNames);

  /** The rows that are taken from now on are of this file. */
  void BeginInput(const std::string& path) { inputs_.emplace_back(rows.size(), path); }

  /** Takes a row, unless its DPID is in use: then the row that has it is returned. DPID 0 is none. */
  std::optional<OtherRow> Add(const ParsedRow& row, std::uint32_t line);

  /** Takes the rows of another table with the same attributes, but for those whose DPID is in use, which it returns. */
  std::vector<RepeatedDpid> Append(const AddressTable& other);

  /** Keeps the rows, which must be in the order of the input, for which `keep` is true; it has an entry for each. */
  void Keep(const std::vector<bool>& keep);

  /**
   * Removes streets without rows and localities without streets, which rows that were not kept leave behind, and what
   * only adding needs: no rows are added afterwards.
   */
  void DropEmpty();

  /** Makes room for that many rows. */
  void Reserve(std::size_t rows);

  StringPool names;                     ///< names, types, suffixes, states, postcodes
  StringPool parts;                     ///< what stands in points: suffixes, units, levels, lots, buildings
  std::vector<std::uint32_t> partUses;  ///< how many points have each part
  std::vector<LocalityEntry> localities;
  std::vector<StreetEntry> streets;
  std::vector<AddressDetails> details = {{}};  ///< each once; the first is that of addresses that have none
  std::vector<AddressRow> rows;
  std::vector<AttributeTable> attributes;
  std::vector<StreetAlias> streetAliases;
  std::vector<LocalityAlias> localityAliases;
  std::vector<std::pair<LocalityName, LocalityName>> neighbours;  ///< in one direction at least; empty when not known

 private:
  struct EntryHash
  {
    std::size_t operator()(const LocalityEntry& entry) const;
    std::size_t operator()(const StreetEntry& entry) const;
    std::size_t operator()(const AddressDetails& entry) const;
  };

  struct Renumbering
  {
    std::vector<std::uint32_t> streets, details;
  };

  Renumbering Renumber(const AddressTable& other);
  std::optional<OtherRow> Claim(std::uint32_t dpid);
  std::uint32_t Part(std::string_view text);
  std::uint32_t DetailsOf(const ParsedRow& row);
  void CountParts(AddressDetails entry);
  OtherRow RowOf(std::uint32_t dpid) const;
  std::uint32_t LocalityOf(const ParsedRow& row);
  std::uint32_t StreetOf(const ParsedRow& row);

  std::vector<std::pair<std::size_t, std::string>> inputs_;  ///< number of the first row, and path
  DpidSet dpids_;
  std::unordered_map<LocalityEntry, std::uint32_t, EntryHash> localityNumbers_;
  std::unordered_map<StreetEntry, std::uint32_t, EntryHash> streetNumbers_;
  std::unordered_map<AddressDetails, std::uint32_t, EntryHash> detailNumbers_;  ///< of all but the first
};

}  // namespace arf

#endif
