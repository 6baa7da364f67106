/**
 * One row of the input, checked and in the forms that a database keeps.
 */
#ifndef QXPAF_ARF_BUILD_ROW_PARSER_H
#define QXPAF_ARF_BUILD_ROW_PARSER_H

#include <array>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "arf/build/columns.h"
#include "arf/format/point_cursor.h"

namespace arf {

/** The texts live until the next row is parsed. */
struct ParsedRow
{
  std::uint32_t dpid = 0;
  std::string_view locality, state, postcode;
  std::string_view streetName, streetType, streetSuffix;  ///< of a postal delivery, streetType is its kind
  bool isPostal = false;
  std::uint32_t numberFirst = 0, numberLast = 0;
  std::string_view numberPrefix, numberFirstSuffix, numberLastSuffix;
  std::string_view unitType, unitNumber, levelType, levelNumber, lot, building;
  std::int32_t latitude = kNoCoordinate, longitude = kNoCoordinate;
  std::vector<std::string_view> attributes;  ///< in the order of ColumnMap::Attributes
};

class RowParser
{
 public:
  explicit RowParser(const ColumnMap& columns);

  /** The row, or null when something is wrong with it, which Fault() then tells. */
  const ParsedRow* Parse(std::span<const std::string_view> fields);

  /** "column: what is wrong". */
  const std::string& Fault() const { return fault_; }

  /** A sentence for each column that had types which the tables do not know. */
  std::vector<std::string> Warnings() const;

 private:
  using Expand = std::string_view (*)(std::string_view);
  /** How often a column had which unknown type; no more than kMaxUnknown different ones are kept apart. */
  using Unknown = std::map<std::string, std::uint64_t, std::less<>>;
  static constexpr std::size_t kMaxUnknown = 1000;

  bool ParseDpid();
  bool ParseLocality();
  bool ParsePostcode();
  bool ParsePlace();
  bool ParseStreet();
  bool ParsePostalDelivery();
  bool ParseNumbers();
  bool ParsePostalNumber();
  bool ParseNumber(Column column, Column suffixColumn, std::uint32_t& number, std::string_view& suffix);
  bool CheckRange();
  bool ParseParts();
  bool ParseCoordinates();
  bool ParseDegrees(Column column, double limit, std::int32_t& degrees);
  void ParseAttributes();

  std::string_view Raw(Column column) const { return columns_.Field(fields_, column); }
  bool IsEmpty(Column column) const;
  bool Text(Column column, std::string_view& text);
  bool Name(Column column, std::string_view& name);
  bool Type(Column column, Expand expand, std::string_view& type);
  bool Fail(Column column, const std::string& what);
  bool FailWithValue(Column column, std::string_view value, const std::string& what);

  const ColumnMap& columns_;
  std::span<const std::string_view> fields_;
  ParsedRow row_;
  std::string fault_;
  std::array<std::string, kColumns> scratch_;
  std::vector<std::string> attributeScratch_;
  std::string postalNumber_;
  std::array<Unknown, kColumns> unknown_;
};

}  // namespace arf

#endif
