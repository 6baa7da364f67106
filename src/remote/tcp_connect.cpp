#include <netinet/in.h>
#include <sys/socket.h>

#include "qxpaf/socket.h"

namespace {

/** Makes the address and the socket for it, which belongs to the caller from then on, whatever else fails. */
int CreateSocket(int* sock, const char* host, const char* service, sockaddr_in& address, char* errbuf)
{
  if (const int status = set_address(host, service, &address, "tcp", errbuf); status != 0) return status;
  *sock = socket(AF_INET, SOCK_STREAM, 0);
  return *sock < 0 ? FormatSocketError(errbuf, ERR_SOCKET_SOCKET, "socket call error", nullptr, nullptr) : 0;
}

const sockaddr* General(const sockaddr_in& address)
{
  return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace

int InitSockets()
{
  return 0;
}

void FiniSockets() {}

int SocketsInitialised()
{
  return 1;
}

int tcp_client(int* sock, const char* host, const char* service, char* errbuf)
{
  sockaddr_in address;
  if (const int status = CreateSocket(sock, host, service, address, errbuf); status != 0) return status;
  if (connect(*sock, General(address), sizeof address) < 0) {
    return FormatSocketError(errbuf, ERR_SOCKET_CONNECT, "socket connect error to ", host, service);
  }
  return 0;
}

int tcp_server(int* sock, const char* host, const char* service, char* errbuf)
{
  constexpr int kBacklog = 128;
  constexpr int kOn = 1;
  sockaddr_in address;
  if (const int status = CreateSocket(sock, host, service, address, errbuf); status != 0) return status;
  if (setsockopt(*sock, SOL_SOCKET, SO_REUSEADDR, &kOn, sizeof kOn) < 0) {
    return FormatSocketError(errbuf, ERR_SOCKET_SETSOCKOPT, "set socket option error", nullptr, nullptr);
  }
  if (bind(*sock, General(address), sizeof address) < 0) {
    return FormatSocketError(errbuf, ERR_SOCKET_BIND, "socket bind error", nullptr, nullptr);
  }
  if (listen(*sock, kBacklog) < 0) {
    return FormatSocketError(errbuf, ERR_SOCKET_LISTEN, "socket listen error", nullptr, nullptr);
  }
  if (errbuf != nullptr) *errbuf = '\0';
  return 0;
}
