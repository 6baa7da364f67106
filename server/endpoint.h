/** IPv4 addresses with a port, as options name them and log lines show them. */
#ifndef PAFD_ENDPOINT_H
#define PAFD_ENDPOINT_H

#include <cstdint>
#include <string>

namespace pafd {

struct Endpoint
{
  std::uint32_t address = 0;  // host byte order
  std::uint16_t port = 0;
};

/** Reads "HOST:PORT": a dotted address or a name, and a port number. @throws Failure with what is wrong */
Endpoint ReadEndpoint(const std::string& text);

/** "127.0.0.1:7070" */
std::string Describe(const Endpoint& endpoint);

/** "127.0.0.1" */
std::string DescribeAddress(std::uint32_t address);

/** True for 127.0.0.0/8. */
bool IsLoopback(std::uint32_t address);

}  // namespace pafd

#endif
