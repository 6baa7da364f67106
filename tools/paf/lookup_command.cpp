#include <cstdlib>
#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "inputs.h"

namespace tool {
namespace {

struct LookupOptions
{
  QueryOptions query;
  std::vector<std::string> addresses;
  bool strict = false;
};

Answer LookUp(Session& session, const std::string& address, bool strict)
{
  Answer answer;
  answer.input = address;
  answer.reply = session.Lookup(address, strict);
  if (answer.reply.status != 0) {
    return answer;
  }
  answer.dpid = answer.reply.text;
  answer.reply = session.Address(std::strtol(answer.dpid.c_str(), nullptr, 10));
  if (answer.reply.status == 0) {
    answer.record.emplace(answer.reply.text);
    answer.address = answer.record->OneLine();
  }
  return answer;
}

int Run(const LookupOptions& options)
{
  Session session;
  OpenOrExplain(session, options.query.database);
  AnswerWriter writer(std::cout, options.query.json);
  ForEachInput(options.addresses,
               [&](const std::string& address) { writer.Write(LookUp(session, address, options.strict)); });
  return writer.ExitStatus();
}

}  // namespace

Command AddLookupCommand(CLI::App& program)
{
  auto options = std::make_shared<LookupOptions>();
  CLI::App* app = program.add_subcommand("lookup", "Find the delivery point (DPID) and full address of addresses");
  app->add_option("address", options->addresses, "Addresses; without any, the lines of standard input")
      ->option_text("ADDRESS...");
  app->add_flag("--strict", options->strict, "Never guess: the strict addressing rules (AMAS)");
  AddQueryOptions(*app, options->query);
  app->footer(
      "Prints DPID and address, or - and the reason, one line an input.\n"
      "Exit status 0: all found, 1: at least one not found or ambiguous, 2: error.");
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
