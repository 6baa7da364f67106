#include "paf/record.h"

#include <gtest/gtest.h>

#include <map>

namespace tool {
namespace {

/** A record with some fields filled; all others are empty. */
std::string MakeRecord(const std::map<std::size_t, std::string>& fields)
{
  std::string text;
  for (std::size_t number = 1; number <= 48; ++number) {
    const auto found = fields.find(number);
    text += (number == 1 ? "" : "\t") + (found == fields.end() ? "" : found->second);
  }
  return text;
}

struct LineRow
{
  std::map<std::size_t, std::string> fields;
  std::string line;
};

TEST(Record, JoinsAddressLinesAndLastLine)
{
  const std::vector<LineRow> rows = {
      {{}, ""},
      {{{1, "1 HIGH ST"}}, "1 HIGH ST"},
      {{{1, "1 HIGH ST"}, {4, "CARLTON"}, {5, "VIC"}, {6, "3053"}}, "1 HIGH ST, CARLTON VIC 3053"},
      {{{1, "TOWER A"}, {2, "UNIT 3"}, {3, "1 HIGH ST"}, {4, "CARLTON"}}, "TOWER A, UNIT 3, 1 HIGH ST, CARLTON"},
      {{{1, "TOWER A"}, {3, "1 HIGH ST"}, {6, "3053"}}, "TOWER A, 1 HIGH ST, 3053"},
      {{{5, "VIC"}}, "VIC"},
      {{{7, "AU"}, {8, "30000001"}, {48, "X"}}, ""}};
  for (const LineRow& row : rows) {
    EXPECT_EQ(Record(MakeRecord(row.fields)).OneLine(), row.line);
  }
}

TEST(Record, GivesFieldsByNumberAndEmptyBeyondItsEnds)
{
  const Record record("a\tb\t\td");
  EXPECT_EQ(record.Size(), 4U);
  EXPECT_EQ(record.Field(0), "");
  EXPECT_EQ(record.Field(1), "a");
  EXPECT_EQ(record.Field(3), "");
  EXPECT_EQ(record.Field(4), "d");
  EXPECT_EQ(record.Field(5), "");
}

TEST(Record, KeepsTrailingEmptyFields)
{
  EXPECT_EQ(Record("a\t").Size(), 2U);
  EXPECT_EQ(Record("").Size(), 1U);
}

TEST(Record, IsEmptyWhenItHoldsDelimitersAlone)
{
  EXPECT_TRUE(Record("").IsEmpty());
  EXPECT_TRUE(Record(MakeRecord({})).IsEmpty());
  EXPECT_FALSE(Record(MakeRecord({{48, "x"}})).IsEmpty());
  EXPECT_FALSE(Record(" ").IsEmpty());
}

TEST(Record, FindsTheDpidInTheEighthField)
{
  EXPECT_EQ(Record(MakeRecord({{8, "30000001"}})).Dpid(), "30000001");
  EXPECT_EQ(Record("too\tshort").Dpid(), "");
}

TEST(LocalityQuery, IsARecordWhoseFourthFieldIsTheLine)
{
  EXPECT_EQ(LocalityQuery("CARLTON VIC 3053"), "\t\t\tCARLTON VIC 3053");
  EXPECT_EQ(LocalityQuery("CARLTON\tVIC\t"), "\t\t\tCARLTON VIC ");
  EXPECT_EQ(LocalityQuery(""), "\t\t\t");
}

TEST(NearestQuery, IsARecordWithBothNumbersInTheirFields)
{
  const std::string query = NearestQuery("-33.5", "151");
  EXPECT_EQ(Record(query).Size(), 44U);
  EXPECT_EQ(Record(query).Field(43), "-33.5");
  EXPECT_EQ(Record(query).Field(44), "151");
}

TEST(AllFields, AreNumberedFromOne)
{
  const std::string numbers = AllFields();
  EXPECT_TRUE(numbers.starts_with("1;2;3;")) << numbers;
  EXPECT_TRUE(numbers.ends_with(";47;48")) << numbers;
  EXPECT_EQ(std::count(numbers.begin(), numbers.end(), ';'), 47);
}

TEST(FieldName, NamesEveryFieldButTheReservedOnes)
{
  for (std::size_t number = 1; number <= 48; ++number) {
    const bool reserved = number >= 27 && number <= 39;
    EXPECT_EQ(FieldName(number).empty(), reserved) << number;
  }
  EXPECT_EQ(FieldName(0), "");
  EXPECT_EQ(FieldName(49), "");
  EXPECT_EQ(FieldName(1), "AddressLine1");
  EXPECT_EQ(FieldName(8), "DPID");
  EXPECT_EQ(FieldName(26), "MatchedText");
  EXPECT_EQ(FieldName(40), "SortPlanNumber");
  EXPECT_EQ(FieldName(48), "LocalGovernmentArea");
}

}  // namespace
}  // namespace tool
