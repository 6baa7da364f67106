#include "arf/build/text_input.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

struct Row
{
  const char* bytes;
  const char* utf8;
};

const Row kUtf8Rows[] = {
    {"", ""},
    {"plain", "plain"},
    {"caf\u00E9 \u20AC \U0001F600", "caf\u00E9 \u20AC \U0001F600"},  // well formed: as it is
    {"caf\xE9", "caf\u00E9"},
    {"\x80\x92\x96", "\u20AC\u2019\u2013"},
    {"\xE9"
     "a\xC3\xA9",
     "\u00E9"
     "a\u00E9"},                             // both in one text
    {"\xC3", "\u00C3"},                      // cut off
    {"\xE2\x82", "\u00E2\u201A"},            // cut off
    {"\xF0\x9F\x98", "\u00F0\u0178\u02DC"},  // cut off
    {"\xC0\xAF", "\u00C0\u00AF"},            // surplus bytes
    {"\xC1\xBF", "\u00C1\u00BF"},
    {"\xE0\x9F\xBF", "\u00E0\u0178\u00BF"},  // surplus bytes
    {"\xF0\x8F\xBF\xBF", "\u00F0\uFFFD\u00BF\u00BF"},
    {"\xED\xA0\x80", "\u00ED\u00A0\u20AC"},            // a surrogate
    {"\xED\x9F\xBF", "\uD7FF"},                        // the last before them
    {"\xF4\x90\x80\x80", "\u00F4\uFFFD\u20AC\u20AC"},  // above U+10FFFF
    {"\xF4\x8F\xBF\xBF", "\U0010FFFF"},
    {"\xF5\x80", "\u00F5\u20AC"},
    {"\x81\x8D\x8F\x90\x9D", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"\xFF\xFE", "\u00FF\u00FE"},
};

TEST(TextInput, ReadsWhatIsNotUtf8AsWindows1252)
{
  for (const Row& row : kUtf8Rows) {
    std::string scratch;
    EXPECT_EQ(arf::ToUtf8(row.bytes, scratch), row.utf8) << row.utf8;
  }
}

/** The 27 characters of 80 … 9F, from the code page's chart. */
TEST(TextInput, KnowsTheWholeCodePage)
{
  const char* const chart[] = {"\u20AC", "\uFFFD", "\u201A", "\u0192", "\u201E", "\u2026", "\u2020", "\u2021",
                               "\u02C6", "\u2030", "\u0160", "\u2039", "\u0152", "\uFFFD", "\u017D", "\uFFFD",
                               "\uFFFD", "\u2018", "\u2019", "\u201C", "\u201D", "\u2022", "\u2013", "\u2014",
                               "\u02DC", "\u2122", "\u0161", "\u203A", "\u0153", "\uFFFD", "\u017E", "\u0178"};
  for (int i = 0; i < 32; ++i) {
    std::string scratch;
    EXPECT_EQ(arf::ToUtf8(std::string(1, static_cast<char>(0x80 + i)), scratch), chart[i]) << std::hex << 0x80 + i;
  }
}

const Row kDisplayRows[] = {
    {"", ""},
    {"SMITH", "SMITH"},
    {"O'CONNOR ST. 12/3", "O'CONNOR ST. 12/3"},
    {"smith", "SMITH"},
    {"A  B", "A B"},
    {" A", "A"},
    {"A ", "A"},
    {"A\nB", "A B"},
    {" ", ""},
    {"caf\xE9", "CAF\u00C9"},
    {"caf\u00E9", "CAF\u00C9"},
};

TEST(TextInput, MakesDisplayForms)
{
  for (const Row& row : kDisplayRows) {
    std::string scratch = "left over";
    EXPECT_EQ(arf::ToDisplayForm(row.bytes, scratch), row.utf8) << row.bytes;
  }
}

const Row kPlainRows[] = {
    {"", ""},     {" Mixed Case ", "Mixed Case"}, {"a  b", "a  b"},          {"a\tb\nc", "a b c"},
    {"\r\n", ""}, {"\xE9\t", "\u00E9"},           {" \xE9\tx ", "\u00E9 x"},
};

TEST(TextInput, MakesPlainTexts)
{
  for (const Row& row : kPlainRows) {
    std::string scratch = "left over";
    EXPECT_EQ(arf::ToPlainText(row.bytes, scratch), row.utf8) << row.bytes;
  }
}

}  // namespace
