// What the comparisons of zero-terminated text share.
#ifndef QXPAF_SRC_TEXT_COMPARED_TEXT_H
#define QXPAF_SRC_TEXT_COMPARED_TEXT_H

#include <cstring>
#include <cwchar>

namespace qxpaf {

template <class Char>
constexpr bool IsDigit(Char c)
{
  return c >= '0' && c <= '9';
}

// Moves both to the first place where they differ, or where both end.
template <class Char>
void SkipCommonPrefix(const Char*& a, const Char*& b)
{
  while (*a != 0 && *a == *b) {
    ++a;
    ++b;
  }
}

inline bool SameText(const char* a, const char* b)
{
  return *a == *b && std::strcmp(a, b) == 0;
}

inline bool SameText(const wchar_t* a, const wchar_t* b)
{
  return *a == *b && std::wcscmp(a, b) == 0;
}

}  // namespace qxpaf

#endif
