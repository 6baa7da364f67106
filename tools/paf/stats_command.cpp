#include <charconv>
#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "exit_code.h"
#include "filters.h"
#include "inputs.h"
#include "json.h"
#include "place.h"
#include "qxpaf/arf_au.h"
#include "record.h"

namespace tool {
namespace {

struct StatsOptions
{
  QueryOptions query;
  Filters filters;
  std::string kind;
  std::vector<std::string> area;
  std::string range;
};

/** The area as the library takes it: a polygon is the contents of a file. */
std::string AreaOf(const StatsOptions& options)
{
  if (options.kind == "radius") {
    const GeoPlace place = ParsePlace(options.area);
    return place.latitudeText + "," + place.longitudeText;
  }
  return options.kind == "polygon" ? ReadFile(JoinWords(options.area)) : JoinWords(options.area);
}

struct Counts
{
  unsigned long addresses = 0;
  unsigned long streets = 0;
  unsigned long localities = 0;
};

unsigned long Number(const std::string& text)
{
  unsigned long number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

Counts CountsOf(const Record& record)
{
  return {Number(record.Field(1)), Number(record.Field(2)), Number(record.Field(3))};
}

void Print(const StatsOptions& options, const Counts& counts)
{
  if (options.query.json) {
    std::cout << ToText({{"kind", options.kind},
                         {"area", JoinWords(options.area)},
                         {"status", 0},
                         {"addresses", counts.addresses},
                         {"streets", counts.streets},
                         {"localities", counts.localities},
                         {"description", ""}})
              << '\n';
    return;
  }
  std::cout << counts.addresses << (counts.addresses == 1 ? " address in " : " addresses in ") << counts.streets
            << (counts.streets == 1 ? " street of " : " streets of ") << counts.localities
            << (counts.localities == 1 ? " locality\n" : " localities\n");
}

int PrintFailure(const StatsOptions& options, const Reply& reply)
{
  const std::string area = JoinWords(options.area);
  if (options.query.json) {
    std::cout << ToText({{"kind", options.kind},
                         {"area", area},
                         {"status", reply.status},
                         {"description", reply.description}})
              << '\n';
  }
  const bool isFileWrong = reply.status == PAF_AU_ERR_BAD_POLYGON;
  std::cerr << "paf: " << (isFileWrong ? area + ": " : "") << StatusText(reply) << '\n';
  return isFileWrong ? kExitFailed : ExitStatusOf(reply);
}

int Run(const StatsOptions& options)
{
  const std::string area = AreaOf(options);
  Session session;
  OpenOrExplain(session, options.query.database);
  ApplyFilters(session, options.filters);
  const Reply reply = session.Statistics(options.kind, area, options.range);
  if (reply.status != 0) {
    return PrintFailure(options, reply);
  }
  const Counts counts = CountsOf(Record(reply.text));
  Print(options, counts);
  return counts.addresses > 0 ? kExitFound : kExitNotFound;
}

}  // namespace

Command AddStatsCommand(CLI::App& program)
{
  auto options = std::make_shared<StatsOptions>();
  CLI::App* app = program.add_subcommand("stats", "Count the addresses, streets and localities of an area");
  app->add_option("kind", options->kind, "polygon, radius, postcode, locality or state")
      ->option_text("KIND")
      ->check(CLI::IsMember({"polygon", "radius", "postcode", "locality", "state"}))
      ->required();
  app->add_option("area", options->area,
                  "The postcode, locality or state, the file with the polygon (- for standard input),\n"
                  "or LAT,LON for the middle of a radius")
      ->option_text("AREA")
      ->required();
  app->add_option("-r,--range", options->range, "Metres of the radius, otherwise 100")->option_text("METRES");
  AddFilterOptions(*app, options->filters);
  AddQueryOptions(*app, options->query);
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
