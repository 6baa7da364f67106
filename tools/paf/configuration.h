/** The configuration file as the library sees it: where it is looked for, and which databases it names. */
#ifndef PAF_TOOL_CONFIGURATION_H
#define PAF_TOOL_CONFIGURATION_H

#include <optional>
#include <string>
#include <vector>

namespace tool {

enum class PlaceState
{
  Used,       ///< the first place whose file can be opened
  NotFound,   ///< named, but nothing there can be opened; `reason` says why
  NotSet,     ///< the environment variable is not set, or empty
  NotReached  ///< an earlier place is used
};

/** One place of the search order. */
struct Place
{
  std::string name;  ///< as one writes it: "$HOME/.morvex"
  std::string path;  ///< the file meant by it; empty when the variable is not set
  PlaceState state = PlaceState::NotReached;
  std::string reason;  ///< what is wrong, in the system's words; empty when nothing is
};

/** The four places, in the order in which the library tries them. */
std::vector<Place> ConfigurationPlaces();

/** The file that the library reads, or nothing. */
std::optional<Place> ConfigurationFile();

/** "found and used", "not found (No such file or directory)", … */
std::string Describe(const Place& place);

/** The value of a key; the root key is "". Nothing when the file does not hold it. */
std::optional<std::string> ConfigurationValue(const std::string& key, const std::string& name);

/** One database that the configuration names. */
struct ConfiguredDatabase
{
  std::string name;     ///< as the open functions take it; "" is the default database
  std::string line;     ///< where it stands in the file, up to the value: "ARF/AU/Main="
  std::string value;    ///< what stands there
  std::string path;     ///< what the name resolves to: the value without its options, wildcards replaced
  std::string options;  ///< what follows the path behind ";"
};

/** Every database of the keys ARF and ARF\<country>, in file order; the default database last. */
std::vector<ConfiguredDatabase> ConfiguredDatabases();

/** The line that would configure a name: "ARF/AU/Main=" for "AU.Main", "ARF/AU/=" for "AU". */
std::string ConfigurationLine(const std::string& database);

/** True when the configuration switches remote mode on. */
bool IsRemoteConfigured();

}  // namespace tool

#endif
