#include "configuration.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "country.h"
#include "qxpaf/registry.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFileName = ".morvex";
constexpr const char* kArfKey = "ARF";

std::string Variable(const char* name)
{
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string HomeFile()
{
  const std::string home = Variable("HOME");
  if (home.empty()) {
    return "";
  }
  return home + (home.back() == '/' ? "" : "/") + kFileName;
}

/** Tries a place as the library does: the file counts as found when it can be opened for reading. */
void Try(Place& place)
{
  if (place.path.empty()) {
    place.state = PlaceState::NotSet;
    return;
  }
  std::FILE* file = std::fopen(place.path.c_str(), "r");
  if (file == nullptr) {
    place.state = PlaceState::NotFound;
    place.reason = std::strerror(errno);
    return;
  }
  std::fclose(file);
  place.state = PlaceState::Used;
  std::error_code ignored;
  if (fs::is_directory(place.path, ignored)) {
    place.reason = "it is a directory, not a file";
  }
}

/** The named values that stand directly in a key. */
std::vector<std::pair<std::string, std::string>> ValuesOf(const std::string& key)
{
  std::vector<std::pair<std::string, std::string>> values;
  char** names = nullptr;
  char** texts = nullptr;
  EnumerateRegistry_(key.c_str(), &names, &texts);
  for (std::size_t i = 0; names != nullptr && texts != nullptr && names[i] != nullptr && texts[i] != nullptr; ++i) {
    values.emplace_back(names[i], texts[i]);
    delete[] names[i];
    delete[] texts[i];
  }
  delete[] names;
  delete[] texts;
  return values;
}

/** The database that a value of the key ARF, or of that of a country, names. */
ConfiguredDatabase MakeDatabase(const std::string& key, const std::string& country, const std::string& valueName,
                                const std::string& value)
{
  const bool both = !country.empty() && !valueName.empty();
  ConfiguredDatabase database = {country + (both ? "." : "") + valueName, key + "/" + valueName + "=", value, value,
                                 ""};
  const std::size_t semicolon = value.find(';');
  if (semicolon != std::string::npos && !SplitDllName(value)) {
    database.path = value.substr(0, semicolon);
    database.options = value.substr(semicolon + 1);
  }
  return database;
}

bool IsWildcard(const std::string& value)
{
  return !value.empty() && (value.back() == '*' || value.back() == '?');
}

/** One database for each subdirectory of the wildcard's directory, by name. */
void AddWildcard(std::vector<ConfiguredDatabase>& databases, const ConfiguredDatabase& wildcard)
{
  const fs::path directory = fs::path(wildcard.value).parent_path();
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    std::error_code ignored;
    if (name.front() != '.' && entry->is_directory(ignored)) {
      names.push_back(name);
    }
  }
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    ConfiguredDatabase database = wildcard;
    database.name += "." + name;
    database.path = (directory / name).string();
    databases.push_back(database);
  }
}

void AddKey(std::vector<ConfiguredDatabase>& databases, const std::string& country)
{
  const std::string key = country.empty() ? kArfKey : std::string(kArfKey) + "/" + country;
  for (const auto& [name, value] : ValuesOf(key)) {
    const ConfiguredDatabase database = MakeDatabase(key, country, name, value);
    if (IsWildcard(value)) {
      AddWildcard(databases, database);
    } else {
      databases.push_back(database);
    }
  }
}

}  // namespace

std::vector<Place> ConfigurationPlaces()
{
  std::error_code ignored;
  const std::string here = (fs::current_path(ignored) / kFileName).string();
  std::vector<Place> places = {{"./.morvex", here, PlaceState::NotReached, ""},
                               {"$MORVEX_CONFIG_FILE", Variable("MORVEX_CONFIG_FILE"), PlaceState::NotReached, ""},
                               {"$HOME/.morvex", HomeFile(), PlaceState::NotReached, ""},
                               {"/usr/etc/.morvex", "/usr/etc/.morvex", PlaceState::NotReached, ""}};
  for (Place& place : places) {
    Try(place);
    if (place.state == PlaceState::Used) {
      break;
    }
  }
  return places;
}

std::optional<Place> ConfigurationFile()
{
  for (const Place& place : ConfigurationPlaces()) {
    if (place.state == PlaceState::Used) {
      return place;
    }
  }
  return std::nullopt;
}

std::string Describe(const Place& place)
{
  const std::string reason = place.reason.empty() ? "" : " (" + place.reason + ")";
  switch (place.state) {
    case PlaceState::Used:
      return "found, and used" + reason;
    case PlaceState::NotFound:
      return "not found" + reason;
    case PlaceState::NotSet:
      return "not set";
    case PlaceState::NotReached:
      break;
  }
  return "not looked at, an earlier one is used";
}

std::optional<std::string> ConfigurationValue(const std::string& key, const std::string& name)
{
  std::array<char, 512> value{};  // the accessor reads lines of at most 255 characters
  int size = static_cast<int>(value.size());
  if (LookUpRegistry_(key.c_str(), name.c_str(), value.data(), size, false) != 0) {
    return std::nullopt;
  }
  return value.data();
}

std::vector<ConfiguredDatabase> ConfiguredDatabases()
{
  std::vector<ConfiguredDatabase> databases;
  AddKey(databases, "");
  for (const Country& country : kCountries) {
    AddKey(databases, std::string(country.code));
  }
  if (const auto path = ConfigurationValue("", "PafDir")) {
    ConfiguredDatabase database = {"", "PafDir=", *path, *path, ""};
    databases.push_back(database);
  }
  return databases;
}

std::string ConfigurationLine(const std::string& database)
{
  if (database.empty()) {
    return "PafDir=";
  }
  const DatabaseName name = SplitDatabaseName(database);
  return "ARF/" + (name.country.empty() ? "" : name.country + "/") + name.rest + "=";
}

bool IsRemoteConfigured()
{
  for (const char* name : {"TcpHost", "TcpPort"}) {
    if (!ConfigurationValue("PindleSvr", name).value_or("").empty()) {
      return true;
    }
  }
  return false;
}

}  // namespace tool
