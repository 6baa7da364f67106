/** The library's one connection to the socket server. */
#ifndef QXPAF_SRC_REMOTE_SOCKET_CLIENT_H
#define QXPAF_SRC_REMOTE_SOCKET_CLIENT_H

#include <atomic>
#include <cstddef>

#include "qxpaf/platform/thread.h"

namespace qxpaf {

/** Bytes of the text that describes a transport failure. */
inline constexpr std::size_t kSocketErrorTextSize = 256;

/**
 * Exchanges request lines for reply lines with the server of remote/server_address.h, over a connection that the first
 * request opens and all threads share. One exchange runs at a time.
 *
 * A failed exchange closes the connection and marks the client broken: the server has lost every instance that was
 * opened over it, and no request travels until AllowReConnect says that the instances know. A failed connection attempt
 * loses nothing; the next request tries again.
 */
class SocketClient : public QXNonCopyable
{
 public:
  /** @param responseTimeout seconds to wait for each part of a reply; 0 without limit */
  explicit SocketClient(unsigned long responseTimeout = 0);

  /**
   * One exchange. A server that closes the connection instead of answering gives an empty reply and 0; the next
   * exchange then fails with 4551.
   *
   * @param request   the line without its line feed; line feeds in it become TABs for good. The place of its terminator
   *                  is written to
   * @param reply     receives the server's line without line feed, and without the carriage return before it
   * @param replySize bytes of reply, at least 1
   * @param errorText kSocketErrorTextSize bytes for the words to a failure; empty when there are none
   * @return 0, 4200 to 4206 (connecting), 4550 (reading), 4551 (sending), 4555 (reply too long) or 4556 (broken)
   */
  int CallSocSvr(char* request, char* reply, int replySize, char* errorText);

  /** Closes the connection and marks the client broken, when no exchange runs any more. */
  void BreakConnection();

  bool IsBroken() const { return broken_; }

  /** The next request opens a new connection. */
  void AllowReConnect() { broken_ = false; }

 private:
  class BreakUnlessComplete;

  int ConnectLocked(char* errorText);
  int ExchangeLocked(char* request, char* reply, int replySize, char* errorText);
  int SendLocked(char* request, char* errorText) const;
  /** The system would take one more request for a connection that the server has closed, and lose it. */
  bool ServerHasClosedLocked() const;
  int ReceiveLocked(char* reply, int replySize, char* errorText);
  void BreakConnectionLocked();
  void CloseLocked();

  // Held for a whole exchange; under it only the server address's lock is taken.
  QXMutex mutex_{0};
  int socket_ = -1;
  bool connected_ = false;
  bool mayBeClosed_ = false;  // the last reply was an empty line, or the end of the connection
  bool socketsInitialised_ = false;
  std::atomic<bool> broken_ = false;  // written under the mutex, but for AllowReConnect; read anywhere
  const unsigned long responseTimeout_;
};

/** The process's client. */
SocketClient& TheSocketClient();

}  // namespace qxpaf

#endif
