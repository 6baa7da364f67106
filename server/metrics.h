/** Counters of the server, as text for Prometheus. */
#ifndef PAFD_METRICS_H
#define PAFD_METRICS_H

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "session.h"

namespace pafd {

/** Why a connection was not served. */
enum class Turned
{
  NotAllowed,  // its address is in none of the allowed networks
  TooMany,     // as many connections as allowed are there
  NoThread     // the system gave no thread
};

/** Thread-safe. */
class Metrics
{
 public:
  Metrics();

  void ConnectionOpened() { ++connectionsOpened_; }
  void ConnectionClosed() { ++connectionsClosed_; }
  void ConnectionTurnedAway(Turned why) { ++turnedAway_[static_cast<std::size_t>(why)]; }
  void Served(const Outcome& outcome, std::chrono::nanoseconds duration);

  /** All metrics in the text format 0.0.4. */
  std::string Text() const;

 private:
  using Counter = std::atomic<std::uint64_t>;

  static constexpr std::array kBounds = {0.000025, 0.00005, 0.0001, 0.00025, 0.0005, 0.001, 0.0025, 0.005, 0.01,
                                         0.025,    0.05,    0.1,    0.25,    0.5,    1.0,   2.5,    5.0,   10.0};

  void CountFailure(std::size_t row, int status);
  void AppendConnections(std::string& text) const;
  void AppendRequests(std::string& text) const;
  void AppendDurations(std::string& text) const;

  Counter connectionsOpened_ = 0;
  Counter connectionsClosed_ = 0;
  std::array<Counter, 3> turnedAway_{};
  std::vector<Counter> succeeded_;                            // by row of the request table
  std::array<Counter, kBounds.size() + 1> durations_{};       // each request in one of them
  Counter durationSum_ = 0;                                   // nanoseconds
  mutable std::mutex lock_;                                   // guards failed_
  std::vector<std::map<std::string, std::uint64_t>> failed_;  // by row, unknown names last; then by status
};

}  // namespace pafd

#endif
