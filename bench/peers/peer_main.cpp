/**
 * The program of each peer. It prints one JSON object; scripts/bench_peers runs all of them and makes the tables.
 *
 *     bench_peer_NAME build   PLACE FORMS ADDRESSES    builds the index
 *     bench_peer_NAME lookup  PLACE FORMS QUERIES      looks whole addresses up
 *     bench_peer_NAME hints   PLACE FORMS QUERIES      completes beginnings
 *     bench_peer_NAME lists   PLACE FORMS QUERIES      the same, with lines that stand for several addresses
 *     bench_peer_NAME nearest PLACE FORMS QUERIES      a query: latitude, longitude
 *     bench_peer_NAME polygon PLACE FORMS QUERIES      a query: latitude and longitude of each corner
 *
 * ADDRESSES has lines of identifier, label, latitude, longitude, mesh block, separated by TAB; QUERIES has a query a
 * line, its numbers separated by spaces. Queries are asked one after the other, again and again for at least --least
 * seconds, never for more than --budget. Each is timed by itself; reading the clock counts with it.
 */
#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <exception>
#include <fstream>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>
#include <numeric>
#include <sstream>

#include "peer.h"
#include "usage.h"

namespace {

using Clock = std::chrono::steady_clock;
using nlohmann::json;
using peers::Address;
using peers::Answers;
using peers::Peer;
using peers::Place;

constexpr std::size_t kWarmUp = 1'000;            // queries that are not counted
constexpr std::size_t kMostTimes = 4'000'000;     // that are kept
constexpr std::chrono::seconds kWarmUpBudget{5};  // for peers that are slow

struct Options
{
  std::string task;
  std::string place;
  std::string forms;
  std::string input;
  double leastSeconds = 1;
  double budgetSeconds = 60;
  pid_t server = 0;
};

double SecondsSince(Clock::time_point start)
{
  return std::chrono::duration<double>(Clock::now() - start).count();
}

std::vector<std::string> LinesOf(const std::string& path)
{
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

Address AddressOf(const std::string& line)
{
  std::istringstream stream(line);
  Address address;
  std::string latitude;
  std::string longitude;
  std::getline(stream, address.identifier, '\t');
  std::getline(stream, address.label, '\t');
  std::getline(stream, latitude, '\t');
  std::getline(stream, longitude, '\t');
  std::getline(stream, address.meshBlock, '\t');
  address.place = {std::stod(latitude), std::stod(longitude)};
  return address;
}

std::vector<Place> PlacesOf(const std::string& line)
{
  std::istringstream stream(line);
  std::vector<Place> places;
  for (Place place; stream >> place.latitude >> place.longitude;) places.push_back(place);
  if (places.empty()) throw std::runtime_error("no place in \"" + line + "\"");
  return places;
}

/** Asks the query of a number. */
using Ask = std::function<void(std::size_t, Answers&)>;

Ask AskerFor(Peer& peer, const std::string& task, const std::vector<std::string>& queries)
{
  if (task == "lookup") return [&](std::size_t i, Answers& answers) { peer.Lookup(queries[i], answers); };
  if (task == "hints") return [&](std::size_t i, Answers& answers) { peer.Complete(queries[i], answers); };
  if (task == "lists") return [&](std::size_t i, Answers& answers) { peer.List(queries[i], answers); };
  std::vector<std::vector<Place>> places;
  for (const std::string& query : queries) places.push_back(PlacesOf(query));
  if (task == "nearest")
    return [&peer, places](std::size_t i, Answers& answers) { peer.FindNearest(places[i].front(), answers); };
  return [&peer, places](std::size_t i, Answers& answers) { peer.FindWithin(places[i], answers); };
}

void WarmUp(const Ask& ask, std::size_t count)
{
  const auto start = Clock::now();
  Answers answers;
  for (std::size_t i = 0; i < std::min(count, kWarmUp) && Clock::now() - start < kWarmUpBudget; ++i) {
    answers.clear();
    ask(i, answers);
  }
}

/** The time below which a share of them lies. */
double Percentile(const std::vector<float>& sorted, double share)
{
  const auto rank = static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1) + 0.5);
  return static_cast<double>(sorted[rank]);
}

/** Answers by query, and the microseconds of each asking. */
struct Measured
{
  std::vector<Answers> answers;
  std::vector<float> times;
};

