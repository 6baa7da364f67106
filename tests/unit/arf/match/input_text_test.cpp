// How texts are cut into words.
#include "arf/match/input_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "arf/match/canonical_words.h"

namespace {

using arf::InputFault;
using arf::InputText;
using arf::Joint;

/** The words with what stands before each: "|" break, "/" slash, "-" dash, " " anything else. */
std::string Cut(const std::string& text)
{
  const auto input = std::make_unique<InputText>();
  if (input->Read(text) != InputFault::None) return "fault";
  std::string out;
  for (std::size_t i = 0; i < input->Count(); ++i) {
    const Joint joint = (*input)[i].before;
    if (i > 0) out += joint == Joint::Break ? '|' : joint == Joint::Slash ? '/' : joint == Joint::Dash ? '-' : ' ';
    out += (*input)[i].text;
  }
  return out;
}

struct CutRow
{
  std::string text;
  std::string words;
};

TEST(InputText, Words)
{
  const CutRow rows[] = {
      {"", ""},
      {"  \t ", ""},
      {"a", "A"},
      {"1 George St", "1 GEORGE ST"},
      {"1  George,St", "1 GEORGE|ST"},
      {"1, George", "1|GEORGE"},
      {"a\nb\tc;d(e)f[g]h", "A|B|C|D|E|F|G|H"},
      {"a:b&c#d\"e", "A B C D E"},
      {"3/12", "3/12"},
      {"3 / 12", "3/12"},
      {"3\\12", "3/12"},
      {"12-14", "12-14"},
      {"12 - 14", "12-14"},
      {"12 -, 14", "12|14"},
      {"C/- J", "C J"},
      {"a--b", "A-B"},
      {"N.S.W.", "NSW"},
      {"n.s.w", "NSW"},
      {"P.O.Box 1", "PO BOX 1"},
      {"G.P.O. Box", "GPO BOX"},
      {"P. O. Box", "P O BOX"},
      {"Mt.Isa", "MT ISA"},
      {"St. Kilda", "ST KILDA"},
      {"U.3", "U 3"},
      {"1.A", "1 A"},
      {"O'Connell", "OCONNELL"},
      {"O`Connell", "OCONNELL"},
      {"O\xE2\x80\x99"
       "Connell",
       "OCONNELL"},  // U+2019
      {"O\x92"
       "Connell",
       "OCONNELL"},  // the same in Windows-1252
      {"12\xE2\x80\x93"
       "14",
       "12-14"},  // U+2013
      {"12\x96"
       "14",
       "12-14"},                // the same in Windows-1252
      {"Caf\xC3\xA9", "CAFE"},  // UTF-8
      {"Caf\xE9", "CAFE"},      // Windows-1252
      {"Stra\xC3\x9F"
       "e",
       "STRASSE"},
      {"a\xC2\xA0"
       "b",
       "A B"},  // no-break space
      {"a\xE2\x80\xA8"
       "b",
       "A|B"},  // line separator
      {"a\xE2\x80\x8B"
       "b",
       "A B"},  // zero-width space
      {"\xE2\x80\x9C"
       "a\xE2\x80\x9D",
       "A"},  // quotes
      {"a\x01"
       "b\x7F"
       "c",
       "A|B|C"},
      {"a\xC2\x85"
       "b",
       "A|B"},  // C1 control
      {"''", ""},
      {"'a' b", "A B"},
  };
  for (const CutRow& row : rows) EXPECT_EQ(Cut(row.text), row.words) << row.text;
}

TEST(InputText, IllFormedUtf8IsWindows1252)
{
  const std::string rows[] = {"\xC3",         "\xC0\xAF",         "\xE0\x80\x80",
                              "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
                              "\x80",         "\xE2\x82",         "\xF0\x9F\x98"};
  for (const std::string& row : rows) {
    const std::string words = Cut("Caf\xE9 " + row);
    EXPECT_EQ(words.substr(0, 4), "CAFE") << words;
  }
}

TEST(InputText, TextOfRangesIsSingleSpaced)
{
  InputText input;
  ASSERT_EQ(input.Read("a, b - c / d"), InputFault::None);
  EXPECT_EQ(input.Text(0, 4), "A B C D");
  EXPECT_EQ(input.Text(1, 3), "B C");
  EXPECT_EQ(input.Text(2, 2), "");
  EXPECT_TRUE(input.HasInnerBreak({0, 2}));
  EXPECT_FALSE(input.HasInnerBreak({1, 4}));
  EXPECT_FALSE(input.HasInnerBreak({0, 1}));
}

TEST(InputText, Digits)
{
  InputText input;
  ASSERT_EQ(input.Read("12 12A A B"), InputFault::None);
  EXPECT_TRUE(input[0].isNumber);
  EXPECT_FALSE(input[1].isNumber);
  EXPECT_TRUE(input[1].hasDigit);
  EXPECT_FALSE(input[2].hasDigit);
  EXPECT_TRUE(input.HasDigit({1, 4}));
  EXPECT_FALSE(input.HasDigit({2, 4}));
  EXPECT_EQ(input.WordsWithoutDigits(0, 4, 5), 2U);
  EXPECT_EQ(input.WordsWithoutDigits(0, 4, 1), 1U);
  EXPECT_EQ(input.WordsWithoutDigits(3, 4, 5), 1U);
  EXPECT_EQ(input.WordsWithoutDigits(0, 2, 5), 0U);
}

TEST(InputText, CanonicalFormsAreThoseOfNames)
{
  for (const char* text : {"Mt Isa", "J.E. Park", "J E Park", "E W", "N Melbourne", "Saint Kilda 1st"}) {
    InputText input;
    ASSERT_EQ(input.Read(text), InputFault::None);
    std::string joined;
    for (std::size_t i = 0; i < input.Count(); ++i) joined += input[i].canonical;
    EXPECT_EQ(joined, arf::CanonicalName(input.Text(0, input.Count())).View()) << text;
  }
}

TEST(InputText, Limits)
{
  InputText input;
  EXPECT_EQ(input.Read(std::string(arf::kMaxInputBytes, 'a')), InputFault::None);
  EXPECT_EQ(input.Count(), 1U);
  EXPECT_EQ(input.Read(std::string(arf::kMaxInputBytes, '\xE9')), InputFault::None);
  EXPECT_EQ(input.Read(std::string(arf::kMaxInputBytes, '\x99')), InputFault::None);
  EXPECT_EQ(input.Read(std::string(arf::kMaxInputBytes + 1, 'a')), InputFault::TooLong);
  EXPECT_EQ(input.Count(), 0U);
  std::string words;
  for (std::size_t i = 0; i < arf::kMaxInputWords; ++i) words += "a ";
  EXPECT_EQ(input.Read(words), InputFault::None);
  EXPECT_EQ(input.Count(), arf::kMaxInputWords);
  EXPECT_EQ(input.Read(words + "b"), InputFault::TooManyWords);
  EXPECT_EQ(input.Count(), 0U);
}

TEST(CanonicalWords, Table)
{
  const auto rows = arf::CanonicalRows();
  for (const arf::CanonicalRow& row : rows) {
    EXPECT_EQ(arf::CanonicalWord(row.written), row.canonical);
    EXPECT_EQ(arf::CanonicalWord(row.canonical), row.canonical) << "a canonical form is not written otherwise";
  }
  for (const char* word : {"GEORGE", "ST", "THE", "", "1ST", "MTX", "A", "ZZ", "MOUNTAIN"})
    EXPECT_EQ(arf::CanonicalWord(word), word);
}

TEST(CanonicalName, JoinsWordsAndRemembersTheArticle)
{
  struct Row
  {
    const char* name;
    const char* canonical;
    bool hasArticle;
  };
  const Row rows[] = {{"MC DONALD", "MCDONALD", false},
                      {"MT ISA", "MOUNTISA", false},
                      {"THE GAP", "GAP", true},
                      {"THE", "THE", false},
                      {"GAP THE", "GAPTHE", false},
                      {"THE THE", "THE", true},
                      {"J E", "JE", false},
                      {"E W", "EW", false},
                      {"N MELBOURNE", "NORTHMELBOURNE", false},
                      {"", "", false},
                      {"SAINT KILDA", "STKILDA", false}};
  for (const Row& row : rows) {
    const arf::CanonicalName name(row.name);
    EXPECT_EQ(name.View(), row.canonical) << row.name;
    EXPECT_EQ(name.HasArticle(), row.hasArticle) << row.name;
  }
  EXPECT_EQ(arf::CanonicalName(std::string(300, 'A')).View().size(), 255U);
}

}  // namespace
