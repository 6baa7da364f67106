// UCS-2 byte streams and UTF-16 code units.
#include <cstring>
#include <cwchar>
#include <string_view>

#include "qxpaf/text/encoding.h"
#include "text/utf16_codec.h"

namespace qxpaf {
namespace {

enum class ByteOrder
{
  kLittleEndian,
  kBigEndian
};

std::uint32_t ToCodePoint(wchar_t element)
{
  return static_cast<std::uint32_t>(element);
}

std::uint32_t ToCodePoint(char element)
{
  return static_cast<unsigned char>(element);
}

template <ByteOrder order, class In>
std::string ToUcs2(std::basic_string_view<In> text)
{
  constexpr std::size_t kLowByte = order == ByteOrder::kLittleEndian ? 0 : 1;
  std::string out(2 * text.size(), '\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::uint32_t value = ToCodePoint(text[i]);
    out[2 * i + kLowByte] = static_cast<char>(value);
    out[2 * i + (1 - kLowByte)] = static_cast<char>(value >> 8);
  }
  return out;
}

// One short of the last code point; callers rely on U+10FFFF being dropped.
constexpr unsigned int kLastUtf16CodePoint = 0x10FFFE;

std::size_t Utf16Length(unsigned int cp)
{
  if (cp > kLastUtf16CodePoint) return 0;
  return cp < kFirstSupplementary ? 1 : 2;
}

void AppendUtf16(std::wstring& out, unsigned int cp)
{
  wchar_t units[2];
  if (cp <= kLastUtf16CodePoint) out.append(units, PutUtf16(units, cp));
}

}  // namespace
}  // namespace qxpaf

std::string UnicodeToUCS2LE(const wchar_t* s)
{
  return qxpaf::ToUcs2<qxpaf::ByteOrder::kLittleEndian>(std::wstring_view(s));
}

std::string UnicodeToUCS2BE(const wchar_t* s)
{
  return qxpaf::ToUcs2<qxpaf::ByteOrder::kBigEndian>(std::wstring_view(s));
}

std::string UnicodeToUCS2LE(const char* s)
{
  return qxpaf::ToUcs2<qxpaf::ByteOrder::kLittleEndian>(std::string_view(s));
}

std::string UnicodeToUCS2BE(const char* s)
{
  return qxpaf::ToUcs2<qxpaf::ByteOrder::kBigEndian>(std::string_view(s));
}

void Utf32ToUtf16(std::wstring& out, const unsigned int* cps)
{
  std::size_t length = 0;
  for (const unsigned int* cp = cps; *cp != 0; ++cp) length += qxpaf::Utf16Length(*cp);
  out.clear();
  out.reserve(length);
  for (; *cps != 0; ++cps) qxpaf::AppendUtf16(out, *cps);
}

void Utf32ToUtf16(std::wstring& out, unsigned int cp)
{
  out.clear();
  qxpaf::AppendUtf16(out, cp);
}

void Utf32ToWide(std::wstring& out, unsigned int cp)
{
  out.assign(1, static_cast<wchar_t>(cp));
}
