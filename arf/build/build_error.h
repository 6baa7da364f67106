/** What ends a build before its time. */
#ifndef QXPAF_ARF_BUILD_BUILD_ERROR_H
#define QXPAF_ARF_BUILD_BUILD_ERROR_H

#include <stdexcept>
#include <string>

namespace arf {

/** A fault that is not one row's: a file that cannot be read or written, a table that is full. what() is a sentence. */
class BuildError : public std::runtime_error
{
 public:
  using std::runtime_error::runtime_error;
};

/** The caller asked to stop. */
struct BuildCancelled
{
};

/** "path: what the system says about this errno value". */
std::string SystemError(const std::string& path, int error);

}  // namespace arf

#endif
