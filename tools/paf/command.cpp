#include "command.h"

#include <cstdlib>

namespace tool {

std::string DefaultDatabase()
{
  const char* value = std::getenv(kDatabaseVariable);
  return value != nullptr && *value != '\0' ? value : kDefaultDatabase;
}

void AddQueryOptions(CLI::App& app, QueryOptions& options)
{
  options.database = DefaultDatabase();
  app.add_option("-d,--database", options.database,
                 "Database to ask: a configured name (AU, AU.Main) or a directory;\n"
                 "without this option the variable PAF_DATABASE, and without that AU")
      ->option_text("NAME");
  AddJsonOption(app, options.json);
}

void AddJsonOption(CLI::App& app, bool& json)
{
  app.add_flag("--json", json, "Print one JSON document instead of lines of text");
}

void AddLimitOption(CLI::App& app, unsigned long& limit)
{
  app.add_option("-n,--limit", limit, "Stop after so many addresses")->option_text("COUNT");
}

}  // namespace tool
