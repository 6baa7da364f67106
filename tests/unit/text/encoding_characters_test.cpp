// Single characters and stepping through UTF-8.
#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "qxpaf/text/encoding.h"
#include "reference/encoding_reference.h"
#include "unit/text/encoding_text.h"

namespace {

using encoding_test::Bytes;
using encoding_test::ExactText;
using encoding_test::Hex;
using encoding_test::Wide;

struct AnsiRow
{
  int byte;
  long codePoint;
};

constexpr AnsiRow kAnsiRows[] = {
    {0x80, 0x20AC}, {0x82, 0x201A}, {0x83, 0x0192}, {0x84, 0x201E}, {0x85, 0x2026}, {0x86, 0x2020}, {0x87, 0x2021},
    {0x88, 0x02C6}, {0x89, 0x2030}, {0x8A, 0x0160}, {0x8B, 0x2039}, {0x8C, 0x0152}, {0x8E, 0x017D}, {0x91, 0x2018},
    {0x92, 0x2019}, {0x93, 0x201C}, {0x94, 0x201D}, {0x95, 0x2022}, {0x96, 0x2013}, {0x97, 0x2014}, {0x98, 0x02DC},
    {0x99, 0x2122}, {0x9A, 0x0161}, {0x9B, 0x203A}, {0x9C, 0x0153}, {0x9E, 0x017E}, {0x9F, 0x0178},
};

// Every conversion of one byte to wide must agree.
void ExpectAnsiToWide(int byte, long codePoint)
{
  const auto narrow = static_cast<char>(byte);
  const auto wide = static_cast<wchar_t>(codePoint);
  EXPECT_EQ(CharAnsiToWide(static_cast<unsigned char>(byte)), wide) << byte;
  wchar_t out = 0x55;
  AnsiToChar(out, narrow);
  EXPECT_EQ(out, wide) << byte;
  char copy = 0x55;
  AnsiToChar(copy, narrow);
  EXPECT_EQ(copy, narrow) << byte;
  EXPECT_TRUE(CharToAnsi(copy, narrow)) << byte;
  EXPECT_EQ(copy, narrow) << byte;
}

// Every conversion of one wide character to a byte must agree; byte is -1 where there is none.
void ExpectWideToAnsi(std::int64_t character, int byte)
{
  const auto wide = static_cast<wchar_t>(character);
  char direct = 0x55;
  char overloaded = 0x55;
  ASSERT_EQ(CharWideToAnsi(direct, wide), byte >= 0) << character;
  ASSERT_EQ(CharToAnsi(overloaded, wide), byte >= 0) << character;
  ASSERT_EQ(direct, byte >= 0 ? static_cast<char>(byte) : '\x55') << character;
  ASSERT_EQ(overloaded, direct) << character;
}

TEST(AnsiCharacters, EachRowOfTheCodePageConvertsBothWays)
{
  ASSERT_EQ(std::size(kAnsiRows), 27U);
  for (const AnsiRow& row : kAnsiRows) {
    ExpectAnsiToWide(row.byte, row.codePoint);
    ExpectWideToAnsi(row.codePoint, row.byte);
  }
}

TEST(AnsiCharacters, UnassignedBytesConvertToWideOnly)
{
  for (const int byte : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
    ExpectAnsiToWide(byte, byte);
    ExpectWideToAnsi(byte, -1);
  }
}

TEST(AnsiCharacters, AllBytesAgreeWithTheReference)
{
  for (int byte = 0; byte < 256; ++byte) ExpectAnsiToWide(byte, reference::AnsiToWideChar(byte));
}

TEST(AnsiCharacters, AllCodePointsAgreeWithTheReference)
{
  for (long codePoint = 0; codePoint < 0x110000; ++codePoint) {
    ExpectWideToAnsi(codePoint, reference::WideToAnsiChar(codePoint));
    if (HasFatalFailure()) return;
  }
}

TEST(AnsiCharacters, ControlsOfTheUpperHalfHaveNoByte)
{
  for (int character = 0x80; character <= 0x9F; ++character) ExpectWideToAnsi(character, -1);
}

TEST(AnsiCharacters, ValuesOutsideUnicode)
{
  // Negative values count as below 0x80 and keep their low byte.
  const std::tuple<std::int64_t, int> rows[] = {{-1, 0xFF},          {-23, 0xE9},    {-128, 0x80},    {-256, 0x00},
                                                {-2147483648, 0x00}, {0x110000, -1}, {0x7FFFFFFF, -1}};
  for (const auto& [character, byte] : rows) ExpectWideToAnsi(character, byte);
}

std::string Utf8Of(wchar_t character)
{
  char out[8] = {0x55, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55};
  const int length = WideCharToUtf8(out, character);
  for (int i = length; i < 8; ++i)
    EXPECT_EQ(out[i], 0x55) << "wrote behind the character " << static_cast<long>(character);
  return std::string(out, static_cast<std::size_t>(length));
}

TEST(WideCharToUtf8, LengthsChangeAtTheBoundaries)
{
  const std::tuple<std::int64_t, std::string> rows[] = {
      {0, Bytes({0})},
      {0x7F, "\x7F"},
      {0x80, "\xC2\x80"},
      {0x7FF, "\xDF\xBF"},
      {0x800, "\xE0\xA0\x80"},
      {0xD83D, "\xED\xA0\xBD"},
      {0xFFFF, "\xEF\xBF\xBF"},
      {0x10000, "\xF0\x90\x80\x80"},
      {0x10FFFF, "\xF4\x8F\xBF\xBF"},
      // No upper bound: the same formula, cut to bytes.
      {0x110000, "\xF4\x90\x80\x80"},
      {0x1FFFFF, "\xF7\xBF\xBF\xBF"},
      {0x200000, Bytes({0xF8, 0x80, 0x80, 0x80})},
      {0x7FFFFFFF, Bytes({0xFF, 0xBF, 0xBF, 0xBF})},
      // Signed comparison: negative values are one byte.
      {-1, "\xFF"},
      {-128, "\x80"},
      {-2147483648, Bytes({0})},
  };
  for (const auto& [character, expected] : rows)
    EXPECT_EQ(Hex(Utf8Of(static_cast<wchar_t>(character))), Hex(expected)) << character;
}

TEST(WideCharToUtf8, AllCodePointsAreReadBack)
{
  for (long codePoint = 0; codePoint < 0x110000; ++codePoint) {
    const std::string utf8 = Utf8Of(static_cast<wchar_t>(codePoint));
    ASSERT_EQ(utf8, reference::WideCharToUtf8(codePoint));
    const char* p = utf8.c_str();
    wchar_t back = -1;
    ASSERT_TRUE(NextUtf8Char(back, p)) << codePoint;
    ASSERT_EQ(back, codePoint);
    ASSERT_EQ(p, utf8.c_str() + utf8.size());
  }
}

constexpr wchar_t kUntouched = 0x5555;

struct StepRow
{
  std::string text;
  bool valid;
  std::size_t moved;  // by the strict functions
  std::int64_t out;   // by the strict wide function
};

void PrintTo(const StepRow& row, std::ostream* out)
{
  *out << Hex(row.text);
}

const StepRow kSteps[] = {
    {"", true, 1, 0},
    {"A", true, 1, 'A'},
    {"\x7F", true, 1, 0x7F},
    {"\xC3\xA9", true, 2, 0xE9},
    {"\xDF\xBF", true, 2, 0x7FF},
    {"\xE2\x82\xAC", true, 3, 0x20AC},
    {"\xF0\x9F\x98\x80", true, 4, 0x1F600},
    {"\xF4\x8F\xBF\xBF", true, 4, 0x10FFFF},
    // Overlong forms and surrogates are accepted.
    {"\xC0\xAF", true, 2, 0x2F},
    {"\xC1\xBF", true, 2, 0x7F},
    {"\xC0\x80", true, 2, 0},
    {"\xE0\x80\xAF", true, 3, 0x2F},
    {"\xF0\x80\x80\xAF", true, 4, 0x2F},
    {"\xED\xA0\x80", true, 3, 0xD800},
    {"\xED\xBF\xBF", true, 3, 0xDFFF},
    // Above U+10FFFF: refused after moving and storing.
    {"\xF4\x90\x80\x80", false, 4, 0x110000},
    {"\xF5\x80\x80\x80", false, 4, 0x140000},
    {"\xF7\xBF\xBF\xBF", false, 4, 0x1FFFFF},
    // No lead bytes.
    {"\x80", false, 0, kUntouched},
    {"\xBF\x80", false, 0, kUntouched},
    {"\xF8\x88\x80\x80\x80", false, 0, kUntouched},
    {"\xFE", false, 0, kUntouched},
    {"\xFF", false, 0, kUntouched},
    // Missing continuation bytes, by the terminator or another byte, at every position.
    {"\xC3", false, 0, kUntouched},
    {"\xC3x", false, 0, kUntouched},
    {"\xC3\xC3\xA9", false, 0, kUntouched},
    {"\xE2", false, 0, kUntouched},
    {"\xE2\x82", false, 0, kUntouched},
    {"\xE2x\xAC", false, 0, kUntouched},
    {"\xE2\x82x", false, 0, kUntouched},
    {"\xF0", false, 0, kUntouched},
    {"\xF0\x9F", false, 0, kUntouched},
    {"\xF0\x9F\x98", false, 0, kUntouched},
    {"\xF0x\x98\x80", false, 0, kUntouched},
    {"\xF0\x9Fx\x80", false, 0, kUntouched},
    {"\xF0\x9F\x98x", false, 0, kUntouched},
};

class NextUtf8CharRows : public testing::TestWithParam<StepRow>
{
 protected:
  // The text ends where its memory ends.
  const ExactText<char> text_{GetParam().text};
  const char* p_ = text_.Get();

