/** Sockets, error buffers and readings for the tests of the TCP functions. */
#ifndef QXPAF_TESTS_UNIT_REMOTE_SOCKET_SUPPORT_H
#define QXPAF_TESTS_UNIT_REMOTE_SOCKET_SUPPORT_H

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "qxpaf/socket.h"
#include "support/guarded_buffer.h"

namespace test_support {

/** Owns a descriptor. */
class Socket
{
 public:
  explicit Socket(int fd = -1) : fd_(fd) {}
  Socket(Socket&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  ~Socket() { Close(); }

  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  int Fd() const { return fd_; }
  int Release() { return std::exchange(fd_, -1); }
  void Close()
  {
    if (fd_ >= 0) close(Release());
  }
  /** For functions that give a socket through a pointer. */
  int* Out() { return &fd_; }

  void Send(std::string_view bytes) const
  {
    if (send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(bytes.size())) {
      throw std::runtime_error("cannot send to the test's peer");
    }
  }

  /** Moves the socket to a descriptor of at least that value. @return false where the process may not have it */
  bool MoveTo(int lowest)
  {
    const int moved = fcntl(fd_, F_DUPFD, lowest);
    if (moved < 0) return false;
    Close();
    fd_ = moved;
    return true;
  }

 private:
  int fd_;
};

inline bool IsOpen(int fd)
{
  return fcntl(fd, F_GETFD) >= 0;
}

/** Two connected sockets. With SOCK_SEQPACKET each send arrives as one chunk; with SOCK_STREAM chunks may merge. */
struct SocketPair
{
  explicit SocketPair(int type = SOCK_STREAM)
  {
    int fds[2];
    if (socketpair(AF_UNIX, type, 0, fds) != 0) throw std::runtime_error("no socket pair");
    *near.Out() = fds[0];
    *far.Out() = fds[1];
  }

  Socket near;
  Socket far;
};

/** An error buffer of exactly its size between guards. */
class ErrorBuffer
{
 public:
  char* Data() { return bytes_.Data(); }
  std::string Text() { return bytes_.Data(); }
  bool Intact() { return bytes_.Intact(); }
  /** True when no byte has been written since construction. */
  bool Untouched() { return bytes_.Bytes() == std::string(SOCKET_ERROR_SIZE, GuardedBuffer::kFill); }

 private:
  GuardedBuffer bytes_{SOCKET_ERROR_SIZE};
};

/** What a function that reads into a buffer did. */
struct Reading
{
  int result = 0;
  int error = 0;
  /** Every byte of the buffer; those not written are GuardedBuffer::kFill. */
  std::string bytes;
  /** Empty when the error buffer was not touched. */
  std::string message;
  bool intact = false;

  /** The text in the buffer, up to its terminator. */
  std::string Text() const { return bytes.c_str(); }
};

/** Calls read(buffer, size, errbuf) on guarded buffers, with errno 0 before. */
template <class Read>
Reading ReadGuarded(int size, Read&& read)
{
  GuardedBuffer buffer(size > 0 ? static_cast<std::size_t>(size) : 0);
  ErrorBuffer error;
  Reading reading;
  errno = 0;
  reading.result = read(buffer.Data(), size, error.Data());
  reading.error = errno;
  reading.bytes = buffer.Bytes();
  if (!error.Untouched()) reading.message = error.Text();
  reading.intact = buffer.Intact() && error.Intact();
  return reading;
}

using LineReader = int (*)(int, char*, int, char*, char, unsigned long);

inline Reading ReadLine(LineReader reader, int sock, int capacity, char terminator = '\n', unsigned long timeout = 0)
{
  return ReadGuarded(capacity, [&](char* buffer, int size, char* errbuf) {
    return reader(sock, buffer, size, errbuf, terminator, timeout);
  });
}

inline Reading ReadAheadLine(int sock, int capacity)
{
  return ReadGuarded(capacity,
                     [&](char* buffer, int size, char* errbuf) { return readline(sock, buffer, size, errbuf); });
}

/** Empties the read-ahead buffer of readline, which belongs to the process. */
inline void ForgetReadAhead()
{
  SocketPair ended;
  ended.far.Close();
  char line[4096];
  while (readline(ended.near.Fd(), line, sizeof line, nullptr) != 0) continue;
}

/** Gives the process another soft limit of open descriptors; the destructor restores it. */
class DescriptorLimit
{
 public:
  explicit DescriptorLimit(rlim_t limit)
  {
    getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit changed{limit, before_.rlim_max};
    allowed_ = limit <= before_.rlim_max && setrlimit(RLIMIT_NOFILE, &changed) == 0;
  }
  ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &before_); }

  DescriptorLimit(const DescriptorLimit&) = delete;
  DescriptorLimit& operator=(const DescriptorLimit&) = delete;

  bool Allowed() const { return allowed_; }

 private:
  rlimit before_{};
  bool allowed_ = false;
};

inline sockaddr_in LocalAddress(int sock)
{
  sockaddr_in address{};
  socklen_t length = sizeof address;
  getsockname(sock, reinterpret_cast<sockaddr*>(&address), &length);
  return address;
}

inline std::string PortOf(int sock)
{
  return std::to_string(ntohs(LocalAddress(sock).sin_port));
}

}  // namespace test_support

#endif
