/** What the tables of the national address file say about the addresses of one state, beside ADDRESS_DETAIL. */
#ifndef QXPAF_ARF_BUILD_REGISTER_JOIN_H
#define QXPAF_ARF_BUILD_REGISTER_JOIN_H

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "arf/build/lines_input.h"
#include "arf/build/string_pool.h"

namespace arf {

/** Paths by the names of their tables, "STREET_LOCALITY". */
using TablePaths = std::map<std::string, std::string, std::less<>>;

/** The columns of the rows that a join makes. */
inline constexpr std::array<std::string_view, 24> kJoinedColumns = {
    "address_detail_pid", "building_name", "address_site_name", "flat_type",     "flat_number",
    "level_type",         "level_number",  "lot_number",        "number_first",  "number_last",
    "street_name",        "street_type",   "street_suffix",     "locality_name", "state",
    "postcode",           "latitude",      "longitude",         "mb_code",       "geocode_type",
    "alias_principal",    "date_retired",  "principal_pid",     "primary_pid"};

/** Tables by their identifiers. Read once, then used by any number of threads. */
class RegisterJoin
{
 public:
  /** Reads the tables that there are, and tells the report of those that were cut off. Throws BuildError when one
      cannot be read. */
  RegisterJoin(const TablePaths& tables, ReportWriter& report);

  struct Street
  {
    std::uint32_t name = 0, type = 0, suffix = 0, locality = 0;
  };
  struct Locality
  {
    std::uint32_t name = 0, state = 0, postcode = 0;
  };
  /** What is known of an address by its identifier. */
  struct Place
  {
    std::int32_t latitude = kNoCoordinate, longitude = kNoCoordinate;
    std::uint32_t geocodeType = 0, meshBlock = 0;
    std::uint32_t principal = 0, primary = 0;  ///< other addresses, by the numbers of their identifiers
  };

  const Street* FindStreet(std::string_view pid) const { return Find(streetPids_, streets_, pid); }
  const Locality* FindLocality(std::string_view pid) const { return Find(localityPids_, localities_, pid); }
  const Place* FindPlace(std::string_view pid) const { return Find(addressPids_, places_, pid); }
  std::string_view SiteName(std::string_view pid) const;
  std::string_view Text(std::uint32_t number) const { return texts_.At(number); }
  std::string_view AddressPid(std::uint32_t number) const { return addressPids_.At(number); }

  /** Adds the other names of streets and localities, and which localities are neighbours, to a table. */
  void AddRelations(const TablePaths& tables, AddressTable& table) const;

 private:
  template <class Entry>
  static const Entry* Find(const StringPool& pids, const std::vector<Entry>& entries, std::string_view pid)
  {
    const std::optional<std::uint32_t> number = pids.Find(pid);
    return number && *number < entries.size() ? &entries[*number] : nullptr;
  }

  void ReadStreets(const TablePaths& tables);
  void ReadLocalities(const TablePaths& tables);
  void ReadSites(const TablePaths& tables);
  void ReadGeocodes(const TablePaths& tables);
  void ReadRelatedAddresses(const TablePaths& tables);
  void ReadMeshBlocks(const TablePaths& tables, const std::string& year);

  ReportWriter& report_;
  StringPool texts_, streetPids_, localityPids_, addressPids_, sitePids_;
  std::vector<Street> streets_;
  std::vector<Locality> localities_;
  std::vector<Place> places_;
  std::vector<std::uint32_t> siteNames_;
};

/** Makes rows with the joined columns out of those of ADDRESS_DETAIL, whose first row is given. */
std::unique_ptr<RowMaker> MakeJoinedRows(const RegisterJoin& join, const std::vector<std::string_view>& header);

}  // namespace arf

#endif
