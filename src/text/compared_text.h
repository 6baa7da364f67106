// What the comparisons of zero-terminated text share.
#ifndef QXPAF_SRC_TEXT_COMPARED_TEXT_H
#define QXPAF_SRC_TEXT_COMPARED_TEXT_H

#include <algorithm>
#include <bit>
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

// The place in memory of the first character in which two words from memory differ. They are not equal.
template <class Char, class Word>
std::size_t FirstDifference(Word a, Word b)
{
  const Word difference = a ^ b;
  const int zeros =
      std::endian::native == std::endian::little ? std::countr_zero(difference) : std::countl_zero(difference);
  return static_cast<std::size_t>(zeros) / (8 * sizeof(Char));
}

// How many of the first n characters are equal, one word at a time; n characters fill at least one. The last word
// overlaps the one before it.
template <class Word, class Char>
std::size_t CommonLengthByWords(const Char* a, const Char* b, std::size_t n)
{
  constexpr std::size_t kPerWord = sizeof(Word) / sizeof(Char);
  for (std::size_t i = 0;; i = std::min(i + kPerWord, n - kPerWord)) {
    Word wordA;
    Word wordB;
    std::memcpy(&wordA, a + i, sizeof wordA);
    std::memcpy(&wordB, b + i, sizeof wordB);
    if (wordA != wordB) return i + FirstDifference<Char>(wordA, wordB);
    if (i + kPerWord == n) return n;
  }
}

// How many of the first n characters are equal; both texts have that many.
template <class Char>
std::size_t CommonLength(const Char* a, const Char* b, std::size_t n)
{
  if (n * sizeof(Char) >= sizeof(std::uint64_t)) return CommonLengthByWords<std::uint64_t>(a, b, n);
  if (n * sizeof(Char) >= sizeof(std::uint32_t)) return CommonLengthByWords<std::uint32_t>(a, b, n);
  std::size_t i = 0;
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

// Two neighbouring characters as one number.
inline std::uint16_t TwoCharacters(const char* text)
{
  std::uint16_t two;
  std::memcpy(&two, text, sizeof two);
  return two;
}

inline std::uint64_t TwoCharacters(const wchar_t* text)
{
  std::uint64_t two;
  std::memcpy(&two, text, sizeof two);
  return two;
}

// Whether one slip at their start cannot make the texts equal, as far as their first three characters tell; false where
// they are too short to tell. They differ in their first characters. Each slip asks for one equality: a substitution
// for that of the second and third characters, a deletion or an insertion for that of the second and third ones of one
// text with the first and second ones of the other, a transposition for the first two in reverse. All four are judged
// in one go, because each alone comes true too often to be foreseen.
template <class Char>
bool IsNoSlip(const Char* a, const Char* b)
{
  if (a[0] == 0 || b[0] == 0 || a[1] == 0 || b[1] == 0) return false;
  const auto a0 = TwoCharacters(a);
  const auto b0 = TwoCharacters(b);
  const auto a1 = TwoCharacters(a + 1);
  const auto b1 = TwoCharacters(b + 1);
  return a1 != b1 && a1 != b0 && a0 != b1 && a0 != std::rotl(b0, 4 * sizeof b0);
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
