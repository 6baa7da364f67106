/** The log on standard error, through spdlog. */
#ifndef PAFD_LOG_H
#define PAFD_LOG_H

#include <spdlog/spdlog.h>

#include <string>
#include <string_view>

namespace pafd {

/** To be called before the first line. @param isQuiet  only warnings and errors */
void StartLog(bool isQuiet);

/** A text from the wire as it may stand in a log line: one line, no control characters, cut when it is long. */
std::string Printable(std::string_view text);

}  // namespace pafd

#endif
