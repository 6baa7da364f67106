/**
 * Builds an address database, the files address.arf and PAF.ver, from files of addresses. Several inputs may be given;
 * what kind each is of shows in itself.
 *
 * CSV. RFC 4180: fields separated by commas, quotes where needed, quotes doubled inside quotes, line ends inside
 * quotes allowed; LF, CRLF or CR; a byte order mark is passed over. UTF-8; bytes that are not UTF-8 are read as
 * Windows-1252. The first row names the columns, in any order and letter case:
 *
 *   dpid                                          10000000 … 99999999, each once; required unless the column
 *                                                 source_identifier is there, from which one is made then
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
 * Files divided by vertical bars (a first row with bars and without commas): as CSV, but without quotes. When they have
 * the column ADDRESS_DETAIL_PID they are of the national address file, and its names of columns hold: NUMBER_FIRST,
 * FLAT_TYPE, LOCALITY_NAME and so on. BUILDING_NAME, or else ADDRESS_SITE_NAME, is the building; ADDRESS_DETAIL_PID,
 * MB_CODE and GEOCODE_TYPE become the attributes source_identifier, mesh_block and geocode_reliability; columns that
 * are not known are passed over. Rows that are another way to say an address (ALIAS_PRINCIPAL "A") become aliases of
 * the row that PRINCIPAL_PID names.
 *
 * Directories: the tables of the national address file, below it at any depth (arf/build/register_tables.h).
 *
 * Rows of the national address file that are retired, aliases of what is not there, or that cannot be used, are left
 * out and counted by reason. Its addresses get identifiers by arf/build/identifier_minter.h.
 *
 * With area files (arf/build/area_table.h), addresses with a mesh block get the areas that it belongs to.
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
  std::vector<std::string> inputs;  ///< files, and directories with the tables of the national address file
  std::string outputDirectory;      ///< made if it is missing (its parent must be there)
  std::string databaseName = "AU";  ///< for the line "DATABASENAME=" of PAF.ver, and the info entry "name"
  std::vector<std::pair<std::string, std::string>> info{};  ///< further info entries; a key given here wins
  bool skipBadRows = false;                                 ///< leave faulty rows out instead of failing
  char delimiter = ',';
  std::string sortPlanPath{};            ///< a sort plan for the directory; empty for none
  std::vector<std::string> areaPaths{};  ///< files that say which areas mesh blocks belong to
  std::string previousDirectory{};       ///< a database whose identifiers are to be kept; empty for none
  bool leaveOutAliases = false;          ///< leave out rows of registers that are another way to say an address
  unsigned threads = 0;                  ///< that take rows apart; 0 for as many as there are processors

  unsigned Threads() const;
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
  std::uint64_t done = 0;   ///< Reading: bytes of the inputs; otherwise addresses
  std::uint64_t total = 0;  ///< in the same unit
};

using ProgressCallback = std::function<void(const BuildProgress&)>;

enum class BuildOutcome
{
  Built,
  Failed,
  Cancelled
};

/** Rows that were left out for one reason. */
struct SkippedRows
{
  std::string reason;  ///< "retired", "number_first: is not a number"
  std::uint64_t rows = 0;
  std::string example;  ///< the first one: "file.psv:12: number_first: …"
};

/** Identifiers that were made for addresses whose source has none. */
struct MintedIdentifiers
{
  bool any = false;
  std::uint32_t added = 0;    ///< new ones
  std::uint32_t kept = 0;     ///< as in the database given as the previous one
  std::uint32_t retired = 0;  ///< in that database, and no longer in use
};

/** A file that says which areas mesh blocks belong to. */
struct AreaReport
{
  std::string path;
  std::vector<std::string> columns;  ///< those in use
  std::uint64_t meshBlocks = 0;      ///< in the file
  std::uint64_t addresses = 0;       ///< whose mesh block is in it
  std::uint64_t unknown = 0;         ///< whose mesh block is not
  std::uint64_t without = 0;         ///< without a mesh block
};

struct BuildReport
{
  /** How many of the errors are kept in words. */
  static constexpr std::size_t kMaxErrors = 20;

  BuildOutcome outcome = BuildOutcome::Failed;
  std::vector<std::string> errors;    ///< "file.csv:12: postcode: …" in file order, or one without a line
  std::uint64_t errorCount = 0;       ///< all of them; at most one a row
  std::vector<std::string> warnings;  ///< such as types that are not in the tables
  bool hasBadRows = false;            ///< errors are about rows, which `skipBadRows` would leave out
  std::uint64_t rowsRead = 0;
  std::uint64_t rowsSkipped = 0;     ///< left out because of `skipBadRows`, or for one of the reasons in `skipped`
  std::vector<SkippedRows> skipped;  ///< of registers; most frequent first
  MintedIdentifiers minted;
  std::vector<AreaReport> areas;
  std::uint32_t addresses = 0;  ///< with the aliases
  std::uint32_t aliases = 0;    ///< other ways to say addresses
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