Measured MeasureQueries(const Ask& ask, std::size_t count, const Options& options)
{
  Measured measured;
  measured.answers.reserve(count);
  measured.times.reserve(kMostTimes);
  const auto start = Clock::now();
  Answers answers;
  for (double elapsed = 0; elapsed < options.budgetSeconds && measured.times.size() < kMostTimes &&
                           (measured.answers.size() < count || elapsed < options.leastSeconds);) {
    const std::size_t query = measured.times.size() % count;
    const auto before = Clock::now();
    answers.clear();
    ask(query, answers);
    const auto after = Clock::now();
    measured.times.push_back(std::chrono::duration<float, std::micro>(after - before).count());
    if (measured.answers.size() < count) measured.answers.push_back(answers);
    elapsed = std::chrono::duration<double>(after - start).count();
  }
  return measured;
}

json FiguresOf(std::vector<float>& times)
{
  std::sort(times.begin(), times.end());
  const double microseconds = std::accumulate(times.begin(), times.end(), 0.0);
  return {{"asked", times.size()},
          {"per_second", 1e6 * static_cast<double>(times.size()) / microseconds},
          {"p50_us", Percentile(times, 0.5)},
          {"p99_us", Percentile(times, 0.99)},
          {"worst_us", times.back()}};
}

/** Opens the index and makes it warm. */
json OpenIndex(Peer& peer, const Ask& ask, std::size_t queries, pid_t server)
{
  const peers::Memory before = peers::MemoryInUse(0);
  const auto start = Clock::now();
  peer.Open();
  const double openSeconds = SecondsSince(start);
  WarmUp(ask, queries);
  const peers::Memory after = peers::MemoryInUse(server);
  return {{"open_seconds", openSeconds},
          {"private_kib", after.privateKib - std::min(after.privateKib, before.privateKib)},
          {"resident_kib", after.residentKib - std::min(after.residentKib, before.residentKib)}};
}

json AskQueries(Peer& peer, const Options& options)
{
  const std::vector<std::string> queries = LinesOf(options.input);
  if (queries.empty()) throw std::runtime_error("no queries in " + options.input);
  const Ask ask = AskerFor(peer, options.task, queries);
  json result = OpenIndex(peer, ask, queries.size(), options.server);
  const double cpuBefore = peers::CpuSeconds(options.server);
  Measured measured = MeasureQueries(ask, queries.size(), options);
  const double cpuSeconds = peers::CpuSeconds(options.server) - cpuBefore;
  const bool isForPlaces = options.task == "nearest" || options.task == "polygon";
  for (Answers& answers : measured.answers)
    if (!isForPlaces) peer.Translate(answers);
  result.update(FiguresOf(measured.times));
  result["per_cpu_second"] = static_cast<double>(measured.times.size()) / cpuSeconds;
  result["answers"] = measured.answers;
  return result;
}

json BuildIndex(Peer& peer, const Options& options)
{
  std::vector<Address> addresses;
  for (const std::string& line : LinesOf(options.input)) addresses.push_back(AddressOf(line));
  const auto start = Clock::now();
  peer.Build(addresses);
  return {{"seconds", SecondsSince(start)},
          {"bytes", peer.Bytes()},
          {"peak_kib", peers::MemoryInUse(options.server).peakKib}};
}

int Run(const Options& options)
{
  const peers::WordForms forms(options.forms);
  const std::unique_ptr<Peer> peer = peers::MakePeer(options.place, forms);
  try {
    const json result = options.task == "build" ? BuildIndex(*peer, options) : AskQueries(*peer, options);
    std::cout << result.dump(-1, ' ', false, json::error_handler_t::replace) << '\n';
  } catch (const peers::NotOffered& reason) {
    std::cout << json{{"not_offered", reason.what()}}.dump() << '\n';
  }
  return std::cout.flush() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
  Options options;
  CLI::App app("Measures one way to look addresses up.");
  app.add_option("task", options.task)
      ->required()
      ->check(CLI::IsMember({"build", "lookup", "hints", "lists", "nearest", "polygon"}));
  app.add_option("place", options.place, "directory of the index, or how to reach the server")->required();
  app.add_option("forms", options.forms, "written forms of words")->required();
  app.add_option("input", options.input, "addresses or queries")->required();
  app.add_option("--least", options.leastSeconds, "seconds to ask at least")->check(CLI::NonNegativeNumber);
  app.add_option("--budget", options.budgetSeconds, "seconds to ask at most")->check(CLI::PositiveNumber);
  app.add_option("--server", options.server, "process whose memory counts as well");
  CLI11_PARSE(app, argc, argv);
  try {
    return Run(options);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
