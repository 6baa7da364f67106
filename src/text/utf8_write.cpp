// To UTF-8, from wide text and from Windows-1252.
#include <cstring>
#include <cwchar>
#include <string_view>
#include <utility>

#include "qxpaf/text/encoding.h"
#include "text/ascii_run.h"
#include "text/piecewise.h"
#include "text/utf16_codec.h"
#include "text/utf8_codec.h"
#include "text/windows1252.h"

namespace qxpaf {
namespace {

// One element, or both of a surrogate pair; looks at the element behind a high surrogate, if only the terminator.
char* WriteCharacter(const wchar_t*& p, char* to)
{
  auto value = static_cast<std::uint32_t>(*p++);
  if (IsHighSurrogate(value) && IsLowSurrogate(static_cast<std::uint32_t>(*p)))
    value = CombineSurrogates(value, static_cast<std::uint32_t>(*p++));
  return value <= kLastCodePoint ? PutUtf8(to, value) : to;
}

char* WritePiece(const wchar_t*& p, const wchar_t* stop, char* to)
{
  while (p < stop) {
    const std::size_t run = AsciiRuns::Convert(to, p, static_cast<std::size_t>(stop - p));
    p += run;
    to += run;
    while (p < stop && static_cast<std::uint32_t>(*p) >= 0x80) to = WriteCharacter(p, to);
  }
  return to;
}

char* WriteAnsiPiece(const char*& p, const char* stop, char* to)
{
  while (p < stop) {
    const std::size_t run = AsciiRuns::Convert(to, p, static_cast<std::size_t>(stop - p));
    p += run;
    to += run;
    while (p < stop && !IsAsciiByte(*p)) to = PutUtf8(to, AnsiToCodePoint(static_cast<unsigned char>(*p++)));
  }
  return to;
}

std::string AnsiToUtf8(std::string_view ansi)
{
  std::string out;
  ConvertText(out, ansi.data(), ansi.data() + ansi.size(), 0, WriteAnsiPiece);
  return out;
}

// One byte of the in-place conversion: makes way for its UTF-8 form by moving `tail` bytes, if room and size allow.
void ExpandAtStart(char* s, unsigned char byte, std::size_t tail, std::size_t room, std::size_t size)
{
  char encoded[kMaxUtf8Length];
  const auto n = static_cast<std::size_t>(PutUtf8(encoded, AnsiToCodePoint(byte)) - encoded);
  if (n > room || n > size || tail > size - n) return;
  std::memmove(s + n, s + 1, tail);
  std::memcpy(s, encoded, n);
}

}  // namespace
}  // namespace qxpaf

int WideCharToUtf8(char* out, wchar_t c)
{
  // Compared as signed: a negative value is one byte too.
  if (c < 0x80) {
    *out = static_cast<char>(c);
    return 1;
  }
  return static_cast<int>(qxpaf::PutUtf8(out, static_cast<std::uint32_t>(c)) - out);
}

std::string WideToUtf8(const wchar_t* s)
{
  const std::size_t n = std::wcslen(s);
  std::string out;
  qxpaf::ConvertText(out, s, s + n, n + 1, qxpaf::WritePiece);
  return out;
}

std::string WideToUtf8(const std::wstring& s) { return WideToUtf8(s.c_str()); }

std::string StringToUtf8(const wchar_t* s) { return WideToUtf8(s); }

std::string StringToUtf8(const std::wstring& s) { return WideToUtf8(s); }

std::string StringToUtf8(const char* s) { return qxpaf::AnsiToUtf8(s); }

std::string StringToUtf8(const std::string& s) { return qxpaf::AnsiToUtf8(s); }

std::string Windows1252ToUtf8(std::string s)
{
  if (qxpaf::AsciiRuns::Length(s.data(), s.size()) == s.size()) return s;
  return qxpaf::AnsiToUtf8(s);
}

bool Windows1252ToUtf8(char* s, unsigned long size)
{
  const std::size_t length = std::strlen(s);
  const std::size_t room = size - length;
  // Behind the original length only moves of a negative length are left, so nothing there needs to be looked at.
  for (std::size_t i = 0; i <= length && s[i] != '\0'; ++i)
    if (!qxpaf::IsAsciiByte(s[i])) qxpaf::ExpandAtStart(s, static_cast<unsigned char>(s[i]), length - i, room, size);
  return true;
}

std::string ToUtf8IfWide(const wchar_t* s) { return WideToUtf8(s); }

std::string ToUtf8IfWide(const std::wstring& s) { return WideToUtf8(s); }

std::string ToUtf8IfWide(const char* s) { return s; }

std::string ToUtf8IfWide(const std::string& s) { return s; }

void ToUtf8IfDestNotWide(std::wstring& dst, const std::wstring& src) { dst = src; }

void ToUtf8IfDestNotWide(std::string& dst, const std::wstring& src) { dst = WideToUtf8(src); }
