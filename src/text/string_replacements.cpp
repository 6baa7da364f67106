// Replacements of platform functions on characters, strings, files and times.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <cwchar>
#include <cwctype>

#include "qxpaf/text/normalise.h"
#include "text/byte_class.h"

namespace qxpaf {
namespace {

constexpr char kDigits[] = "0123456789abcdefghijklmnopqrstuvwxyz";
constexpr int kMinRadix = 2;
constexpr int kMaxRadix = 36;

// Writes the digits of value, which is not 0, least significant first.
char* PutDigitsReversed(char* to, unsigned int value, unsigned int radix)
{
  for (; value != 0; value /= radix) *to++ = kDigits[value % radix];
  return to;
}

// The result when a, b or both have ended. -2, not -1: callers tell the longer b apart from the greater one.
int CompareEnds(wchar_t a, wchar_t b)
{
  if (a != L'\0') return 1;
  return b != L'\0' ? -2 : 0;
}

}  // namespace
}  // namespace qxpaf

char* strupr_(char* s)
{
  for (char* p = s; *p != '\0'; ++p) *p = qxpaf::ToUpperByte(*p);
  return s;
}

char* strlwr_(char* s)
{
  for (char* p = s; *p != '\0'; ++p) *p = qxpaf::ToLowerByte(*p);
  return s;
}

wchar_t* wcsupr_(wchar_t* s)
{
  for (wchar_t* p = s; *p != L'\0'; ++p) *p = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(*p)));
  return s;
}

char* itoa_(int value, char* buf, int radix)
{
  char* end = buf;
  if (radix >= qxpaf::kMinRadix && radix <= qxpaf::kMaxRadix) {
    // Negated as unsigned, so that the most negative value keeps its digits.
    const unsigned int magnitude = value < 0 ? 0U - static_cast<unsigned int>(value) : static_cast<unsigned int>(value);
    if (value == 0) *end++ = '0';
    end = qxpaf::PutDigitsReversed(end, magnitude, static_cast<unsigned int>(radix));
    if (value < 0) *end++ = '-';
    std::reverse(buf, end);
  }
  *end = '\0';
  return buf;
}

int iscsym_(int c)
{
  if (c < 0 || c > 0xFF) return 0;
  return std::isalnum(c) != 0 || c == '_' ? 1 : 0;
}

char* strrev_(char* s)
{
  std::reverse(s, s + std::strlen(s));
  return s;
}

int wcsicmp_(const wchar_t* a, const wchar_t* b)
{
  return wcsnicmp_(a, b, static_cast<unsigned long>(-1));
}

int wcsnicmp_(const wchar_t* a, const wchar_t* b, unsigned long n)
{
  for (; n > 0; --n, ++a, ++b) {
    if (*a == L'\0' || *b == L'\0') return qxpaf::CompareEnds(*a, *b);
    const std::wint_t left = std::towlower(static_cast<std::wint_t>(*a));
    const std::wint_t right = std::towlower(static_cast<std::wint_t>(*b));
    if (left != right) return left > right ? 1 : -1;
  }
  return 0;
}

char* strcatc(char* s, char c)
{
  char* const end = s + std::strlen(s);
  end[0] = c;
  end[1] = '\0';
  return s;
}

char* fgets_(char* buf, int n, FILE* f)
{
  if (std::fgets(buf, n, f) == nullptr) return nullptr;
  std::size_t length = std::strlen(buf);
  if (length > 0 && buf[length - 1] == '\n') {
    --length;
    // A carriage return counts as part of the line's end only before a line feed.
    if (length > 0 && buf[length - 1] == '\r') --length;
    buf[length] = '\0';
  }
  return buf;
}

bool Localtime(const time_t* t, tm& out)
{
  return localtime_r(t, &out) != nullptr;
}

bool Ctime(const time_t* t, char* buf)
{
  if (ctime_r(t, buf) != nullptr) return true;
  *buf = '\0';
  return false;
}
