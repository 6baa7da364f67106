/** The build as a whole: its first row, its report, and what it leaves on disk. */
#include "arf/build/builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <set>

#include "support/file_size_limit.h"
#include "support/random_seed.h"
#include "unit/arf/build/address_model.h"
#include "unit/arf/build/test_database.h"

namespace arf_test {
namespace {

using arf::BuildOptions;
using arf::BuildOutcome;
using arf::BuildReport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

constexpr const char* kHeader = "dpid,street_name,locality,state,postcode\n";

std::string CsvOf(const std::string& rows)
{
  return kHeader + rows;
}

std::set<std::string> FilesIn(const std::string& directory)
{
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory)) names.insert(entry.path().filename());
  return names;
}

struct Header
{
  const char* csv;
  std::vector<std::string> faults;
};

const Header kHeaders[] = {
    {"a,b\n1,2\n",
     {":1: the required column \"dpid\" is missing", ":1: the required column \"locality\" is missing",
      ":1: the required column \"state\" is missing", ":1: the required column \"postcode\" is missing",
      ":1: neither \"street_name\" nor \"postal_type\" is among the columns"}},
    {"dpid,locality,state,postcode\n", {":1: neither \"street_name\" nor \"postal_type\" is among the columns"}},
    {"dpid,locality,state,street_name\n", {":1: the required column \"postcode\" is missing"}},
    {"dpid,locality,state,postcode,street_name,DPID\n", {":1: the column \"dpid\" is there twice"}},
    {"dpid,locality,state,postcode,street_name,Mesh,mesh\n", {":1: the column \"mesh\" is there twice"}},
    {"dpid,locality,,state,postcode,street_name\n", {":1: column 3 has no name"}},
    {"dpid,locality,state,postcode,\"street_name\"x\n", {":1: the quotes of the row are not as they should be"}},
    {"", {": is empty"}},
    {"\n\n", {": is empty"}},
    {"dpid,locality,state,postcode,street_name\n", {": there are no addresses in it"}},
};

TEST(Build, RefusesFirstRowsBeforeReadingOn)
{
  for (const Header& header : kHeaders) {
    const test_support::TempDir dir;
    const BuildReport report = BuildFrom(dir, header.csv);
    EXPECT_EQ(report.outcome, BuildOutcome::Failed);
    std::vector<std::string> expected;
    for (const std::string& fault : header.faults) expected.push_back(dir.Path("in.csv") + fault);
    EXPECT_EQ(report.errors, expected) << header.csv;
    EXPECT_EQ(report.rowsRead, 0U);
    EXPECT_FALSE(fs::exists(dir.Path("db")));
  }
}

TEST(Build, TakesColumnsInAnyOrderAndCase)
{
  const test_support::TempDir dir;
  const BuildReport report = BuildFrom(
      dir, " PostCode ,State,\"LOCALITY\",street_NAME,Dpid,Mesh Block\n2000,NSW,Alpha,First,30000001, MB 1 \n");
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  const auto database = OpenOrFail(dir.Path("db"), arf::OpenMode::Disk);
  ASSERT_EQ(database->AttributeCount(), 1U);
  EXPECT_EQ(database->AttributeName(0), "mesh block");
  arf::AttributeText text;
  EXPECT_EQ(database->AttributeOf(0, 0, text), "MB 1");
}

