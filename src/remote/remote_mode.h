/**
 * Whether the library serves calls itself or forwards them to a socket server.
 *
 * Forwarding is not offered yet: every place where a call would go to the server answers kUnavailable, so that a
 * configuration that asks for a server never gets a silent local answer.
 */
#ifndef QXPAF_SRC_REMOTE_REMOTE_MODE_H
#define QXPAF_SRC_REMOTE_REMOTE_MODE_H

#include "qxpaf/paf.h"

namespace qxpaf {

/** The answer of every request that would have to travel to a socket server. */
inline constexpr int kUnavailable = PAF_ERR_NOT_IMPLEMENTED;

/**
 * True when calls go to a socket server: the configuration key "PindleSvr" gives a "TcpHost" or a "TcpPort". Decided
 * on the first call, for the life of the process. Thread-safe.
 */
bool IsRemoteMode();

}  // namespace qxpaf

#endif
