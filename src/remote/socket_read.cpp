#include <sys/socket.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>

#include "qxpaf/socket.h"
#include "remote/socket_wait.h"

using namespace qxpaf;

namespace {

constexpr char kCarriageReturn = '\r';

int Failed(char* errbuf, const char* message)
{
  return FormatSocketError(errbuf, -1, message, nullptr, nullptr);
}

int ReceiveFailed(char* errbuf)
{
  return Failed(errbuf, "socket recv failed");
}

/** One receive, repeated when a signal interrupts it. @return as recv */
int Receive(int sock, char* out, int capacity)
{
  ssize_t got = 0;
  do {
    got = recv(sock, out, static_cast<std::size_t>(capacity), 0);
  } while (got < 0 && errno == EINTR);
  return static_cast<int>(got);
}

/**
 * Waits as long as the limit allows and receives once; after a signal it waits anew. A reset connection is the end of
 * the stream like any other.
 *
 * @return bytes received; 0 at the end of the stream; -1 with the message in errbuf
 */
int ReceiveInTime(int sock, char* out, int capacity, char* errbuf, unsigned long timeoutSeconds)
{
  for (;;) {
    if (WaitReadable(sock, timeoutSeconds) != 0) return Failed(errbuf, "socket timed out");
    const ssize_t got = recv(sock, out, static_cast<std::size_t>(capacity), 0);
    if (got >= 0) return static_cast<int>(got);
    if (errno == ECONNRESET) return 0;
    if (errno != EINTR) return ReceiveFailed(errbuf);
  }
}

/** Gets rid of the line's rest, so that the next reading begins with a line. errno tells callers what went wrong. */
int LineTooLong(int sock, unsigned long timeoutSeconds, char* errbuf, const char* message)
{
  DrainLine(sock, timeoutSeconds);
  errno = EMSGSIZE;
  return Failed(errbuf, message);
}

/** What was received and not handed out yet: one for the whole process, without a lock, as readline's callers know. */
struct ReadAhead
{
  char bytes[1500];
  int unread;
  const char* next;
};

ReadAhead readAhead;

/** @return as recv, with the number of bytes that can be handed out now */
int Refill(int sock)
{
  const int got = Receive(sock, readAhead.bytes, sizeof readAhead.bytes);
  if (got > 0) readAhead.unread = got;
  readAhead.next = readAhead.bytes;
  return got;
}

char TakeNext()
{
  --readAhead.unread;
  return *readAhead.next++;
}

}  // namespace

int readn(int sock, char* buffer, int count, char* errbuf)
{
  int done = 0;
  while (done < count) {
    const int got = Receive(sock, buffer + done, count - done);
    if (got < 0) return ReceiveFailed(errbuf);
    if (got == 0) break;
    done += got;
  }
  return done;
}

int readcrlf1(int sock, char* buffer, int capacity, char* errbuf, char terminator, unsigned long timeoutSeconds)
{
  char* end = buffer;
  char last = '\0';
  for (int left = capacity; left > 0; --left) {
    char received = '\0';
    const int got = ReceiveInTime(sock, &received, 1, errbuf, timeoutSeconds);
    if (got < 0) return got;
    if (got == 0) {
      *end = '\0';
      return 0;
    }
    if (received == terminator) {
      if (last == kCarriageReturn) --end;
      *end = '\0';
      return static_cast<int>(end - buffer);
    }
    *end++ = last = received;
  }
  return LineTooLong(sock, timeoutSeconds, errbuf, "socket recv failed");
}

int readcrlf(int sock, char* buffer, int capacity, char* errbuf, char terminator, unsigned long timeoutSeconds)
{
  int total = 0;
  while (total < capacity) {
    char* const chunk = buffer + total;
    const int got = ReceiveInTime(sock, chunk, capacity - total, errbuf, timeoutSeconds);
    if (got < 0) return got;
    if (got == 0) {
      *chunk = '\0';
      return 0;
    }
    if (chunk[got - 1] == terminator) {
      int length = got - 1;
      if (length > 0 && chunk[length - 1] == kCarriageReturn) --length;
      chunk[length] = '\0';
      return total + length;
    }
    total += got;
  }
  return LineTooLong(sock, timeoutSeconds, errbuf, "socket recv buffer too small");
}

int readline(int sock, char* buffer, int capacity, char* errbuf)
{
  char* end = buffer;
  for (int left = capacity; left > 1; --left) {
    if (readAhead.unread < 1) {
      const int got = Refill(sock);
      if (got < 0) return ReceiveFailed(errbuf);
      if (got == 0) return 0;
    }
    *end++ = TakeNext();
    if (end[-1] == '\n') {
      *end = '\0';
      return static_cast<int>(end - buffer);
    }
  }
  errno = EMSGSIZE;
  return ReceiveFailed(errbuf);
}
