// From UTF-8: the strict and the tolerant readers.
#include <algorithm>
#include <cstring>

#include "qxpaf/text/encoding.h"
#include "text/ascii_run.h"
#include "text/piecewise.h"
#include "text/utf16_codec.h"
#include "text/utf8_codec.h"
#include "text/utf8_count.h"
#include "text/windows1252.h"

namespace qxpaf {
namespace {

std::size_t CountFourByteLeads(const char* s, std::size_t n)
{
  const auto isLead = [](char byte) { return static_cast<unsigned char>(byte) >= 0xF0; };
  return static_cast<std::size_t>(std::count_if(s, s + n, isLead));
}

// A target says how readers store a code point and a byte that starts no valid sequence; false ends the reading.
struct TolerantWide
{
  static constexpr bool kLowSurrogates = false;

  static bool Put(wchar_t*& to, std::uint32_t codePoint)
  {
    *to++ = static_cast<wchar_t>(codePoint);
    return true;
  }
  static bool PutInvalid(wchar_t*& to, char byte) { return Put(to, static_cast<unsigned char>(byte)); }
};

struct StrictWide : TolerantWide
{
  static bool PutInvalid(wchar_t*&, char) { return false; }
};

struct StrictUtf16
{
  static constexpr bool kLowSurrogates = true;

  static bool Put(wchar_t*& to, std::uint32_t codePoint)
  {
    to = PutUtf16(to, codePoint);
    return true;
  }
  static bool PutInvalid(wchar_t*&, char) { return false; }
};

struct TolerantUtf16 : StrictUtf16
{
  static bool PutInvalid(wchar_t*& to, char byte)
  {
    *to++ = static_cast<signed char>(byte);
    return true;
  }
};

struct StrictAnsi
{
  static constexpr bool kLowSurrogates = false;

  static bool Put(char*& to, std::uint32_t codePoint)
  {
    if (!CodePointToAnsi(static_cast<std::int32_t>(codePoint), *to)) return false;
    ++to;
    return true;
  }
  static bool PutInvalid(char*&, char) { return false; }
};

struct TolerantAnsi
{
  static constexpr bool kLowSurrogates = false;
  static constexpr char kNoByte = 0x7F;

  static bool Put(char*& to, std::uint32_t codePoint)
  {
    return StrictAnsi::Put(to, codePoint) || PutInvalid(to, kNoByte);
  }
  static bool PutInvalid(char*& to, char byte)
  {
    *to++ = byte;
    return true;
  }
};

// One sequence, or one byte when none starts at p; false, with p unmoved, when the target refuses it.
template <class Target, class Out>
bool ReadCharacter(const char*& p, Out*& to)
{
  const char* next = p;
  std::uint32_t codePoint = 0;
  if (DecodeUtf8Char(next, codePoint)) {
    if (!Target::Put(to, codePoint)) return false;
    p = next;
    return true;
  }
  // Taken from the old position even where the decoder has moved on: a value above U+10FFFF is four invalid bytes.
  return Target::PutInvalid(to, *p) && ++p;
}

template <class Target, class Out>
struct Reading : Conversion
{
  static std::size_t Measure(const char* s, std::size_t n)
  {
    return CountUtf8Characters(s, n) + (Target::kLowSurrogates ? CountFourByteLeads(s, n) : 0);
  }

  static Out* Convert(const char*& p, const char* stop, Out* to)
  {
    constexpr std::ptrdiff_t kStretch = 16;  // after which blocks are worth another try
    while (p < stop) {
      TakeWholeBlocks<AsciiRuns>(p, stop, to);
      for (const char* const end = stop - p > kStretch ? p + kStretch : stop; p < end;) {
        std::uint32_t codePoint = 0;
        if (IsAsciiByte(*p)) {
          *to++ = static_cast<Out>(*p++);
        } else if (stop - p >= 3 && DecodeThreeBytes(p, codePoint) && Target::Put(to, codePoint)) {
          p += 3;
        } else if (!ReadCharacter<Target>(p, to)) {
          return to;
        }
      }
    }
    return to;
  }
};

template <class Target, class Out>
bool Read(std::basic_string<Out>& out, const char* s, std::size_t n)
{
  return ConvertText(out, s, n, Reading<Target, Out>{});
}

}  // namespace
}  // namespace qxpaf

bool ReadUtf8String(std::wstring& out, const char* s)
{
  return qxpaf::Read<qxpaf::StrictWide>(out, s, std::strlen(s));
}

bool ReadUtf8String(std::wstring& out, const char* s, unsigned long n)
{
  return qxpaf::Read<qxpaf::StrictWide>(out, s, strnlen(s, n));
}

void ReadUtf8StringTolerant(std::wstring& out, const char* s)
{
  qxpaf::Read<qxpaf::TolerantWide>(out, s, std::strlen(s));
}

std::wstring Utf8ToWide(const std::string& s)
{
  std::wstring out;
  ReadUtf8StringTolerant(out, s.c_str());
  return out;
}

bool Utf8ToUtf16(std::wstring& out, const char* s, bool tolerant)
{
  const std::size_t n = std::strlen(s);
  return tolerant ? qxpaf::Read<qxpaf::TolerantUtf16>(out, s, n) : qxpaf::Read<qxpaf::StrictUtf16>(out, s, n);
}

template <>
std::string FromUtf8IfWide<std::string>(const std::string& s)
{
  return s;
}

template <>
std::wstring FromUtf8IfWide<std::wstring>(const std::string& s)
{
  return Utf8ToWide(s);
}

bool ReadUtf8String(std::string& out, const char* s)
{
  return qxpaf::Read<qxpaf::StrictAnsi>(out, s, std::strlen(s));
}

bool ReadUtf8String(std::string& out, const char* s, unsigned long n)
{
  return qxpaf::Read<qxpaf::StrictAnsi>(out, s, strnlen(s, n));
}

void ReadUtf8StringTolerant(std::string& out, const char* s)
{
  qxpaf::Read<qxpaf::TolerantAnsi>(out, s, std::strlen(s));
}
