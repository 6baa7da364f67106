// Numbers of the sort plan that lies in a database directory.
#include <gtest/gtest.h>

#include <string>

#include "unit/arf/au/searcher_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::DatabasePointer;
using arf_test::Searcher;

constexpr const char* kPlan =
    "date,2026-05-31\npostcode,bsp,npsp\n2000,019,N07\n0800,001,\n9999,,1234567890123456789\n";
const Answer kNoPlan{PAF_AU_ERR_NO_SORT_PLAN, ""};

/** A database directory of its own for each test. */
class SortPlanProperties : public testing::Test
{
 protected:
  SortPlanProperties() : directory_(arf_test::ChangedCopy(dir_, [](std::string&) {})) {}

  DatabasePointer Open(int mode = 1) const
  {
    DatabasePointer database(GetDb());
    char error[255] = "";
    EXPECT_EQ(database->Open(directory_.c_str(), mode, error, sizeof error), 0) << error;
    return database;
  }

  void WritePlan(const std::string& text) const { dir_.Write("copy/sortplan.csv", text); }

  test_support::TempDir dir_;
  std::string directory_;
};

TEST_F(SortPlanProperties, FillTheirFieldOfRecords)
{
  WritePlan(kPlan);
  const DatabasePointer database = Open();
  Searcher searcher(*database);
  EXPECT_EQ(searcher.SetProperty("OutputFields", "Postcode;SortPlanNumber"), (Answer{0, ""}));
  EXPECT_EQ(searcher.Get("\t\t\t\t\t\t\t30000001"), (Answer{0, "2000\t019"}));
  EXPECT_EQ(searcher.Get("\t\t\t\t\t\t\t30000140"), (Answer{0, "2600\t"})) << "the plan has no such postcode";
}

TEST_F(SortPlanProperties, Answers)
{
  WritePlan(kPlan);
  const Answer notThere{PAF_AU_ERR_NOT_IN_SORT_PLAN, ""};
  const Answer noPostcode{PAF_AU_ERR_BAD_POSTCODE, ""};
  const std::pair<const char*, Answer> rows[] = {
      {"BSP:2000", {0, "019"}},
      {"bsp: 2000 ", {0, "019"}},
      {"NPSP:2000", {0, "N07"}},
      {"npsp:2000", {0, "N07"}},
      {"BSP:0800", {0, "001"}},
      {"NPSP:0800", notThere},
      {"BSP:9999", notThere},
      {"NPSP:9999", {0, "1234567890123456789"}},
      {"BSP:2001", notThere},
      {"BSP:800", noPostcode},
      {"BSP:", noPostcode},
      {"BSP:20000", noPostcode},
      {"NPSP:20O0", noPostcode},
      {"SortPlanDate", {0, "2026-05-31"}},
      {"sortplandate", {0, "2026-05-31"}},
      {"Properties",
       {0,
        "Delimiter;OutputFields;PafEngineVersion;PafLibVersion;PafVersionInfo;SortPlanDate;Notice;"
        "LatLongSearchRange;StateFilter;AddressFilter;PointsOfInterest;GeographicalCodes;GeographicalCodesFilter;"
        "GifCommonMinimumPercent;MatchPenalties;PenaltyTable"}},
      {"PropertyName6", {0, "SortPlanDate"}},
      {"PropertyName7", {0, "Notice"}},
      {"PropertyName8", {0, "LatLongSearchRange"}},
  };
  for (const int mode : {1, 2, 3}) {
    const DatabasePointer database = Open(mode);
    Searcher searcher(*database);
    for (const auto& [name, answer] : rows) EXPECT_EQ(searcher.Property(name), answer) << name;
    // The library asks with 20 bytes.
    char out[20];
    EXPECT_EQ(searcher->GetProperties("NPSP:9999", out, sizeof out), 0);
    EXPECT_EQ(searcher->GetProperties("NPSP:9999", out, sizeof out - 1), PAF_ERR_BUFFER_TOO_SMALL);
  }
}

TEST_F(SortPlanProperties, Absent)
{
  const DatabasePointer database = Open();
  Searcher searcher(*database);
  for (const char* name : {"BSP:2000", "NPSP:2000", "BSP:x", "SortPlanDate"})
    EXPECT_EQ(searcher.Property(name), kNoPlan) << name;
  EXPECT_EQ(searcher.Description(PAF_AU_ERR_NO_SORT_PLAN),
            "The database has no sort plan. Put the file sortplan.csv into its directory, then open it again.");
}

TEST_F(SortPlanProperties, FaultyPlanLeavesTheDatabaseUsable)
{
  WritePlan("date,2026-05-31\npostcode,bsp,npsp\n200,019,N07\n");
  const DatabasePointer database = Open();
  Searcher searcher(*database);
  EXPECT_EQ(searcher.Lookup("1 George St Sydney").text, "30000001");
  for (const char* name : {"BSP:2000", "NPSP:2000", "SortPlanDate"}) {
    EXPECT_EQ(searcher.Property(name), (Answer{PAF_AU_ERR_BAD_SORT_PLAN, ""})) << name;
    EXPECT_EQ(
        searcher.Description(PAF_AU_ERR_BAD_SORT_PLAN),
        directory_ + "/sortplan.csv:3: postcode: \"200\" is not four digits. Correct the file, then open it again.");
  }
  EXPECT_EQ(searcher.Property("Properties").text.find("SortPlanDate"), std::string::npos);
}

TEST_F(SortPlanProperties, FailuresNameThePostcode)
{
  WritePlan(kPlan);
  const DatabasePointer database = Open();
  Searcher searcher(*database);
  searcher.Property("BSP:2001");
  EXPECT_EQ(searcher.Description(PAF_AU_ERR_NOT_IN_SORT_PLAN),
            "The sort plan has no BSP for the postcode 2001. Check the postcode, and whether the plan is current.");
  searcher.Property("NPSP:800");
  EXPECT_EQ(searcher.Description(PAF_AU_ERR_BAD_POSTCODE),
            "\"800\" is no postcode: a postcode has four digits. Pass four digits, a leading zero included.");
}

/** A plan that changes on disk changes nothing for databases that are open. */
TEST_F(SortPlanProperties, BelongsToTheOpenDatabase)
{
  WritePlan(kPlan);
  const DatabasePointer older = Open();
  Searcher before(*older);
  WritePlan("date,2026-08-31\npostcode,bsp,npsp\n2000,020,N08\n");
  Searcher after(*older);
  EXPECT_EQ(before.Property("BSP:2000").text, "019");
  EXPECT_EQ(after.Property("BSP:2000").text, "019");
  const DatabasePointer newer = Open();
  Searcher fresh(*newer);
  EXPECT_EQ(fresh.Property("BSP:2000").text, "020");
  EXPECT_EQ(fresh.Property("SortPlanDate").text, "2026-08-31");
}

TEST_F(SortPlanProperties, OutlivesAnEarlyClose)
{
  WritePlan(kPlan);
  const DatabasePointer database = Open();
  Searcher searcher(*database);
  database->Close();
  EXPECT_EQ(searcher.Property("BSP:2000").text, "019");
}

}  // namespace
