// To UTF-8, from wide text and from Windows-1252.
#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string_view>
#include <utility>

#include "qxpaf/text/encoding.h"
#include "text/ascii_run.h"
#include "text/piecewise.h"
#include "text/utf16_codec.h"
#include "text/utf8_codec.h"
#include "text/utf8_encode_blocks.h"
#include "text/windows1252.h"

namespace qxpaf {
namespace {

struct WideWriting : Conversion
{
  static std::size_t PieceLength(const wchar_t* s, std::size_t most) { return wcsnlen(s, most); }

  static std::size_t MeasureRest(const wchar_t* s, std::size_t n) { return Measure(s, n); }

  // Of as much of n elements as there is before a terminator, in pieces that are still in the nearest cache when they
  // are read again.
  static std::size_t Measure(const wchar_t* s, std::size_t n)
  {
    std::size_t length = 0;
    for (const wchar_t* const end = s + n; s < end;) {
      const std::size_t piece = wcsnlen(s, std::min<std::size_t>(kPieceLength, static_cast<std::size_t>(end - s)));
      if (piece == 0) break;
      length += MeasurePiece(s, piece);
      s += piece;
    }
    return length;
  }

  static char* Convert(const wchar_t*& p, const wchar_t* stop, char* to)
  {
    constexpr std::ptrdiff_t kStretch = 8;  // after which blocks are worth another try
    while (p < stop) {
      TakeWholeBlocks<AsciiRuns>(p, stop, to);
      to = EncodeBlocks(p, stop, to);
      const wchar_t* const end = stop - p > kStretch ? p + kStretch : stop;
      while (p < end) to = WriteCharacter(p, to);
    }
    return to;
  }

 private:
  static constexpr std::size_t kBlock = 8;

  static std::size_t MeasurePiece(const wchar_t* s, std::size_t n)
  {
    std::size_t length = 0;
    std::size_t i = 0;
    for (; n - i >= kBlock; i += kBlock) length += MeasureBlock(s + i);
    for (; i < n; ++i) length += LengthAt(s + i);
    return length;
  }

  static std::size_t MeasureBlock(const wchar_t* s)
  {
    wchar_t bits = 0;
    for (std::size_t i = 0; i < kBlock; ++i) bits |= s[i];
    std::uint32_t length = 0;
    if (bits >= 0 && bits < 0x8000) {  // three bytes at most, and no surrogates
      for (std::size_t i = 0; i < kBlock; ++i) length += 1U + (s[i] >= 0x80) + (s[i] >= 0x800);
    } else {
      for (std::size_t i = 0; i < kBlock; ++i) length += LengthAt(s + i);
    }
    return length;
  }

  // Both look at the element behind p, if only the terminator.
  static std::uint32_t LengthAt(const wchar_t* p)
  {
    const auto value = static_cast<std::uint32_t>(p[0]);
    const auto next = static_cast<std::uint32_t>(p[1]);
    // A pair takes four bytes where its halves would take three each.
    return Utf8Length(value) - 2U * IsSurrogatePair(value, next);
  }

  static char* WriteCharacter(const wchar_t*& p, char* to)
  {
    auto value = static_cast<std::uint32_t>(*p++);
    if (value < 0xD800) return PutUtf8(to, value);
    const auto next = static_cast<std::uint32_t>(*p);
    if (IsSurrogatePair(value, next)) {
      value = CombineSurrogates(value, next);
      ++p;
    }
    return value <= kLastCodePoint ? PutUtf8(to, value) : to;
  }
};

// Of the elements before the first zero, `most` if there is none. Text that begins with a long stretch of ASCII is not
// measured but taken for ASCII until it proves not to be; then the rest is measured.
std::string WideTextToUtf8(const wchar_t* s, std::size_t most)
{
  std::size_t capacity = most + 1;
  const std::size_t first = wcsnlen(s, std::min(most, kPieceLength));
  if (first < kPieceLength)
    capacity = first + 1;
  else if (AsciiRuns::Length(s, first) < first)
    capacity = std::max(capacity, WideWriting::Measure(s, most));
  std::string out;
  ConvertText(out, s, most, capacity, WideWriting{});
  return out;
}

struct AnsiWriting : Conversion
{
  static std::size_t Measure(const char* s, std::size_t n)
  {
    constexpr std::size_t kPiece = 64;
    std::size_t length = 0;
    for (std::size_t i = 0; i < n;) {
      const std::size_t run = AsciiRuns::Length(s + i, n - i);
      length += run;
      i += run;
      for (const std::size_t stop = std::min(n, i + kPiece); i < stop; ++i)
        length += Utf8Length(AnsiToCodePoint(static_cast<unsigned char>(s[i])));
    }
    return length;
  }

  static char* Convert(const char*& p, const char* stop, char* to)
  {
    while (p < stop) {
      TakeAscii(p, stop, to);
      while (p < stop && !IsAsciiByte(*p)) to = PutUtf8(to, AnsiToCodePoint(static_cast<unsigned char>(*p++)));
    }
    return to;
  }
};

std::string AnsiToUtf8(std::string_view ansi)
{
  std::string out;
  ConvertText(out, ansi.data(), ansi.size(), AnsiWriting{});
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
  return qxpaf::WideTextToUtf8(s, std::wcslen(s));
}

std::string WideToUtf8(const std::wstring& s)
{
  return qxpaf::WideTextToUtf8(s.c_str(), s.length());
}

std::string StringToUtf8(const wchar_t* s)
{
  return WideToUtf8(s);
}

std::string StringToUtf8(const std::wstring& s)
{
  return WideToUtf8(s);
}

std::string StringToUtf8(const char* s)
{
  return qxpaf::AnsiToUtf8(s);
}

std::string StringToUtf8(const std::string& s)
{
  return qxpaf::AnsiToUtf8(s);
}

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

std::string ToUtf8IfWide(const wchar_t* s)
{
  return WideToUtf8(s);
}

std::string ToUtf8IfWide(const std::wstring& s)
{
  return WideToUtf8(s);
}

std::string ToUtf8IfWide(const char* s)
{
  return s;
}

std::string ToUtf8IfWide(const std::string& s)
{
  return s;
}

void ToUtf8IfDestNotWide(std::wstring& dst, const std::wstring& src)
{
  dst = src;
}

void ToUtf8IfDestNotWide(std::string& dst, const std::wstring& src)
{
  dst = WideToUtf8(src);
}
