// Attribute columns: the values in memory, and each of the ways in which the file keeps a column.
#include "arf/build/attribute_values.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "support/random_seed.h"
#include "unit/arf/build/test_database.h"

namespace {

using arf::AttributeValues;

TEST(AttributeValues, KeepTextsThatEndInDigits)
{
  AttributeValues values;
  const std::vector<std::string> texts = {"",
                                          "0",
                                          "00",
                                          "7",
                                          "007",
                                          "A",
                                          "A0",
                                          "A00",
                                          "A10",
                                          "A010",
                                          "GA_702910374",
                                          "é9",
                                          "1A",
                                          "99999999999",
                                          "100000000000",
                                          "999999999999999999999",
                                          "X100000000000000000000",
                                          "70005250000",
                                          "A 1 B 2",
                                          "00000000000",
                                          "5000000000000"};
  for (const std::string& text : texts) values.Add(text);
  std::string scratch;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(values.TextOf(i, scratch), texts[i]);
    for (std::size_t j = 0; j < i; ++j) EXPECT_NE(values.CodeOf(i), values.CodeOf(j)) << texts[i] << " " << texts[j];
  }
}

TEST(AttributeValues, AreAppendedAndKept)
{
  AttributeValues first, second;
  for (const char* text : {"A1", "B2"}) first.Add(text);
  for (const char* text : {"C3", "B2", "4"}) second.Add(text);
  first.Append(second, {true, true, false});
  ASSERT_EQ(first.Size(), 4U);
  std::string scratch;
  EXPECT_EQ(first.TextOf(2, scratch), "C3");
  EXPECT_EQ(first.CodeOf(3), first.CodeOf(1));
  first.Keep({false, true, true, false});
  ASSERT_EQ(first.Size(), 2U);
  EXPECT_EQ(first.TextOf(0, scratch), "B2");
  EXPECT_EQ(first.TextOf(1, scratch), "C3");
}

TEST(AttributeValues, AreAsAListOfTextsWouldBe)
{
  std::mt19937 random(test_support::RandomSeed());
  for (const std::uint32_t emptyOf : {1U, 2U, 40U}) {  // one in so many is filled
    AttributeValues values;
    std::vector<std::string> texts;
    for (int part = 0; part < 3; ++part) {
      AttributeValues more;
      std::vector<bool> taken;
      for (std::uint32_t i = 0; i < 500; ++i) {
        const std::string text = random() % emptyOf == 0 ? "P" + std::to_string(random() % 9) : "";
        more.Add(text);
        taken.push_back(random() % 5 != 0);
        if (taken.back()) texts.push_back(text);
      }
      values.Append(more, taken);
    }
    std::vector<bool> keep;
    std::vector<std::string> kept;
    for (const std::string& text : texts) {
      keep.push_back(random() % 3 != 0);
      if (keep.back()) kept.push_back(text);
    }
    values.Keep(keep);
    values.Add("last1");
    kept.emplace_back("last1");
    ASSERT_EQ(values.Size(), kept.size());
    std::string scratch;
    for (std::size_t i = 0; i < kept.size(); ++i) ASSERT_EQ(values.TextOf(i, scratch), kept[i]) << i;
    EXPECT_EQ(values.FindCode("last1"), values.CodeOf(kept.size() - 1));
    EXPECT_EQ(values.FindCode("never"), std::nullopt);
    EXPECT_FALSE(values.IsEmpty());
  }
  AttributeValues none;
  for (int i = 0; i < 100; ++i) none.Add("");
  EXPECT_TRUE(none.IsEmpty());
  EXPECT_EQ(none.CodeOf(99), 0U);
}

/** A column of a database, and the way of keeping it that is the smallest. */
struct Kind
{
  const char* name;
  std::uint32_t bits;
  std::function<std::string(std::uint32_t row, std::mt19937&)> valueOf;
};

std::string Digits(std::mt19937& random, std::uint32_t below)
{
  return std::to_string(random() % below);
}

class AttributeKinds : public testing::TestWithParam<Kind>
{
};

TEST_P(AttributeKinds, AreReadBack)
{
  constexpr std::uint32_t kRows = 3000;
  std::mt19937 random(test_support::RandomSeed());
  std::string csv = "dpid,number_first,street_name,locality,state,postcode,extra\n";
  std::vector<std::string> values;
  for (std::uint32_t i = 0; i < kRows; ++i) {
    values.push_back(GetParam().valueOf(i, random));
    csv += std::to_string(30000000 + i) + "," + std::to_string(i + 1) + ",A,B,NSW,2000," + values.back() + "\n";
  }
  const test_support::TempDir dir;
  const auto database = arf_test::OpenOrFail(arf_test::BuiltDirectory(dir, csv), arf::OpenMode::Memory);
  ASSERT_NE(database, nullptr);
  ASSERT_EQ(database->AttributeCount(), 1U);
  EXPECT_EQ(database->Section(arf::layout::SectionId::AttributeColumns).U32At(arf::layout::attribute::kBits),
            GetParam().bits);
  arf::AttributeText text;
  for (std::uint32_t i = 0; i < kRows; ++i) ASSERT_EQ(database->AttributeOf(i, 0, text), values[i]) << i;
}

INSTANTIATE_TEST_SUITE_P(
    All, AttributeKinds,
    testing::Values(Kind{"FewMixed", 2,
                         [](std::uint32_t, std::mt19937& random) { return std::string(1, "abcd"[random() % 4]); }},
                    Kind{"LongRuns", arf::layout::attribute::kDeltas,
                         [](std::uint32_t row, std::mt19937&) { return "name " + std::string(row / 500 + 1, 'x'); }},
                    Kind{"NearNumbers", arf::layout::attribute::kNumbers,
                         [](std::uint32_t row, std::mt19937& random) {
                           return (row < 1000 ? "GAX_" : "GAB_") + std::to_string(700000000 + row * 3 + random() % 3);
                         }},
                    Kind{"NumbersSomeMissing", arf::layout::attribute::kNumbers,
                         [](std::uint32_t row, std::mt19937& random) {
                           return random() % 9 == 0 ? std::string() : "P" + std::to_string(row * 2);
                         }},
                    Kind{"AllDifferent", arf::layout::attribute::kDirect,
                         [](std::uint32_t row, std::mt19937& random) {
                           return Digits(random, 1000000000) + "-" + std::to_string(row) + "x" +
                                  std::string(row % 7, 'y');
                         }}),
    [](const testing::TestParamInfo<Kind>& kind) { return kind.param.name; });

}  // namespace
