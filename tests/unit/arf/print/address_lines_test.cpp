// Lines brought into a width and a number of lines.
#include "arf/print/address_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using arf::AddressLines;

using Lines = std::vector<std::string>;

AddressLines Of(const Lines& lines)
{
  AddressLines result;
  for (const std::string& line : lines) EXPECT_TRUE(result.Add(line));
  return result;
}

Lines Contents(const AddressLines& lines)
{
  Lines result;
  for (std::size_t i = 0; i < lines.Count(); ++i) result.emplace_back(lines[i]);
  return result;
}

TEST(AddressLines, PassesOverEmptyLines)
{
  EXPECT_EQ(Contents(Of({"a", "", "b"})), (Lines{"a", "b"}));
}

TEST(AddressLines, TakesNoMoreThanItHolds)
{
  AddressLines lines;
  for (std::size_t i = 0; i < AddressLines::kMaxLines; ++i) EXPECT_TRUE(lines.Add("x"));
  EXPECT_FALSE(lines.Add("y"));
  EXPECT_EQ(lines.Count(), AddressLines::kMaxLines);
  AddressLines one;
  EXPECT_TRUE(one.Add(std::string(AddressLines::kMaxLength, 'a')));
  EXPECT_FALSE(one.Add(std::string(AddressLines::kMaxLength + 1, 'a')));
  EXPECT_FALSE(one.Extend(" ", "b"));
}

TEST(AddressLines, WrapsAtSpaces)
{
  struct Row
  {
    const char* line;
    std::size_t width;
    Lines wrapped;
  };
  const Row rows[] = {
      {"one two three", 13, {"one two three"}},
      {"one two three", 12, {"one two", "three"}},
      {"one two three", 7, {"one two", "three"}},
      {"one two three", 6, {"one", "two", "three"}},
      {"one two three", 5, {"one", "two", "three"}},
      {"\xC3\x89t\xC3\xA9 two", 7, {"\xC3\x89t\xC3\xA9 two"}},  // characters count, not bytes
  };
  for (const Row& row : rows) {
    AddressLines lines = Of({row.line});
    EXPECT_TRUE(lines.Wrap(row.width));
    EXPECT_EQ(Contents(lines), row.wrapped) << row.line << ' ' << row.width;
  }
  AddressLines lines = Of({"one two three"});
  EXPECT_FALSE(lines.Wrap(4));
}

TEST(AddressLines, JoinsFromTheTopAndLeavesTheLastLine)
{
  struct Row
  {
    Lines lines;
    std::size_t most, width;
    bool fits;
    Lines joined;
  };
  const Row rows[] = {
      {{"a", "b", "c"}, 3, 0, true, {"a", "b", "c"}},
      {{"a", "b", "c"}, 2, 0, true, {"a, b", "c"}},
      {{"a", "b", "c"}, 1, 0, true, {"a, b, c"}},
      {{"a", "b", "c"}, 1, 7, true, {"a, b, c"}},
      {{"a", "b", "c"}, 1, 6, false, {}},
      {{"a", "b", "c", "d"}, 2, 0, true, {"a, b, c", "d"}},
      {{"aaaa", "b", "c", "d"}, 3, 5, true, {"aaaa", "b, c", "d"}},  // where the width allows it
  };
  for (const Row& row : rows) {
    AddressLines lines = Of(row.lines);
    EXPECT_EQ(lines.JoinTo(row.most, row.width), row.fits);
    if (!row.fits) continue;
    EXPECT_EQ(Contents(lines), row.joined);
  }
}

}  // namespace
