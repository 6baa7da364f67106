#include "filters.h"

#include <algorithm>

#include "exit_code.h"

namespace tool {
namespace {

/** A list as the properties take it; commas are easier to write in a shell. */
std::string PropertyList(std::string list)
{
  std::replace(list.begin(), list.end(), ',', ';');
  return list;
}

}  // namespace

void AddFilterOptions(CLI::App& app, Filters& filters)
{
  app.add_option("--states", filters.states, "Only addresses in these states, as in NSW,VIC")->option_text("CODES");
  app.add_option("--kinds", filters.kinds, "Only addresses of these kinds: Street,Unit,Postal,Place")
      ->option_text("KINDS");
  app.add_option("--codes", filters.codes,
                 "Only addresses with one of these codes, as in MeshBlock=11205670000,Postcode=2000")
      ->option_text("CODES");
  app.add_flag("--named-buildings", filters.namedBuildings, "Only addresses whose building has a name");
}

void SetOrExplain(Session& session, const std::string& property, const std::string& value, const std::string& option)
{
  const Reply reply = session.SetProperty(property, value);
  if (reply.status != 0) {
    throw Failure(option + ": " + StatusText(reply));
  }
}

void ApplyFilters(Session& session, const Filters& filters)
{
  if (!filters.states.empty()) {
    SetOrExplain(session, "StateFilter", PropertyList(filters.states), "--states");
  }
  if (!filters.kinds.empty()) {
    SetOrExplain(session, "AddressFilter", PropertyList(filters.kinds), "--kinds");
  }
  if (!filters.codes.empty()) {
    SetOrExplain(session, "GeographicalCodes", PropertyList(filters.codes), "--codes");
  }
  if (filters.namedBuildings) {
    SetOrExplain(session, "PointsOfInterest", "True", "--named-buildings");
  }
}

}  // namespace tool