TEST(Build, NamesTheLineOfEachFault)
{
  const test_support::TempDir dir;
  const BuildReport report = BuildFrom(dir, CsvOf("30000001,A,B,NSW,2000\n"
                                                  "\n"
                                                  "30000002,\"A\nA\",B,NSW,200\n"
                                                  "30000003,A,B,NSW\n"
                                                  "30000004,A,B,NSW,2000,x\n"
                                                  "30000005,A\"B,B,NSW,2000\n"
                                                  "30000001,A,B,NSW,2000\n"
                                                  "30000006,A,B,NSW,2000\n"
                                                  "30000006,A,B,NSW,2000\n"));
  const std::string file = dir.Path("in.csv");
  EXPECT_EQ(report.outcome, BuildOutcome::Failed);
  EXPECT_THAT(report.errors, ElementsAre(file + ":4: postcode: \"200\" is not four digits (a leading zero may be lost)",
                                         file + ":6: the row has 4 fields where the first row has 5",
                                         file + ":7: the row has 6 fields where the first row has 5",
                                         file + ":8: the quotes of the row are not as they should be",
                                         file + ":9: dpid: 30000001 is already that of line 2",
                                         file + ":11: dpid: 30000006 is already that of line 10"));
  EXPECT_EQ(report.errorCount, 6U);
  EXPECT_EQ(report.rowsRead, 8U);
  EXPECT_EQ(report.rowsSkipped, 0U);
}

TEST(Build, KeepsTwentyFaultsAndCountsAll)
{
  std::string rows;
  for (int i = 0; i < 50; ++i) rows += "x,A,B,NSW,2000\n";
  const test_support::TempDir dir;
  const BuildReport report = BuildFrom(dir, CsvOf(rows));
  EXPECT_EQ(report.errors.size(), 20U);
  EXPECT_EQ(report.errorCount, 50U);
  EXPECT_THAT(report.errors.back(), HasSubstr("in.csv:21: dpid:"));
}

TEST(Build, LeavesBadRowsOutWhenAsked)
{
  const test_support::TempDir dir;
  BuildOptions options;
  options.skipBadRows = true;
  const BuildReport report = BuildFrom(dir,
                                       CsvOf("30000001,A,B,NSW,2000\n"
                                             "30000002,A,B,NSW,bad\n"
                                             "30000001,SECOND,B,NSW,2000\n"
                                             "30000003,C,B,NSW,2000\n"
                                             "30000002,A,B,NSW,2000\n"),
                                       options);
  EXPECT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_EQ(report.rowsRead, 5U);
  EXPECT_EQ(report.rowsSkipped, 2U);
  EXPECT_EQ(report.errorCount, 2U);
  EXPECT_EQ(report.addresses, 3U);
  EXPECT_EQ(report.streets, 2U);
  EXPECT_EQ(report.localities, 1U);
  EXPECT_EQ(report.fileSize, fs::file_size(dir.Path("db/address.arf")));
  const auto database = OpenOrFail(dir.Path("db"), arf::OpenMode::Disk);
  EXPECT_EQ(database->StreetAt(database->PointAt(*database->FindDpid(30000001)).street).name, "A");
  EXPECT_TRUE(database->FindDpid(30000002).has_value());
}

TEST(Build, FailsWhenNoRowIsGood)
{
  const test_support::TempDir dir;
  BuildOptions options;
  options.skipBadRows = true;
  const BuildReport report = BuildFrom(dir, CsvOf("1,A,B,NSW,2000\n"), options);
  EXPECT_EQ(report.outcome, BuildOutcome::Failed);
  ASSERT_EQ(report.errors.size(), 2U);
  EXPECT_THAT(report.errors[1], HasSubstr("there are no addresses in it"));
}

TEST(Build, WarnsOfTypesItDoesNotKnow)
{
  std::string csv = "dpid,street_name,street_type,unit_type,locality,state,postcode\n";
  for (int i = 0; i < 12; ++i) csv += std::to_string(30000000 + i) + ",A,TYPE" + char('A' + i) + ",Igloo,B,NSW,2000\n";
  const test_support::TempDir dir;
  const BuildReport report = BuildFrom(dir, csv);
  EXPECT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_THAT(
      report.warnings,
      ElementsAre("unit_type: not in the tables, kept as written: IGLOO (12)",
                  "street_type: not in the tables, kept as written: TYPEA (1), TYPEB (1), TYPEC (1), TYPED (1), "
                  "TYPEE (1), TYPEF (1), TYPEG (1), TYPEH (1), TYPEI (1), TYPEJ (1) and 2 more"));
}

