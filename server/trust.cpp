#include "trust.h"

#include <strings.h>

#include "qxpaf/paf.h"

namespace pafd {
namespace {

constexpr const char* kRemoteModeSettings[] = {"UseSockets", "TcpHost", "TcpPort"};
constexpr std::string_view kPrefixesOfDatabases[] = {"ArfVersion:", "ArfStatus:"};

int RefusePath(std::string_view database)
{
  return IsConfiguredName(database) ? 0 : PAF_ERR_NOT_CONFIGURED;
}

}  // namespace

bool IsConfiguredName(std::string_view database)
{
  return database.find_first_of("/\\:") == std::string_view::npos;
}

int RefuseToOpen(const Arguments& arguments)
{
  return RefusePath(arguments.texts[0]);
}

int RefuseToGet(const Arguments& arguments)
{
  const std::string& name = arguments.texts[0];
  for (const std::string_view prefix : kPrefixesOfDatabases) {
    if (::strncasecmp(name.c_str(), prefix.data(), prefix.size()) == 0) {
      return RefusePath(std::string_view(name).substr(prefix.size()));
    }
  }
  return 0;
}

int RefuseToSet(const Arguments& arguments)
{
  const char* name = arguments.texts[0].c_str();
  for (const char* setting : kRemoteModeSettings) {
    if (::strcasecmp(name, setting) == 0) {
      return PAF_ERR_NOT_IMPLEMENTED;
    }
  }
  return ::strcasecmp(name, "OpenARF") == 0 ? RefusePath(arguments.texts[1]) : 0;
}

}  // namespace pafd
