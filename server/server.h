/** The accepting thread: takes connections, gives each a thread, counts them, and ends them on a signal. */
#ifndef PAFD_SERVER_H
#define PAFD_SERVER_H

#include <poll.h>

#include <chrono>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "brief_peers.h"
#include "connection.h"
#include "file_descriptor.h"
#include "listener.h"
#include "metrics.h"
#include "options.h"
#include "update.h"

namespace pafd {

class Server
{
 public:
  /** Listens. The signals that Run waits for must be blocked in every thread. @throws Failure */
  explicit Server(const Options& options);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  const Listener& Clients() const { return clients_; }
  /** Null without metrics. */
  const Listener* MetricsReaders() const { return metricsReaders_ ? &*metricsReaders_ : nullptr; }

  /**
   * Serves until SIGTERM or SIGINT, then ends the connections.
   *
   * @return false when calls were still running after the time that ending may take; the process must then end
   *         without destroying anything
   */
  bool Run();

 private:
  struct Worker
  {
    explicit Worker(std::unique_ptr<Connection> served) : connection(std::move(served)) {}
    std::unique_ptr<Connection> connection;
    std::thread thread;
  };
  using Workers = std::list<Worker>;

  void WaitAndHandle();
  bool HandleSignal();
  void AcceptClients();
  void AcceptMetricsReaders();
  void Welcome(Accepted accepted);
  void TurnAway(Accepted accepted, Turned why, int status);
  void Start(Workers::iterator worker);
  void Reap();
  bool End();
  bool WaitForWorkers(std::chrono::steady_clock::time_point deadline);

  const Options& options_;
  Listener clients_;
  std::optional<Listener> metricsReaders_;
  FileDescriptor signals_;
  FileDescriptor wake_;
  Metrics metrics_;
  BriefPeers briefPeers_;
  Workers workers_;
  std::mutex finishedLock_;  // guards finished_
  std::vector<Workers::iterator> finished_;
  std::uint64_t connectionCount_ = 0;
  std::chrono::steady_clock::time_point acceptAgain_{};
  bool isEnding_ = false;
  Update update_;
};

}  // namespace pafd

#endif
