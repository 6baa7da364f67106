#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>

#include "advice.h"
#include "command.h"
#include "exit_code.h"
#include "filters.h"
#include "json.h"

namespace tool {
namespace {

struct ConcordOptions
{
  QueryOptions query;
  std::string from;
  std::string to;
  std::string code;
  int minimum = 0;
  unsigned long limit = 0;
};

void PrintText(const Correspondence& found)
{
  std::cout << found.from << '\t' << found.to << '\t' << found.addresses << '\t' << std::fixed << std::setprecision(2)
            << found.percent << " %\n";
}

Json ToJson(const Correspondence& found)
{
  return {{"from", found.from},
          {"to", found.to},
          {"addresses", found.addresses},
          {"total", found.total},
          {"percent", found.percent}};
}

/** The number of correspondences printed. */
unsigned long PrintAll(Session& session, const ConcordOptions& options)
{
  std::optional<JsonArray> json;
  if (options.query.json) {
    json.emplace(std::cout);
  }
  unsigned long count = 0;
  for (; options.limit == 0 || count < options.limit; ++count) {
    Correspondence found;
    if (const Reply reply = session.NextCorrespondence(found); reply.status != 0) {
      throw Failure(StatusText(reply));
    }
    if (found.from.empty() && found.to.empty()) {
      break;
    }
    if (json) {
      json->Write(ToJson(found));
    } else {
      PrintText(found);
    }
  }
  return count;
}

int Run(const ConcordOptions& options)
{
  RefuseInRemoteMode("concord");
  Session session;
  OpenOrExplain(session, options.query.database);
  const Reply begun = session.BeginConcordance(options.from, options.code, options.to, options.minimum);
  if (begun.status != 0) {
    throw Failure(StatusText(begun));
  }
  const unsigned long count = PrintAll(session, options);
  return count > 0 ? kExitFound : kExitNotFound;
}

}  // namespace

Command AddConcordCommand(CLI::App& program)
{
  auto options = std::make_shared<ConcordOptions>();
  CLI::App* app = program.add_subcommand("concord", "Say how much of one kind of area lies in which of another kind");
  app->add_option("from", options->from,
                  "Postcode, Locality, MeshBlock, StatisticalArea, LocalGovernmentArea,\n"
                  "or another column of the data")
      ->option_text("FROM")
      ->required();
  app->add_option("to", options->to, "Likewise")->option_text("TO")->required();
  app->add_option("--code", options->code, "Only this area of the first kind")->option_text("CODE");
  app->add_option("--minimum", options->minimum, "Leave out what is less than so many percent of the first area")
      ->option_text("PERCENT")
      ->check(CLI::Range(0, 100));
  AddLimitOption(*app, options->limit, "lines");
  AddQueryOptions(*app, options->query);
  app->footer("Prints both codes, the addresses that have both, and their share of the first area's, one line a pair.");
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
