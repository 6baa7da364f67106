#include "arf/build/report_writer.h"

#include <algorithm>

namespace arf {
namespace {

std::string Placed(const std::string& path, std::uint32_t line, const std::string& what)
{
  return path + ":" + std::to_string(line) + ": " + what;
}

}  // namespace

RowFault RepeatedDpid(std::uint32_t dpid, std::uint32_t line, std::uint32_t otherLine)
{
  return {line, "dpid: " + std::to_string(dpid) + " is already that of line " + std::to_string(otherLine),
          "dpid: is already that of another line"};
}

void ReportWriter::AddError(const std::string& path, std::uint32_t line, const std::string& what)
{
  ++report_.errorCount;
  if (report_.errors.size() < BuildReport::kMaxErrors) report_.errors.push_back(Placed(path, line, what));
}

void ReportWriter::AddFault(const std::string& path, const RowFault& fault)
{
  AddError(path, fault.line, fault.what);
  report_.rowsSkipped += skipBadRows_;
}

void ReportWriter::AddSkipped(const std::string& path, const RowFault& fault)
{
  ++report_.rowsSkipped;
  const auto known = std::find_if(report_.skipped.begin(), report_.skipped.end(),
                                  [&](const SkippedRows& skipped) { return skipped.reason == fault.reason; });
  if (known != report_.skipped.end()) {
    ++known->rows;
  } else {
    report_.skipped.push_back({fault.reason, 1, Placed(path, fault.line, fault.what)});
  }
}

void ReportWriter::Finish()
{
  report_.warnings = unknown_.Warnings();
  std::stable_sort(report_.skipped.begin(), report_.skipped.end(),
                   [](const SkippedRows& a, const SkippedRows& b) { return a.rows > b.rows; });
}

}  // namespace arf
