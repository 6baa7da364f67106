#include "arf/build/builder.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <optional>

#include "arf/barcode/sort_plan.h"
#include "arf/build/address_order.h"
#include "arf/build/address_table.h"
#include "arf/build/build_error.h"
#include "arf/build/build_watch.h"
#include "arf/build/csv_reader.h"
#include "arf/build/index_writer.h"
#include "arf/build/output_file.h"
#include "arf/build/row_parser.h"
#include "arf/format/database.h"

namespace arf {
namespace {

constexpr std::uint64_t kRowsPerReport = 1 << 14;

class Build
{
 public:
  Build(const BuildOptions& options, const BuildWatch& watch, BuildReport& report)
      : options_(options), watch_(watch), report_(report), csv_(options.csvPath, options.delimiter)
  {
  }

  void Run()
  {
    if (!options_.sortPlanPath.empty()) TakeSortPlan();
    if (!ReadHeader()) return;
    AddressTable table(columns_.Attributes());
    ReadRows(table);
    if (report_.errorCount > 0 && !options_.skipBadRows) return;
    if (table.rows.empty()) throw BuildError(options_.csvPath + ": there are no addresses in it");
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

  bool ReadHeader()
  {
    const CsvReader::Result result = csv_.Next();
    if (result == CsvReader::Result::End) throw BuildError(options_.csvPath + ": is empty");
    if (result == CsvReader::Result::BadQuotes) {
      AddError(kBadQuotes);
      return false;
    }
    for (const std::string& fault : columns_.Read(csv_.Fields())) AddError(fault);
    return report_.errorCount == 0;
  }

  void ReadRows(AddressTable& table)
  {
    RowParser parser(columns_);
    for (CsvReader::Result result; (result = csv_.Next()) != CsvReader::Result::End;) {
      ++report_.rowsRead;
      if (const std::string fault = TakeRow(result, parser, table); !fault.empty()) {
        AddError(fault);
        report_.rowsSkipped += options_.skipBadRows;
      }
      if (report_.rowsRead % kRowsPerReport != 0) continue;
      if (report_.rowsRead == kRowsPerReport) table.Reserve(ExpectedRows());
      watch_.Reached(BuildPhase::Reading, csv_.BytesRead(), csv_.FileSize());
    }
    watch_.Reached(BuildPhase::Reading, csv_.BytesRead(), csv_.FileSize());
    report_.warnings = parser.Warnings();
  }

  /** What is wrong with the row that was read; empty when it was taken. */
  std::string TakeRow(CsvReader::Result result, RowParser& parser, AddressTable& table)
  {
    if (result == CsvReader::Result::BadQuotes) return kBadQuotes;
    const ParsedRow* row = parser.Parse(csv_.Fields());
    if (!row) return parser.Fault();
    const std::optional<std::uint32_t> other = table.Add(*row, csv_.Line());
    if (!other) return {};
    return "dpid: " + std::to_string(row->dpid) + " is already that of line " + std::to_string(*other);
  }

  /** An estimate from the rows read so far, with some room, so that growing never holds two copies of the rows. */
  std::uint64_t ExpectedRows() const
  {
    const std::uint64_t bytesPerRow = std::max<std::uint64_t>(csv_.BytesRead() / report_.rowsRead, 1);
    return csv_.FileSize() / bytesPerRow / 16 * 17;
  }

  void AddError(const std::string& what)
  {
    ++report_.errorCount;
    if (report_.errors.size() >= BuildReport::kMaxErrors) return;
    report_.errors.push_back(options_.csvPath + ":" + std::to_string(csv_.Line()) + ": " + what);
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
    report_.outcome = BuildOutcome::Built;
  }

  InfoEntries Info(const AddressTable& table) const
  {
    const std::size_t slash = options_.csvPath.rfind('/');
    InfoEntries info = {{"name", options_.databaseName},
                        {"source", slash == std::string::npos ? options_.csvPath : options_.csvPath.substr(slash + 1)},
                        {"addresses", std::to_string(table.rows.size())}};
    for (const auto& [key, value] : options_.info) info[key] = value;
    return info;
  }

  static constexpr const char* kBadQuotes = "the quotes of the row are not as they should be";

  const BuildOptions& options_;
  const BuildWatch& watch_;
  BuildReport& report_;
  CsvReader csv_;
  ColumnMap columns_;
  std::unique_ptr<const SortPlan> sortPlan_;
};

void AddFatal(BuildReport& report, const std::string& what)
{
  ++report.errorCount;
  report.errors.push_back(what);
}

}  // namespace

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
    AddFatal(report, options.csvPath + ": not enough memory for the build");
  } catch (const std::exception& error) {
    AddFatal(report, options.csvPath + ": " + error.what());
  }
  return report;
}

}  // namespace arf
