// UTF-8 one character at a time.
#include <cstring>

#include "qxpaf/text/encoding.h"
#include "text/utf8_codec.h"
#include "text/utf8_count.h"
#include "text/windows1252.h"

bool NextUtf8Char(wchar_t& out, const char*& p)
{
  const char* const start = p;
  std::uint32_t codePoint = 0;
  const bool valid = qxpaf::DecodeUtf8Char(p, codePoint);
  // A value that is refused as too large is handed on all the same.
  if (p != start) out = static_cast<wchar_t>(codePoint);
  return valid;
}

bool NextUtf8Char(char& out, const char*& p)
{
  std::uint32_t codePoint = 0;
  return qxpaf::DecodeUtf8Char(p, codePoint) && qxpaf::CodePointToAnsi(static_cast<std::int32_t>(codePoint), out);
}

bool NextUtf8Char(std::wstring& out, const char*& p)
{
  std::uint32_t codePoint = 0;
  if (!qxpaf::DecodeUtf8Char(p, codePoint)) return false;
  out.assign(1, static_cast<wchar_t>(codePoint));
  return true;
}

unsigned int NextUtf8Char(const char*& p)
{
  const char* next = p;
  std::uint32_t codePoint = 0;
  if (qxpaf::DecodeUtf8Char(next, codePoint)) {
    p = next;
    return codePoint;
  }
  return static_cast<unsigned char>(*p++);
}

bool Utf8IsSingle(char b)
{
  return qxpaf::IsAsciiByte(b);
}

bool Utf8IsLead(unsigned char b)
{
  return b >= 0xC2 && b <= 0xF4;
}

bool Utf8IsContinue(char b)
{
  return qxpaf::IsUtf8Continuation(b);
}

std::size_t Utf8Strlen(const char* s)
{
  // In pieces that are still in the nearest cache when they are read again.
  constexpr std::size_t kPiece = 4096;
  std::size_t count = 0;
  for (;;) {
    const std::size_t n = strnlen(s, kPiece);
    count += qxpaf::CountUtf8Characters(s, n);
    if (n < kPiece) return count;
    s += n;
  }
}

bool Utf8Inc(const char*& p)
{
  if (*p == '\0') return false;
  ++p;
  while (qxpaf::IsUtf8Continuation(*p)) ++p;
  return true;
}

bool Utf8Inc(const char* s, int& i)
{
  const char* p = s + i;
  const bool moved = Utf8Inc(p);
  i = static_cast<int>(p - s);
  return moved;
}
