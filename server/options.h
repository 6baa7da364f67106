/** The command line. */
#ifndef PAFD_OPTIONS_H
#define PAFD_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "allow_list.h"
#include "connection.h"

namespace pafd {

struct Options
{
  std::string listen = "127.0.0.1:7070";
  std::string metrics;  // empty: none
  std::string config;   // empty: the library's usual places
  AllowList allowed;
  std::size_t maxConnections = 256;
  ConnectionLimits connection;
  bool isQuiet = false;
  bool ignoresRemote = false;
};

/**
 * Reads the command line. Help, version and mistakes are printed.
 *
 * @param exitCode  set when nothing is returned
 * @throws Failure for a network that is none
 */
std::optional<Options> ReadOptions(int argc, char** argv, int& exitCode);

}  // namespace pafd

#endif