TEST(Build, WritesTheVersionFile)
{
  const test_support::TempDir dir;
  ASSERT_EQ(BuildFrom(dir, CsvOf("30000001,A,B,NSW,2000\n")).outcome, BuildOutcome::Built);
  EXPECT_EQ(dir.Read("db/PAF.ver"), "DATABASENAME=AU\n");
  EXPECT_THAT(FilesIn(dir.Path("db")), UnorderedElementsAre("PAF.ver", "address.arf"));
  BuildOptions options;
  options.databaseName = "NZ TEST";
  ASSERT_EQ(BuildFrom(dir, CsvOf("30000001,A,B,NSW,2000\n"), options).outcome, BuildOutcome::Built);
  EXPECT_EQ(dir.Read("db/PAF.ver"), "DATABASENAME=NZ TEST\n");
}

TEST(Build, GivesTheSameBytesForTheSameInput)
{
  Random random(test_support::RandomSeed());
  const Model model = RandomModel(random, 5000);
  const test_support::TempDir one, two, three;
  const std::string csv = ToCsv(model, random);
  BuiltDirectory(one, csv);
  BuiltDirectory(two, csv);
  EXPECT_EQ(one.Read("db/address.arf"), two.Read("db/address.arf"));
  // Neither the order of rows and columns nor the spelling matters.
  BuiltDirectory(three, ToCsv(model, random));
  EXPECT_EQ(one.Read("db/address.arf"), three.Read("db/address.arf"));
}

TEST(Build, ReportsProgress)
{
  Random random(test_support::RandomSeed());
  const test_support::TempDir dir;
  const std::string csv = ToCsv(RandomModel(random, 40000), random);
  std::vector<arf::BuildProgress> seen;
  const BuildOptions options{{dir.Write("in.csv", csv)}, dir.Path("db"), "AU", {}, false, ','};
  ASSERT_EQ(arf::BuildDatabase(options, [&](const arf::BuildProgress& p) { seen.push_back(p); }).outcome,
            BuildOutcome::Built);
  ASSERT_GE(seen.size(), 5U);
  for (std::size_t i = 0; i < seen.size(); ++i) {
    EXPECT_LE(seen[i].done, seen[i].total);
    if (i == 0 || seen[i].phase != seen[i - 1].phase) continue;
    EXPECT_GE(seen[i].done, seen[i - 1].done);
  }
  EXPECT_EQ(seen.front().phase, arf::BuildPhase::Reading);
  EXPECT_EQ(seen.front().total, csv.size());
  EXPECT_EQ(seen.back().phase, arf::BuildPhase::Writing);
  EXPECT_EQ(seen.back().done, seen.back().total);
}

/** Cancels at the n-th report for every n: nothing is left, and an older database stays. */
TEST(Build, LeavesNothingWhenCancelled)
{
  Random random(test_support::RandomSeed());
  const test_support::TempDir dir;
  dir.Write("in.csv", ToCsv(RandomModel(random, 20000), random));
  BuiltDirectory(dir, CsvOf("30000001,OLD,B,NSW,2000\n"));
  dir.Write("big.csv", ToCsv(RandomModel(random, 20000), random));
  const std::string old = dir.Read("db/address.arf");
  for (int stopAt = 1;; ++stopAt) {
    for (const char* target : {"db", "new"}) {
      std::atomic<bool> cancel = false;
      int reports = 0;
      const BuildOptions options{{dir.Path("big.csv")}, dir.Path(target), "OTHER", {}, false, ','};
      const BuildReport report = arf::BuildDatabase(
          options, [&](const arf::BuildProgress&) { cancel = ++reports == stopAt; }, &cancel);
      if (report.outcome == BuildOutcome::Built) {
        EXPECT_GT(stopAt, 3);
        return;
      }
      EXPECT_EQ(report.outcome, BuildOutcome::Cancelled);
      EXPECT_FALSE(fs::exists(dir.Path("new")));
      EXPECT_THAT(FilesIn(dir.Path("db")), UnorderedElementsAre("PAF.ver", "address.arf"));
      EXPECT_EQ(dir.Read("db/address.arf"), old);
      EXPECT_EQ(dir.Read("db/PAF.ver"), "DATABASENAME=AU\n");
    }
  }
}

