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
  std::uint32_t dpid = 0;  ///< 0 where the file has no such column
  std::string_view locality, state, postcode;
  std::string_view streetName, streetType, streetSuffix;  ///< of a postal delivery, streetType is its kind
  bool isPostal = false;
  std::uint32_t numberFirst = 0, numberLast = 0;
  std::string_view numberPrefix, numberFirstSuffix, numberLastSuffix;
  std::string_view unitType, unitNumber, levelType, levelNumber, lot, building;
  std::int32_t latitude = kNoCoordinate, longitude = kNoCoordinate;
  std::vector<std::string_view> attributes;  ///< in the order of ColumnMap::Attributes
};

/** How often a column had which type that the tables do not know. */
class UnknownTypes
{
 public:
  void Add(Column column, std::string_view type, std::uint64_t rows = 1);
  void Add(const UnknownTypes& other);
  /** A sentence for each column that had some. */
  std::vector<std::string> Warnings() const;

 private:
  /** No more different ones than this are kept apart. */
  static constexpr std::size_t kMaxTypes = 1000;
  std::array<std::map<std::string, std::uint64_t, std::less<>>, kColumns> rows_;
};

class RowParser
{
 public:
  explicit RowParser(const ColumnMap& columns);

  /** The row, or null when something is wrong with it, which Fault() then tells. */
  const ParsedRow* Parse(std::span<const std::string_view> fields);

  /** "column: what is wrong". */
  const std::string& Fault() const { return fault_; }
  /** The same without the value that is wrong. */
  const std::string& Reason() const { return reason_; }
  /** Whether nothing is wrong with the row but that it is none of the addresses in use. */
  bool IsLeftOut() const { return isLeftOut_; }

  const UnknownTypes& Unknown() const { return unknown_; }

 private:
  using Expand = std::string_view (*)(std::string_view);

  bool IsInUse();
  bool IsAlias() const;
  bool LeaveOut(std::string_view reason);
  bool ParseDpid();
  bool HasSourceIdentifier();
  bool ParseLocality();
  bool ParsePostcode();
  bool ParsePlace();
  bool ParseStreet();
  bool ParsePostalDelivery();
  bool ParseNumbers();
  bool ParsePostalNumber();
  bool TakePrefix(Column column, std::string_view prefix);
  bool ParseNumber(Column column, Column suffixColumn, std::uint32_t& number, std::string_view& suffix);
  bool CheckRange();
  bool ParseParts();
  bool ParseCoordinates();
  bool ParseDegrees(Column column, double limit, std::int32_t& degrees);
  void ParseAttributes();
  void ClearOwnIdentifiers();

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
  std::string fault_, reason_;
  bool isLeftOut_ = false;
  std::array<std::string, kColumns> scratch_;
  std::vector<std::string> attributeScratch_;
  std::size_t identifier_, principal_, primary_;  ///< places of these attributes, or ColumnMap::kMissing
  std::string postalNumber_;
  UnknownTypes unknown_;
};

}  // namespace arf

#endif
