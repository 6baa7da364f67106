// Character classes.
#include "qxpaf/text/unicode.h"
#include "text/unicode_tables.h"

namespace qxpaf {
namespace {

bool HasFlag(wchar_t c, std::uint32_t flag)
{
  return (kProperties.Entry(c) & flag) != 0;
}

bool IsDecimalDigit(std::uint32_t word)
{
  return (word & kCategoryMask) == kDecimalDigit;
}

}  // namespace
}  // namespace qxpaf

bool UnicodeIsAlpha(wchar_t c)
{
  return qxpaf::HasFlag(c, qxpaf::kAlphabetic);
}

bool UnicodeIsUpper(wchar_t c)
{
  return qxpaf::HasFlag(c, qxpaf::kUppercase);
}

bool UnicodeIsLower(wchar_t c)
{
  return qxpaf::HasFlag(c, qxpaf::kLowercase);
}

bool UnicodeIsSpace(wchar_t c)
{
  return qxpaf::HasFlag(c, qxpaf::kWhiteSpace);
}

bool UnicodeIsXdigit(wchar_t c)
{
  return qxpaf::HasFlag(c, qxpaf::kHexDigit);
}

bool UnicodeIsDigit(wchar_t c)
{
  return qxpaf::IsDecimalDigit(qxpaf::kProperties.Entry(c));
}

bool UnicodeIsAlnum(wchar_t c)
{
  const std::uint32_t word = qxpaf::kProperties.Entry(c);
  return (word & qxpaf::kAlphabetic) != 0 || qxpaf::IsDecimalDigit(word);
}

bool UnicodeIsPunct(wchar_t c)
{
  // The whole rest of the word is compared: a flag on the character would make it no punctuation.
  return (qxpaf::kProperties.Entry(c) >> qxpaf::kGroupShift) == qxpaf::kPunctuationGroup;
}
