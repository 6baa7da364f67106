/** JSON that is valid whatever the strings in it hold. */
#ifndef PAF_TOOL_JSON_H
#define PAF_TOOL_JSON_H

#include <nlohmann/json.hpp>
#include <string>

namespace tool {

/** Objects keep the order in which their members were added. */
using Json = nlohmann::ordered_json;

/** Indented text in UTF-8; bytes that are no UTF-8 become U+FFFD. */
inline std::string ToText(const Json& json)
{
  return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace tool

#endif
