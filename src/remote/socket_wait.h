/** Waiting for a socket, and catching up with a peer whose line was too long. */
#ifndef QXPAF_SRC_REMOTE_SOCKET_WAIT_H
#define QXPAF_SRC_REMOTE_SOCKET_WAIT_H

namespace qxpaf {

/**
 * Waits until something can be received from a socket: data, urgent data, the end of the stream or an error. A signal
 * makes it wait anew, with the whole time limit.
 *
 * @param timeoutSeconds  the limit; 0 looks at nothing and returns at once
 * @return 0; ERR_SOCKET_TIMEDOUT, with errno as it was; ERR_SOCKET_SELECT with errno when waiting failed
 */
int WaitReadable(int sock, unsigned long timeoutSeconds);

/**
 * Receives and throws away what is left of a line: until a chunk of at most 256 bytes ends in a line feed (never the
 * line reader's own terminator), the stream ends, an error comes up or nothing arrives in time. errno is not kept.
 */
void DrainLine(int sock, unsigned long timeoutSeconds);

}  // namespace qxpaf

#endif
