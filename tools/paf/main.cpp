/** paf: look up addresses, build address databases and check an installation, from the command line. */
#include <exception>
#include <iostream>
#include <vector>

#include "command.h"
#include "exit_code.h"

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  paf lookup \"U 3/12 High St, Carlton VIC\"      one address\n"
    "  paf lookup --json < addresses.txt             many, one a line\n"
    "  paf hint                                      type an address with hints\n"
    "  paf batch customers.csv found.csv             every row of a CSV file\n"
    "  paf near -33.8568,151.2153 --range 500        what is near a place\n"
    "  paf address 30000001                          a DPID's address\n"
    "  paf fix \"calton vic\"                          correct a last line\n"
    "  paf list \"CARLTON VIC 3053\" --limit 10        what a locality holds\n"
    "  paf build addresses.csv /srv/paf/main         make a database\n"
    "  paf barcode 30000001                          a DPID's barcode for print\n"
    "  paf doctor                                    find out why it does not work\n"
    "\n"
    "Exit status: 0 everything found, 1 something not found or ambiguous, 2 error.";

std::vector<tool::Command> AddCommands(CLI::App& program)
{
  return {tool::AddLookupCommand(program),  tool::AddValidateCommand(program), tool::AddFixCommand(program),
          tool::AddFormatCommand(program),  tool::AddHintCommand(program),     tool::AddBatchCommand(program),
          tool::AddSearchCommand(program),  tool::AddNearCommand(program),     tool::AddPolygonCommand(program),
          tool::AddAddressCommand(program), tool::AddListCommand(program),     tool::AddStatsCommand(program),
          tool::AddConcordCommand(program), tool::AddBuildCommand(program),    tool::AddBarcodeCommand(program),
          tool::AddDoctorCommand(program)};
}

int RunChosen(const std::vector<tool::Command>& commands)
{
  for (const tool::Command& command : commands) {
    if (command.app->parsed()) {
      const int status = command.run();
      if (!std::cout.flush()) {
        throw tool::Failure("the answers cannot be written to standard output");
      }
      return status;
    }
  }
  return tool::kExitFailed;
}

int Main(int argc, char** argv)
{
  CLI::App program("Looks up, corrects and lists postal addresses, and builds address databases.", "paf");
  program.set_version_flag("--version", "paf " PAF_TOOL_VERSION);
  program.footer(kExamples);
  program.require_subcommand(1);
  const std::vector<tool::Command> commands = AddCommands(program);
  try {
    program.parse(argc, argv);
  } catch (const CLI::RequiredError& error) {
    const std::vector<std::string> words = program.remaining();
    if (program.get_subcommands().empty() && !words.empty()) {
      throw tool::Failure("there is no " + std::string(words.front().starts_with('-') ? "option" : "command") + " \"" +
                          words.front() + "\"; run paf --help for those that there are");
    }
    return program.exit(error) == 0 ? tool::kExitFound : tool::kExitFailed;
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? tool::kExitFound : tool::kExitFailed;
  }
  return RunChosen(commands);
}

}  // namespace

int main(int argc, char** argv)
{
  std::ios::sync_with_stdio(false);
  std::cin.tie(nullptr);
  try {
    return Main(argc, argv);
  } catch (const std::exception& error) {
    std::cout.flush();
    std::cerr << "paf: " << error.what() << '\n';
    return tool::kExitFailed;
  }
}
