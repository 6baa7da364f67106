#include "listener.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>

#include "failure.h"

namespace pafd {
namespace {

constexpr int kBacklog = 128;

Endpoint ToEndpoint(const sockaddr_in& address)
{
  return {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

Endpoint OwnEndpoint(int socket)
{
  sockaddr_in address{};
  socklen_t size = sizeof address;
  void* any = &address;
  ::getsockname(socket, static_cast<sockaddr*>(any), &size);
  return ToEndpoint(address);
}

bool Bind(int socket, const Endpoint& place)
{
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(place.port);
  address.sin_addr.s_addr = htonl(place.address);
  const void* any = &address;
  return ::bind(socket, static_cast<const sockaddr*>(any), sizeof address) == 0;
}

/** Errors of a connection that went away while it waited; the next one may be fine. */
bool IsOfTheConnection(int error)
{
  return error == ECONNABORTED || error == EINTR || error == EPROTO;
}

}  // namespace

Listener::Listener(const Endpoint& place)
    : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)), place_(place)
{
  const int yes = 1;
  const bool listens = socket_ && ::setsockopt(socket_.Get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) == 0 &&
                       Bind(socket_.Get(), place_) && ::listen(socket_.Get(), kBacklog) == 0;
  if (!listens) {
    throw Failure("cannot listen on " + Describe(place_) + ": " + std::strerror(errno));
  }
  place_ = OwnEndpoint(socket_.Get());
}

std::optional<Accepted> Listener::Accept(int& error)
{
  sockaddr_in address{};
  socklen_t size = sizeof address;
  void* any = &address;
  FileDescriptor socket(::accept4(socket_.Get(), static_cast<sockaddr*>(any), &size, SOCK_CLOEXEC));
  error = 0;
  if (socket) {
    return Accepted{std::move(socket), ToEndpoint(address)};
  }
  if (errno != EAGAIN && errno != EWOULDBLOCK && !IsOfTheConnection(errno)) {
    error = errno;
  }
  return std::nullopt;
}

}  // namespace pafd
