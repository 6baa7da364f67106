/** Why the server cannot start: a message for the person who started it. */
#ifndef PAFD_FAILURE_H
#define PAFD_FAILURE_H

#include <stdexcept>

namespace pafd {

class Failure : public std::runtime_error
{
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace pafd

#endif
