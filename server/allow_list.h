/** The networks whose clients are served. */
#ifndef PAFD_ALLOW_LIST_H
#define PAFD_ALLOW_LIST_H

#include <cstdint>
#include <string>
#include <vector>

namespace pafd {

class AllowList
{
 public:
  /**
   * Adds an IPv4 network ("10.0.0.0/8") or a single address ("10.1.2.3").
   *
   * @throws Failure with what is wrong; also when bits are set behind the prefix, which is nearly always a slip
   */
  void Add(const std::string& network);

  bool IsEmpty() const { return networks_.empty(); }

  /** True when the address (host byte order) is in one of the networks, or when none was added. */
  bool Allows(std::uint32_t address) const;

 private:
  struct Network
  {
    std::uint32_t address;
    std::uint32_t mask;
  };

  std::vector<Network> networks_;
};

}  // namespace pafd

#endif
