// Sort plan files: what is read, what is refused and how it is said.
#include "arf/barcode/sort_plan.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <random>
#include <string>

#include "support/random_seed.h"
#include "support/temp_dir.h"

namespace {

using arf::SortPlan;

const std::string kHead = "date,2026-05-31\npostcode,bsp,npsp\n";

std::unique_ptr<const SortPlan> Parsed(const std::string& text)
{
  std::string fault = "untouched";
  std::unique_ptr<const SortPlan> plan = SortPlan::Parse(text, fault);
  EXPECT_EQ(fault, "");
  return plan;
}

std::string FaultOf(const std::string& text)
{
  std::string fault;
  EXPECT_EQ(SortPlan::Parse(text, fault), nullptr) << text;
  return fault;
}

/** "bsp/npsp", or "-" for a postcode that the plan does not have. */
std::string Numbers(const SortPlan& plan, std::string_view postcode)
{
  const SortPlan::Entry* entry = plan.Find(postcode);
  return entry ? std::string(entry->bsp) + "/" + std::string(entry->npsp) : "-";
}

TEST(SortPlan, IsRead)
{
  const auto plan = Parsed(kHead + "2000,019,N07\n0800,001,\n9999,,X\n");
  ASSERT_NE(plan, nullptr);
  EXPECT_EQ(plan->Date(), "2026-05-31");
  EXPECT_EQ(plan->PostcodeCount(), 3U);
  const std::pair<const char*, const char*> rows[] = {{"2000", "019/N07"},
                                                      {"0800", "001/"},
                                                      {"9999", "/X"},
                                                      {"0000", "-"},
                                                      {"2001", "-"},
                                                      {"", "-"},
                                                      {"800", "-"},
                                                      {"02000", "-"},
                                                      {"20a0", "-"},
                                                      {" 200", "-"},
                                                      {"\xB2\xB2\xB2\xB2", "-"}};
  for (const auto& [postcode, numbers] : rows) EXPECT_EQ(Numbers(*plan, postcode), numbers) << postcode;
}

TEST(SortPlan, FormsOfTheSameFile)
{
  const std::string forms[] = {
      kHead + "2000,019,N07",
      "\xEF\xBB\xBF" + kHead + "2000,019,N07\n",
      "date,2026-05-31\r\npostcode,bsp,npsp\r\n2000,019,N07\r\n",
      "\n\ndate , 2026-05-31 \n\n  \nPostcode, BSP, NPSP\n\n 2000 ,\t019 , N07 \n\n",
  };
  for (const std::string& text : forms) {
    const auto plan = Parsed(text);
    ASSERT_NE(plan, nullptr) << text;
    EXPECT_EQ(plan->Date(), "2026-05-31");
    EXPECT_EQ(Numbers(*plan, "2000"), "019/N07");
    EXPECT_EQ(plan->Text(), text);
  }
}

TEST(SortPlan, Faults)
{
  const std::string dateRow = "the first row must be the plan's date, as in \"date,2026-05-31\"";
  const std::string headerRow = "the second row must be \"postcode,bsp,npsp\"";
  const std::string longest(SortPlan::kMaxNumberLength, 'x');
  const std::pair<std::string, std::string> rows[] = {
      {"", "0: " + dateRow},
      {"\n\n", "2: " + dateRow},
      {"postcode,bsp,npsp\n", "1: " + dateRow},
      {"Date,2026-05-31\n", "1: " + dateRow},
      {"date\n", "1: date: \"\" is no date of the form 2026-05-31"},
      {"date,31.5.2026\n", "1: date: \"31.5.2026\" is no date of the form 2026-05-31"},
      {"date,2026-00-31\n", "1: date: \"2026-00-31\" is no date of the form 2026-05-31"},
      {"date,2026-13-31\n", "1: date: \"2026-13-31\" is no date of the form 2026-05-31"},
      {"date,2026-05-00\n", "1: date: \"2026-05-00\" is no date of the form 2026-05-31"},
      {"date,2026-05-32\n", "1: date: \"2026-05-32\" is no date of the form 2026-05-31"},
      {"date,2026-05-3\n", "1: date: \"2026-05-3\" is no date of the form 2026-05-31"},
      {"date,2026/05/31\n", "1: date: \"2026/05/31\" is no date of the form 2026-05-31"},
      {"date,2026-05-31,\n", "1: date: \"2026-05-31,\" is no date of the form 2026-05-31"},
      {"date,2026-05-31\n", "1: " + headerRow},
      {"date,2026-05-31\npostcode,bsp\n", "2: " + headerRow},
      {"date,2026-05-31\nbsp,npsp,postcode\n", "2: " + headerRow},
      {kHead, "there are no postcodes in it"},
      {kHead + "2000,019\n", "3: the row must have three fields: \"2000,019\""},
      {kHead + "2000,019,N07,\n", "3: the row must have three fields: \"2000,019,N07,\""},
      {kHead + std::string(50, 'x'), "3: the row must have three fields: \"" + std::string(40, 'x') + "...\""},
      {kHead + "800,001,N01\n", "3: postcode: \"800\" is not four digits"},
      {kHead + "20000,001,N01\n", "3: postcode: \"20000\" is not four digits"},
      {kHead + "2o00,001,N01\n", "3: postcode: \"2o00\" is not four digits"},
      {kHead + "\"2000\",001,N01\n", "3: postcode: \"\"2000\"\" is not four digits"},
      {kHead + "2000, ,\n", "3: bsp and npsp are both empty"},
      {kHead + "2000," + longest + "x,\n", "3: bsp: \"" + longest + "x\" is longer than 19 characters"},
      {kHead + "2000,1," + longest + "x\n", "3: npsp: \"" + longest + "x\" is longer than 19 characters"},
      {kHead + "2000,\"1\",2\n", "3: bsp: quotes and control characters cannot be used"},
      {kHead + "2000,1,a\x01z\n", "3: npsp: quotes and control characters cannot be used"},
      {kHead + "2000,1,2\n2001,1,2\n\n2000,1,2\n", "6: postcode: 2000 is already that of line 3"},
  };
  for (const auto& [text, fault] : rows) EXPECT_EQ(FaultOf(text), fault) << text;
  EXPECT_EQ(Numbers(*Parsed(kHead + "2000," + longest + ",\n"), "2000"), longest + "/");
}

TEST(SortPlan, EveryPostcode)
{
  std::string text = kHead;
  const auto postcode = [](int number) { return std::to_string(10'000 + number).substr(1); };
  for (int number = 9'999; number >= 0; --number) {
    text += postcode(number);
    text += ",b" + std::to_string(number) + ",n" + std::to_string(number) + "\n";
  }
  const auto plan = Parsed(text);
  ASSERT_NE(plan, nullptr);
  EXPECT_EQ(plan->PostcodeCount(), 10'000U);
  for (int number = 0; number < 10'000; ++number)
    ASSERT_EQ(Numbers(*plan, postcode(number)), "b" + std::to_string(number) + "/n" + std::to_string(number));
}

TEST(SortPlan, RandomDamageIsReadOrRefused)
{
  std::mt19937 random(test_support::RandomSeed());
  const std::string whole = kHead + "2000,019,N07\n0800,001,\n9999,,X\n";
  std::size_t refused = 0;
  for (int i = 0; i < 20'000; ++i) {
    std::string text = whole;
    for (auto k = random() % 3 + 1; k > 0; --k) {
      const char c = "0,\n\r\"x\0\xFF"[random() % 8];
      if (random() % 2 == 0)
        text[random() % text.size()] = c;
      else
        text.insert(random() % text.size(), 1, c);
    }
    std::string fault;
    const auto plan = SortPlan::Parse(text, fault);
    ASSERT_EQ(plan == nullptr, !fault.empty());
    refused += plan == nullptr;
  }
  EXPECT_GT(refused, 5'000U);
}

TEST(SortPlanFile, PlanFaultOrNeither)
{
  const test_support::TempDir dir;
  const arf::SortPlanFile none = arf::ReadSortPlanOf(dir.Path());
  EXPECT_EQ(none.plan, nullptr);
  EXPECT_EQ(none.fault, "");

  const std::string path = dir.Write("sortplan.csv", kHead + "2000,019,N07\n");
  for (const std::string& directory : {dir.Path(), dir.Path() + "/"}) {
    const arf::SortPlanFile good = arf::ReadSortPlanOf(directory);
    ASSERT_NE(good.plan, nullptr);
    EXPECT_EQ(good.fault, "");
    EXPECT_EQ(Numbers(*good.plan, "2000"), "019/N07");
  }

  dir.Write("sortplan.csv", kHead + "200,019,N07\n");
  const arf::SortPlanFile bad = arf::ReadSortPlan(path);
  EXPECT_EQ(bad.plan, nullptr);
  EXPECT_EQ(bad.fault, path + ":3: postcode: \"200\" is not four digits");

  dir.Write("sortplan.csv", "");
  EXPECT_EQ(arf::ReadSortPlan(path).fault,
            path + ":0: the first row must be the plan's date, as in \"date,2026-05-31\"");
}

TEST(SortPlanFile, WhatIsNoFileOfThatSize)
{
  const test_support::TempDir dir;
  const std::string folder = dir.MakeDirectory("sortplan.csv");
  EXPECT_EQ(arf::ReadSortPlan(folder).fault, folder + ": is a directory, not a file");
  const std::string large = dir.Write("large.csv", std::string(SortPlan::kMaxBytes + 1, '\n'));
  EXPECT_EQ(arf::ReadSortPlan(large).fault, large + ": is larger than any sort plan");
  const std::string limit =
      dir.Write("limit.csv", kHead + std::string(SortPlan::kMaxBytes - kHead.size() - 8, '\n') + "2000,1,2");
  EXPECT_EQ(arf::ReadSortPlan(limit).fault, "");
}

/** The plan that comes with the sample addresses has all of their postcodes. */
/** The field behind the one that is a state's code; empty when there is none. */
std::string PostcodeBehindState(const std::string& line)
{
  for (const std::string state : {"ACT", "NSW", "NT", "QLD", "SA", "TAS", "VIC", "WA"}) {
    const std::size_t at = line.find("," + state + ",");
    if (at != std::string::npos) return line.substr(at + state.size() + 2, 4);
  }
  return {};
}

TEST(SortPlanFile, OfTheSample)
{
  const arf::SortPlanFile file = arf::ReadSortPlanOf(QXPAF_SAMPLE);
  ASSERT_NE(file.plan, nullptr) << file.fault;
  std::ifstream addresses(QXPAF_SAMPLE "/addresses.csv");
  std::size_t found = 0;
  for (std::string line; std::getline(addresses, line);) {
    const std::string postcode = PostcodeBehindState(line);
    if (postcode.empty()) continue;
    EXPECT_NE(file.plan->Find(postcode), nullptr) << line;
    ++found;
  }
  EXPECT_GT(found, 400U);
}

}  // namespace
