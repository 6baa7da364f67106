#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>

#include "arf/build/builder.h"
#include "command.h"
#include "country.h"
#include "exit_code.h"
#include "interruption.h"
#include "progress_bar.h"

namespace tool {
namespace {

const char* PhaseName(arf::BuildPhase phase)
{
  switch (phase) {
    case arf::BuildPhase::Reading:
      return "reading";
    case arf::BuildPhase::Sorting:
      return "sorting";
    case arf::BuildPhase::Writing:
      break;
  }
  return "writing";
}

double Fraction(const arf::BuildProgress& progress)
{
  return progress.total == 0 ? 0 : static_cast<double>(progress.done) / static_cast<double>(progress.total);
}

arf::BuildReport BuildWithBar(const arf::BuildOptions& options)
{
  ProgressBar bar;
  const auto show = [&bar](const arf::BuildProgress& progress) {
    bar.Show(Fraction(progress), PhaseName(progress.phase));
  };
  return arf::BuildDatabase(options, show, &Interruption());
}

void PrintMessages(const arf::BuildReport& report)
{
  for (const std::string& error : report.errors) {
    std::cerr << error << '\n';
  }
  if (report.errorCount > report.errors.size()) {
    std::cerr << "... and " << report.errorCount - report.errors.size() << " more\n";
  }
  for (const std::string& warning : report.warnings) {
    std::cerr << "warning: " << warning << '\n';
  }
}

std::string Count(std::uint64_t count, const std::string& one, const std::string& many)
{
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

void PrintSkipped(const arf::BuildReport& report)
{
  for (const arf::SkippedRows& skipped : report.skipped) {
    std::cout << "skipped " << Count(skipped.rows, "row", "rows") << ": " << skipped.reason << " (" << skipped.example
              << ")\n";
  }
}

void PrintAreas(const arf::BuildReport& report)
{
  for (const arf::AreaReport& areas : report.areas) {
    std::cout << "areas from";
    for (const std::string& column : areas.columns) std::cout << ' ' << column;
    std::cout << " of " << areas.path << ": " << Count(areas.addresses, "address", "addresses") << ", " << areas.unknown
              << " with a mesh block that is not in it, " << areas.without << " without one\n";
  }
}

void PrintMinted(const arf::MintedIdentifiers& minted)
{
  if (!minted.any) return;
  std::cout << "identifiers made: " << minted.added << " new, " << minted.kept << " kept, " << minted.retired
            << " retired; they must not be printed on mail\n";
}

void PrintSummary(const arf::BuildOptions& options, const arf::BuildReport& report, double seconds)
{
  const double each = report.addresses == 0 ? 0 : static_cast<double>(report.fileSize) / report.addresses;
  std::cout << options.outputDirectory << ": " << Count(report.addresses, "address", "addresses") << " in "
            << Count(report.streets, "street", "streets") << " of "
            << Count(report.localities, "locality", "localities") << '\n'
            << Count(report.rowsRead, "row", "rows") << " read, " << report.rowsSkipped << " skipped; "
            << report.fileSize << " bytes, " << std::fixed << std::setprecision(1) << each << " an address; "
            << std::setprecision(2) << seconds << " s\n";
  if (report.aliases > 0)
    std::cout << Count(report.aliases, "address is", "addresses are") << " another way to write another one\n";
  PrintSkipped(report);
  PrintMinted(report.minted);
  PrintAreas(report);
  if (!report.sortPlanDate.empty())
    std::cout << "sort plan of " << report.sortPlanDate << ": "
              << Count(report.sortPlanPostcodes, "postcode", "postcodes") << '\n';
}

int Run(const arf::BuildOptions& options)
{
  if (CountryOfDatabaseTitle(options.databaseName) != kDefaultDatabase) {
    throw Failure("a database called \"" + options.databaseName + "\" would be taken for another country's");
  }
  CatchInterruption();
  const auto start = std::chrono::steady_clock::now();
  const arf::BuildReport report = BuildWithBar(options);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  PrintMessages(report);
  switch (report.outcome) {
    case arf::BuildOutcome::Built:
      PrintSummary(options, report, elapsed.count());
      return kExitFound;
    case arf::BuildOutcome::Cancelled:
      throw Failure("interrupted; nothing was written");
    case arf::BuildOutcome::Failed:
      break;
  }
  throw Failure(report.hasBadRows ? "no database was built; --skip-bad-rows leaves rows out that cannot be used"
                                  : "no database was built");
}

}  // namespace

Command AddBuildCommand(CLI::App& program)
{
  auto options = std::make_shared<arf::BuildOptions>();
  CLI::App* app = program.add_subcommand("build", "Make an address database from files of addresses");
  auto paths = std::make_shared<std::vector<std::string>>();
  app->add_option("paths", *paths,
                  "Files with a row an address, the first row naming the columns, divided by commas or vertical bars;\n"
                  "directories with the tables of the national address file; and last the directory of the database,\n"
                  "which is made when it is missing")
      ->option_text("INPUT... DIRECTORY")
      ->expected(2, -1)
      ->required();
  app->add_option("--previous", options->previousDirectory,
                  "Database whose made identifiers are kept for the addresses that are still there")
      ->option_text("DIRECTORY");
  app->add_option(
         "--areas", options->areaPaths,
         "File that says which statistical and local government areas mesh blocks belong to; may be given again")
      ->option_text("FILE")
      ->allow_extra_args(false);
  app->add_option("--threads", options->threads, "Threads that take rows apart, otherwise one a processor")
      ->option_text("N")
      ->check(CLI::Range(1, 256));
  app->add_flag("--no-aliases", options->leaveOutAliases,
                "Leave out rows of the national address file that are another way to write an address");
  app->add_flag("--skip-bad-rows", options->skipBadRows, "Leave out rows that cannot be used, and count them");
  app->add_option("--name", options->databaseName, "Title that the database carries, otherwise AU")
      ->option_text("TITLE");
  app->add_option("--sort-plan", options->sortPlanPath,
                  "Barcode sort plan of the postcodes (date, then postcode,bsp,npsp), kept beside the database")
      ->option_text("FILE");
  const auto addInfo = [&](const char* option, const char* entry, const char* help) {
    app->add_option_function<std::string>(
           option, [options, entry](const std::string& text) { options->info.emplace_back(entry, text); }, help)
        ->option_text("TEXT");
  };
  addInfo("--data-version", "version", "Version of the addresses, which the property PafVersionInfo answers");
  addInfo("--attribution", "attribution", "Credit that the addresses' licence asks for, the property Attribution");
  app->footer(
      "Columns: dpid, locality, state, postcode and street_name (or postal_type) are required; building, unit_type,\n"
      "unit_number, level_type, level_number, lot, number_first, number_first_suffix, number_last, "
      "number_last_suffix,\n"
      "street_type, street_suffix, postal_number, latitude, longitude are known; any other is kept as an attribute.");
  return {app, [options, paths] {
            options->inputs.assign(paths->begin(), paths->end() - 1);
            options->outputDirectory = paths->back();
            return Run(*options);
          }};
}

}  // namespace tool
