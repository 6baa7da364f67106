/** The signals that the server serves; they arrive as events, not as interruptions. */
#ifndef PAFD_SIGNALS_H
#define PAFD_SIGNALS_H

#include <csignal>

namespace pafd {

/** SIGTERM, SIGINT and SIGHUP. */
const sigset_t& ServedSignals();

/** Blocks them in the calling thread and those that it starts, and ignores SIGPIPE. To be called first of all. */
void BlockSignals();

}  // namespace pafd

#endif
