/**
 * The columns of the input: which are known, and where a file has them.
 */
#ifndef QXPAF_ARF_BUILD_COLUMNS_H
#define QXPAF_ARF_BUILD_COLUMNS_H

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace arf {

enum class Column : std::size_t
{
  Dpid,
  Building,
  UnitType,
  UnitNumber,
  LevelType,
  LevelNumber,
  Lot,
  NumberFirst,
  NumberFirstSuffix,
  NumberLast,
  NumberLastSuffix,
  StreetName,
  StreetType,
  StreetSuffix,
  PostalType,
  PostalNumber,
  Locality,
  State,
  Postcode,
  Latitude,
  Longitude
};
inline constexpr std::size_t kColumns = 21;

/** Their names in a file's first row, in the order of the enumeration. */
inline constexpr std::array<std::string_view, kColumns> kColumnNames = {
    "dpid",          "building",           "unit_type",
    "unit_number",   "level_type",         "level_number",
    "lot",           "number_first",       "number_first_suffix",
    "number_last",   "number_last_suffix", "street_name",
    "street_type",   "street_suffix",      "postal_type",
    "postal_number", "locality",           "state",
    "postcode",      "latitude",           "longitude"};

constexpr std::string_view NameOf(Column column)
{
  return kColumnNames[static_cast<std::size_t>(column)];
}

/** Where the columns are in the rows of a file. */
class ColumnMap
{
 public:
  struct Attribute
  {
    std::string name;  ///< lower case
    std::size_t field;
  };

  /** Reads a first row. Returns what is wrong with it, one sentence each; empty when it can be used. */
  std::vector<std::string> Read(std::span<const std::string_view> header);

  std::size_t FieldCount() const { return fieldCount_; }
  /** The raw field of a known column; empty when the file does not have the column. */
  std::string_view Field(std::span<const std::string_view> row, Column column) const
  {
    const std::size_t field = fields_[static_cast<std::size_t>(column)];
    return field < row.size() ? row[field] : std::string_view();
  }
  bool Has(Column column) const { return fields_[static_cast<std::size_t>(column)] != kMissing; }
  /** Sorted by name. */
  const std::vector<Attribute>& Attributes() const { return attributes_; }

 private:
  static constexpr std::size_t kMissing = SIZE_MAX;
  bool Place(const std::string& name, std::size_t field);
  void CheckRequired(std::vector<std::string>& faults) const;

  std::array<std::size_t, kColumns> fields_{};
  std::vector<Attribute> attributes_;
  std::size_t fieldCount_ = 0;
};

}  // namespace arf

#endif
