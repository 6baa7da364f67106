// Version and state of databases by their directory, whether or not they are open.
#include <gtest/gtest.h>

#include <string>

#include "unit/arf/au/searcher_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::ChangedCopy;
using arf_test::Searcher;

Answer Ask(const std::string& request)
{
  char out[512] = "#";
  const int status = GetOtherProperties(request.c_str(), out, sizeof out);
  return {status, out};
}

struct FaultRow
{
  void (*change)(std::string& bytes);
  int status;
  const char* words;
};
constexpr FaultRow kFaults[] = {
    {[](std::string&) {}, 0, "ARF OK"},
    {[](std::string& bytes) { bytes = "DATABASE"; }, PAF_AU_ERR_NOT_A_DATABASE, "ARF Not A Database"},
    {[](std::string& bytes) { bytes[8] = 2; }, PAF_AU_ERR_DATABASE_VERSION, "ARF Wrong Format Version"},
    {[](std::string& bytes) { bytes.resize(bytes.size() - 1); }, PAF_AU_ERR_DATABASE_TRUNCATED, "ARF Truncated"},
    {[](std::string& bytes) { bytes[bytes.size() / 2] ^= 1; }, PAF_AU_ERR_DATABASE_DAMAGED, "ARF Damaged"},
};

TEST(DatabaseProperties, StateAndVersion)
{
  const arf_test::DatabasePointer database = arf_test::OpenSmall();
  Searcher searcher(*database);
  for (const FaultRow& row : kFaults) {
    const test_support::TempDir dir;
    const std::string directory = ChangedCopy(dir, row.change);
    const Answer state{0, row.words};
    const Answer version{row.status, row.status == 0 ? "AU test data 1 (format 3, 75 addresses)" : ""};
    EXPECT_EQ(Ask("ArfStatus:" + directory), state);
    EXPECT_EQ(Ask("arfversion:" + directory), version) << row.words;
    EXPECT_EQ(searcher.Property("arfstatus:" + directory + "/"), state);
    EXPECT_EQ(searcher.Property("ArfVersion:" + directory), version) << row.words;
    if (row.status != 0) {
      EXPECT_NE(searcher.Description(row.status).find(directory + "/address.arf"), std::string::npos);
    }
  }
}

TEST(DatabaseProperties, OfNoDatabase)
{
  for (const std::string path : {"/nowhere/at/all", "/dev/null", "", "\xFF"}) {
    EXPECT_EQ(Ask("ArfStatus:" + path), (Answer{0, "ARF Not Found"})) << path;
    EXPECT_EQ(Ask("ArfVersion:" + path), (Answer{PAF_ERR_OPEN_FILE, ""})) << path;
  }
}

TEST(DatabaseProperties, VersionOfOneAddressWithoutAVersion)
{
  const test_support::TempDir dir;
  arf::BuildOptions options;
  options.inputs = {dir.Write("in.csv", "dpid,street_name,locality,state,postcode\n30000001,A,B,NSW,2000\n")};
  options.outputDirectory = dir.Path("db");
  options.databaseName = "Australia";
  ASSERT_EQ(arf::BuildDatabase(options).outcome, arf::BuildOutcome::Built);
  EXPECT_EQ(Ask("ArfVersion:" + dir.Path("db")), (Answer{0, "Australia (format 3, 1 address)"}));
}

TEST(DatabaseProperties, AskingLeavesNothingAlive)
{
  EXPECT_EQ(Ask("ArfStatus:" + arf_test::SmallDirectory()).text, "ARF OK");
  EXPECT_NE(CanUnloadNow(), 0);
}

}  // namespace
