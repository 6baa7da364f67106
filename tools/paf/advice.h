/** The way forward when a database cannot be opened. */
#ifndef PAF_TOOL_ADVICE_H
#define PAF_TOOL_ADVICE_H

#include <string>

#include "session.h"

namespace tool {

/** What to try after the status of a failed open: lines without a final line end, or empty. */
std::string OpenAdvice(const std::string& database, int status);

/** Throws Failure where the configuration switches remote mode on, for a command that no socket server can answer. */
void RefuseInRemoteMode(const std::string& command);

/** Opens the session or throws Failure with the reason and the advice. */
void OpenOrExplain(Session& session, const std::string& database);

}  // namespace tool

#endif
