#include "endpoint.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <charconv>
#include <memory>

#include "failure.h"

namespace pafd {
namespace {

std::uint16_t ReadPort(const std::string& text, const std::string& port)
{
  std::uint16_t number = 0;
  const auto result = std::from_chars(port.data(), port.data() + port.size(), number);
  if (port.empty() || result.ec != std::errc() || result.ptr != port.data() + port.size()) {
    throw Failure("'" + text + "': the port must be a number from 0 to 65535");
  }
  return number;
}

std::uint32_t ReadHost(const std::string& text, const std::string& host)
{
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  const int error = getaddrinfo(host.c_str(), nullptr, &wanted, &found);
  if (error != 0) {
    throw Failure("'" + text + "': the host is no IPv4 address and no known name: " + gai_strerror(error));
  }
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(found, freeaddrinfo);
  const void* address = found->ai_addr;
  return ntohl(static_cast<const sockaddr_in*>(address)->sin_addr.s_addr);
}

}  // namespace

Endpoint ReadEndpoint(const std::string& text)
{
  const std::size_t colon = text.rfind(':');
  if (colon == std::string::npos || colon == 0) {
    throw Failure("'" + text + "' is not of the form HOST:PORT");
  }
  const std::uint16_t port = ReadPort(text, text.substr(colon + 1));
  return {ReadHost(text, text.substr(0, colon)), port};
}

std::string DescribeAddress(std::uint32_t address)
{
  char text[INET_ADDRSTRLEN] = "";
  const in_addr net = {htonl(address)};
  inet_ntop(AF_INET, &net, text, sizeof text);
  return text;
}

std::string Describe(const Endpoint& endpoint)
{
  return DescribeAddress(endpoint.address) + ":" + std::to_string(endpoint.port);
}

bool IsLoopback(std::uint32_t address)
{
  return address >> 24 == 127;
}

}  // namespace pafd
