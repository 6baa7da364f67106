// What the comparisons of zero-terminated text share.
#ifndef QXPAF_SRC_TEXT_COMPARED_TEXT_H
#define QXPAF_SRC_TEXT_COMPARED_TEXT_H

#include <cstddef>
#include <cstdint>
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

// How many of the first n characters are equal; both texts have that many. Eight bytes at a time.
template <class Char>
std::size_t CommonLength(const Char* a, const Char* b, std::size_t n)
{
  constexpr std::size_t kPerWord = sizeof(std::uint64_t) / sizeof(Char);
  std::size_t i = 0;
  for (; n - i >= kPerWord; i += kPerWord) {
    std::uint64_t wordA;
    std::uint64_t wordB;
    std::memcpy(&wordA, a + i, sizeof wordA);
    std::memcpy(&wordB, b + i, sizeof wordB);
    if (wordA != wordB) break;
  }
  while (i < n && a[i] == b[i]) ++i;
  return i;
}

inline bool SameText(const char* a, const char* b)
{
  return *a == *b && std::strcmp(a, b) == 0;
}

inline bool SameText(const wchar_t* a, const wchar_t* b)
{
  return *a == *b && std::wcscmp(a, b) == 0;
}

// Whether one substitution, insertion, deletion or transposition at their start makes the texts equal. They differ in
// their first characters, and neither is empty.
template <class Char>
bool IsOneSlip(const Char* a, const Char* b)
{
  const bool transposed = a[0] == b[1] && a[1] == b[0] && SameText(a + 2, b + 2);
  return transposed || SameText(a + 1, b + 1) || SameText(a + 1, b) || SameText(a, b + 1);
}

}  // namespace qxpaf

#endif
