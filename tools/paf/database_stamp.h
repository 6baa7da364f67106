/** Telling one build of a database from another. */
#ifndef PAF_TOOL_DATABASE_STAMP_H
#define PAF_TOOL_DATABASE_STAMP_H

#include <string>

#include "session.h"

namespace tool {

/**
 * A text that changes with the contents of the open database of a session: the checksum that the address file bears, in
 * hexadecimal digits. Empty where that file cannot be read here, as when a socket server has the database, or when
 * another country's plug-in keeps its data in other files. No other database must be open in this process.
 */
std::string DatabaseStamp(Session& session);

}  // namespace tool

#endif
