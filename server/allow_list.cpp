#include "allow_list.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>

#include "endpoint.h"
#include "failure.h"

namespace pafd {
namespace {

constexpr unsigned kAddressBits = 32;

unsigned ReadPrefix(const std::string& network, const std::string& digits)
{
  unsigned prefix = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), prefix);
  if (digits.empty() || result.ec != std::errc() || result.ptr != digits.data() + digits.size() ||
      prefix > kAddressBits) {
    throw Failure("'" + network + "': the number behind '/' must be from 0 to 32");
  }
  return prefix;
}

std::uint32_t ReadAddress(const std::string& network, const std::string& text)
{
  in_addr address{};
  if (inet_pton(AF_INET, text.c_str(), &address) != 1) {
    throw Failure("'" + network + "' is no IPv4 network such as 10.0.0.0/8 and no IPv4 address");
  }
  return ntohl(address.s_addr);
}

std::uint32_t Mask(unsigned prefix)
{
  return prefix == 0 ? 0 : ~std::uint32_t{0} << (kAddressBits - prefix);
}

}  // namespace

void AllowList::Add(const std::string& network)
{
  const std::size_t slash = network.find('/');
  const std::uint32_t address = ReadAddress(network, network.substr(0, slash));
  const unsigned prefix = slash == std::string::npos ? kAddressBits : ReadPrefix(network, network.substr(slash + 1));
  const std::uint32_t mask = Mask(prefix);
  if ((address & ~mask) != 0) {
    throw Failure("'" + network + "' has bits set behind its prefix; did you mean " + DescribeAddress(address & mask) +
                  "/" + std::to_string(prefix) + "?");
  }
  networks_.push_back({address, mask});
}

bool AllowList::Allows(std::uint32_t address) const
{
  return networks_.empty() || std::any_of(networks_.begin(), networks_.end(), [address](const Network& network) {
           return (address & network.mask) == network.address;
         });
}

}  // namespace pafd
