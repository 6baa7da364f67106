#include "command/parameter_reader.h"

#include <cstring>

#include "platform/ascii.h"

namespace qxpaf {

bool Parameter::Is(const char* name) const
{
  return EqualIgnoringCase(key, name);
}

bool ReadParameter(char*& position, Parameter& parameter)
{
  parameter = {"", ""};
  char* const equals = position + std::strcspn(position, "=;\t");
  if (*equals != '=') return false;
  char* const semicolon = std::strchr(equals, ';');
  if (semicolon == nullptr) return false;
  *equals = *semicolon = '\0';
  parameter = {position, equals + 1};
  position = semicolon + 1;
  return true;
}

bool IsTrue(const char* value)
{
  return EqualIgnoringCase(value, "True");
}

}  // namespace qxpaf
