#include "server.h"

#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <system_error>
#include <utility>

#include "failure.h"
#include "log.h"
#include "qxpaf/paf.h"
#include "signals.h"

namespace pafd {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/** Calls in flight get this long; then replies that nobody takes are given up; then the process ends as it is. */
constexpr auto kPatience = 3s;
constexpr auto kLastPatience = 1500ms;

/** After a failed accept the next one waits: the connection is still there, and would fail again at once. */
constexpr auto kAcceptPause = 100ms;

/** While brief peers are there, their deadlines are looked at this often. */
constexpr auto kBriefCheck = 250ms;

Endpoint Permitted(const std::string& option, const std::string& place, const AllowList& allowed)
{
  const Endpoint endpoint = ReadEndpoint(place);
  if (!IsLoopback(endpoint.address) && allowed.IsEmpty()) {
    throw Failure(option + " " + place +
                  " can be reached from other machines: name with --allow the networks whose "
                  "clients are served, for instance --allow 10.0.0.0/8");
  }
  return endpoint;
}

void Drain(int eventDescriptor)
{
  eventfd_t count = 0;
  ::eventfd_read(eventDescriptor, &count);
}

/** Milliseconds for poll, rounded up; -1 for no limit. */
int Milliseconds(std::optional<Clock::duration> time)
{
  return !time ? -1 : static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(std::max(*time, 0ns)).count());
}

std::string HttpAnswer(std::string_view head, const Metrics& metrics)
{
  const bool isKnown = head.starts_with("GET /metrics ") || head.starts_with("GET /metrics?");
  const std::string body = isKnown ? metrics.Text() : "The metrics are at /metrics.\n";
  return std::string("HTTP/1.1 ") + (isKnown ? "200 OK" : "404 Not Found") +
         "\r\nContent-Type: text/plain; version=0.0.4; charset=utf-8\r\nConnection: close\r\nContent-Length: " +
         std::to_string(body.size()) + "\r\n\r\n" + body;
}

}  // namespace

Server::Server(const Options& options)
    : options_(options),
      clients_(Permitted("--listen", options.listen, options.allowed)),
      signals_(::signalfd(-1, &ServedSignals(), SFD_CLOEXEC | SFD_NONBLOCK)),
      wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
  if (!options.metrics.empty()) {
    metricsReaders_.emplace(Permitted("--metrics", options.metrics, options.allowed));
  }
  if (!signals_ || !wake_) {
    throw Failure(std::string("no descriptors: ") + std::strerror(errno));
  }
}

Server::~Server() = default;

bool Server::Run()
{
  while (!isEnding_) {
    WaitAndHandle();
  }
  return End();
}

void Server::WaitAndHandle()
{
  const Clock::time_point now = Clock::now();
  const bool mayAccept = now >= acceptAgain_;
  const short whenAccepting = mayAccept ? POLLIN : short{0};
  std::vector<pollfd> entries = {{signals_.Get(), POLLIN, 0},
                                 {wake_.Get(), POLLIN, 0},
                                 {clients_.Descriptor(), whenAccepting, 0},
                                 {metricsReaders_ ? metricsReaders_->Descriptor() : -1, whenAccepting, 0}};
  const std::size_t briefPeers = entries.size();
  briefPeers_.AppendTo(entries);
  std::optional<Clock::duration> limit;
  if (!mayAccept) {
    limit = acceptAgain_ - now;
  } else if (!briefPeers_.IsEmpty()) {
    limit = kBriefCheck;
  }
  ::poll(entries.data(), entries.size(), Milliseconds(limit));
  briefPeers_.Handle(entries.data() + briefPeers);
  if (entries[1].revents != 0) {
    Reap();
  }
  if (entries[0].revents != 0 && HandleSignal()) {
    isEnding_ = true;
    return;
  }
  if (entries[2].revents != 0) {
    AcceptClients();
  }
  if (entries[3].revents != 0) {
    AcceptMetricsReaders();
  }
}

/** @return true when the server is to end */
bool Server::HandleSignal()
{
  signalfd_siginfo signal{};
  if (::read(signals_.Get(), &signal, sizeof signal) != static_cast<ssize_t>(sizeof signal)) {
    return false;
  }
  if (signal.ssi_signo == static_cast<unsigned>(SIGHUP)) {
    spdlog::info("SIGHUP: updating the databases");
    update_.Start();
    return false;
  }
  spdlog::info("{}: ending, {} connections are open",
               signal.ssi_signo == static_cast<unsigned>(SIGINT) ? "SIGINT" : "SIGTERM", workers_.size());
  return true;
}

