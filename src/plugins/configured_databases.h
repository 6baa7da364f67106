/** The databases that the configuration names, installed or not. */
#ifndef QXPAF_SRC_PLUGINS_CONFIGURED_DATABASES_H
#define QXPAF_SRC_PLUGINS_CONFIGURED_DATABASES_H

#include <string>
#include <vector>

namespace qxpaf {

struct ConfiguredDatabase
{
  std::string name;
  std::string path;
};

/**
 * The values of the configuration key "ARF", in file order, and then those of each of its keys of two or three letters,
 * a country code, named "AU.Main" (or "AU" for the unnamed value). A value of "ARF" itself whose path ends in "?" or
 * "*" stands for all directories beside it, named "value.directory".
 */
std::vector<ConfiguredDatabase> ConfiguredDatabases();

/** The name of the first configured database whose path is the setting PafDir; empty when there is none. */
std::string ConfiguredDefaultDatabase();

}  // namespace qxpaf

#endif
