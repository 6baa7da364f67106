#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "inputs.h"

namespace tool {
namespace {

struct FixOptions
{
  QueryOptions query;
  std::vector<std::string> lines;
};

Answer Fix(Session& session, const std::string& line)
{
  Answer answer;
  answer.input = line;
  answer.reply = session.FixLastLine(line);
  answer.address = answer.reply.text;
  return answer;
}

int Run(const FixOptions& options)
{
  Session session;
  OpenOrExplain(session, options.query.database);
  AnswerWriter writer(std::cout, options.query.json);
  ForEachInput(options.lines, [&](const std::string& line) { writer.Write(Fix(session, line)); });
  return writer.ExitStatus();
}

}  // namespace

Command AddFixCommand(CLI::App& program)
{
  auto options = std::make_shared<FixOptions>();
  CLI::App* app = program.add_subcommand("fix", "Correct the last line of addresses: locality, state, postcode");
  app->add_option("line", options->lines, "Last lines; without any, the lines of standard input")
      ->option_text("LINE...");
  AddQueryOptions(*app, options->query);
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
