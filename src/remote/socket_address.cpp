#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

#include "qxpaf/socket.h"

namespace {

/**
 * Runs a look-up that needs scratch memory of a size nobody can tell, with more of it until it is enough.
 *
 * @param lookUp  takes the memory and its size; returns ERANGE when that is too small
 */
template <class LookUp>
void WithScratch(LookUp&& lookUp)
{
  for (std::size_t size = 1024;; size *= 2) {
    const std::unique_ptr<char[]> scratch(new (std::nothrow) char[size]);
    if (scratch == nullptr) {
      errno = ENOMEM;
      return;
    }
    if (lookUp(scratch.get(), size) != ERANGE) return;
  }
}

bool ResolveHost(const char* name, in_addr& address)
{
  bool found = false;
  WithScratch([&](char* scratch, std::size_t size) {
    hostent entry{};
    hostent* host = nullptr;
    int hostError = 0;
    const int status = gethostbyname_r(name, &entry, scratch, size, &host, &hostError);
    if (host != nullptr && host->h_addr_list[0] != nullptr) {
      address = *reinterpret_cast<const in_addr*>(host->h_addr_list[0]);
      found = true;
    }
    return status;
  });
  return found;
}

/** @param port  receives the port in network order, as it has it in an address */
bool ResolveService(const char* name, const char* protocol, in_port_t& port)
{
  bool found = false;
  WithScratch([&](char* scratch, std::size_t size) {
    servent entry{};
    servent* service = nullptr;
    const int status = getservbyname_r(name, protocol, &entry, scratch, size, &service);
    if (service != nullptr) {
      port = static_cast<in_port_t>(service->s_port);
      found = true;
    }
    return status;
  });
  return found;
}

bool FindHost(const char* host, in_addr& address)
{
  if (host == nullptr) {
    address.s_addr = htonl(INADDR_ANY);
    return true;
  }
  return inet_aton(host, &address) != 0 || ResolveHost(host, address);
}

/** Numbers are hexadecimal and octal as in C, and only their low 16 bits count; an empty text is the port 0. */
bool FindPort(const char* service, const char* protocol, in_port_t& port)
{
  char* end = nullptr;
  const long number = std::strtol(service, &end, 0);
  if (*end != '\0') return ResolveService(service, protocol, port);
  port = htons(static_cast<std::uint16_t>(number));
  return true;
}

}  // namespace

int set_address(const char* host, const char* service, struct sockaddr_in* address, const char* protocol, char* errbuf)
{
  *address = {};
  address->sin_family = AF_INET;
  if (!FindHost(host, address->sin_addr)) {
    return FormatSocketError(errbuf, ERR_SOCKET_GETHOSTNAME, "unknown socket host: ", host, nullptr);
  }
  if (!FindPort(service, protocol, address->sin_port)) {
    return FormatSocketError(errbuf, ERR_SOCKET_GETSERVBYNAME, "unknown socket service: ", service, nullptr);
  }
  return 0;
}
