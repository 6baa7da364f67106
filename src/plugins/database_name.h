/** From the name of a database to its path, its country and its options. */
#ifndef QXPAF_SRC_PLUGINS_DATABASE_NAME_H
#define QXPAF_SRC_PLUGINS_DATABASE_NAME_H

#include <string>
#include <string_view>

namespace qxpaf {

/** Opening modes of a plug-in's database. */
enum OpenMode : int
{
  kModeConfigured = 0,
  kModeDisk = 1,
  kModeMemory = 2,
  kModeMapped = 3,
  kModeHighest = 4
};

/** True for the form "DLL:Base;path", which names a plug-in library directly. */
bool IsDllName(std::string_view name);

/**
 * Resolves a database name through the configuration. Resolved names are cached until ExpireArfPaths, up to 1 MiB of
 * names and paths; those beyond are resolved anew each time. Thread-safe.
 *
 * @param path     receives the path to open, or the name itself when it has the "DLL:" form
 * @param country  receives "AU", "NZ", "US", "UK" or "INT", or nothing when the name does not tell
 * @param options  receives what stood behind the path in the configuration, from its first ";" on, and one more ";"
 * @return 0; 6497; 6498, 6499 or another configuration error as a status
 */
int GetArfPath(const char* name, std::string& path, std::string& country, std::string& options);

/** Forgets every resolved path. */
void ExpireArfPaths();

/** The mode to open with: the caller's, or for 0 that of the options or of the configuration. 1 to 4. */
int OpeningMode(int mode, const std::string& options);

/**
 * The country that a database directory claims in its version file.
 *
 * @param errText receives on failure the version file's path, cut to errSize - 1 characters; null when errSize is 0
 * @return 0, or 6495 when the version file cannot be opened
 */
int CountryOfDatabase(const std::string& directory, std::string& country, char* errText, int errSize);

}  // namespace qxpaf

#endif
