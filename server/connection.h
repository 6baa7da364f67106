/** One client's connection, served by a thread of its own. */
#ifndef PAFD_CONNECTION_H
#define PAFD_CONNECTION_H

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "endpoint.h"
#include "file_descriptor.h"
#include "line_reader.h"
#include "metrics.h"
#include "session.h"

namespace pafd {

struct ConnectionLimits
{
  std::size_t maxLine = 65536;
  std::chrono::seconds idleTimeout{0};      // between requests; 0 waits without limit
  std::chrono::seconds requestTimeout{30};  // from a request's first byte to its last, and for taking a reply
  SessionLimits session;
  bool logsRequests = false;
};

class Connection
{
 public:
  Connection(FileDescriptor socket, const Endpoint& peer, std::uint64_t number, const ConnectionLimits& limits,
             Metrics& metrics);

  /** For a connection that is not going to run. */
  FileDescriptor GiveBackSocket() { return std::move(socket_); }

  /** Serves requests until the connection ends, then closes its instances. The socket stays open until destruction. */
  void Run();

  /** Lets the request in progress finish and then ends the connection. Any thread. */
  void Stop();

  /** Also gives up a reply that the client does not take. Any thread. */
  void Abandon();

 private:
  enum class End
  {
    ByPeer,
    Idle,
    SlowRequest,
    SlowReply,
    Stopped,
    Broken
  };

  End Converse(Session& session);
  bool Receive(End& end);
  std::chrono::seconds ReceiveLimit();
  void LimitReceive(std::chrono::seconds limit);
  bool Answer(Session& session, LineReader::Found found, std::string_view line, End& end);
  bool Send(std::string_view reply, End& end);
  void NoteRequest(const Outcome& outcome, std::string_view line, std::string_view reply);
  void Reset();
  void LogEnd(End end) const;

  FileDescriptor socket_;
  std::string peer_;
  std::uint64_t number_;
  const ConnectionLimits& limits_;
  Metrics& metrics_;
  LineReader reader_;
  std::string reply_;
  std::atomic<bool> isStopping_ = false;
  std::chrono::seconds receiveLimit_{0};  // as the socket has it
  std::chrono::steady_clock::time_point started_;
  std::chrono::steady_clock::time_point lineBegan_;
  bool isInsideLine_ = false;
  std::uint64_t requests_ = 0;
  std::uint64_t errors_ = 0;
};

}  // namespace pafd

#endif
