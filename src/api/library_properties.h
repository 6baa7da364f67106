/** The properties that the library answers itself. */
#ifndef QXPAF_SRC_API_LIBRARY_PROPERTIES_H
#define QXPAF_SRC_API_LIBRARY_PROPERTIES_H

#include <optional>
#include <string>
#include <string_view>

namespace qxpaf {

/** The answer to a name that is about the process and answered in both modes; nothing for another name. */
std::optional<std::string> ProcessProperty(std::string_view name);

bool IsProcessProperty(std::string_view name);

/** The answer to a name that is answered here in local mode, whatever the instance; nothing for another name. */
std::optional<std::string> LocalProperty(std::string_view name);

/** Sets one of the names that choose mode and server. @return false for another name */
bool SetConnectionProperty(std::string_view name, const char* value);

}  // namespace qxpaf

#endif
