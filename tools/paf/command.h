/** The subcommands. Each file <name>_command.cpp adds one to the program. */
#ifndef PAF_TOOL_COMMAND_H
#define PAF_TOOL_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace tool {

struct Command
{
  CLI::App* app = nullptr;
  std::function<int()> run;  ///< to be called when `app` was given; gives the exit status or throws Failure
};

Command AddLookupCommand(CLI::App& program);
Command AddAddressCommand(CLI::App& program);
Command AddFixCommand(CLI::App& program);
Command AddListCommand(CLI::App& program);
Command AddValidateCommand(CLI::App& program);
Command AddFormatCommand(CLI::App& program);
Command AddBatchCommand(CLI::App& program);
Command AddNearCommand(CLI::App& program);
Command AddPolygonCommand(CLI::App& program);
Command AddSearchCommand(CLI::App& program);
Command AddHintCommand(CLI::App& program);
Command AddStatsCommand(CLI::App& program);
Command AddConcordCommand(CLI::App& program);
Command AddBuildCommand(CLI::App& program);
Command AddBarcodeCommand(CLI::App& program);
Command AddDoctorCommand(CLI::App& program);

/** What every command that asks a database has in common. */
struct QueryOptions
{
  std::string database;
  bool json = false;
};

inline constexpr const char* kDatabaseVariable = "PAF_DATABASE";
inline constexpr const char* kDefaultDatabase = "AU";

/** The database that is asked when the command line names none. */
std::string DefaultDatabase();

void AddQueryOptions(CLI::App& app, QueryOptions& options);
void AddJsonOption(CLI::App& app, bool& json);
/** Takes a number from 0, which is no limit; without the option `limit` stays what it is. `what` is counted. */
CLI::Option* AddLimitOption(CLI::App& app, unsigned long& limit, const std::string& what = "addresses");

}  // namespace tool

#endif
