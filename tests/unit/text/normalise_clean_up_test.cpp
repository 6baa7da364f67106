// Squeezing, stripping, replacing and brackets.
#include <gtest/gtest.h>

#include <cctype>
#include <string>

#include "qxpaf/text/normalise.h"
#include "reference/normalise_reference.h"
#include "unit/text/normalise_text.h"

namespace {

using normalise_test::InPlace;
using normalise_test::kTexts;
using normalise_test::RandomText;

struct TextRow
{
  const char* text;
  const char* result;
};

TEST(MultipleSpaces, Rows)
{
  const TextRow rows[] = {
      {"", ""},
      {" ", " "},
      {"  ", " "},
      {"a b", "a b"},
      {"a  b", "a b"},
      {"  a   b  ", " a b "},
      {"a\t\tb", "a\t\tb"},
      {"    ", " "},
  };
  for (const TextRow& row : rows) EXPECT_EQ(InPlace(row.text, RemoveMultipleSpaces), row.result) << row.text;
}

struct PunctuationRow
{
  const char* text;
  char keep;
  const char* result;
};

TEST(Punctuation, Rows)
{
  const PunctuationRow rows[] = {
      {"  St. John's-Wood ", '\'', "St John's Wood"},
      {"  St. John's-Wood ", '\0', "St John s Wood"},
      {"", '\'', ""},
      {".", '\0', ""},
      {"-.-", '.', "."},
      {" a ", ' ', "a"},
      {"a.b", '\0', "a b"},
      {"4/5-6B", '/', "4/5 6B"},
      {"\xC9t\xE9", '\0', "t"},
      {"\xC9t\xE9", '\xE9', "t\xE9"},
      {"a_b", '\0', "a b"},
      {"..a..", '.', "..a.."},
  };
  for (const PunctuationRow& row : rows) {
    EXPECT_EQ(InPlace(row.text, [&](char* s) { RemovePunctuationForIndex(s, row.keep); }), row.result) << row.text;
  }
}

TEST(Punctuation, EveryByte)
{
  for (int c = 1; c <= 0xFF; ++c) {
    const std::string text = {'x', static_cast<char>(c), 'y'};
    const bool stays = c < 0x80 && std::isalnum(c) != 0;
    EXPECT_EQ(InPlace(text, [](char* s) { RemovePunctuationForIndex(s, '\0'); }), stays ? text : "x y") << c;
  }
}

TEST(Brackets, Rows)
{
  const TextRow rows[] = {
      {"", ""},
      {"a (b) c [d] e", "a c e"},
      {"a (b) (c", "a (b) (c"},
      {"a (b (c) d) e", "a e"},
      {"a (b (c) d e", "a (b d e"},
      {"(a)", ""},
      {"()", ""},
      {")(", ")("},
      {"a) b", "a) b"},
      {"a) (b) c)", "a) c)"},
      {"(a)) b)", ") b)"},
      {"(a) (b (c) d", "(a) (b d"},
      {"(a [b) c]", " c]"},
      {"[a (b] c)", "[a "},
      {"{a} [b] (c)", " "},
      {"a {b {c} d} e", "a e"},
      {"[a] [b (c]) d", "[a] [b d"},
      {"a  b", "a b"},
      {"((((", "(((("},
      {"))))", "))))"},
      {"((a)", "("},
  };
  for (const TextRow& row : rows) EXPECT_EQ(InPlace(row.text, RemoveInBrackets), row.result) << row.text;
}

TEST(Brackets, LikeReference)
{
  RandomText random;
  for (int i = 0; i < 2 * kTexts; ++i) {
    const std::string text =
        i % 2 == 0 ? random.Of({"(", ")", "(", ")", "[", "]", "{", "}", "a", " ", "bc"}, 20) : random.Address();
    ASSERT_EQ(InPlace(text, RemoveInBrackets), reference::RemoveInBrackets(text)) << text;
  }
}

// Every text of up to nine of these characters.
TEST(Brackets, AllShortTexts)
{
  const std::string alphabet = "() a";
  for (unsigned int n = 0; n < 1U << 18; ++n) {
    std::string text;
    for (unsigned int i = 0; i < 9; ++i) text += alphabet[n >> (2 * i) & 3];
    ASSERT_EQ(InPlace(text, RemoveInBrackets), reference::RemoveInBrackets(text)) << text;
  }
}

TEST(Brackets, LongLines)
{
  constexpr std::size_t kLength = 50000;
  const std::string open(kLength, '(');
  const std::string close(kLength, ')');
  EXPECT_EQ(InPlace(open + close, RemoveInBrackets), "");
  EXPECT_EQ(InPlace(open, RemoveInBrackets), open);
  EXPECT_EQ(InPlace(close + open, RemoveInBrackets), close + open);
  std::string pairs;
  for (std::size_t i = 0; i < kLength; ++i) pairs += "(a) ";
  EXPECT_EQ(InPlace(pairs, RemoveInBrackets), " ");
}

struct StripRow
{
  const char* text;
  const char* chars;
  const char* result;
};

TEST(Strip, Rows)
{
  const StripRow rows[] = {
      {"", "abc", ""},      {"abc", "", "abc"},     {"a-b.c", "-.", "abc"}, {"aaa", "a", ""},
      {"12 a", "a ", "12"}, {"\xE9x", "\xE9", "x"}, {"banana", "an", "b"},
  };
  for (const StripRow& row : rows) {
    EXPECT_EQ(InPlace(row.text, [&](char* s) { EXPECT_EQ(StripChars(s, row.chars), s); }), row.result) << row.text;
  }
}

TEST(Replaced, Rows)
{
  EXPECT_EQ(InPlace("a.b.", [](char* s) { Replace(s, '.', '-'); }), "a-b-");
  EXPECT_EQ(InPlace("a.b.", [](char* s) { Replace(s, '\0', '-'); }), "a.b.");
  EXPECT_EQ(InPlace("a.b.", [](char* s) { Replace(s, '.', '\0'); }), "a");
  EXPECT_EQ(InPlace("a.b,c", [](char* s) { Replace(s, ".,", ' '); }), "a b c");
  EXPECT_EQ(InPlace("a.b,c", [](char* s) { Replace(s, "", ' '); }), "a.b,c");
  EXPECT_EQ(InPlace("\xE9\xC9", [](char* s) { Replace(s, "\xE9", 'e'); }), "e\xC9");
  EXPECT_EQ(InPlace("", [](char* s) { Replace(s, "x", 'e'); }), "");
}

// A zero ends the text, but everything up to the old end is replaced.
TEST(Replaced, ByZeroGoesOnToTheOldEnd)
{
  char text[] = "a.b.c";
  Replace(text, '.', '\0');
  EXPECT_EQ(std::string(text, 5), std::string("a\0b\0c", 5));
  char other[] = "a.b.c";
  Replace(other, ".", '\0');
  EXPECT_EQ(std::string(other, 5), std::string("a\0b\0c", 5));
}

TEST(CleanUp, LikeReference)
{
  RandomText random;
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = i % 3 == 0   ? random.Address()
                             : i % 3 == 1 ? random.Bytes(30)
                                          : random.Of({" ", "a", "."}, 20);
    const std::string set = random.Of({" ", "a", "e", "'", ".", "\xE9", "1"}, 4);
    const char keep = static_cast<char>(random.Below(0x80));
    ASSERT_EQ(InPlace(text, RemoveMultipleSpaces), reference::RemoveMultipleSpaces(text)) << text;
    ASSERT_EQ(InPlace(text, [&](char* s) { RemovePunctuationForIndex(s, keep); }),
              reference::RemovePunctuationForIndex(text, keep))
        << text << ", " << keep;
    ASSERT_EQ(InPlace(text, [&](char* s) { StripChars(s, set.c_str()); }), reference::StripChars(text, set)) << text;
    ASSERT_EQ(InPlace(text, [&](char* s) { Trim_(s, set.c_str()); }), reference::Trim(text, set)) << text;
    ASSERT_EQ(InPlace(text, [&](char* s) { Trim_(s, 'a'); }), reference::Trim(text, "a")) << text;
  }
}

TEST(CleanUp, LongLines)
{
  constexpr std::size_t kLength = 100000;
  const std::string blanks(kLength, ' ');
  EXPECT_EQ(InPlace(blanks, RemoveMultipleSpaces), " ");
  EXPECT_EQ(InPlace(blanks, [](char* s) { RemovePunctuationForIndex(s, '\0'); }), "");
  EXPECT_EQ(InPlace(blanks + "x" + blanks, [](char* s) { Trim_(s, ' '); }), "x");
  EXPECT_EQ(InPlace(blanks, [](char* s) { StripChars(s, " "); }), "");
  EXPECT_EQ(InPlace(blanks, [](char* s) { Replace(s, " ", 'x'); }), std::string(kLength, 'x'));
}

}  // namespace
