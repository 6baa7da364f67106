// Trimming, squeezing, stripping and replacing in place.
#include <cstddef>
#include <cstring>

#include "qxpaf/text/normalise.h"
#include "text/byte_class.h"
#include "text/byte_set.h"

namespace qxpaf {
namespace {

template <class IsTrimmed>
void Trim(char* s, IsTrimmed isTrimmed)
{
  char* first = s;
  char* last = s + std::strlen(s);
  while (last != first && isTrimmed(last[-1])) --last;
  while (first != last && isTrimmed(*first)) ++first;
  const auto length = static_cast<std::size_t>(last - first);
  if (first != s) std::memmove(s, first, length);
  s[length] = '\0';
}

}  // namespace
}  // namespace qxpaf

void RTrim_(char* s)
{
  char* last = s + std::strlen(s);
  while (last != s && last[-1] == ' ') --last;
  *last = '\0';
}

void Trim_(char* s, char c)
{
  qxpaf::Trim(s, [c](char byte) { return byte == c; });
}

void Trim_(char* s, const char* set)
{
  const qxpaf::ByteSet trimmed(set);
  qxpaf::Trim(s, [&trimmed](char byte) { return trimmed.Has(byte); });
}

void RemoveMultipleSpaces(char* s)
{
  char* to = s;
  for (const char* p = s; *p != '\0'; ++p) {
    if (p[0] != ' ' || p[1] != ' ') *to++ = *p;
  }
  *to = '\0';
}

void RemovePunctuationForIndex(char* s, char keep)
{
  for (char* p = s; *p != '\0'; ++p) {
    if (!qxpaf::IsLetterOrDigitByte(*p) && *p != keep) *p = ' ';
  }
  RemoveMultipleSpaces(s);
  // Runs are gone, so at most one blank is left at each end.
  Trim_(s, ' ');
}

char* StripChars(char* s, const char* chars)
{
  const qxpaf::ByteSet stripped(chars);
  char* to = s;
  for (const char* p = s; *p != '\0'; ++p) {
    if (!stripped.Has(*p)) *to++ = *p;
  }
  *to = '\0';
  return s;
}

void Replace(char* s, char from, char to)
{
  for (char* p = s; *p != '\0'; ++p) {
    if (*p == from) *p = to;
  }
}

void Replace(char* s, const char* set, char to)
{
  const qxpaf::ByteSet replaced(set);
  for (char* p = s; *p != '\0'; ++p) {
    if (replaced.Has(*p)) *p = to;
  }
}
