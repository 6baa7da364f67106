#include <cstdio>

#include "platform/bounded.h"
#include "qxpaf/socket.h"
#include "remote/sigpipe_shield.h"

using namespace qxpaf;

int SocketSendOnce(int sock, const char* data, int length)
{
  const SigpipeShield shield;
  FILE* const stream = fdopen(sock, "w");
  if (stream == nullptr) return -1;
  std::fwrite(data, Capacity(length), 1, stream);
  std::fclose(stream);
  return 0;
}
