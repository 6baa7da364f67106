#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "enumeration.h"
#include "exit_code.h"
#include "filters.h"
#include "place.h"
#include "qxpaf/arf_au.h"

namespace tool {
namespace {

struct PolygonOptions
{
  QueryOptions query;
  Filters filters;
  std::string file;
  std::string middle;
  unsigned long limit = 0;
};

int Run(const PolygonOptions& options)
{
  const std::string polygon = ReadFile(options.file);
  if (!options.middle.empty()) {
    ParsePlace({options.middle});
  }
  Session session;
  OpenOrExplain(session, options.query.database);
  SetOrExplain(session, "OutputFields", AllFields(), "the database");
  ApplyFilters(session, options.filters);
  AnswerWriter writer(std::cout, options.query.json);
  const Enumeration found{options.file, [&] { return session.NextInPolygon(); }, options.limit, {}};
  const Reply begun = session.BeginPolygon(polygon, options.middle);
  if (begun.status == PAF_AU_ERR_BAD_POLYGON) {
    if (options.query.json) {
      writer.Write(RecordAnswer(options.file, begun));
    }
    throw Failure(options.file + ": " + StatusText(begun));
  }
  return WriteBegun(found, begun, writer);
}

}  // namespace

Command AddPolygonCommand(CLI::App& program)
{
  auto options = std::make_shared<PolygonOptions>();
  CLI::App* app = program.add_subcommand("polygon", "List the addresses in a polygon");
  app->add_option("file", options->file, "File with the polygon, - for standard input")
      ->option_text("FILE")
      ->required();
  app->add_option("--near", options->middle, "Those nearest to this place first, otherwise to the polygon's middle")
      ->option_text("LAT,LON");
  AddLimitOption(*app, options->limit);
  AddFilterOptions(*app, options->filters);
  AddQueryOptions(*app, options->query);
  app->footer(
      "The file holds latitudes and longitudes, \"-33.86,151.20;-33.87,151.22;-33.88,151.21\", where \"|\" ends a "
      "ring,\n"
      "or well-known text, POLYGON or MULTIPOLYGON, which has longitude before latitude. Rings in rings are holes.");
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
