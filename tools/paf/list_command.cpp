#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "enumeration.h"

namespace tool {
namespace {

struct ListOptions
{
  QueryOptions query;
  std::string locality;
  unsigned long limit = 0;
};

int Run(const ListOptions& options)
{
  Session session;
  OpenOrExplain(session, options.query.database);
  AnswerWriter writer(std::cout, options.query.json);
  const Enumeration list{options.locality, [&] { return session.NextRecord(); }, options.limit, {}};
  return WriteAll(list, session.FirstRecord(LocalityQuery(options.locality)), writer);
}

}  // namespace

Command AddListCommand(CLI::App& program)
{
  auto options = std::make_shared<ListOptions>();
  CLI::App* app = program.add_subcommand("list", "List the addresses of a locality");
  app->add_option("locality", options->locality, "Locality, state and postcode, as in \"CARLTON VIC 3053\"")
      ->option_text("LOCALITY")
      ->required();
  AddLimitOption(*app, options->limit);
  AddQueryOptions(*app, options->query);
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
