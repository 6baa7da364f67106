// Upper and lower case and accent removal on Windows-1252 text.
#include <utility>

#include "qxpaf/text/unicode.h"
#include "text/unicode_map.h"
#include "text/unicode_tables.h"

std::string RemoveAccents1252(std::string s)
{
  qxpaf::MapBytes<qxpaf::AsciiCase::kKept>(s.data(), s.size(), qxpaf::kAnsiAccents);
  return s;
}

std::string UnicodeRemoveAccents(std::string s)
{
  return RemoveAccents1252(std::move(s));
}

std::string ToUpper1252(std::string s)
{
  qxpaf::MapBytes<qxpaf::AsciiCase::kUpper>(s.data(), s.size(), qxpaf::kAnsiUpper);
  return s;
}

std::string ToLower1252(std::string s)
{
  qxpaf::MapBytes<qxpaf::AsciiCase::kLower>(s.data(), s.size(), qxpaf::kAnsiLower);
  return s;
}
