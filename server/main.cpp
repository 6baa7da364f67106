/** pafd: serves the address databases of this machine to libraries that work in remote mode. */
#include <malloc.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "exit_code.h"
#include "failure.h"
#include "library.h"
#include "log.h"
#include "options.h"
#include "server.h"
#include "signals.h"

namespace {

/** Tells programs that let the system choose the port which one it is, on standard output. */
void Announce(const char* what, const std::string& wanted, const pafd::Listener& listener)
{
  spdlog::info("{} on {}", what, Describe(listener.Place()));
  if (pafd::ReadEndpoint(wanted).port == 0) {
    std::cout << what << ' ' << Describe(listener.Place()) << std::endl;
  }
}

/** Every connection is a descriptor. */
void AllowDescriptors(std::size_t connections)
{
  constexpr rlim_t kOthers = 128;  // brief peers, databases, logs
  rlimit limit{};
  const rlim_t needed = connections + kOthers;
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= needed) {
    return;
  }
  limit.rlim_cur = std::min(needed, limit.rlim_max);
  ::setrlimit(RLIMIT_NOFILE, &limit);
  if (limit.rlim_cur < needed) {
    spdlog::warn("the system allows {} descriptors, too few for {} connections", limit.rlim_cur, connections);
  }
}

/** Keeps the size fixed from which on memory goes back to the system; it would grow with the first long request. */
void GiveBackLargeBlocks()
{
  constexpr int kLarge = 128 * 1024;
  ::mallopt(M_MMAP_THRESHOLD, kLarge);
}

int Serve(const pafd::Options& options)
{
  if (!options.config.empty()) {
    pafd::UseConfiguration(options.config);
  }
  pafd::WorkLocally(options.ignoresRemote);
  AllowDescriptors(options.maxConnections);
  pafd::Server server(options);
  const pafd::DefaultDatabase database;
  Announce("clients", options.listen, server.Clients());
  if (server.MetricsReaders() != nullptr) {
    Announce("metrics", options.metrics, *server.MetricsReaders());
  }
  if (!server.Run()) {
    // Threads still use what an orderly end would destroy.
    std::_Exit(pafd::kExitEnded);
  }
  spdlog::info("ended");
  return pafd::kExitEnded;
}

}  // namespace

int main(int argc, char** argv)
{
  try {
    pafd::BlockSignals();
    GiveBackLargeBlocks();
    int exitCode = pafd::kExitEnded;
    const auto options = pafd::ReadOptions(argc, argv, exitCode);
    if (!options) {
      return exitCode;
    }
    pafd::StartLog(options->isQuiet);
    return Serve(*options);
  } catch (const std::exception& error) {
    std::cerr << "pafd: " << error.what() << '\n';
    return pafd::kExitNotStarted;
  }
}
