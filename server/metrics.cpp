#include "metrics.h"

#include <spdlog/fmt/fmt.h>

#include <algorithm>

#include "request_table.h"

namespace pafd {
namespace {

/** Plug-ins choose their statuses; what comes behind this many different ones counts as "other". */
constexpr std::size_t kMostStatuses = 40;

constexpr std::array kTurnedNames = {"not_allowed", "too_many", "no_thread"};

void AppendHead(std::string& text, const char* name, const char* kind, const char* help)
{
  fmt::format_to(std::back_inserter(text), "# HELP {0} {2}\n# TYPE {0} {1}\n", name, kind, help);
}

void AppendCount(std::string& text, std::string_view name, std::string_view status, std::uint64_t count)
{
  fmt::format_to(std::back_inserter(text), "pafd_requests_total{{name=\"{}\",status=\"{}\"}} {}\n", name, status,
                 count);
}

}  // namespace

Metrics::Metrics() : succeeded_(Requests().size()), failed_(Requests().size() + 1) {}

void Metrics::Served(const Outcome& outcome, std::chrono::nanoseconds duration)
{
  const auto row =
      outcome.request == nullptr ? Requests().size() : static_cast<std::size_t>(outcome.request - Requests().data());
  if (outcome.status == 0) {
    ++succeeded_[row];
  } else {
    CountFailure(row, outcome.status);
  }
  const double seconds = std::chrono::duration<double>(duration).count();
  const auto bound = std::lower_bound(kBounds.begin(), kBounds.end(), seconds);
  ++durations_[static_cast<std::size_t>(bound - kBounds.begin())];
  durationSum_ += static_cast<std::uint64_t>(duration.count());
}

void Metrics::CountFailure(std::size_t row, int status)
{
  const std::lock_guard<std::mutex> lock(lock_);
  std::map<std::string, std::uint64_t>& counts = failed_[row];
  const std::string name = std::to_string(status);
  const bool isNew = counts.size() >= kMostStatuses && !counts.contains(name);
  ++counts[isNew ? "other" : name];
}

std::string Metrics::Text() const
{
  std::string text;
  AppendConnections(text);
  AppendRequests(text);
  AppendDurations(text);
  return text;
}

void Metrics::AppendConnections(std::string& text) const
{
  const std::uint64_t closed = connectionsClosed_;
  const std::uint64_t opened = connectionsOpened_;
  AppendHead(text, "pafd_connections", "gauge", "Connections being served.");
  fmt::format_to(std::back_inserter(text), "pafd_connections {}\n", opened - closed);
  AppendHead(text, "pafd_connections_total", "counter", "Connections served, ended ones included.");
  fmt::format_to(std::back_inserter(text), "pafd_connections_total {}\n", opened);
  AppendHead(text, "pafd_connections_turned_away_total", "counter", "Connections that were not served.");
  for (std::size_t i = 0; i < kTurnedNames.size(); ++i) {
    fmt::format_to(std::back_inserter(text), "pafd_connections_turned_away_total{{reason=\"{}\"}} {}\n",
                   kTurnedNames[i], turnedAway_[i].load());
  }
}

void Metrics::AppendRequests(std::string& text) const
{
  AppendHead(text, "pafd_requests_total", "counter", "Requests by name and status.");
  const std::lock_guard<std::mutex> lock(lock_);
  for (std::size_t row = 0; row < failed_.size(); ++row) {
    const std::string_view name = row < succeeded_.size() ? Requests()[row].name : "unknown";
    const std::uint64_t succeeded = row < succeeded_.size() ? succeeded_[row].load() : 0;
    if (succeeded > 0) {
      AppendCount(text, name, "0", succeeded);
    }
    for (const auto& [status, count] : failed_[row]) {
      AppendCount(text, name, status, count);
    }
  }
}

void Metrics::AppendDurations(std::string& text) const
{
  constexpr const char* kName = "pafd_request_duration_seconds";
  AppendHead(text, kName, "histogram", "Time from a whole request line to its reply, sending not included.");
  std::uint64_t count = 0;
  for (std::size_t i = 0; i < kBounds.size(); ++i) {
    count += durations_[i];
    fmt::format_to(std::back_inserter(text), "{}_bucket{{le=\"{}\"}} {}\n", kName, kBounds[i], count);
  }
  count += durations_.back();
  const double sum = static_cast<double>(durationSum_) / 1e9;
  fmt::format_to(std::back_inserter(text), "{0}_bucket{{le=\"+Inf\"}} {1}\n{0}_sum {2:.9f}\n{0}_count {1}\n", kName,
                 count, sum);
}

}  // namespace pafd
