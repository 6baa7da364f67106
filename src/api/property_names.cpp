#include "api/property_names.h"

#include <algorithm>
#include <string>

#include "errors/thread_data.h"
#include "platform/ascii.h"
#include "platform/bounded.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"

namespace qxpaf {
namespace {

// Callers know the names by their numbers: append only.
constexpr const char* kLibraryNames[] = {
    "OpenARF",         "ClientCount",     "PafMachine",      "CountryCode", "ArfLibVersion", "ArfLibVersionAu",
    "ArfLibVersionNz", "ArfLibVersionUs", "ArfLibVersionUk", "ARFs",        "DefaultArf"};
constexpr int kLibraryNameCount = static_cast<int>(std::size(kLibraryNames));

constexpr const char* kDefaultPluginNames[] = {"OutputFields", "PafEngineVersion", "PafLibVersion", "PafVersionInfo",
                                               "SortPlanDate"};
constexpr int kDefaultPluginNameCount = static_cast<int>(std::size(kDefaultPluginNames));

constexpr int kSearcherAnswerSize = 2048;

int AskSearcher(IArfSearcher& searcher, int id, const char* name, std::string& answer)
{
  char text[kSearcherAnswerSize];
  text[0] = '\0';
  const int status = searcher.GetProperties(name, text, sizeof text);
  text[sizeof text - 1] = '\0';
  if (status != 0) return SetInstanceError(status, id, nullptr);
  answer += text;
  return PAF_OK;
}

int Answer(const std::string& answer, char* out, int size)
{
  return CopyWhole(out, Capacity(size), answer) ? PAF_OK : PAF_ERR_BUFFER_TOO_SMALL;
}

}  // namespace

bool IsDefaultPluginProperty(std::string_view name)
{
  return std::any_of(std::begin(kDefaultPluginNames), std::end(kDefaultPluginNames),
                     [name](const char* known) { return EqualIgnoringCase(name, known); });
}

int ListPropertyNames(IArfSearcher* searcher, int id, char* out, int size)
{
  std::string names;
  for (const char* name : kLibraryNames) names.append(name).append(";");
  if (searcher != nullptr) {
    if (const int status = AskSearcher(*searcher, id, "Properties", names); status != 0) return status;
  } else {
    for (const char* name : kDefaultPluginNames) names.append(name).append(";");
    names.pop_back();
  }
  return Answer(names, out, size);
}

int GetPropertyNameByIndex(IArfSearcher* searcher, int id, int n, char* out, int size)
{
  std::string name;
  if (n >= 1 && n <= kLibraryNameCount) {
    name = kLibraryNames[n - 1];
  } else if (n > kLibraryNameCount) {
    const int pluginNumber = n - kLibraryNameCount;
    if (searcher != nullptr) {
      const std::string request = "PropertyName" + std::to_string(pluginNumber);
      if (const int status = AskSearcher(*searcher, id, request.c_str(), name); status != 0) return status;
    } else if (pluginNumber <= kDefaultPluginNameCount) {
      name = kDefaultPluginNames[pluginNumber - 1];
    }
  }
  return Answer(name, out, size);
}

}  // namespace qxpaf