  std::size_t Moved() const { return static_cast<std::size_t>(p_ - text_.Get()); }
};

TEST_P(NextUtf8CharRows, Wide)
{
  wchar_t out = kUntouched;
  EXPECT_EQ(NextUtf8Char(out, p_), GetParam().valid);
  EXPECT_EQ(out, GetParam().out);
  EXPECT_EQ(Moved(), GetParam().moved);
}

TEST_P(NextUtf8CharRows, Ansi)
{
  const int byte = GetParam().valid ? reference::WideToAnsiChar(static_cast<long>(GetParam().out)) : -1;
  char out = 0x55;
  EXPECT_EQ(NextUtf8Char(out, p_), byte >= 0);
  EXPECT_EQ(out, byte >= 0 ? static_cast<char>(byte) : 0x55);
  EXPECT_EQ(Moved(), GetParam().moved);
}

TEST_P(NextUtf8CharRows, WideString)
{
  std::wstring out = L"untouched";
  EXPECT_EQ(NextUtf8Char(out, p_), GetParam().valid);
  EXPECT_EQ(out, GetParam().valid ? Wide({GetParam().out}) : L"untouched");
  EXPECT_EQ(Moved(), GetParam().moved);
}

TEST_P(NextUtf8CharRows, TolerantTakesTheByteAtTheOldPosition)
{
  const std::string& text = GetParam().text;
  const auto expected =
      GetParam().valid ? static_cast<unsigned int>(GetParam().out) : static_cast<unsigned char>(text[0]);
  EXPECT_EQ(NextUtf8Char(p_), expected);
  EXPECT_EQ(Moved(), GetParam().valid ? GetParam().moved : 1U);
}

INSTANTIATE_TEST_SUITE_P(Sequences, NextUtf8CharRows, testing::ValuesIn(kSteps));

TEST(NextUtf8Char, CharacterWithoutAnsiByteIsPassed)
{
  for (const std::string& text : {std::string("\xC4\x80"), std::string("\xC2\x81"), std::string("\xF0\x9F\x98\x80")}) {
    const char* p = text.c_str();
    char out = 0x55;
    EXPECT_FALSE(NextUtf8Char(out, p));
    EXPECT_EQ(out, 0x55);
    EXPECT_EQ(p, text.c_str() + text.size());
  }
}

TEST(Utf8Classes, AllBytes)
{
  for (int i = 0; i < 256; ++i) {
    const auto byte = static_cast<char>(i);
    EXPECT_EQ(Utf8IsSingle(byte), i < 0x80) << i;
    EXPECT_EQ(Utf8IsLead(static_cast<unsigned char>(i)), i >= 0xC2 && i <= 0xF4) << i;
    EXPECT_EQ(Utf8IsContinue(byte), i >= 0x80 && i <= 0xBF) << i;
  }
}

struct LengthRow
{
  const char* text;
  std::size_t characters;
};

TEST(Utf8Strlen, CountsWhatIsNoContinuation)
{
  const LengthRow rows[] = {
      {"", 0},
      {"abc", 3},
      {"Z\xC3\xBCrich", 6},
      {"\xF0\x9F\x98\x80", 1},
      {"\x80\xBF\x80", 0},
      {"\xC3\xC3\xFF", 3},
      {"ab\0cd", 2},
  };
  for (const LengthRow& row : rows) {
    EXPECT_EQ(Utf8Strlen(row.text), row.characters) << Hex(std::string(row.text));
    // The same again at the end of long runs.
    const std::string characters = std::string(1000, 'x') + row.text;
    EXPECT_EQ(Utf8Strlen(characters.c_str()), 1000 + row.characters);
    const std::string continuations = std::string(1000, '\x80') + row.text;
    EXPECT_EQ(Utf8Strlen(continuations.c_str()), row.characters);
    const std::string leads = std::string(1000, '\xC0') + row.text;
    EXPECT_EQ(Utf8Strlen(leads.c_str()), 1000 + row.characters);
  }
}

TEST(Utf8Inc, PointerAndIndexStopAtTheSamePlaces)
{
  struct Row
  {
    std::string text;
    std::vector<int> stops;
  };
  const Row rows[] = {
      {"", {}},
      {"ab", {1, 2}},
      {"\xC3\xA9x\xE2\x82\xAC", {2, 3, 6}},
      {"\x80\x80x", {2, 3}},  // stray continuation bytes count as one character
      {"\xC3", {1}},
      {"a\xBF\xBF\xBF\xBF\xBF", {6}},
  };
  for (const Row& row : rows) {
    const ExactText<char> text(row.text);
    const char* p = text.Get();
    int i = 0;
    for (const int stop : row.stops) {
      EXPECT_TRUE(Utf8Inc(p));
      EXPECT_TRUE(Utf8Inc(text.Get(), i));
      EXPECT_EQ(p - text.Get(), stop) << Hex(row.text);
      EXPECT_EQ(i, stop) << Hex(row.text);
    }
    EXPECT_FALSE(Utf8Inc(p));
    EXPECT_FALSE(Utf8Inc(text.Get(), i));
    EXPECT_EQ(p - text.Get(), static_cast<std::ptrdiff_t>(row.text.size()));
    EXPECT_EQ(i, static_cast<int>(row.text.size()));
  }
}

}  // namespace
