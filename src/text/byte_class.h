// The C library's character classes and case on bytes taken as unsigned, in the current locale. Nothing is decided for
// ASCII beforehand: some single-byte locales map the case of 'i' and 'I' in their own way. The C library's headers turn
// these calls into table look-ups.
#ifndef QXPAF_SRC_TEXT_BYTE_CLASS_H
#define QXPAF_SRC_TEXT_BYTE_CLASS_H

#include <cctype>

namespace qxpaf {

inline bool IsLetterByte(char byte)
{
  return std::isalpha(static_cast<unsigned char>(byte)) != 0;
}

inline bool IsDigitByte(char byte)
{
  return std::isdigit(static_cast<unsigned char>(byte)) != 0;
}

inline bool IsLetterOrDigitByte(char byte)
{
  return std::isalnum(static_cast<unsigned char>(byte)) != 0;
}

inline char ToUpperByte(char byte)
{
  return static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
}

inline char ToLowerByte(char byte)
{
  return static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
}

}  // namespace qxpaf

#endif
