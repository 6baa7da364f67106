/** JSON that is valid whatever the strings in it hold. */
#ifndef PAF_TOOL_JSON_H
#define PAF_TOOL_JSON_H

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

namespace tool {

/** Objects keep the order in which their members were added. */
using Json = nlohmann::ordered_json;

/** Indented text in UTF-8; bytes that are no UTF-8 become U+FFFD. */
inline std::string ToText(const Json& json)
{
  return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

/** Prints an array element by element, so that the first is there before the last is known. */
class JsonArray
{
 public:
  explicit JsonArray(std::ostream& out) : out_(out) {}
  ~JsonArray() { out_ << (any_ ? "\n]\n" : "[]\n"); }  ///< ends the array, also when a failure cuts the run short
  JsonArray(const JsonArray&) = delete;
  JsonArray& operator=(const JsonArray&) = delete;

  void Write(const Json& element)
  {
    out_ << (any_ ? ",\n" : "[\n") << ToText(element);
    any_ = true;
  }

 private:
  std::ostream& out_;
  bool any_ = false;
};

}  // namespace tool

#endif
