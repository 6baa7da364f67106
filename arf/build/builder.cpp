#include "arf/build/builder.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <thread>

#include "arf/barcode/sort_plan.h"
#include "arf/build/address_aliases.h"
#include "arf/build/address_order.h"
#include "arf/build/address_table.h"
#include "arf/build/area_table.h"
#include "arf/build/build_error.h"
#include "arf/build/build_watch.h"
#include "arf/build/identifier_minter.h"
#include "arf/build/index_writer.h"
#include "arf/build/input_reader.h"
#include "arf/build/output_file.h"
#include "arf/build/report_writer.h"
#include "arf/format/database.h"

namespace arf {
namespace {

std::string InputsOf(const BuildOptions& options)
{
  std::string paths;
  for (const std::string& path : options.inputs) paths += (paths.empty() ? "" : ", ") + path;
  return paths;
}

class Build
{
 public:
  Build(const BuildOptions& options, const BuildWatch& watch, BuildReport& report)
      : options_(options), watch_(watch), report_(report)
  {
  }

  void Run()
  {
    if (std::error_code error; std::filesystem::is_regular_file(options_.outputDirectory, error))
      throw BuildError(options_.outputDirectory + ": is a file; name a directory for the database behind the inputs");
    if (!options_.sortPlanPath.empty()) TakeSortPlan();
    std::vector<AreaTable> areas;
    for (const std::string& path : options_.areaPaths) areas.emplace_back(path);
    ReportWriter writer(report_, options_.skipBadRows);
    InputReader reader(options_, watch_, writer);
    if (!reader.Open()) return;
    AddressTable table(reader.AttributeNames());
    reader.Read(table);
    DropBrokenAliases(table, writer);
    for (const AreaTable& area : areas) report_.areas.push_back(area.Fill(table));
    areas.clear();
    report_.minted = MintIdentifiers(table, options_.previousDirectory, writer, watch_);
    if (report_.errorCount > 0 && !options_.skipBadRows) return;
    if (table.rows.empty()) throw BuildError(InputsOf(options_) + ": there are no addresses in it");
    Write(table);
  }

 private:
  void TakeSortPlan()
  {
    SortPlanFile file = ReadSortPlan(options_.sortPlanPath);
    if (!file.fault.empty()) throw BuildError(file.fault);
    if (!file.plan) throw BuildError(SystemError(options_.sortPlanPath, ENOENT));
    sortPlan_ = std::move(file.plan);
    report_.sortPlanPostcodes = static_cast<std::uint32_t>(sortPlan_->PostcodeCount());
    report_.sortPlanDate = sortPlan_->Date();
  }

  /** Null when there is no plan to write. */
  std::unique_ptr<OutputFile> WriteSortPlan(const OutputDirectory& directory) const
  {
    if (!sortPlan_) return nullptr;
    auto file = std::make_unique<OutputFile>(directory.Path(), kSortPlanFileName);
    file->WriteAt(0, sortPlan_->Text().data(), sortPlan_->Text().size());
    file->Sync();
    return file;
  }

  void Write(AddressTable& table)
  {
    watch_.Reached(BuildPhase::Sorting, 0, table.rows.size());
    const OrderedAddresses ordered = Order(table);
    watch_.Reached(BuildPhase::Sorting, table.rows.size(), table.rows.size());
    OutputDirectory directory(options_.outputDirectory);
    OutputFile version(directory.Path(), kVersionFileName);
    OutputFile index(directory.Path(), kDatabaseFileName);
    const std::string line = "DATABASENAME=" + options_.databaseName + "\n";
    version.WriteAt(0, line.data(), line.size());
    const std::unique_ptr<OutputFile> sortPlan = WriteSortPlan(directory);
    report_.fileSize = WriteIndex(index, table, ordered, Info(table), watch_);
    version.Sync();
    index.Sync();
    watch_.Reached(BuildPhase::Writing, table.rows.size(), table.rows.size());
    version.Publish();
    if (sortPlan) sortPlan->Publish();
    index.Publish();
    directory.Keep();
    directory.Sync();
    report_.addresses = static_cast<std::uint32_t>(table.rows.size());
    report_.streets = static_cast<std::uint32_t>(table.streets.size());
    report_.localities = static_cast<std::uint32_t>(table.localities.size());
    report_.aliases = static_cast<std::uint32_t>(ordered.aliases.size());
    report_.outcome = BuildOutcome::Built;
  }

  /** The names of the inputs, without the directories they are in. */
  std::string Sources() const
  {
    std::string names;
    for (const std::string& path : options_.inputs) {
      const std::size_t end = path.find_last_not_of('/') + 1;
      const std::size_t slash = path.rfind('/', end == 0 ? 0 : end - 1);
      const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
      names += (names.empty() ? "" : ", ") + path.substr(begin, end - begin);
    }
    return names;
  }

  InfoEntries Info(const AddressTable& table) const
  {
    InfoEntries info = {
        {"name", options_.databaseName}, {"source", Sources()}, {"addresses", std::to_string(table.rows.size())}};
    if (report_.minted.any) info[std::string(kIdentifiersKey)] = kMintedIdentifiers;
    for (const auto& [key, value] : options_.info) info[key] = value;
    return info;
  }

  const BuildOptions& options_;
  const BuildWatch& watch_;
  BuildReport& report_;
  std::unique_ptr<const SortPlan> sortPlan_;
};

void AddFatal(BuildReport& report, const std::string& what)
{
  ++report.errorCount;
  report.errors.push_back(what);
}

}  // namespace

unsigned BuildOptions::Threads() const
{
  return threads > 0 ? threads : std::max(std::thread::hardware_concurrency(), 1U);
}

BuildReport BuildDatabase(const BuildOptions& options, const ProgressCallback& progress,
                          const std::atomic<bool>* cancel)
{
  BuildReport report;
  try {
    const BuildWatch watch(progress, cancel);
    Build(options, watch, report).Run();
  } catch (const BuildError& error) {
    AddFatal(report, error.what());
  } catch (const BuildCancelled&) {
    report.outcome = BuildOutcome::Cancelled;
  } catch (const std::bad_alloc&) {
    AddFatal(report, InputsOf(options) + ": not enough memory for the build");
  } catch (const std::exception& error) {
    AddFatal(report, InputsOf(options) + ": " + error.what());
  }
  return report;
}

}  // namespace arf
