#include "remote/socket_wait.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <cerrno>
#include <ctime>

#include "qxpaf/socket.h"

namespace qxpaf {

int WaitReadable(int sock, unsigned long timeoutSeconds)
{
  if (timeoutSeconds == 0) return 0;
  // Descriptors are of any size here, which rules out select. poll passes over negative ones and has a mark of its own
  // for those that are not open.
  pollfd waiting{sock, POLLIN | POLLPRI, 0};
  const timespec limit{static_cast<time_t>(timeoutSeconds), 0};
  int ready = 0;
  do {
    ready = sock < 0 ? 1 : ppoll(&waiting, 1, &limit, nullptr);
  } while (ready < 0 && errno == EINTR);
  if (sock < 0 || (waiting.revents & POLLNVAL) != 0) {
    errno = EBADF;
    return ERR_SOCKET_SELECT;
  }
  if (ready < 0) return ERR_SOCKET_SELECT;
  return ready > 0 ? 0 : ERR_SOCKET_TIMEDOUT;
}

void DrainLine(int sock, unsigned long timeoutSeconds)
{
  char chunk[256];
  while (WaitReadable(sock, timeoutSeconds) == 0) {
    const ssize_t got = recv(sock, chunk, sizeof chunk, 0);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0 || chunk[got - 1] == '\n') return;
  }
}

}  // namespace qxpaf