TEST(Build, LeavesAnOlderDatabaseWhenItFails)
{
  const test_support::TempDir dir;
  BuiltDirectory(dir, CsvOf("30000001,OLD,B,NSW,2000\n"));
  const std::string old = dir.Read("db/address.arf");
  EXPECT_EQ(BuildFrom(dir, CsvOf("1,A,B,NSW,2000\n")).outcome, BuildOutcome::Failed);
  EXPECT_THAT(FilesIn(dir.Path("db")), UnorderedElementsAre("PAF.ver", "address.arf"));
  EXPECT_EQ(dir.Read("db/address.arf"), old);
}

TEST(Build, LeavesNothingWhenTheDiskIsFull)
{
  Random random(test_support::RandomSeed());
  const test_support::TempDir dir;
  dir.Write("in.csv", ToCsv(RandomModel(random, 20000), random));
  const BuildOptions options{{dir.Path("in.csv")}, dir.Path("db"), "AU", {}, false, ','};
  for (const rlim_t size : {rlim_t{0}, rlim_t{10}, rlim_t{1000}, rlim_t{100000}}) {
    const test_support::FileSizeLimit limit(size);
    const BuildReport report = arf::BuildDatabase(options);
    EXPECT_EQ(report.outcome, BuildOutcome::Failed);
    ASSERT_EQ(report.errors.size(), 1U);
    EXPECT_THAT(report.errors[0], HasSubstr("File too large"));
    EXPECT_FALSE(fs::exists(dir.Path("db")));
  }
  EXPECT_EQ(arf::BuildDatabase(options).outcome, BuildOutcome::Built);
}

struct BadPath
{
  const char* csv;
  const char* output;
  const char* message;
};

TEST(Build, SaysWhichPathItCannotUse)
{
  const test_support::TempDir dir;
  dir.Write("in.csv", CsvOf("30000001,A,B,NSW,2000\n"));
  dir.Write("file", "x");
  dir.MakeDirectory("taken/address.arf/x");
  const BadPath rows[] = {
      {"none.csv", "db", "none.csv: No such file or directory"},   {".", "db", "has no table ADDRESS_DETAIL"},
      {"in.csv", "none/db", "none/db: No such file or directory"}, {"in.csv", "file", ": is a file; name a directory"},
      {"in.csv", "taken", "taken/address.arf: Is a directory"},
  };
  for (const BadPath& row : rows) {
    const BuildOptions options{{dir.Path(row.csv)}, dir.Path(row.output), "AU", {}, false, ','};
    const BuildReport report = arf::BuildDatabase(options);
    EXPECT_EQ(report.outcome, BuildOutcome::Failed);
    ASSERT_EQ(report.errors.size(), 1U);
    EXPECT_THAT(report.errors[0], HasSubstr(row.message));
  }
  EXPECT_FALSE(fs::exists(dir.Path("db")));
  for (const std::string& name : FilesIn(dir.Path("taken"))) EXPECT_THAT(name, testing::Not(testing::StartsWith(".")));
}

TEST(Build, ReadsRowsWithoutQuotesOrWithAnotherDelimiter)
{
  const test_support::TempDir dir;
  BuildOptions options;
  options.delimiter = '|';
  const BuildReport report =
      BuildFrom(dir, "dpid|street_name|locality|state|postcode\n30000001|A, B|C|NSW|2000\n", options);
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_EQ(OpenOrFail(dir.Path("db"), arf::OpenMode::Disk)->StreetAt(0).name, "A, B");
}

}  // namespace
}  // namespace arf_test
