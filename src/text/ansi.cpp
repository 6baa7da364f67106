// Between wide text and Windows-1252, and the overloads that convert whatever text they are given.
#include <cstring>
#include <cwchar>
#include <string_view>

#include "qxpaf/text/encoding.h"
#include "text/ascii_run.h"
#include "text/piecewise.h"
#include "text/windows1252.h"

namespace qxpaf {
namespace {

// The elements after which blocks are worth another try.
constexpr std::ptrdiff_t kStretch = 16;

// Converts whole blocks of what is the same on both sides. Returns the end of the stretch that is to be converted one
// by one then.
template <class Out, class In>
const In* TakeStretch(const In*& p, const In* stop, Out*& to)
{
  TakeWholeBlocks<Latin1Runs>(p, stop, to);
  return stop - p > kStretch ? p + kStretch : stop;
}

// Converts up to stop or to the first character without a byte, and leaves p there.
char* NarrowConvertible(const wchar_t*& p, const wchar_t* stop, char* to)
{
  while (p < stop) {
    for (const wchar_t* const end = TakeStretch(p, stop, to); p < end; ++p, ++to)
      if (!CodePointToAnsi(*p, *to)) return to;
  }
  return to;
}

struct Narrowing : Conversion
{
  char replacement;

  static std::size_t Measure(const wchar_t*, std::size_t n) { return n; }

  char* Convert(const wchar_t*& p, const wchar_t* stop, char* to) const
  {
    while (p < stop) {
      for (const wchar_t* const end = TakeStretch(p, stop, to); p < end; ++p, ++to)
        if (!CodePointToAnsi(*p, *to)) *to = replacement;
    }
    return to;
  }
};

struct Widening : Conversion
{
  static std::size_t LeastCapacity(std::size_t n) { return n + 1; }

  static std::size_t Measure(const char*, std::size_t n) { return n; }

  static wchar_t* Convert(const char*& p, const char* stop, wchar_t* to)
  {
    while (p < stop) {
      for (const char* const end = TakeStretch(p, stop, to); p < end; ++p, ++to)
        *to = static_cast<wchar_t>(AnsiToCodePoint(static_cast<unsigned char>(*p)));
    }
    return to;
  }
};

// Compared as signed, so negative values are accepted too.
bool CharWideToLatin1(char& out, wchar_t c)
{
  if (c > 0xFF) return false;
  out = static_cast<char>(c);
  return true;
}

}  // namespace
}  // namespace qxpaf

bool CharWideToAnsi(char& out, wchar_t c)
{
  return qxpaf::CodePointToAnsi(c, out);
}

bool CharToAnsi(char& out, wchar_t c)
{
  return CharWideToAnsi(out, c);
}

bool CharToAnsi(char& out, char c)
{
  out = c;
  return true;
}

wchar_t CharAnsiToWide(unsigned char b)
{
  return static_cast<wchar_t>(qxpaf::AnsiToCodePoint(b));
}

void AnsiToChar(char& out, char b)
{
  out = b;
}

void AnsiToChar(wchar_t& out, char b)
{
  out = CharAnsiToWide(static_cast<unsigned char>(b));
}

std::string WideToAnsi(const wchar_t* s, char replacement)
{
  std::string out;
  qxpaf::ConvertText(out, s, std::wcslen(s), qxpaf::Narrowing{{}, replacement});
  return out;
}

std::string WideToAnsi(const std::wstring& s, char replacement)
{
  return WideToAnsi(s.c_str(), replacement);
}

bool CanWideToAnsi(const wchar_t* s)
{
  char byte;
  while (*s != L'\0' && CharWideToAnsi(byte, *s)) ++s;
  return *s == L'\0';
}

bool WideToAnsi(char* dst, const wchar_t* src)
{
  const wchar_t* const end = src + std::wcslen(src);
  dst = qxpaf::NarrowConvertible(src, end, dst);
  if (src < end) return false;
  *dst = '\0';
  return true;
}

bool WideToAnsi(std::string& dst, const std::wstring& src)
{
  dst.clear();
  dst.resize(src.length());
  const wchar_t* from = src.c_str();
  const wchar_t* const end = from + std::wcslen(from);
  qxpaf::NarrowConvertible(from, end, dst.data());
  return from == end;
}

std::string StringToAnsi(const wchar_t* s, char replacement)
{
  return WideToAnsi(s, replacement);
}

std::string StringToAnsi(const std::wstring& s, char replacement)
{
  return WideToAnsi(s, replacement);
}

std::string StringToAnsi(const char* s, char)
{
  return s;
}

std::string StringToAnsi(const std::string& s, char)
{
  return s;
}

bool StringToAnsi(char* dst, const wchar_t* src)
{
  return WideToAnsi(dst, src);
}

bool StringToAnsi(char* dst, const char* src)
{
  std::strcpy(dst, src);
  return true;
}

bool StringToAnsi(std::string& dst, const std::wstring& src)
{
  return WideToAnsi(dst, src);
}

bool StringToAnsi(std::string& dst, const std::string& src)
{
  dst = src;
  return true;
}

std::wstring AnsiToWide(const char* s, unsigned long n)
{
  std::wstring out;
  qxpaf::ConvertText(out, s, n, qxpaf::Widening{});
  return out;
}

std::wstring AnsiToWide(const char* s)
{
  return AnsiToWide(s, std::strlen(s));
}

std::wstring AnsiToWide(const std::string& s)
{
  return AnsiToWide(s.data(), s.length());
}

std::wstring StringToWide(const std::wstring& s)
{
  return s;
}

std::wstring StringToWide(const std::string& s)
{
  return AnsiToWide(s);
}

void AnsiToString(std::wstring& dst, const char* s, unsigned long n)
{
  dst = AnsiToWide(s, n);
}

void AnsiToString(std::wstring& dst, const char* s)
{
  dst = AnsiToWide(s);
}

void AnsiToString(std::string& dst, const char* s)
{
  dst = s;
}

void AnsiToString(std::string& dst, const char* s, unsigned long n)
{
  dst.assign(s, n);
}

void AnsiToStringC(wchar_t* dst, const char* s)
{
  const char* const end = s + std::strlen(s);
  *qxpaf::Widening::Convert(s, end, dst) = L'\0';
}

void AnsiToStringC(char* dst, const char* s)
{
  std::strcpy(dst, s);
}

std::string ConvertFromWide(const std::wstring& s, bool (*convert)(char&, wchar_t), char replacement)
{
  const std::wstring_view text = s.c_str();
  std::string out(text.size(), replacement);
  for (std::size_t i = 0; i < text.size(); ++i)
    if (!convert(out[i], text[i])) out[i] = replacement;
  return out;
}

std::string CharsetConvert(const std::wstring& s, CharsetEnum target, char replacement)
{
  switch (target) {
    case CharsetUtf8:
      return WideToUtf8(s);
    case CharsetWindows1252:
      return WideToAnsi(s, replacement);
    case CharsetLatin1:
      return ConvertFromWide(s, qxpaf::CharWideToLatin1, replacement);
  }
  return {};
}
