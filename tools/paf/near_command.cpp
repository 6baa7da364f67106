#include <charconv>
#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "enumeration.h"
#include "filters.h"
#include "place.h"
#include "qxpaf/arf_au.h"

namespace tool {
namespace {

struct NearOptions
{
  QueryOptions query;
  Filters filters;
  std::vector<std::string> place;
  std::string range;
  unsigned long limit = 10;
};

double Number(const std::string& text)
{
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

void AddDistance(const GeoPlace& place, Answer& answer)
{
  const std::string& latitude = answer.record->Field(PAF_AU_FIELD_LATITUDE);
  const std::string& longitude = answer.record->Field(PAF_AU_FIELD_LONGITUDE);
  if (!latitude.empty() && !longitude.empty()) {
    answer.metres = place.MetresTo(Number(latitude), Number(longitude));
  }
}

/** The first reply, with the option in the words where the plug-in has the property. */
Reply FirstReply(Session& session, const NearOptions& options, const GeoPlace& place)
{
  Reply reply = session.FirstRecord(NearestQuery(place.latitudeText, place.longitudeText));
  if (reply.status == PAF_AU_ERR_NOTHING_NEAR) {
    reply.description = "There is no address within " + (options.range.empty() ? "100" : options.range) +
                        " metres. Give a larger --range, or look at the filters.";
  }
  return reply;
}

int Run(const NearOptions& options)
{
  const GeoPlace place = ParsePlace(options.place);
  Session session;
  OpenOrExplain(session, options.query.database);
  SetOrExplain(session, "OutputFields", AllFields(), "the database");
  ApplyFilters(session, options.filters);
  if (!options.range.empty()) {
    SetOrExplain(session, "LatLongSearchRange", options.range, "--range");
  }
  AnswerWriter writer(std::cout, options.query.json);
  const Enumeration found{place.latitudeText + "," + place.longitudeText, [&] { return session.NextRecord(); },
                          options.limit, [&](Answer& answer) { AddDistance(place, answer); }};
  return WriteAll(found, FirstReply(session, options, place), writer);
}

}  // namespace

Command AddNearCommand(CLI::App& program)
{
  auto options = std::make_shared<NearOptions>();
  CLI::App* app = program.add_subcommand("near", "List the addresses nearest to a place, the nearest first");
  app->add_option("place", options->place, "Latitude and longitude in degrees, as in -33.8568,151.2153")
      ->option_text("LAT,LON")
      ->expected(1, 2)
      ->required();
  app->add_option("-r,--range", options->range, "Metres around the place, otherwise 100")->option_text("METRES");
  AddLimitOption(*app, options->limit);
  AddFilterOptions(*app, options->filters);
  AddQueryOptions(*app, options->query);
  app->footer("Prints DPID, address and distance, one line an address.");
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
