#include <iostream>
#include <memory>

#include "command.h"
#include "doctor_report.h"
#include "exit_code.h"

namespace tool {
namespace {

int Run(bool json)
{
  const DoctorReport report = Examine();
  if (json) {
    std::cout << ToText(ToJson(report)) << '\n';
  } else {
    PrintReport(std::cout, report);
  }
  return report.problems.empty() ? kExitFound : kExitFailed;
}

}  // namespace

Command AddDoctorCommand(CLI::App& program)
{
  auto json = std::make_shared<bool>(false);
  CLI::App* app = program.add_subcommand("doctor", "Check configuration, plug-ins and databases");
  AddJsonOption(*app, *json);
  app->footer("Exit status 0: everything is fine, 2: it is not.");
  return {app, [json] { return Run(*json); }};
}

}  // namespace tool
