#include "command.h"

#include <cstdlib>

namespace tool {
namespace {

/** The parser takes "-1" for a very large number. */
std::string CheckCount(const std::string& text)
{
  return text.find_first_not_of("0123456789") == std::string::npos ? "" : "must be a number, 0 or more";
}

}  // namespace

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

CLI::Option* AddLimitOption(CLI::App& app, unsigned long& limit, const std::string& what)
{
  const std::string otherwise =
      limit == 0 ? "; 0, as without this option: all" : ", otherwise " + std::to_string(limit) + "; 0: all";
  return app.add_option("-n,--limit", limit, "Stop after so many " + what + otherwise)
      ->option_text("COUNT")
      ->check(CheckCount);
}

}  // namespace tool
