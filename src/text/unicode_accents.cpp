// Accent removal from wide text, and in place from UTF-8.
#include <algorithm>
#include <cstring>

#include "qxpaf/text/unicode.h"
#include "text/ascii_run.h"
#include "text/unicode_map.h"
#include "text/unicode_tables.h"
#include "text/utf8_codec.h"

namespace qxpaf {
namespace {

using AccentMapping = TableMapping<kAccents, AsciiCase::kKept>;

// A UTF-8 sequence and the byte that takes its place, 0 when it stays.
struct Replacement
{
  std::size_t length;
  char byte;
};

bool IsLeadOfTwo(unsigned char byte)
{
  return byte >= 0xC3 && byte <= 0xC8;
}

bool IsLeadOfThree(unsigned char byte, unsigned char next)
{
  return byte == 0xE1 && next >= 0xB8 && next <= 0xBB;
}

unsigned int LowBits(char continuation)
{
  return static_cast<unsigned char>(continuation) & 0x3F;
}

// Of the sequence at s, where `left` bytes are left.
Replacement ReplacementAt(const char* s, std::size_t left)
{
  const auto lead = static_cast<unsigned char>(s[0]);
  if (left >= 2 && IsLeadOfTwo(lead) && IsUtf8Continuation(s[1])) {
    const std::uint32_t codePoint = ((lead & 0x1FU) << 6) | LowBits(s[1]);
    return {2, static_cast<char>(kUtf8BasesOfTwo[codePoint - kFirstUtf8BaseOfTwo])};
  }
  if (left >= 3 && IsLeadOfThree(lead, static_cast<unsigned char>(s[1])) && IsUtf8Continuation(s[2])) {
    const std::uint32_t codePoint = 0x1000U | (LowBits(s[1]) << 6) | LowBits(s[2]);
    return {3, static_cast<char>(kUtf8BasesOfThree[codePoint - kFirstUtf8BaseOfThree])};
  }
  return {0, 0};
}

// The first sequence that is replaced, or n.
std::size_t FindReplaced(const char* s, std::size_t n)
{
  std::size_t i = AsciiRuns::Length(s, n);
  while (i < n && ReplacementAt(s + i, n - i).byte == 0) {
    ++i;
    if (i < n && IsAsciiByte(s[i])) i += AsciiRuns::Length(s + i, n - i);
  }
  return i;
}

// Closes the gaps on the way, every byte being moved once, and writes nothing where nothing is replaced. Returns the
// new length.
std::size_t RemoveAccents(char* s, std::size_t n)
{
  std::size_t from = FindReplaced(s, n);
  std::size_t to = from;
  while (from < n) {
    if (IsAsciiByte(s[from])) {
      const std::size_t run = AsciiRuns::Convert(s + to, s + from, n - from);
      from += run;
      to += run;
    } else if (const Replacement replacement = ReplacementAt(s + from, n - from); replacement.byte != 0) {
      s[to++] = replacement.byte;
      from += replacement.length;
    } else {
      s[to++] = s[from++];
    }
  }
  return to;
}

}  // namespace
}  // namespace qxpaf

wchar_t UnicodeRemoveAccents(wchar_t c)
{
  return qxpaf::AccentMapping()(c);
}

std::wstring UnicodeRemoveAccents(std::wstring s)
{
  qxpaf::MapString<qxpaf::AccentMapping>(s);
  return s;
}

void UnicodeRemoveAccentsMe(wchar_t* s)
{
  qxpaf::MapTerminated<qxpaf::AccentMapping>(s);
}

void Utf8RemoveAccentsMe(char* s)
{
  const std::size_t n = std::strlen(s);
  const std::size_t kept = qxpaf::RemoveAccents(s, n);
  std::fill(s + kept, s + n, '\0');
}

void Utf8RemoveAccentsMe(std::string& s)
{
  s.resize(qxpaf::RemoveAccents(s.data(), s.size()));
}
