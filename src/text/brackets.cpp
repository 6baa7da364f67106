// Removal of bracketed text.
#include <cstddef>
#include <cstring>

#include "qxpaf/text/normalise.h"

namespace qxpaf {
namespace {

struct BracketPair
{
  char open;
  char close;
};

constexpr BracketPair kBracketPairs[] = {{'(', ')'}, {'[', ']'}, {'{', '}'}};

// The position behind the last opening bracket that no closing bracket belongs to, or s when there is none.
char* BehindLastUnmatched(char* s, char* end, BracketPair pair)
{
  std::size_t unusedClosers = 0;
  for (char* p = end; p != s; --p) {
    const char c = p[-1];
    if (c == pair.close) ++unusedClosers;
    if (c != pair.open) continue;
    if (unusedClosers == 0) return p;
    --unusedClosers;
  }
  return s;
}

// Removing the last opening bracket through the first closing one after it, again and again until the last opening one
// has no partner, removes exactly the nested pairs behind the last unmatched opening bracket. There every opening
// bracket has a partner, so one pass that counts the depth does it. Returns the new end.
char* RemovePairs(char* s, char* end, BracketPair pair)
{
  char* const start = BehindLastUnmatched(s, end, pair);
  char* to = start;
  std::size_t depth = 0;
  for (const char* p = start; p != end; ++p) {
    if (*p == pair.open) ++depth;
    if (depth == 0) *to++ = *p;
    if (*p == pair.close && depth > 0) --depth;
  }
  *to = '\0';
  return to;
}

}  // namespace
}  // namespace qxpaf

void RemoveInBrackets(char* s)
{
  char* end = s + std::strlen(s);
  for (const qxpaf::BracketPair pair : qxpaf::kBracketPairs) {
    if (std::memchr(s, pair.open, static_cast<std::size_t>(end - s)) != nullptr) end = qxpaf::RemovePairs(s, end, pair);
  }
  RemoveMultipleSpaces(s);
}
