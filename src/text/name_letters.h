// What a byte of a name is: the classes of the C library in the "C" locale, whatever the locale of the process.
#ifndef QXPAF_SRC_TEXT_NAME_LETTERS_H
#define QXPAF_SRC_TEXT_NAME_LETTERS_H

#include <array>

#include "platform/ascii.h"

namespace qxpaf {

// One entry for each value of a byte.
template <class Entry>
class ByteTable
{
 public:
  template <class EntryOf>
  explicit constexpr ByteTable(EntryOf entryOf)
  {
    for (unsigned int byte = 0; byte < 256; ++byte) entries_[byte] = entryOf(static_cast<char>(byte));
  }

  constexpr Entry operator[](char c) const { return entries_[static_cast<unsigned char>(c)]; }

 private:
  std::array<Entry, 256> entries_{};
};

// A letter in upper case; 0 for everything else.
inline constexpr ByteTable<char> kUpperLetter([](char c) {
  return AsciiUpper(c) >= 'A' && AsciiUpper(c) <= 'Z' ? AsciiUpper(c) : '\0';
});

// Every byte, letters in upper case.
inline constexpr ByteTable<char> kUpper([](char c) { return AsciiUpper(c); });

constexpr bool IsNameSpace(char c)
{
  return c == ' ' || (c >= '\t' && c <= '\r');
}

inline const char* SkipSpace(const char* name)
{
  while (IsNameSpace(*name)) ++name;
  return name;
}

constexpr bool IsVowel(char upper)
{
  return upper == 'A' || upper == 'E' || upper == 'I' || upper == 'O' || upper == 'U';
}

}  // namespace qxpaf

#endif
