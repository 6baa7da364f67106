#include "api/library_properties.h"

#include <algorithm>
#include <vector>

#include "api/instance_table.h"
#include "config/morvex_config.h"
#include "platform/ascii.h"
#include "plugins/configured_databases.h"
#include "plugins/open_databases.h"
#include "qxpaf/registry.h"
#include "qxpaf/remote.h"
#include "remote/remote_mode.h"
#include "remote/server_address.h"

namespace qxpaf {
namespace {

struct Property
{
  const char* name;
  std::string (*answer)();
};

/** The answer of the row with this name. */
template <std::size_t N>
std::optional<std::string> Find(const Property (&table)[N], std::string_view name)
{
  for (const Property& row : table) {
    if (EqualIgnoringCase(name, row.name)) return row.answer();
  }
  return std::nullopt;
}

std::string UseSockets()
{
  return IsRemoteModeOn() ? "True" : "False";
}

std::string OpenArfs()
{
  const QXScopedLock lock(InstanceTableLock(), true);
  std::string names;
  for (const PafInfo* const info : InstancesLocked()) {
    if (info != nullptr) names.append(info->searcher != nullptr ? info->arfName : info->remoteArfName).append(";");
  }
  return names;
}

std::string ComputerName()
{
  char name[256];
  GetComputerName_(name, sizeof name);
  return name;
}

/** The version of the library's file and a build number, which programs compare. */
std::string LibraryVersion()
{
  return "5.10.246.2";
}

/** What a plug-in answers to "PafLibVersion", through either way of asking one; empty when it cannot be asked. */
template <class Ask>
std::string PluginVersion(Ask&& ask)
{
  char version[256];
  version[0] = '\0';
  const int status = ask("PafLibVersion", version, static_cast<int>(sizeof version));
  version[sizeof version - 1] = '\0';
  return status == 0 ? version : "";
}

std::string DefaultPluginVersion()
{
  return PluginVersion(GetPropertyFromDll);
}

template <const char* const& Library>
std::string OtherPluginVersion()
{
  return PluginVersion(
      [](const char* request, char* out, int size) { return GetPropertyFromDLL(Library, request, out, size); });
}

constexpr const char* kNzLibrary = "qxarfnz";
constexpr const char* kUsLibrary = "qxarfus";
constexpr const char* kUkLibrary = "qxarfuk";

std::string ConfiguredNames()
{
  std::vector<std::string> names;
  for (const ConfiguredDatabase& database : ConfiguredDatabases()) names.push_back(database.name);
  std::sort(names.begin(), names.end());
  std::string joined;
  for (const std::string& name : names) joined.append(joined.empty() ? "" : ";").append(name);
  return joined;
}

constexpr Property kProcessProperties[] = {{"UseSockets", UseSockets},
                                           {"TcpHost", TcpHost},
                                           {"TcpPort", TcpPort},
                                           {"OpenArfs", OpenArfs},
                                           {"OpenArfPaths", GetOpenArfPaths}};

constexpr Property kLocalProperties[] = {{"TestProperty", [] { return std::string("Test Property Value"); }},
                                         {"ClientCount", [] { return std::to_string(OpenInstanceCount()); }},
                                         {"ClientCount2", [] { return std::to_string(CountOpenInstances()); }},
                                         {"PafMachine", ComputerName},
                                         {"ArfLibVersion", LibraryVersion},
                                         {"ArfLibVersionAu", DefaultPluginVersion},
                                         {"ArfLibVersionNz", OtherPluginVersion<kNzLibrary>},
                                         {"ArfLibVersionUs", OtherPluginVersion<kUsLibrary>},
                                         {"ArfLibVersionUk", OtherPluginVersion<kUkLibrary>},
                                         {"ARFs", ConfiguredNames},
                                         {"DefaultArf", ConfiguredDefaultDatabase}};

constexpr std::string_view kSettingPrefix = "iPindle:";

/**
 * The setting with this path below the key "iPindle"; for a path that ends in "\" the names of the keys in it, joined
 * by TAB. Every value is text, also one that programs write as a number.
 */
std::string Setting(std::string_view path)
{
  constexpr std::size_t kLongestKey = 255;
  const std::size_t divider = path.rfind('\\');
  const std::size_t keyLength = divider == std::string_view::npos ? 0 : divider + 1;
  const std::string key = ("iPindle\\" + std::string(path.substr(0, keyLength))).substr(0, kLongestKey);
  const std::string name(path.substr(keyLength));
  std::string value;
  MorvexConfig config;
  if (!config.OpenKey(key, 0)) return value;
  if (name.empty()) {
    for (const std::string& subkey : config.EnumerateKeys()) value.append(value.empty() ? "" : "\t").append(subkey);
  } else {
    config.ReadValue(name, value);
  }
  return value;
}

}  // namespace

std::optional<std::string> ProcessProperty(std::string_view name)
{
  return Find(kProcessProperties, name);
}

bool IsProcessProperty(std::string_view name)
{
  return std::any_of(std::begin(kProcessProperties), std::end(kProcessProperties),
                     [name](const Property& row) { return EqualIgnoringCase(name, row.name); });
}

std::optional<std::string> LocalProperty(std::string_view name)
{
  if (StartsWithIgnoringCase(name, kSettingPrefix)) return Setting(name.substr(kSettingPrefix.size()));
  return Find(kLocalProperties, name);
}

bool SetConnectionProperty(std::string_view name, const char* value)
{
  if (EqualIgnoringCase(name, "UseSockets")) {
    SetRemoteMode(EqualIgnoringCase(value, "True"));
  } else if (EqualIgnoringCase(name, "TcpHost")) {
    SetTcpHost(value);
  } else if (EqualIgnoringCase(name, "TcpPort")) {
    SetTcpPort(value);
  } else {
    return false;
  }
  return true;
}

}  // namespace qxpaf
