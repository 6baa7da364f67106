// Title case.
#include "text/title_case.h"

#include <cstdint>

#include "qxpaf/text/normalise.h"
#include "text/byte_class.h"
#include "text/unicode_map.h"
#include "text/unicode_tables.h"
#include "text/utf8_codec.h"

namespace qxpaf {
namespace {

struct ByteText
{
  using Char = char;

  static constexpr bool kNumeralsInside = true;

  static char Take(const char*& p) { return *p++; }
  static bool IsLetter(char c) { return IsLetterByte(c); }
  static bool IsDigit(char c) { return IsDigitByte(c); }
  static bool IsApostrophe(char c) { return c == '\''; }
  static char ToUpper(char c) { return ToUpperByte(c); }
  static char ToLower(char c) { return ToLowerByte(c); }
  static char Put(char* at, std::size_t, char, char c) { return *at = c; }
};

// ASCII is handled here, with the results of the Unicode tables; they are asked about the rest.
struct Utf8Text
{
  using Char = char32_t;

  // A separator counts as part of the word that it ends, so that only the last word can be a numeral. Callers have
  // come to rely on it.
  static constexpr bool kNumeralsInside = false;

  static constexpr char32_t kCaseBit = 'a' ^ 'A';
  static constexpr char32_t kRightQuote = 0x2019;

  static char32_t Take(const char*& p)
  {
    const char* next = p;
    std::uint32_t codePoint = 0;
    if (!DecodeUtf8Char(next, codePoint)) return static_cast<unsigned char>(*p++);
    p = next;
    return codePoint;
  }

  static bool IsLetter(char32_t c) { return IsAscii(c) ? IsAsciiLetter(c) : (Properties(c) & kAlphabetic) != 0; }
  static bool IsDigit(char32_t c)
  {
    return IsAscii(c) ? IsAsciiDigit(c) : (Properties(c) & kCategoryMask) == kDecimalDigit;
  }
  static bool IsApostrophe(char32_t c) { return c == '\'' || c == kRightQuote; }

  static char32_t ToUpper(char32_t c)
  {
    if (IsAscii(c)) return IsAsciiLetter(c) ? c & ~kCaseBit : c;
    return MapCharacter<TableMapping<kUpperCase, AsciiCase::kUpper>>(c);
  }

  static char32_t ToLower(char32_t c)
  {
    if (IsAscii(c)) return IsAsciiLetter(c) ? c | kCaseBit : c;
    return MapCharacter<TableMapping<kLowerCase, AsciiCase::kLower>>(c);
  }

  // The text keeps its length, so a character whose other case is longer or shorter stays.
  static char32_t Put(char* at, std::size_t length, char32_t old, char32_t c)
  {
    if (Utf8Length(c) != length) return old;
    PutUtf8(at, c);
    return c;
  }

 private:
  static std::uint32_t Properties(char32_t c) { return kProperties.Entry(static_cast<wchar_t>(c)); }

  template <class Mapping>
  static char32_t MapCharacter(char32_t c)
  {
    return static_cast<char32_t>(qxpaf::MapCharacter<Mapping>(static_cast<wchar_t>(c)));
  }

  static bool IsAscii(char32_t c) { return c < 0x80; }
  static bool IsAsciiLetter(char32_t c) { return (c | kCaseBit) - U'a' < 26; }
  static bool IsAsciiDigit(char32_t c) { return c - U'0' < 10; }
};

}  // namespace
}  // namespace qxpaf

char* TitleCase(char* s)
{
  qxpaf::TitleCaser<qxpaf::ByteText>(s).Run();
  return s;
}

char* TitleCaseUtf8(char* s)
{
  qxpaf::TitleCaser<qxpaf::Utf8Text>(s).Run();
  return s;
}
