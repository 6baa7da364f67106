#include "plugins/configured_databases.h"

#include <dirent.h>

#include <algorithm>
#include <memory>

#include "config/morvex_config.h"
#include "config/setting.h"
#include "qxpaf/platform/file.h"
#include "qxpaf/platform/path.h"

namespace qxpaf {
namespace {

constexpr const char* kArfKey = "ARF";

bool IsWildcard(const std::string& path)
{
  return !path.empty() && (path.back() == '?' || path.back() == '*');
}

/** The names of the directories in a directory (with its separator) that are not hidden, in byte order. */
std::vector<std::string> Subdirectories(const std::string& directory)
{
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(directory.empty() ? "." : directory.c_str()), closedir);
  if (stream == nullptr) return names;
  while (const dirent* const entry = readdir(stream.get())) {
    const std::string name = entry->d_name;
    if (name.front() != '.' && DirectoryExists_((directory + name).c_str())) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

void AddWildcard(const std::string& name, const std::string& path, std::vector<ConfiguredDatabase>& databases)
{
  const std::string directory = QX_Path(path).ExtractFilePath().String();
  for (const std::string& entry : Subdirectories(directory))
    databases.push_back({name + "." + entry, directory + entry});
}

void AddUnparted(MorvexConfig& config, std::vector<ConfiguredDatabase>& databases)
{
  std::vector<std::string> names;
  std::vector<std::string> paths;
  config.EnumerateValues(names, paths);
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (IsWildcard(paths[i])) {
      AddWildcard(names[i], paths[i], databases);
    } else {
      databases.push_back({names[i], paths[i]});
    }
  }
}

void AddCountry(MorvexConfig& config, const std::string& country, std::vector<ConfiguredDatabase>& databases)
{
  config.SetCurrentKey(std::string(kArfKey) + "\\" + country);
  std::vector<std::string> names;
  std::vector<std::string> paths;
  config.EnumerateValues(names, paths);
  for (std::size_t i = 0; i < names.size(); ++i) {
    databases.push_back({names[i].empty() ? country : country + "." + names[i], paths[i]});
  }
}

}  // namespace

std::vector<ConfiguredDatabase> ConfiguredDatabases()
{
  std::vector<ConfiguredDatabase> databases;
  MorvexConfig config;
  if (!config.OpenKey(kArfKey, 0)) return databases;
  const std::vector<std::string> keys = config.EnumerateKeys();
  AddUnparted(config, databases);
  for (const std::string& key : keys) {
    if (key.size() == 2 || key.size() == 3) AddCountry(config, key, databases);
  }
  return databases;
}

std::string ConfiguredDefaultDatabase()
{
  std::string path;
  if (ReadSetting("", "PafDir", path) != 0 || path.empty()) return {};
  const std::vector<ConfiguredDatabase> databases = ConfiguredDatabases();
  const auto found = std::find_if(databases.begin(), databases.end(),
                                  [&path](const ConfiguredDatabase& database) { return database.path == path; });
  return found != databases.end() ? found->name : std::string();
}

}  // namespace qxpaf
