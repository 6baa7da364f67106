/**
 * All addresses of a build, in memory: about 70 bytes an address, four more for each attribute column, and every
 * distinct text once.
 */
#ifndef QXPAF_ARF_BUILD_ADDRESS_TABLE_H
#define QXPAF_ARF_BUILD_ADDRESS_TABLE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

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

/** Texts are numbers of AddressTable::parts. */
struct AddressRow
{
  std::uint32_t street = 0;
  std::uint32_t numberFirst = 0;
  std::uint32_t numberPrefix = 0, numberFirstSuffix = 0, numberLast = 0, numberLastSuffix = 0;
  std::uint32_t unitNumber = 0, unitType = 0, levelNumber = 0, levelType = 0, lot = 0, building = 0;
  std::uint32_t dpid = 0;
  std::int32_t latitude = kNoCoordinate, longitude = kNoCoordinate;
  std::uint32_t line = 0;   ///< in the file it came from
  std::uint32_t input = 0;  ///< place among the rows taken, which is that of its attribute values
};

/** One further column: each row's value as a number of `values`. */
struct AttributeColumn
{
  std::string name;
  StringPool values;
  std::vector<std::uint32_t> codes;
};

/** The DPIDs in use, one bit for each that there can be. */
class DpidSet
{
 public:
  DpidSet();
  /** False when it is there already. */
  bool Add(std::uint32_t dpid);

 private:
  std::vector<std::uint64_t> bits_;
};

class AddressTable
{
 public:
  explicit AddressTable(const std::vector<ColumnMap::Attribute>& attributes);

  /** Takes a row, unless its DPID is in use: then the line of the row that has it is returned. */
  std::optional<std::uint32_t> Add(const ParsedRow& row, std::uint32_t line);

  /** Makes room for that many rows. */
  void Reserve(std::size_t rows);

  StringPool names;                     ///< names, types, suffixes, states, postcodes
  StringPool parts;                     ///< what stands in points: suffixes, units, levels, lots, buildings
  std::vector<std::uint32_t> partUses;  ///< how many points have each part
  std::vector<LocalityEntry> localities;
  std::vector<StreetEntry> streets;
  std::vector<AddressRow> rows;
  std::vector<AttributeColumn> attributes;

 private:
  struct EntryHash
  {
    std::size_t operator()(const LocalityEntry& entry) const;
    std::size_t operator()(const StreetEntry& entry) const;
  };

  std::uint32_t Part(std::string_view text);
  std::uint32_t LineOf(std::uint32_t dpid) const;
  std::uint32_t LocalityOf(const ParsedRow& row);
  std::uint32_t StreetOf(const ParsedRow& row);

  DpidSet dpids_;
  std::unordered_map<LocalityEntry, std::uint32_t, EntryHash> localityNumbers_;
  std::unordered_map<StreetEntry, std::uint32_t, EntryHash> streetNumbers_;
};

}  // namespace arf

#endif
