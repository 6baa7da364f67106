/** What a client that is not trusted may not ask for: files, libraries and where calls are served. */
#ifndef PAFD_TRUST_H
#define PAFD_TRUST_H

#include <string_view>

#include "arguments.h"

namespace pafd {

/** True for a name that only the configuration can turn into a path; false for paths and the "DLL:" form. */
bool IsConfiguredName(std::string_view database);

/* Each answers 0 when the request may go on, otherwise the status to reply with. */

/** pafOpenArfId. @return 6499 for a database that is not named as the configuration names it */
int RefuseToOpen(const Arguments& arguments);

/** pafGetPropertiesId. @return 6499 when the property's name holds such a database */
int RefuseToGet(const Arguments& arguments);

/** pafSetPropertiesId. @return 6499 when the value of "OpenARF" is such a database; 6408 for the remote mode settings
 */
int RefuseToSet(const Arguments& arguments);

}  // namespace pafd

#endif
