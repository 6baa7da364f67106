// Upper and lower case and accent removal on Windows-1252 text.
#include <utility>

#include "qxpaf/text/unicode.h"
#include "text/unicode_map.h"
#include "text/unicode_tables.h"

std::string RemoveAccents1252(std::string s)
{
  qxpaf::MapString<qxpaf::ByteMapping<qxpaf::kAnsiAccents, qxpaf::AsciiCase::kKept>>(s);
  return s;
}

std::string UnicodeRemoveAccents(std::string s)
{
  return RemoveAccents1252(std::move(s));
}

std::string ToUpper1252(std::string s)
{
  qxpaf::MapString<qxpaf::ByteMapping<qxpaf::kAnsiUpper, qxpaf::AsciiCase::kUpper>>(s);
  return s;
}

std::string ToLower1252(std::string s)
{
  qxpaf::MapString<qxpaf::ByteMapping<qxpaf::kAnsiLower, qxpaf::AsciiCase::kLower>>(s);
  return s;
}
