// The replacements of platform functions, Split_ and ConcatStrings.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "qxpaf/text/normalise.h"
#include "reference/normalise_reference.h"
#include "unit/text/normalise_text.h"

namespace {

using normalise_test::InPlace;
using normalise_test::RandomText;
using test_support::GuardedBuffer;
using testing::ElementsAre;

std::string AllBytes()
{
  std::string out;
  for (int c = 1; c <= 0xFF; ++c) out += static_cast<char>(c);
  return out;
}

TEST(StringReplacements, UpperAndLowerChangeAsciiLettersOnly)
{
  for (const char c : AllBytes()) {
    const bool lower = c >= 'a' && c <= 'z';
    const bool upper = c >= 'A' && c <= 'Z';
    EXPECT_EQ(InPlace({c}, strupr_), std::string(1, lower ? static_cast<char>(c - 0x20) : c));
    EXPECT_EQ(InPlace({c}, strlwr_), std::string(1, upper ? static_cast<char>(c + 0x20) : c));
  }
  char text[] = "4b Rue d'\xC9t\xE9";
  EXPECT_EQ(strupr_(text), text);
  EXPECT_STREQ(text, "4B RUE D'\xC9T\xE9");
  EXPECT_EQ(strlwr_(text), text);
  EXPECT_STREQ(text, "4b rue d'\xC9t\xE9");
}

TEST(StringReplacements, WideUpper)
{
  wchar_t text[] = L"4b, old Rd";
  EXPECT_EQ(wcsupr_(text), text);
  EXPECT_STREQ(text, L"4B, OLD RD");
  wchar_t empty[] = L"";
  EXPECT_STREQ(wcsupr_(empty), L"");
}

struct NumberRow
{
  int value;
  int radix;
  const char* text;
};

TEST(StringReplacements, NumberToText)
{
  const NumberRow rows[] = {
      {-255, 16, "-ff"},
      {255, 16, "ff"},
      {0, 10, "0"},
      {0, 2, "0"},
      {5, 2, "101"},
      {-5, 2, "-101"},
      {35, 36, "z"},
      {36, 36, "10"},
      {1234567890, 10, "1234567890"},
      {-7, 10, "-7"},
      {7, 1, ""},
      {7, 37, ""},
      {0, 1, ""},
      {7, 0, ""},
      {7, -10, ""},
      {INT_MAX, 10, "2147483647"},
      {INT_MAX, 2, "1111111111111111111111111111111"},
      {-INT_MAX, 36, "-zik0zj"},
  };
  for (const NumberRow& row : rows) {
    GuardedBuffer buffer(std::strlen(row.text) + 1);
    EXPECT_EQ(itoa_(row.value, buffer.Data(), row.radix), buffer.Data());
    EXPECT_STREQ(buffer.Data(), row.text) << row.value << " in " << row.radix;
    EXPECT_TRUE(buffer.Intact());
  }
}

TEST(StringReplacements, NumberToTextIsReadBack)
{
  RandomText random;
  for (int i = 0; i < 20000; ++i) {
    const int value = static_cast<int>(random.Below(1ULL << (1 + random.Below(31)))) * (random.Below(2) == 0 ? 1 : -1);
    const int radix = static_cast<int>(2 + random.Below(35));
    char buffer[34];
    ASSERT_EQ(std::strtol(itoa_(value, buffer, radix), nullptr, radix), value) << radix;
  }
  GuardedBuffer most(34);
  itoa_(INT_MIN, most.Data(), 2);  // any text will do
  EXPECT_TRUE(most.Intact());
}

TEST(StringReplacements, IdentifierCharacters)
{
  for (int c = -300; c <= 300; ++c) {
    const bool expected = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
    EXPECT_EQ(iscsym_(c) != 0, expected) << c;
  }
  EXPECT_EQ(iscsym_(INT_MIN), 0);
  EXPECT_EQ(iscsym_(INT_MAX), 0);
}

TEST(StringReplacements, Reverse)
{
  EXPECT_EQ(InPlace("", strrev_), "");
  EXPECT_EQ(InPlace("a", strrev_), "a");
  EXPECT_EQ(InPlace("ab", strrev_), "ba");
  EXPECT_EQ(InPlace("abc", strrev_), "cba");
  char text[] = "xy";
  EXPECT_EQ(strrev_(text), text);
}

struct CompareRow
{
  const wchar_t* a;
  const wchar_t* b;
  int result;
  int ofTwo;  // on the first two elements
};

TEST(StringReplacements, WideCompareIgnoringCase)
{
  const CompareRow rows[] = {
      {L"", L"", 0, 0},       {L"a", L"", 1, 1},       {L"", L"a", -2, -2},     {L"abc", L"ABC", 0, 0},
      {L"abd", L"ABC", 1, 0}, {L"ABC", L"abd", -1, 0}, {L"ABCD", L"abc", 1, 0}, {L"abc", L"ABCD", -2, 0},
      {L"B", L"a", 1, 1},     {L"a", L"B", -1, -1},    {L"_", L"A", -1, -1},    {L"Zz", L"aa", 1, 1},
      {L"a", L"AB", -2, -2},  {L"ab", L"A", 1, 1},     {L"b", L"ac", 1, 1},     {L"1\x20AC", L"1\x20AB", 1, 1},
  };
  for (const CompareRow& row : rows) {
    EXPECT_EQ(wcsicmp_(row.a, row.b), row.result) << row.a << ", " << row.b;
    EXPECT_EQ(wcsnicmp_(row.a, row.b, 2), row.ofTwo) << row.a << ", " << row.b;
    EXPECT_EQ(wcsnicmp_(row.a, row.b, 0), 0);
    EXPECT_EQ(wcsnicmp_(row.a, row.b, 1000), row.result);
  }
}

TEST(StringReplacements, WideCompareReadsNoMoreThanAsked)
{
  const std::unique_ptr<wchar_t[]> a(new wchar_t[2]{L'a', L'b'});
  const std::unique_ptr<wchar_t[]> b(new wchar_t[2]{L'A', L'B'});
  EXPECT_EQ(wcsnicmp_(a.get(), b.get(), 2), 0);
}

struct TrimRow
{
  const char* text;
  const char* set;
  const char* result;
};

TEST(StringReplacements, Trim)
{
  const TrimRow rows[] = {
      {"", " ", ""},       {"   ", " ", ""},         {"  a b  ", " ", "a b"},    {"a", " ", "a"},
      {"xxaxx", "x", "a"}, {" \t a\t ", " \t", "a"}, {",;a,;b;,", ",;", "a,;b"}, {"abc", "", "abc"},
      {"aba", "ab", ""},   {" a", "x", " a"},
  };
  for (const TrimRow& row : rows) {
    EXPECT_EQ(InPlace(row.text, [&](char* s) { Trim_(s, row.set); }), row.result) << row.text;
    if (std::strlen(row.set) == 1) {
      EXPECT_EQ(InPlace(row.text, [&](char* s) { Trim_(s, row.set[0]); }), row.result) << row.text;
    }
  }
  EXPECT_EQ(InPlace("ab", [](char* s) { Trim_(s, '\0'); }), "ab");
}

TEST(StringReplacements, TrimOnTheRight)
{
  EXPECT_EQ(InPlace("", RTrim_), "");
  EXPECT_EQ(InPlace("   ", RTrim_), "");
  EXPECT_EQ(InPlace("  a b  ", RTrim_), "  a b");
  EXPECT_EQ(InPlace("a\t ", RTrim_), "a\t");
}

std::vector<std::string> Pieces(const char* s, char sep)
{
  char** const pieces = Split_(s, sep);
  std::vector<std::string> out;
  for (char** p = pieces; *p != nullptr; ++p) out.emplace_back(*p);
  FreeArray_(pieces);
  return out;
}

TEST(Split, Rows)
{
  EXPECT_THAT(Pieces(" a, b ,,c", ','), ElementsAre("a", "b", "", "c"));
  EXPECT_THAT(Pieces("", ','), ElementsAre(""));
  EXPECT_THAT(Pieces(",", ','), ElementsAre("", ""));
  EXPECT_THAT(Pieces(" a b ", ','), ElementsAre("a b"));
  EXPECT_THAT(Pieces("a b  c", ' '), ElementsAre("a", "b", "", "c"));
  EXPECT_THAT(Pieces("\ta,b\t", ','), ElementsAre("\ta", "b\t"));
  EXPECT_THAT(Pieces("a,b", '\0'), ElementsAre("a,b"));
}

TEST(Split, LikeReference)
{
  RandomText random;
  for (int i = 0; i < 20000; ++i) {
    const std::string text = random.Of({",", " ", "a", "bc", ";"}, 12);
    ASSERT_EQ(Pieces(text.c_str(), ','), reference::Split(text, ',')) << text;
  }
}

TEST(Split, FreesArrays)
{
  FreeArray_(static_cast<char**>(nullptr));
  FreeArray_(static_cast<wchar_t**>(nullptr));
  FreeArray_(new char* [] { nullptr });
  FreeArray_(new wchar_t* [] { new wchar_t[3]{}, nullptr });
}

TEST(Split, DeletesAndSetsToNull)
{
  char* text = new char[3];
  delete_array_and_null(text);
  EXPECT_EQ(text, nullptr);
  delete_array_and_null(text);
  EXPECT_EQ(text, nullptr);
  char** array = new char*[2];
  delete_array_and_null(array);
  EXPECT_EQ(array, nullptr);
}

TEST(StringReplacements, AppendCharacter)
{
  GuardedBuffer buffer(4);
  std::strcpy(buffer.Data(), "ab");
  EXPECT_EQ(strcatc(buffer.Data(), 'c'), buffer.Data());
  EXPECT_STREQ(buffer.Data(), "abc");
  EXPECT_TRUE(buffer.Intact());
}

class Lines : public testing::Test
{
 protected:
  ~Lines() override
  {
    if (file_ != nullptr) std::fclose(file_);
  }

