/**
 * Peers that get one text and no thread: clients that are turned away, and readers of the metrics. They are served by
 * the accepting thread, which never waits for them; few at a time, and each has a second.
 */
#ifndef PAFD_BRIEF_PEERS_H
#define PAFD_BRIEF_PEERS_H

#include <poll.h>

#include <chrono>
#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "file_descriptor.h"

namespace pafd {

class BriefPeers
{
 public:
  /** Makes the answer to the head of an HTTP request. */
  using Answerer = std::function<std::string(std::string_view head)>;

  /** Sends a text at once, then waits until the peer goes, so that its own words cannot destroy the text on its way. */
  void Tell(FileDescriptor socket, std::string text);

  /** Waits for an HTTP request and sends what `answerer` makes of it. */
  void Serve(FileDescriptor socket, Answerer answerer);

  /** Appends what is to be polled; Handle takes the same entries in the same order. */
  void AppendTo(std::vector<pollfd>& entries) const;
  void Handle(const pollfd* entries);

  bool IsEmpty() const { return peers_.empty(); }

 private:
  struct Peer
  {
    FileDescriptor socket;
    std::chrono::steady_clock::time_point deadline;
    Answerer answerer;  // empty when there is nothing to wait for
    std::string request;
    std::string unsent;
  };

  void Add(Peer peer);
  static bool Progress(Peer& peer, short events);
  static bool Read(Peer& peer);
  static void Write(Peer& peer);

  std::list<Peer> peers_;
};

}  // namespace pafd

#endif