void Server::AcceptClients()
{
  int error = 0;
  while (std::optional<Accepted> accepted = clients_.Accept(error)) {
    if (!options_.allowed.Allows(accepted->peer.address)) {
      spdlog::warn("connection from {} refused: its address is not allowed", Describe(accepted->peer));
      metrics_.ConnectionTurnedAway(Turned::NotAllowed);
    } else if (workers_.size() >= options_.maxConnections) {
      TurnAway(std::move(*accepted), Turned::TooMany, PAF_ERR_SERVER_THREAD_LIMIT);
    } else {
      Welcome(std::move(*accepted));
    }
  }
  if (error != 0) {
    spdlog::error("accepting a connection failed: {} (status {})", std::strerror(error),
                  static_cast<int>(PAF_ERR_SERVER_ACCEPT));
    acceptAgain_ = Clock::now() + kAcceptPause;
  }
}

void Server::AcceptMetricsReaders()
{
  int error = 0;
  while (std::optional<Accepted> accepted = metricsReaders_->Accept(error)) {
    if (options_.allowed.Allows(accepted->peer.address)) {
      briefPeers_.Serve(std::move(accepted->socket),
                        [this](std::string_view head) { return HttpAnswer(head, metrics_); });
    }
  }
  if (error != 0) {
    acceptAgain_ = Clock::now() + kAcceptPause;
  }
}

void Server::Welcome(Accepted accepted)
{
  const Endpoint peer = accepted.peer;
  workers_.emplace_back(std::make_unique<Connection>(std::move(accepted.socket), peer, ++connectionCount_,
                                                     options_.connection, metrics_));
  try {
    Start(std::prev(workers_.end()));
  } catch (const std::system_error&) {
    FileDescriptor socket = workers_.back().connection->GiveBackSocket();
    workers_.pop_back();
    TurnAway({std::move(socket), peer}, Turned::NoThread, PAF_ERR_SERVER_CREATE_THREAD);
  }
}

void Server::Start(Workers::iterator worker)
{
  worker->thread = std::thread([this, worker] {
    worker->connection->Run();
    {
      const std::lock_guard<std::mutex> lock(finishedLock_);
      finished_.push_back(worker);
    }
    ::eventfd_write(wake_.Get(), 1);
  });
  metrics_.ConnectionOpened();
}

void Server::TurnAway(Accepted accepted, Turned why, int status)
{
  const char* reason = why == Turned::TooMany ? "as many connections as allowed are open" : "the system gave no thread";
  spdlog::warn("connection from {} refused: {} (status {})", Describe(accepted.peer), reason, status);
  metrics_.ConnectionTurnedAway(why);
  std::string line;
  WriteStatus(status, line);
  briefPeers_.Tell(std::move(accepted.socket), std::move(line));
}

/** Joins the threads that have finished; this closes their default instances, and then their connections. */
void Server::Reap()
{
  Drain(wake_.Get());
  std::vector<Workers::iterator> finished;
  {
    const std::lock_guard<std::mutex> lock(finishedLock_);
    finished.swap(finished_);
  }
  for (const Workers::iterator worker : finished) {
    worker->thread.join();
    workers_.erase(worker);
    metrics_.ConnectionClosed();
  }
}

bool Server::End()
{
  for (const Worker& worker : workers_) {
    worker.connection->Stop();
  }
  if (!WaitForWorkers(Clock::now() + kPatience)) {
    for (const Worker& worker : workers_) {
      worker.connection->Abandon();
    }
    WaitForWorkers(Clock::now() + kLastPatience);
  }
  if (!workers_.empty() || update_.IsRunning()) {
    spdlog::warn("ending with {} calls{} still running", workers_.size(), update_.IsRunning() ? " and an update" : "");
    return false;
  }
  return true;
}

/** @return true when all have finished in time */
bool Server::WaitForWorkers(Clock::time_point deadline)
{
  while (!workers_.empty()) {
    const Clock::duration rest = deadline - Clock::now();
    if (rest <= 0ns) {
      return false;
    }
    pollfd entry = {wake_.Get(), POLLIN, 0};
    ::poll(&entry, 1, Milliseconds(rest));
    Reap();
  }
  return true;
}

}  // namespace pafd
