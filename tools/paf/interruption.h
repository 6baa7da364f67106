/** Ctrl-C, the TERM signal and the end of the terminal as a request to stop cleanly. */
#ifndef PAF_TOOL_INTERRUPTION_H
#define PAF_TOOL_INTERRUPTION_H

#include <atomic>

namespace tool {

/** From here on SIGINT, SIGTERM and SIGHUP are remembered instead of ending the program; ignored ones stay ignored. */
void CatchInterruption();

bool IsInterrupted();

/** The same, for work that looks at it by itself. */
const std::atomic<bool>& Interruption();

}  // namespace tool

#endif
