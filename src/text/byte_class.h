// The C library's character classes and case on bytes taken as unsigned, in the current locale. Calls are saved for
// ASCII where every locale agrees: the classes of all characters, and the case of all letters but 'i' and 'I', for
// which the Turkic single-byte locales have rules of their own.
#ifndef QXPAF_SRC_TEXT_BYTE_CLASS_H
#define QXPAF_SRC_TEXT_BYTE_CLASS_H

#include <cctype>

namespace qxpaf {

inline constexpr unsigned int kAsciiCaseBit = 'a' ^ 'A';
inline constexpr unsigned int kAsciiLetters = 26;

inline bool IsAsciiUnsigned(unsigned int byte)
{
  return byte < 0x80;
}

inline bool IsAsciiLetter(unsigned int byte)
{
  return (byte | kAsciiCaseBit) - 'a' < kAsciiLetters;
}

inline bool IsLetterByte(char byte)
{
  const unsigned int c = static_cast<unsigned char>(byte);
  return IsAsciiUnsigned(c) ? IsAsciiLetter(c) : std::isalpha(static_cast<int>(c)) != 0;
}

// The C standard leaves no room for other digits.
inline bool IsDigitByte(char byte)
{
  return byte >= '0' && byte <= '9';
}

inline bool IsLetterOrDigitByte(char byte)
{
  return IsLetterByte(byte) || IsDigitByte(byte);
}

inline char ToUpperByte(char byte)
{
  const unsigned int c = static_cast<unsigned char>(byte);
  if (!IsAsciiUnsigned(c) || c == 'i') return static_cast<char>(std::toupper(static_cast<int>(c)));
  return static_cast<char>(c - 'a' < kAsciiLetters ? c ^ kAsciiCaseBit : c);
}

inline char ToLowerByte(char byte)
{
  const unsigned int c = static_cast<unsigned char>(byte);
  if (!IsAsciiUnsigned(c) || c == 'I') return static_cast<char>(std::tolower(static_cast<int>(c)));
  return static_cast<char>(c - 'A' < kAsciiLetters ? c ^ kAsciiCaseBit : c);
}

}  // namespace qxpaf

#endif
