// Whole strings: what grows, what stays, long and random text, against the step-by-step twin.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "qxpaf/text/encoding.h"
#include "qxpaf/text/unicode.h"
#include "reference/encoding_reference.h"
#include "reference/unicode_reference.h"
#include "support/random_seed.h"
#include "unit/text/encoding_text.h"
#include "unit/text/unicode_text.h"

namespace {

using encoding_test::Hex;
using unicode_test::EdgeBuffer;
using unicode_test::RandomUnicode;

constexpr int kRandomStrings = 100'000;
constexpr std::size_t kLong = 100'000;

struct WideRow
{
  std::wstring text;
  std::wstring expected;
};

TEST(UnicodeToUpper, SharpSBecomesTwo)
{
  const WideRow rows[] = {
      {L"", L""},
      {L"stra\xDF"
       L"e",
       L"STRASSE"},
      {L"\xDF", L"SS"},
      {L"\xDF\xDF\xDF", L"SSSSSS"},
      {L"abc\xDF", L"ABCSS"},
      {L"\xDF"
       L"abcdefgh",
       L"SSABCDEFGH"},
      {L"\x1E9E\xDF\x17F", L"\x1E9ESSS"},
      {std::wstring(L"\xDF\0\xDF", 3), std::wstring(L"SS\0SS", 5)},
  };
  for (const WideRow& row : rows) EXPECT_EQ(UnicodeToUpper(row.text), row.expected) << Hex(row.text);
}

TEST(UnicodeToUpper, InPlaceKeepsSharpS)
{
  EdgeBuffer<wchar_t> edge;
  UnicodeUpperCaseMe(
      edge.Put(L"stra\xDF"
               L"e"));
  EXPECT_EQ(edge.Whole(),
            L"STRA\xDF"
            L"E");
  UnicodeUpperCaseMe(edge.Put(L""));
  EXPECT_EQ(edge.Whole(), L"");
  UnicodeUpperCaseMe(edge.Put(std::wstring(L"ab\0cd", 5)));
  EXPECT_EQ(edge.Whole(), std::wstring(L"AB\0cd", 5)) << "up to the terminator";
}

TEST(UnicodeCaseFold, SingleCharacters)
{
  EXPECT_EQ(UnicodeCaseFold(L"A\xFF21\x13F8\xAB70"), L"a\xFF41\x13F0\x13A0");
  EXPECT_EQ(UnicodeCaseFold(L"\x0410\x03A3\x03C2"), L"\x0430\x03C3\x03C3");
  EXPECT_EQ(UnicodeCaseFold(L""), L"");
}

TEST(UnicodeCaseFold, ListsAreCrossed)
{
  const WideRow rows[] = {
      {L"\xDF", L"\x0308\x0301\x03B9"},    // pair 0, triple 0
      {L"\x0130", L"\x0308\x0301\x03C5"},  // pair 1
      {L"\x0149", L"\x0313\x0300\x03C5"},  // pair 2
      {L"\x1F83", L"flf"},                 // pair 15, the last triple
      {L"\x1F84", L"\x1F84"},              // pair 16: there is no such triple
      {L"\xFB17", L"\xFB17"},              // the last pair
      {L"\x0390", L"ss"},                  // triple 0, pair 0
      {L"\x03B0", L"\x0307i"},             // triple 1
      {L"\xFB03", L"\x03B9\x1F02"},        // triple 14
      {L"\xFB04", L"\x03B9\x1F03"},        // the last triple, pair 15
      {L"stra\xDF"
       L"e \x0390!",
       L"stra\x0308\x0301\x03B9"
       L"e ss!"},
  };
  for (const WideRow& row : rows) EXPECT_EQ(Hex(UnicodeCaseFold(row.text)), Hex(row.expected)) << Hex(row.text);
}

TEST(UnicodeCaseFold, SurrogatesAndListMarksInTheTextStay)
{
  const std::wstring text = {0xD800, 0xD80F, 0xD857, 0xD858, 0xDA00, 0xDA0F, 0xDBFF, 0xDC00, 0xDFFF, 0xD83D, 0xDE00};
  EXPECT_EQ(UnicodeCaseFold(text), text);
  EXPECT_EQ(UnicodeToUpper(text), text);
  EXPECT_EQ(UnicodeToLower(text), text);
  EXPECT_EQ(UnicodeRemoveAccents(text), text);
}

TEST(UnicodeFold, ChangesNothing)
{
  const std::wstring text(L"STRASSE \xDF\0 \x0130 \x0390 \xFB03 \xC9", 20);
  EXPECT_EQ(UnicodeFold(text), text);
  EXPECT_EQ(UnicodeFold(L""), L"");
}

TEST(UnicodeStrings, ArgumentsAreTakenByValue)
{
  const std::wstring wide =
      L"Gr\xFC\xDF"
      L"e";
  const std::string narrow =
      "Gr\xFC\xDF"
      "e";
  const std::wstring wideBefore = wide;
  const std::string narrowBefore = narrow;
  UnicodeToUpper(wide);
  UnicodeToLower(wide);
  UnicodeCaseFold(wide);
  UnicodeRemoveAccents(wide);
  UnicodeRemoveAccents(narrow);
  ToUpper1252(narrow);
  ToLower1252(narrow);
  Utf8ToUpper(narrow);
  EXPECT_EQ(wide, wideBefore);
  EXPECT_EQ(narrow, narrowBefore);
}

struct Utf8Row
{
  std::string text;
  std::string expected;
};

TEST(Utf8ToUpper, Rows)
{
  const Utf8Row rows[] = {
      {"", ""},
      {"unit 12/3 {~}", "UNIT 12/3 {~}"},
      {"stra\xC3\x9F"
       "e",
       "STRASSE"},
      {"z\xC3\xBCrich", "Z\xC3\x9CRICH"},
      {"\xC4\xB1\xC5\xBF", "IS"},
      {"\xF0\x90\x90\xA8 a", "\xF0\x90\x90\xA8 A"},  // supplementary characters stay
      // Read leniently: overlong forms become short, encoded surrogates one sequence.
      {"\xC1\xA1", "A"},
      {"\xED\xA0\xBD\xED\xB8\x80", "\xF0\x9F\x98\x80"},
      // Not valid: the bytes as they are.
      {"abc\xC3", "abc\xC3"},
      {"a\xFFz", "a\xFFz"},
      {"\x80 abc", "\x80 abc"},
      {"abc \xF4\x90\x80\x80", "abc \xF4\x90\x80\x80"},
      {std::string("ab\xC3\0cd", 6), std::string("ab\xC3\0cd", 6)},
      // Read up to the first zero.
      {std::string("ab\0cd", 5), "AB"},
      {std::string("\xC3\xA9\0\xFF", 4), "\xC3\x89"},
      {std::string("\0a", 2), ""},
  };
  for (const Utf8Row& row : rows) EXPECT_EQ(Hex(Utf8ToUpper(row.text)), Hex(row.expected)) << Hex(row.text);
}

std::string ReferenceUtf8ToUpper(const std::string& s)
{
  const auto [valid, wide] = reference::ReadWide(s, s.size(), false);
  return valid ? reference::WideToUtf8(reference::ToUpper(wide)) : s;
}

// The elements are written out only when they differ.
template <class String>
testing::AssertionResult Same(const String& actual, const String& expected, const String& text)
{
  if (actual == expected) return testing::AssertionSuccess();
  return testing::AssertionFailure() << Hex(text) << "gives " << Hex(actual) << "not " << Hex(expected);
}

TEST(UnicodeStrings, RandomWideText)
{
  RandomUnicode random(test_support::RandomSeed());
  for (int i = 0; i < kRandomStrings; ++i) {
    const std::wstring text = random.Wide();
    ASSERT_TRUE(Same(UnicodeToLower(text), reference::MapEach(reference::Lower(), text), text));
    ASSERT_TRUE(Same(UnicodeToUpper(text), reference::ToUpper(text), text));
    ASSERT_TRUE(Same(UnicodeRemoveAccents(text), reference::MapEach(reference::Accents(), text), text));
    ASSERT_TRUE(Same(UnicodeCaseFold(text), reference::CaseFold(text), text));
    ASSERT_TRUE(Same(UnicodeFold(text), text, text));
  }
}

TEST(UnicodeStrings, RandomWideTextInPlace)
{
  RandomUnicode random(test_support::RandomSeed());
  EdgeBuffer<wchar_t> edge;
  for (int i = 0; i < kRandomStrings; ++i) {
    const std::wstring text = random.Wide();
    const std::wstring shown = text.c_str();
    const std::wstring rest = text.substr(shown.size());
    UnicodeUpperCaseMe(edge.Put(text));
    ASSERT_TRUE(Same(edge.Whole(), reference::MapEach(reference::Upper(), shown) + rest, text));
    UnicodeRemoveAccentsMe(edge.Put(text));
    ASSERT_TRUE(Same(edge.Whole(), reference::MapEach(reference::Accents(), shown) + rest, text));
    ASSERT_TRUE(edge.Intact());
  }
}

TEST(UnicodeStrings, RandomBytes)
{
  RandomUnicode random(test_support::RandomSeed());
  for (int i = 0; i < kRandomStrings; ++i) {
    const std::string text = random.Bytes();
    ASSERT_TRUE(Same(RemoveAccents1252(text), reference::MapEach(reference::RemoveAccents1252, text), text));
    ASSERT_TRUE(Same(UnicodeRemoveAccents(text), reference::MapEach(reference::RemoveAccents1252, text), text));
    ASSERT_TRUE(Same(ToUpper1252(text), reference::MapEach(reference::ToUpper1252, text), text));
    ASSERT_TRUE(Same(ToLower1252(text), reference::MapEach(reference::ToLower1252, text), text));
    ASSERT_TRUE(Same(Utf8ToUpper(text), ReferenceUtf8ToUpper(text), text));
  }
}

TEST(UnicodeStrings, RandomWellFormedUtf8)
{
  RandomUnicode random(test_support::RandomSeed());
  for (int i = 0; i < kRandomStrings; ++i) {
    const std::string text = WideToUtf8(random.Wide());
    ASSERT_TRUE(Same(Utf8ToUpper(text), ReferenceUtf8ToUpper(text), text));
  }
}

// What the documentation shows.
TEST(UnicodeStrings, DocumentedExamples)
{
  EXPECT_EQ(UnicodeToLower(L"\x00C9"
                           L"COLE \x1E9E"),
            L"\x00E9"
            L"cole \x00DF");
  EXPECT_EQ(UnicodeToUpper(L"stra\x00DF"
                           L"e \xFB01"),
            L"STRASSE \xFB01");
  EXPECT_EQ(UnicodeRemoveAccents(L"\x0141\x00F3"
                                 L"d\x017A \x0395\x03BB\x03BB\x03AC\x03C2"),
            L"Lodz \x0395\x03BB\x03BB\x03B1\x03C2");
  EXPECT_EQ(UnicodeRemoveAccents(L"e\x0301"), L"e\x0301");
  EXPECT_EQ(UnicodeCaseFold(L"\x00C9"
                            L"COLE"),
            L"\x00E9"
            L"cole");
  EXPECT_EQ(UnicodeFold(L"\x00C9"
                        L"COLE"),
            L"\x00C9"
            L"COLE");
  EXPECT_EQ(Utf8ToUpper("stra\xC3\x9F"
                        "e"),
            "STRASSE");
  EXPECT_EQ(UnicodeRemoveAccents(std::string("\xE9\xC3\xA9")), "eA\xA9");
  EXPECT_EQ(RemoveAccents1252("\xC9t\xE9\x8A"), "EteS");
  std::string name = "\xC4\x90\xC3\xA0 N\xE1\xBA\xB5ng\xC3";
  Utf8RemoveAccentsMe(name);
  EXPECT_EQ(name, "Da Nang\xC3");
}

std::wstring Repeat(const std::wstring& text)
{
  std::wstring out;
  while (out.size() < kLong) out += text;
  return out;
}

TEST(UnicodeStrings, LongTextThatGrows)
{
  for (const wchar_t* part : {L"\xDF", L"a\xDF", L"\xDF\x0390",
                              L"Stra\xDF"
                              L"e \xFB03 \x1F84 \x0410",
                              L"\x1E98\x0149\xFB00"}) {
    const std::wstring text = Repeat(part);
    EXPECT_TRUE(UnicodeToUpper(text) == reference::ToUpper(text)) << Hex(std::wstring(part));
    EXPECT_TRUE(UnicodeCaseFold(text) == reference::CaseFold(text)) << Hex(std::wstring(part));
  }
}

// Text that does not grow stays where it is.
TEST(UnicodeStrings, MovedTextKeepsItsStorage)
{
  std::wstring wide = Repeat(L"Caf\xE9 \x0410\x1F84 ");
  std::string narrow = "Caf\xE9 " + std::string(100, 'x');
  const wchar_t* const wideStorage = wide.data();
  const char* const narrowStorage = narrow.data();
  wide = UnicodeToUpper(std::move(wide));
  EXPECT_EQ(wide.data(), wideStorage);
  wide = UnicodeToLower(std::move(wide));
  EXPECT_EQ(wide.data(), wideStorage);
  wide = UnicodeCaseFold(std::move(wide));
  EXPECT_EQ(wide.data(), wideStorage);
  wide = UnicodeRemoveAccents(std::move(wide));
  EXPECT_EQ(wide.data(), wideStorage);
  narrow = ToUpper1252(std::move(narrow));
  EXPECT_EQ(narrow.data(), narrowStorage);
  narrow = UnicodeRemoveAccents(std::move(narrow));
  EXPECT_EQ(narrow.data(), narrowStorage);
  Utf8RemoveAccentsMe(narrow);
  EXPECT_EQ(narrow.data(), narrowStorage);
}

}  // namespace
