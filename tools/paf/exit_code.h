/** What the program's exit status means. The greatest one of a run wins. */
#ifndef PAF_TOOL_EXIT_CODE_H
#define PAF_TOOL_EXIT_CODE_H

#include <stdexcept>
#include <string>

namespace tool {

inline constexpr int kExitFound = 0;     ///< every input had an answer
inline constexpr int kExitNotFound = 1;  ///< at least one input was not found, or is ambiguous
inline constexpr int kExitFailed = 2;    ///< wrong usage, or the program could not do its work

/** The command cannot do its work. what() is a message for the user, without the program's name, perhaps of many lines.
 */
class Failure : public std::runtime_error
{
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace tool

#endif
