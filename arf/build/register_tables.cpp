#include "arf/build/register_tables.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "arf/build/build_error.h"
#include "arf/build/lines_input.h"
#include "arf/build/register_join.h"
#include "arf/build/register_table.h"

namespace arf {
namespace {

constexpr std::string_view kTableEnd = "_psv.psv";
constexpr std::string_view kAuthorityBegin = "Authority_Code_";

/** Tables by states; those for all states are under the empty name. */
using StateTables = std::map<std::string, TablePaths>;

void AddTable(const std::filesystem::path& path, StateTables& states)
{
  std::string name = path.filename().string();
  if (!name.ends_with(kTableEnd)) return;
  name.resize(name.size() - kTableEnd.size());
  if (name.starts_with(kAuthorityBegin)) {
    states[""][name.substr(kAuthorityBegin.size())] = path.string();
    return;
  }
  const std::size_t end = name.find('_');
  if (end == std::string::npos || end == 0) return;
  states[name.substr(0, end)][name.substr(end + 1)] = path.string();
}

StateTables FindTables(const std::string& directory)
{
  StateTables states;
  std::error_code error;
  std::vector<std::filesystem::path> paths;
  for (std::filesystem::recursive_directory_iterator at(directory, error), end; !error && at != end;
       at.increment(error)) {
    if (at->is_regular_file(error)) paths.push_back(at->path());
  }
  if (error) throw BuildError(directory + ": " + error.message());
  std::sort(paths.begin(), paths.end());
  for (const std::filesystem::path& path : paths) AddTable(path, states);
  return states;
}

class RegisterInput : public Input
{
 public:
  /** The tables must have what is needed. */
  RegisterInput(TablePaths tables, unsigned threads)
      : tables_(std::move(tables)), threads_(threads), details_(tables_.at("ADDRESS_DETAIL"))
  {
  }

  bool ReadHeader(ReportWriter& report) override
  {
    for (const std::string_view column : {"ADDRESS_DETAIL_PID", "STREET_LOCALITY_PID", "LOCALITY_PID"}) {
      const auto isIt = [column](std::string_view name) { return IsColumn(name, column); };
      if (std::any_of(details_.Header().begin(), details_.Header().end(), isIt)) continue;
      report.AddError(details_.Path(), 1, "the required column \"" + std::string(column) + "\" is missing");
      return false;
    }
    return columns_.Read(kJoinedColumns).empty();
  }

  ColumnMap& Columns() override { return columns_; }
  std::uint64_t Size() const override { return details_.FileSize(); }

  void ReadRows(AddressTable& table, ReportWriter& report, const BytesRead& read) override
  {
    const RegisterJoin join(tables_, report);
    ReadLines(
        details_, columns_, [&] { return MakeJoinedRows(join, details_.Header()); }, threads_, table, report, read);
    join.AddRelations(tables_, table);
  }

 private:
  TablePaths tables_;
  unsigned threads_;
  LineReader details_;
  ColumnMap columns_;
};

}  // namespace

std::vector<std::unique_ptr<Input>> OpenRegisterTables(const std::string& directory, unsigned threads)
{
  StateTables states = FindTables(directory);
  const TablePaths authority = states[""];
  states.erase("");
  std::vector<std::unique_ptr<Input>> inputs;
  for (auto& [state, tables] : states) {
    if (!tables.contains("ADDRESS_DETAIL")) continue;
    for (const char* table : {"STREET_LOCALITY", "LOCALITY", "STATE"}) {
      if (!tables.contains(table)) throw BuildError(directory + ": has no " + state + "_" + table + "_psv.psv");
    }
    tables.insert(authority.begin(), authority.end());
    inputs.push_back(std::make_unique<RegisterInput>(tables, threads));
  }
  if (inputs.empty()) throw BuildError(directory + ": has no table ADDRESS_DETAIL of the national address file");
  return inputs;
}

}  // namespace arf
