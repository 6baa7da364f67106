#include "arf/build/report_writer.h"

#include <algorithm>

namespace arf {
namespace {

std::string Placed(const std::string& path, std::uint32_t line, const std::string& what)
{
  return path + ":" + std::to_string(line) + ": " + what;
}

}  // namespace

RowFault WrongFieldCount(std::uint32_t line, std::size_t count, std::size_t expected)
{
  return {line,
          "the row has " + std::to_string(count) + (count == 1 ? " field" : " fields") + " where the first row has " +
              std::to_string(expected),
          "the number of fields is not that of the first row"};
}

RowFault CutOff(std::uint32_t line, std::size_t count, std::size_t expected)
{
  return {line,
          "the last row has " + std::to_string(count) + " of " + std::to_string(expected) +
              " fields and no line end; the file was cut off",
          "the file was cut off"};
}

RowFault RepeatedDpid(const AddressTable::RepeatedDpid& repeated)
{
  const AddressTable::OtherRow& other = repeated.other;
  return {repeated.line,
          "dpid: " + std::to_string(repeated.dpid) + " is already that of line " + std::to_string(other.line) +
              (other.input.empty() ? "" : " of " + other.input),
          "dpid: is already that of another line"};
}

void ReportWriter::AddError(const std::string& path, std::uint32_t line, const std::string& what)
{
  ++report_.errorCount;
  if (report_.errors.size() < BuildReport::kMaxErrors) report_.errors.push_back(Placed(path, line, what));
}

void ReportWriter::AddBadRow(const std::string& path, const RowFault& fault)
{
  AddError(path, fault.line, fault.what);
  report_.hasBadRows = true;
}

void ReportWriter::AddBadRows(const std::string& path, const std::string& what)
{
  ++report_.errorCount;
  report_.hasBadRows = true;
  if (report_.errors.size() < BuildReport::kMaxErrors) report_.errors.push_back(path + ": " + what);
}

void ReportWriter::AddFault(const std::string& path, const RowFault& fault)
{
  AddBadRow(path, fault);
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
