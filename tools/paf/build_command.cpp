#include "command.h"

namespace tool {

Command AddBuildCommand(CLI::App& program)
{
  CLI::App* app = program.add_subcommand("build", "Make an address database from a CSV file");
  return {app, [] { return 2; }};
}

}  // namespace tool
