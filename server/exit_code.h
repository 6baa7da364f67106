/** What the server's exit status means. */
#ifndef PAFD_EXIT_CODE_H
#define PAFD_EXIT_CODE_H

namespace pafd {

inline constexpr int kExitEnded = 0;       // ended by a signal, or only asked for help
inline constexpr int kExitNotStarted = 2;  // the message is on standard error

}  // namespace pafd

#endif
