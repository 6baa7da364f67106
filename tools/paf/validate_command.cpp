#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "inputs.h"

namespace tool {
namespace {

struct ValidateOptions
{
  QueryOptions query;
  std::vector<std::string> addresses;
  bool strict = false;
};

Answer Judge(Session& session, const std::string& address, bool strict)
{
  Answer answer;
  char verdict = '\0';
  answer.input = address;
  answer.reply = session.Validate(address, strict, verdict);
  answer.address = answer.reply.text;
  if (verdict != '\0') {
    answer.verdict = verdict;
  }
  return answer;
}

int Run(const ValidateOptions& options)
{
  Session session;
  OpenOrExplain(session, options.query.database);
  AnswerWriter writer(std::cout, options.query.json);
  ForEachInput(options.addresses,
               [&](const std::string& address) { writer.Write(Judge(session, address, options.strict)); });
  return writer.ExitStatus();
}

}  // namespace

Command AddValidateCommand(CLI::App& program)
{
  auto options = std::make_shared<ValidateOptions>();
  CLI::App* app = program.add_subcommand("validate", "Judge addresses: right, corrected, or how far they are right");
  app->add_option("address", options->addresses, "Addresses; without any, the lines of standard input")
      ->option_text("ADDRESS...");
  app->add_flag("--strict", options->strict, "Correct nothing but what the strict addressing rules (AMAS) allow");
  AddQueryOptions(*app, options->query);
  app->footer(
      "Prints a verdict and the address as the database has it, or the reason, one line an input.\n"
      "Verdicts: V right as written, C corrected or completed, S only the street is right, L only the locality,\n"
      "A ambiguous, N nothing fits.");
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
