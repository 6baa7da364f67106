#include "options.h"

#include <CLI/CLI.hpp>

#include "exit_code.h"
#include "failure.h"

namespace pafd {
namespace {

constexpr int kLongestTime = 24 * 60 * 60;
constexpr int kMostConnections = 100000;
constexpr int kMostInstances = 1000000;
constexpr int kShortestMaxLine = 255;
constexpr int kLongestMaxLine = 16 * 1024 * 1024;

constexpr const char* kFooter =
    "Signals: TERM and INT finish the calls in flight and end the server; HUP moves the open databases to the\n"
    "directories that the configuration names now. One that was built anew in its old directory does not move:\n"
    "build it into another directory, name that in the configuration, then send HUP.\n"
    "Exit status: 0 ended by a signal, 2 it could not start.";

/** Options in the form that the parser fills. */
struct Raw
{
  std::vector<std::string> allow;
  int idleTimeout = 0;
  int requestTimeout = 30;
};

void AddPlaces(CLI::App& program, Options& options, Raw& raw)
{
  program.add_option("--listen", options.listen, "Where to serve clients; port 0 lets the system choose")
      ->type_name("HOST:PORT")
      ->capture_default_str();
  program
      .add_option("--allow", raw.allow,
                  "Serve only clients in these networks; needed where --listen or --metrics is not loopback")
      ->type_name("CIDR")
      ->delimiter(',')
      ->allow_extra_args(false);
  program.add_option("--metrics", options.metrics, "Where to serve metrics for Prometheus (GET /metrics)")
      ->type_name("HOST:PORT");
  program.add_option("--config", options.config, "The configuration file")->type_name("FILE");
}

void AddLimits(CLI::App& program, Options& options, Raw& raw)
{
  program.add_option("--max-connections", options.maxConnections, "Further ones are answered 4504 and closed")
      ->check(CLI::Range(1, kMostConnections))
      ->capture_default_str();
  program.add_option("--max-instances", options.connection.session.maxInstances, "Open instances of a connection")
      ->check(CLI::Range(1, kMostInstances))
      ->capture_default_str();
  program.add_option("--max-line", options.connection.maxLine, "Bytes of a request; longer ones are answered 4502")
      ->check(CLI::Range(kShortestMaxLine, kLongestMaxLine))
      ->capture_default_str();
  program.add_option("--idle-timeout", raw.idleTimeout, "Seconds without a request until the end; 0 never")
      ->check(CLI::Range(0, kLongestTime))
      ->capture_default_str();
  program.add_option("--request-timeout", raw.requestTimeout, "Seconds for a request to arrive and a reply to leave")
      ->check(CLI::Range(1, kLongestTime))
      ->capture_default_str();
}

void AddFlags(CLI::App& program, Options& options)
{
  CLI::Option* quiet = program.add_flag("--quiet", options.isQuiet, "Log only warnings and errors");
  program.add_flag("--log-requests", options.connection.logsRequests, "Log every request and reply, addresses too")
      ->excludes(quiet);
  program.add_flag("--trusted", options.connection.session.isTrusted,
                   "Let clients name files and libraries, and switch remote mode");
  program.add_flag("--ignore-remote", options.ignoresRemote,
                   "Start, and serve locally, though the configuration names a socket server");
}

Options Finished(Options options, const Raw& raw)
{
  for (const std::string& network : raw.allow) {
    try {
      options.allowed.Add(network);
    } catch (const Failure& failure) {
      throw Failure(std::string("--allow ") + failure.what());
    }
  }
  options.connection.idleTimeout = std::chrono::seconds(raw.idleTimeout);
  options.connection.requestTimeout = std::chrono::seconds(raw.requestTimeout);
  return options;
}

}  // namespace

std::optional<Options> ReadOptions(int argc, char** argv, int& exitCode)
{
  Options options;
  Raw raw;
  CLI::App program("Serves the address databases of this machine to libraries in remote mode.", "pafd");
  program.set_version_flag("--version", "pafd " PAFD_VERSION);
  program.footer(kFooter);
  AddPlaces(program, options, raw);
  AddLimits(program, options, raw);
  AddFlags(program, options);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    exitCode = program.exit(error) == 0 ? kExitEnded : kExitNotStarted;
    return std::nullopt;
  }
  return Finished(std::move(options), raw);
}

}  // namespace pafd
