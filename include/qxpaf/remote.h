/**
 * The socket server that remote mode talks to.
 *
 * The settings concern the whole process. They are empty until a program sets them (here, or with the properties
 * "TcpHost" and "TcpPort" of <qxpaf/paf.h>) or, when the library first needs to know whether it works remotely, the
 * configuration's key "PindleSvr" gives them.
 */
#ifndef QXPAF_REMOTE_H
#define QXPAF_REMOTE_H

#include "qxpaf/export.h"

/** The host name or dotted address; empty means this machine. Valid, with changing contents, for the process's life. */
QXPAF_API const char* GetTcpHost();

/** Sets the host, cut to 255 characters; null empties it. Must not run beside a use of what GetTcpHost returned. */
QXPAF_API void SetTcpHost(const char* host);

/** The port number or service name. Valid, with changing contents, for the process's life. */
QXPAF_API const char* GetTcpPort();

/** Sets the port, cut to 31 characters; null empties it. Must not run beside a use of what GetTcpPort returned. */
QXPAF_API void SetTcpPort(const char* port);

#endif
