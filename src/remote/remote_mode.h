/** Whether the library serves calls itself or forwards them to a socket server. */
#ifndef QXPAF_SRC_REMOTE_REMOTE_MODE_H
#define QXPAF_SRC_REMOTE_REMOTE_MODE_H

namespace qxpaf {

/**
 * True when calls go to a socket server: the configuration key "PindleSvr" gives a "TcpHost" or a "TcpPort", which is
 * then the server's. Decided on the first call; only SetRemoteMode changes it later. A host or port that is set already
 * does not count and is kept. Thread-safe.
 */
bool IsRemoteMode();

/** Switches remote mode on or off, whatever the configuration says. Thread-safe. */
void SetRemoteMode(bool remote);

/** True when remote mode is on, without deciding it: false as long as that is open. Thread-safe. */
bool IsRemoteModeOn();

}  // namespace qxpaf

#endif
