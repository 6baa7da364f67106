/** Instances that live on the socket server. */
#ifndef QXPAF_SRC_API_REMOTE_INSTANCE_H
#define QXPAF_SRC_API_REMOTE_INSTANCE_H

#include "api/instance_table.h"

namespace qxpaf {

/** Opens an instance on the server. @return 0 or the status of the request */
int OpenRemote(PafInfo& info, int memoryMode, const char* arfName);

/** The same for a default instance, which has the server's default database. */
int OpenRemoteDefault(PafInfo& info, int memoryMode);

/** Replaces the instance on the server by one on another database; the old one stays when that fails. */
int ChangeRemote(PafInfo& info, int memoryMode, const char* arfName);

/** Closes the instance on the server, unless that has lost it with a broken connection. @return the server's status */
int CloseRemote(PafInfo& info);

/**
 * Opens a remote instance again, with its properties, when the server has lost it. A broken connection is noticed here:
 * the server lost every instance with it. Local instances need nothing.
 */
int ReconnectIfBroken(PafInfo& info);

/** Keeps a property that was set on the server, for ReconnectIfBroken. */
void RememberProperty(PafInfo& info, const char* name, const char* value);

}  // namespace qxpaf

#endif