  void Write(const std::string& text)
  {
    file_ = std::tmpfile();
    ASSERT_NE(file_, nullptr);
    ASSERT_EQ(std::fwrite(text.data(), 1, text.size(), file_), text.size());
    std::rewind(file_);
  }

  // "null" at the end.
  std::string Next(int n)
  {
    GuardedBuffer buffer(static_cast<std::size_t>(n));
    const char* const result = fgets_(buffer.Data(), n, file_);
    EXPECT_TRUE(buffer.Intact());
    if (result == nullptr) return "null";
    EXPECT_EQ(result, buffer.Data());
    return result;
  }

  FILE* file_ = nullptr;
};

TEST_F(Lines, EndsAreRemoved)
{
  Write("one\r\ntwo\nthree\r\n\r\n\n\r\r\nbare\r");
  for (const char* expected : {"one", "two", "three", "", "", "\r", "bare\r", "null"}) EXPECT_EQ(Next(20), expected);
}

TEST_F(Lines, LongLinesComeInParts)
{
  Write("abcdef\nab\r\n");
  for (const char* expected : {"abc", "def", "", "ab\r", "", "null"}) EXPECT_EQ(Next(4), expected);
}

TEST(Times, Localtime)
{
  const time_t t = 86400 * 200;
  tm expected;
  ASSERT_NE(localtime_r(&t, &expected), nullptr);
  tm out{};
  EXPECT_TRUE(Localtime(&t, out));
  EXPECT_EQ(out.tm_year, expected.tm_year);
  EXPECT_EQ(out.tm_yday, expected.tm_yday);
  EXPECT_EQ(out.tm_hour, expected.tm_hour);
  const time_t never = LONG_MAX;
  EXPECT_FALSE(Localtime(&never, out));
}

TEST(Times, Ctime)
{
  const time_t t = 86400 * 200;
  char expected[26];
  ASSERT_NE(ctime_r(&t, expected), nullptr);
  GuardedBuffer buffer(26);
  EXPECT_TRUE(Ctime(&t, buffer.Data()));
  EXPECT_STREQ(buffer.Data(), expected);
  const time_t never = LONG_MAX;
  EXPECT_FALSE(Ctime(&never, buffer.Data()));
  EXPECT_STREQ(buffer.Data(), "");
  EXPECT_TRUE(buffer.Intact());
}

struct ConcatRow
{
  unsigned long size;
  std::vector<const char*> strings;
  const char* result;
};

TEST(Concat, FourStrings)
{
  const ConcatRow rows[] = {
      {8, {"abc", "defgh", "ij", "k"}, "abcdefg"},
      {9, {"abc", "defgh", "ij", "k"}, "abcdefgh"},
      {10, {"abc", "defgh", "ij", "k"}, "abcdefghi"},
      {20, {"abc", "defgh", "ij", "k"}, "abcdefghijk"},
      {12, {"abc", "defgh", "ij", "k"}, "abcdefghijk"},
      {11, {"abc", "defgh", "ij", "k"}, "abcdefghij"},
      {1, {"abc", "d", "e", "f"}, ""},
      {2, {"abc", "d", "e", "f"}, "a"},
      {8, {nullptr, "b", nullptr, "d"}, "bd"},
      {8, {nullptr, nullptr, nullptr, nullptr}, ""},
      {4, {"", "", "abc", "d"}, "abc"},
      {3, {"ab", "", "c", "d"}, "ab"},
  };
  for (const ConcatRow& row : rows) {
    GuardedBuffer buffer(row.size);
    ConcatStrings(buffer.Data(), row.size, row.strings[0], row.strings[1], row.strings[2], row.strings[3]);
    EXPECT_STREQ(buffer.Data(), row.result) << row.size;
    EXPECT_TRUE(buffer.Intact());
  }
}

TEST(Concat, SizeZeroTouchesNothing)
{
  GuardedBuffer buffer(1);
  ConcatStrings(buffer.Data(), 0, "a", "b", "c", "d");
  ConcatStrings(buffer.Data(), 0, "a", "b", 1L);
  ConcatStrings(buffer.Data(), 0, "a", 1L, "b");
  EXPECT_EQ(buffer.Bytes(), std::string(1, GuardedBuffer::kFill));
}

TEST(Concat, ReadsOnlyWhatFits)
{
  const std::unique_ptr<char[]> open(new char[3]{'a', 'b', 'c'});  // no terminator
  GuardedBuffer buffer(4);
  ConcatStrings(buffer.Data(), 4, open.get(), open.get(), nullptr, nullptr);
  EXPECT_STREQ(buffer.Data(), "abc");
}

TEST(Concat, Numbers)
{
  char out[64];
  ConcatStrings(out, sizeof out, "a", "b", -12L);
  EXPECT_STREQ(out, "ab-12");
  ConcatStrings(out, sizeof out, "a", 0L, "b");
  EXPECT_STREQ(out, "a0b");
  ConcatStrings(out, sizeof out, nullptr, LONG_MIN, nullptr);
  EXPECT_STREQ(out, "-9223372036854775808");
  ConcatStrings(out, sizeof out, nullptr, nullptr, LONG_MAX);
  EXPECT_STREQ(out, "9223372036854775807");
  ConcatStrings(out, 4, "a", 1234L, "b");
  EXPECT_STREQ(out, "a12");
}

}  // namespace
