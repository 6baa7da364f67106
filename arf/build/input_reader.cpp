#include "arf/build/input_reader.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <system_error>
#include <utility>

#include "arf/build/build_error.h"
#include "arf/build/csv_input.h"
#include "arf/build/line_reader.h"
#include "arf/build/lines_input.h"
#include "arf/build/register_tables.h"

namespace arf {
namespace {

/** Whether a file's first line has vertical bars between its fields; a delimiter that was asked for decides alone. */
bool IsDividedByBars(const std::string& path, char delimiter)
{
  if (delimiter != ',') return delimiter == kFieldDivider;
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line.find(kFieldDivider) != std::string::npos && line.find(',') == std::string::npos;
}

/** Makes room for all rows, judged by those of the part that was read, so that growing never holds two copies of them.
    What is too much of it is never touched and costs nothing. */
void Reserve(AddressTable& table, double partRead)
{
  constexpr double kMargin = 1.3;
  if (partRead > 0)
    table.Reserve(static_cast<std::size_t>(static_cast<double>(table.rows.size()) / partRead * kMargin));
}

}  // namespace

InputReader::InputReader(const BuildOptions& options, const BuildWatch& watch, ReportWriter& report)
    : options_(options), watch_(watch), report_(report)
{
}

InputReader::~InputReader() = default;

bool InputReader::Open()
{
  for (const std::string& path : options_.inputs) OpenInput(path);
  std::set<std::string> names;
  for (const std::unique_ptr<Input>& input : inputs_) {
    if (!input->ReadHeader(report_)) continue;
    for (const ColumnMap::Attribute& attribute : input->Columns().Attributes()) names.insert(attribute.name);
  }
  attributeNames_.assign(names.begin(), names.end());
  for (const std::unique_ptr<Input>& input : inputs_) {
    input->Columns().SetAttributes(attributeNames_);
    input->Columns().SetTakesAliases(!options_.leaveOutAliases);
  }
  return report_.ErrorCount() == 0;
}

void InputReader::OpenInput(const std::string& path)
{
  if (std::error_code error; std::filesystem::is_directory(path, error)) {
    for (std::unique_ptr<Input>& tables : OpenRegisterTables(path, options_.Threads()))
      inputs_.push_back(std::move(tables));
  } else if (IsDividedByBars(path, options_.delimiter)) {
    inputs_.push_back(std::make_unique<LinesInput>(path, options_.Threads()));
  } else {
    inputs_.push_back(std::make_unique<CsvInput>(path, options_.delimiter));
  }
}

void InputReader::Read(AddressTable& table)
{
  std::uint64_t total = 0, before = 0;
  bool isReserved = false;
  for (const std::unique_ptr<Input>& input : inputs_) total += input->Size();
  for (const std::unique_ptr<Input>& input : inputs_) {
    const auto read = [&](std::uint64_t bytes) {
      const std::uint64_t done = before + bytes;
      if (!std::exchange(isReserved, true)) Reserve(table, static_cast<double>(done) / static_cast<double>(total));
      watch_.Reached(BuildPhase::Reading, done, total);
    };
    input->ReadRows(table, report_, read);
    before += input->Size();
  }
  report_.Finish();
}

}  // namespace arf
