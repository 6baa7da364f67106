/** A listening socket. */
#ifndef PAFD_LISTENER_H
#define PAFD_LISTENER_H

#include <optional>

#include "endpoint.h"
#include "file_descriptor.h"

namespace pafd {

struct Accepted
{
  FileDescriptor socket;  // blocking
  Endpoint peer;
};

class Listener
{
 public:
  /** Port 0 lets the system choose. @throws Failure */
  explicit Listener(const Endpoint& place);

  /** Where it listens, with the port that it has. */
  const Endpoint& Place() const { return place_; }
  int Descriptor() const { return socket_.Get(); }

  /** Takes the next connection, without waiting. @return nothing when there is none; `error` is then 0 or an errno */
  std::optional<Accepted> Accept(int& error);

 private:
  FileDescriptor socket_;
  Endpoint place_;
};

}  // namespace pafd

#endif
