#include "config/config_file.h"

#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace qxpaf {
namespace {

/** The value of an environment variable, or null when it is unset or empty. */
const char* NonEmptyVariable(const char* name)
{
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : nullptr;
}

/** Writes the path of the file in HOME. A path that does not fit could not be opened anyway. */
bool BuildHomePath(char (&path)[PATH_MAX], std::size_t longestHome)
{
  const char* home = NonEmptyVariable("HOME");
  const std::size_t length = home != nullptr ? std::strlen(home) : 0;
  if (length == 0 || length > longestHome) return false;
  const char* separator = home[length - 1] == '/' ? "" : "/";
  const int written = std::snprintf(path, sizeof path, "%s%s.morvex", home, separator);
  return written > 0 && static_cast<std::size_t>(written) < sizeof path;
}

/** Calls open(path) for the places in their order until it returns true. */
template <class Open>
bool TryPlaces(std::size_t longestHome, Open open)
{
  if (open(".morvex")) return true;
  const char* named = NonEmptyVariable("MORVEX_CONFIG_FILE");
  if (named != nullptr && open(named)) return true;
  char inHome[PATH_MAX];
  if (BuildHomePath(inHome, longestHome) && open(inHome)) return true;
  return open("/usr/etc/.morvex");
}

}  // namespace

bool OpenConfigFile(SelfClosingFILE& file, std::size_t longestHome) noexcept
{
  return TryPlaces(longestHome, [&file](const char* path) { return file.Open(path, "r", false); });
}

std::string FindConfigFile()
{
  std::string found;
  TryPlaces(kAnyHome, [&found](const char* path) {
    if (!FileExists_(path)) return false;
    found = path;
    return true;
  });
  return found;
}

std::string_view TrimConfigLine(const char* piece)
{
  std::string_view line = piece;
  if (line.ends_with('\n')) {
    line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);
  }
  while (!line.empty() && std::isspace(static_cast<unsigned char>(line.front())) != 0) line.remove_prefix(1);
  return line;
}

}  // namespace qxpaf
