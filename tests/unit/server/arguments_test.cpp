#include "server/arguments.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

namespace pafd {
namespace {

using enum Field;

struct NumberRow
{
  const char* text;
  long number;
};

TEST(ReadNumber, ReadsAsManyDigitsAsThereAre)
{
  const std::vector<NumberRow> rows = {{"", 0},
                                       {"0", 0},
                                       {"7", 7},
                                       {"-7", -7},
                                       {"+7", 7},
                                       {"+-7", 0},
                                       {"++7", 0},
                                       {"-", 0},
                                       {"+", 0},
                                       {"  \t12x3", 12},
                                       {"x12", 0},
                                       {"1e9", 1},
                                       {"0x10", 0},
                                       {"007", 7},
                                       {"9223372036854775807", LONG_MAX},
                                       {"9223372036854775808", LONG_MAX},
                                       {"-9223372036854775808", LONG_MIN},
                                       {"-9223372036854775809", LONG_MIN},
                                       {"99999999999999999999999999", LONG_MAX}};
  for (const NumberRow& row : rows) {
    EXPECT_EQ(ReadNumber(row.text), row.number) << row.text;
  }
}

TEST(ReadInt, IsTheNearestInt)
{
  EXPECT_EQ(ReadInt("2147483647"), INT_MAX);
  EXPECT_EQ(ReadInt("2147483648"), INT_MAX);
  EXPECT_EQ(ReadInt("4294967297"), INT_MAX);
  EXPECT_EQ(ReadInt("-2147483648"), INT_MIN);
  EXPECT_EQ(ReadInt("-2147483649"), INT_MIN);
  EXPECT_EQ(ReadInt("42"), 42);
}

TEST(SplitName, CutsAtTheFirstTab)
{
  const std::vector<std::array<std::string_view, 3>> rows = {
      {"", "", ""}, {"a", "a", ""}, {"a\t", "a", ""}, {"a\tb\tc", "a", "b\tc"}, {"\tb", "", "b"}, {"\t\t", "", "\t"}};
  for (const auto& [line, name, rest] : rows) {
    std::string_view found;
    EXPECT_EQ(SplitName(line, found), rest) << line;
    EXPECT_EQ(found, name) << line;
  }
}

struct Row
{
  FieldList fields;
  std::string text;
  int id;
  std::array<long, 2> numbers;
  std::array<std::string, 4> texts;
  bool isJoined;
};

TEST(ReadArguments, GivesLinesWhatIsLeftOver)
{
  const std::vector<Row> rows = {
      {{}, "", 0, {}, {}, false},
      {{}, "a\tb", 0, {}, {}, false},
      {{Id}, "5", 5, {}, {}, false},
      {{Id}, "5\t6", 5, {}, {}, false},
      {{Id, Number, Number}, "5\t6\t7", 5, {6, 7}, {}, false},
      {{Id, Number, Number}, "5\t6", 5, {6, 0}, {}, false},
      {{Lines}, "", 0, {}, {""}, false},
      {{Lines}, "a", 0, {}, {"a"}, false},
      {{Lines}, "a\tb\t\tc\t", 0, {}, {"a\nb\n\nc\n"}, true},
      {{Record}, "a\tb", 0, {}, {"a\nb"}, true},
      {{Id, Lines}, "1\ta\tb", 1, {}, {"a\nb"}, true},
      {{Id, Lines}, "1", 1, {}, {""}, false},
      {{Id, Lines}, "1\t", 1, {}, {""}, false},
      {{Id, Lines}, "1\t\t", 1, {}, {"\n"}, true},
      {{Id, Text, Lines}, "1\ta\tb", 1, {}, {"a", "b"}, false},
      {{Id, Text, Lines}, "1\ta\tb\tc", 1, {}, {"a", "b\nc"}, true},
      {{Id, Text, Lines, Number}, "1\ta\tb\t9", 1, {9}, {"a", "b"}, false},
      {{Id, Text, Lines, Number}, "1\ta\tb\tc\td\t9", 1, {9}, {"a", "b\nc\nd"}, true},
      {{Id, Text, Lines, Number}, "1\ta\tb", 1, {0}, {"a", "b"}, false},
      {{Id, Text, Lines, Number}, "1\ta", 1, {0}, {"a", ""}, false},
      {{Id, Text, Lines, Number}, "1\ta\t\t\t9", 1, {9}, {"a", "\n"}, true},
      {{Id, Text, Text, Text, Lines}, "1\ta\tb\tc\td\te", 1, {}, {"a", "b", "c", "d\ne"}, true},
      {{Id, Text}, std::string("1\ta\0b", 5), 1, {}, {"a"}, false},
      {{Id, Lines}, std::string("1\ta\0b\tc", 7), 1, {}, {"a"}, true},
      {{Text, Text}, std::string("\0\tb", 3), 0, {}, {"", "b"}, false}};
  for (const Row& row : rows) {
    Arguments arguments;
    EXPECT_EQ(ReadArguments(row.text, row.fields, arguments), row.isJoined) << row.text;
    EXPECT_EQ(arguments.id, row.id) << row.text;
    EXPECT_EQ(arguments.numbers, row.numbers) << row.text;
    EXPECT_EQ(arguments.texts, row.texts) << row.text;
  }
}

TEST(ReadArguments, KeepsNothingOfTheRequestBefore)
{
  Arguments arguments;
  const FieldList fields = {Text, Lines};
  ReadArguments("first\t" + std::string(100000, 'x'), fields, arguments);
  EXPECT_EQ(arguments.texts[1].size(), 100000u);
  ReadArguments("", fields, arguments);
  EXPECT_EQ(arguments.texts[0], "");
  EXPECT_EQ(arguments.texts[1], "");
  EXPECT_LT(arguments.texts[1].capacity(), 10000u);
}

}  // namespace
}  // namespace pafd
