/** The sort plan that a build puts beside the database. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "unit/arf/build/test_database.h"

namespace arf_test {
namespace {

using arf::BuildOptions;
using arf::BuildOutcome;
using arf::BuildReport;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr const char* kRows = "dpid,street_name,locality,state,postcode\n30000001,A,B,NSW,2000\n";
constexpr const char* kPlan = "date,2026-05-31\r\npostcode,bsp,npsp\r\n2000,019,N07\r\n0800,001,\r\n";

std::set<std::string> FilesIn(const std::string& directory)
{
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) names.insert(entry.path().filename());
  return names;
}

BuildReport BuildWith(const test_support::TempDir& dir, const std::string& plan, const char* rows = kRows)
{
  BuildOptions options;
  options.sortPlanPath = plan;
  return BuildFrom(dir, rows, options);
}

TEST(SortPlanCopy, IsPutBesideTheDatabase)
{
  const test_support::TempDir dir;
  const BuildReport report = BuildWith(dir, dir.Write("plan.csv", kPlan));
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_EQ(report.sortPlanDate, "2026-05-31");
  EXPECT_EQ(report.sortPlanPostcodes, 2U);
  EXPECT_THAT(FilesIn(dir.Path("db")), UnorderedElementsAre("PAF.ver", "address.arf", "sortplan.csv"));
  EXPECT_EQ(dir.Read("db/sortplan.csv"), kPlan);
}

TEST(SortPlanCopy, ReplacesAnOlderOneAndStaysWithoutANewOne)
{
  const test_support::TempDir dir;
  ASSERT_EQ(BuildWith(dir, dir.Write("old.csv", kPlan)).outcome, BuildOutcome::Built);
  const std::string newer = "date,2026-08-31\npostcode,bsp,npsp\n2000,020,\n";
  ASSERT_EQ(BuildWith(dir, dir.Write("new.csv", newer)).outcome, BuildOutcome::Built);
  EXPECT_EQ(dir.Read("db/sortplan.csv"), newer);
  const BuildReport without = BuildWith(dir, "");
  ASSERT_EQ(without.outcome, BuildOutcome::Built);
  EXPECT_EQ(without.sortPlanDate, "");
  EXPECT_EQ(dir.Read("db/sortplan.csv"), newer);
  ASSERT_EQ(BuildWith(dir, dir.Path("db/sortplan.csv")).outcome, BuildOutcome::Built);
  EXPECT_EQ(dir.Read("db/sortplan.csv"), newer);
}

TEST(SortPlanCopy, FaultyPlansStopTheBuildBeforeAnythingIsWritten)
{
  const test_support::TempDir dir;
  const std::string faulty = dir.Write("plan.csv", "date,2026-05-31\npostcode,bsp,npsp\n800,001,\n");
  const std::pair<std::string, std::string> rows[] = {
      {faulty, faulty + ":3: postcode: \"800\" is not four digits"},
      {dir.Path("none.csv"), dir.Path("none.csv") + ": No such file or directory"},
      {dir.Path(), dir.Path() + ": is a directory, not a file"},
  };
  for (const auto& [path, error] : rows) {
    const BuildReport report = BuildWith(dir, path);
    EXPECT_EQ(report.outcome, BuildOutcome::Failed);
    EXPECT_THAT(report.errors, ElementsAre(error));
    EXPECT_EQ(report.rowsRead, 0U);
    EXPECT_FALSE(std::filesystem::exists(dir.Path("db")));
  }
}

TEST(SortPlanCopy, IsNotWrittenWhenTheRowsAreBad)
{
  const test_support::TempDir dir;
  ASSERT_EQ(BuildWith(dir, "").outcome, BuildOutcome::Built);
  EXPECT_EQ(BuildWith(dir, dir.Write("plan.csv", kPlan), "dpid,street_name,locality,state,postcode\n1,A,B,NSW,2000\n")
                .outcome,
            BuildOutcome::Failed);
  EXPECT_THAT(FilesIn(dir.Path("db")), UnorderedElementsAre("PAF.ver", "address.arf"));
}

}  // namespace
}  // namespace arf_test
