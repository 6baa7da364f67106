#include <charconv>
#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "exit_code.h"
#include "inputs.h"

namespace tool {
namespace {

struct AddressOptions
{
  QueryOptions query;
  std::vector<std::string> dpids;
};

long ParseDpid(const std::string& text)
{
  long dpid = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, dpid);
  if (error != std::errc() || rest != end || dpid < 0) {
    throw Failure("\"" + text + "\" is no DPID: a DPID is a number, such as 30000001");
  }
  return dpid;
}

int Run(const AddressOptions& options)
{
  for (const std::string& dpid : options.dpids) {
    ParseDpid(dpid);  // all arguments are judged before the first answer is printed
  }
  Session session;
  OpenOrExplain(session, options.query.database);
  AnswerWriter writer(std::cout, options.query.json);
  ForEachInput(options.dpids,
               [&](const std::string& dpid) { writer.Write(RecordAnswer(dpid, session.Address(ParseDpid(dpid)))); });
  return writer.ExitStatus();
}

}  // namespace

Command AddAddressCommand(CLI::App& program)
{
  auto options = std::make_shared<AddressOptions>();
  CLI::App* app = program.add_subcommand("address", "Give the address of delivery points (DPIDs)");
  app->add_option("dpid", options->dpids, "DPIDs; without any, the lines of standard input")->option_text("DPID...");
  AddQueryOptions(*app, options->query);
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
