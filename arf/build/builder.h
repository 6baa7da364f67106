/**
 * Builds an address database, the files address.arf and PAF.ver, from a CSV file.
 *
 * Input. RFC 4180: fields separated by commas, quotes where needed, quotes doubled inside quotes, line ends inside
 * quotes allowed; LF, CRLF or CR; a byte order mark is passed over. UTF-8; bytes that are not UTF-8 are read as
 * Windows-1252. The first row names the columns, in any order and letter case:
 *
 *   dpid                                          required; 10000000 … 99999999, each once
 *   locality, state, postcode                     required; state as code or name, postcode of four digits
 *   street_name, street_type, street_suffix       the column street_name is required unless postal_type is there
 *   postal_type, postal_number                    a postal delivery instead of a street; "123", "C96", "123A"
 *   number_first, number_first_suffix,            up to 9 digits; letters behind the digits count as the suffix when
 *   number_last, number_last_suffix               the suffix column is empty or missing
 *   building, unit_type, unit_number, level_type, level_number, lot
 *   latitude, longitude                           degrees; both or neither
 *
 * Every further column is kept as an attribute of the address, its name in lower case, its values as they are but for
 * white space at the ends. Names become upper case with single spaces; street, unit, level and postal types and street
 * suffixes become full forms where they are known ("AVE", "Av." become "AVENUE") and stay as written otherwise.
 *
 * A row needs a street name or a postal delivery, but a row with neither is taken when it has a lot or a building: such
 * addresses belong to the locality itself. A row with both, or with a street type but no street name, is refused.
 *
 * With a sort plan (arf/barcode/sort_plan.h), the plan's file is checked before anything else and copied as
 * sortplan.csv. Without one, a plan that is in the directory stays there.
 *
 * Output. The same input and options give the same bytes. The files are written under temporary names in the output
 * directory, brought to disk, and renamed, address.arf last: a directory that held no database becomes one by that
 * rename, and one that held an older database serves either the older or the newer, never a mixture, because PAF.ver
 * says only which country's plug-in reads the directory, and a sort plan stands for itself. Programs that have the
 * older file open keep reading that one. Nothing is left behind by a build that fails or is cancelled.
 */
#ifndef QXPAF_ARF_BUILD_BUILDER_H
#define QXPAF_ARF_BUILD_BUILDER_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace arf {

struct BuildOptions
{
  std::string csvPath;
  std::string outputDirectory;      ///< made if it is missing (its parent must be there)
  std::string databaseName = "AU";  ///< for the line "DATABASENAME=" of PAF.ver, and the info entry "name"
  std::vector<std::pair<std::string, std::string>> info;  ///< further info entries; a key given here wins
  bool skipBadRows = false;                               ///< leave faulty rows out instead of failing
  char delimiter = ',';
  std::string sortPlanPath{};  ///< a sort plan for the directory; empty for none
};

enum class BuildPhase
{
  Reading,
  Sorting,
  Writing
};

struct BuildProgress
{
  BuildPhase phase = BuildPhase::Reading;
  std::uint64_t done = 0;   ///< Reading: bytes of the CSV file; otherwise addresses
  std::uint64_t total = 0;  ///< in the same unit
};

using ProgressCallback = std::function<void(const BuildProgress&)>;

enum class BuildOutcome
{
  Built,
  Failed,
  Cancelled
};

struct BuildReport
{
  /** How many of the errors are kept in words. */
  static constexpr std::size_t kMaxErrors = 20;

  BuildOutcome outcome = BuildOutcome::Failed;
  std::vector<std::string> errors;    ///< "file.csv:12: postcode: …" in file order, or one without a line
  std::uint64_t errorCount = 0;       ///< all of them; at most one a row
  std::vector<std::string> warnings;  ///< such as types that are not in the tables
  std::uint64_t rowsRead = 0;
  std::uint64_t rowsSkipped = 0;  ///< left out because of `skipBadRows`
  std::uint32_t addresses = 0;
  std::uint32_t streets = 0;
  std::uint32_t localities = 0;
  std::uint64_t fileSize = 0;           ///< of address.arf
  std::uint32_t sortPlanPostcodes = 0;  ///< of the sort plan, where one was given and could be used
  std::string sortPlanDate;
};

/**
 * Builds a database. Never throws.
 *
 * @param progress  called now and then from the calling thread; may be empty.
 * @param cancel    looked at now and then; when it becomes true the build stops and leaves nothing. May be null.
 */
BuildReport BuildDatabase(const BuildOptions& options, const ProgressCallback& progress = {},
                          const std::atomic<bool>* cancel = nullptr);

}  // namespace arf

#endif
