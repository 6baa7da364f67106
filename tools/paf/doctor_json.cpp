#include "doctor_report.h"

namespace tool {
namespace {

template <class T>
Json OrNull(const std::optional<T>& value)
{
  return value ? Json(*value) : Json(nullptr);
}

const char* StateName(PlaceState state)
{
  switch (state) {
    case PlaceState::Used:
      return "used";
    case PlaceState::NotFound:
      return "not found";
    case PlaceState::NotSet:
      return "not set";
    case PlaceState::NotReached:
      break;
  }
  return "not looked at";
}

Json PlaceJson(const Place& place)
{
  return {{"place", place.name}, {"path", place.path}, {"state", StateName(place.state)}, {"reason", place.reason}};
}

Json PluginJson(const PluginProbe& plugin)
{
  Json entryPoints = Json::object();
  for (const EntryPoint& entry : plugin.entryPoints) {
    entryPoints[entry.name] = entry.present;
  }
  return {{"library", plugin.library},  {"loaded", plugin.loaded},   {"file", plugin.file},
          {"message", plugin.message},  {"version", plugin.version}, {"entry_points", entryPoints},
          {"usable", plugin.IsUsable()}};
}

Json DatabaseJson(const DatabaseReport& database)
{
  return {{"name", database.configured.name},
          {"line", database.configured.line},
          {"value", database.configured.value},
          {"directory", database.directory},
          {"options", database.configured.options},
          {"directory_exists", database.directoryExists},
          {"title", OrNull(database.title)},
          {"address_file_bytes", OrNull(database.fileBytes)},
          {"country", database.country},
          {"plugin", database.library},
          {"status", database.open.status},
          {"description", database.open.description}};
}

Json ServerJson(const ServerReport& server)
{
  return {{"place", server.place},
          {"reached", server.IsReached()},
          {"database", server.database},
          {"status", server.open.status},
          {"description", server.open.description}};
}

template <class T>
Json ArrayOf(const std::vector<T>& items, Json (*convert)(const T&))
{
  Json array = Json::array();
  for (const T& item : items) {
    array.push_back(convert(item));
  }
  return array;
}

}  // namespace

Json ToJson(const DoctorReport& report)
{
  Json settings = Json::object();
  for (const Setting& setting : report.settings) {
    settings[setting.name] = OrNull(setting.value);
  }
  return {{"configuration", ArrayOf(report.places, PlaceJson)},
          {"settings", settings},
          {"remote", report.remote},
          {"server", report.server ? ServerJson(*report.server) : Json(nullptr)},
          {"plugins", ArrayOf(report.plugins, PluginJson)},
          {"databases", ArrayOf(report.databases, DatabaseJson)},
          {"notes", report.notes},
          {"problems", report.problems},
          {"fine", report.problems.empty()}};
}

}  // namespace tool
