#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "enumeration.h"
#include "filters.h"
#include "inputs.h"

namespace tool {
namespace {

struct SearchOptions
{
  QueryOptions query;
  Filters filters;
  std::vector<std::string> words;
  unsigned long limit = 10;
};

int Run(const SearchOptions& options)
{
  RefuseInRemoteMode("search");
  Session session;
  OpenOrExplain(session, options.query.database);
  ApplyFilters(session, options.filters);
  AnswerWriter writer(std::cout, options.query.json);
  const std::string words = JoinWords(options.words);
  const Enumeration found{words, [&] { return session.NextFound(); }, options.limit, {}};
  return WriteBegun(found, session.BeginSearch(words), writer);
}

}  // namespace

Command AddSearchCommand(CLI::App& program)
{
  auto options = std::make_shared<SearchOptions>();
  CLI::App* app = program.add_subcommand("search", "List the addresses that fit words in any order, the best first");
  app->add_option("words", options->words, "Words of street, locality, building, number, postcode")
      ->option_text("WORDS...")
      ->required();
  AddLimitOption(*app, options->limit);
  AddFilterOptions(*app, options->filters);
  AddQueryOptions(*app, options->query);
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
