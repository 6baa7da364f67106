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
  Longitude,
  SiteName,        ///< of the national address file: stands for the building where there is no name of one
  AliasPrincipal,  ///< of the national address file: "A" with rows that are another way to say an address
  DateRetired      ///< of the national address file: filled with rows that are no longer addresses
};
inline constexpr std::size_t kColumns = 24;
/** The first columns of the enumeration are known in every file, the others in the national address file only. */
inline constexpr std::size_t kGeneralColumns = 21;

/** Their names in a file's first row, in the order of the enumeration. */
inline constexpr std::array<std::string_view, kColumns> kColumnNames = {
    "dpid",        "building",      "unit_type",           "unit_number",   "level_type",         "level_number",
    "lot",         "number_first",  "number_first_suffix", "number_last",   "number_last_suffix", "street_name",
    "street_type", "street_suffix", "postal_type",         "postal_number", "locality",           "state",
    "postcode",    "latitude",      "longitude",           "site_name",     "alias_principal",    "date_retired"};

constexpr std::string_view NameOf(Column column)
{
  return kColumnNames[static_cast<std::size_t>(column)];
}

/** The attribute column that identifies an address in the register it comes from. */
inline constexpr std::string_view kSourceIdentifier = "source_identifier";
/** The one with that identifier of the address that a row is another way to say; empty for addresses themselves. */
inline constexpr std::string_view kPrincipalIdentifier = "principal_identifier";
/** The one with that identifier of the building or site that an address is a part of. */
inline constexpr std::string_view kPrimaryIdentifier = "primary_identifier";

/**
 * Where the columns are in the rows of a file. A file with the column ADDRESS_DETAIL_PID is read as one of the national
 * address file: its names of columns stand for those above, some become attributes (source_identifier, mesh_block,
 * geocode_reliability, statistical_area, local_government_area, principal_identifier, primary_identifier), and all
 * others are passed over.
 */
class ColumnMap
{
 public:
  static constexpr std::size_t kMissing = SIZE_MAX;

  struct Attribute
  {
    std::string name;  ///< lower case
    std::size_t field = kMissing;
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
  /** The raw field of an attribute; empty when the file does not have it. */
  std::string_view AttributeField(std::span<const std::string_view> row, std::string_view name) const;
  bool Has(Column column) const { return fields_[static_cast<std::size_t>(column)] != kMissing; }
  /** Sorted by name. */
  const std::vector<Attribute>& Attributes() const { return attributes_; }
  /** Gives the attributes another list of names: values that the file does not have are empty. */
  void SetAttributes(const std::vector<std::string>& names);

  /** The place of an attribute in Attributes(), or kMissing. */
  std::size_t AttributePlace(std::string_view name) const;

  /** Whether the file has the columns of the national address file. */
  bool IsRegister() const { return isRegister_; }

  /** Whether rows of the national address file that are another way to say an address are taken. */
  bool TakesAliases() const { return takesAliases_; }
  void SetTakesAliases(bool takes) { takesAliases_ = takes; }

 private:
  bool Place(const std::string& name, std::size_t field);
  bool PlaceOfRegister(const std::string& name, std::size_t field);
  bool PlaceColumn(Column column, std::size_t field);
  bool PlaceAttribute(const std::string& name, std::size_t field);
  bool HasAttribute(std::string_view name) const;
  void CheckRequired(std::vector<std::string>& faults) const;

  std::array<std::size_t, kColumns> fields_{};
  std::vector<Attribute> attributes_;
  std::size_t fieldCount_ = 0;
  bool isRegister_ = false;
  bool takesAliases_ = true;
};

}  // namespace arf

#endif
