// The database object: opening, what is refused and how, life times.
#include <gtest/gtest.h>

#include <string>

#include "support/guarded_buffer.h"
#include "unit/arf/au/searcher_fixture.h"

namespace {

using arf_test::ChangedCopy;
using arf_test::DatabasePointer;
using arf_test::OpenSmall;
using arf_test::SearcherPointer;

TEST(AuDatabase, AnswersWhatItWasOpenedWith)
{
  for (const int mode : {1, 2, 3, 4, 0, -7}) {
    const DatabasePointer database = OpenSmall(mode);
    EXPECT_EQ(database->GetPath(), arf_test::SmallDirectory());
    EXPECT_STREQ(database->GetCountry(), "AU");
    EXPECT_EQ(database->GetOpenMode(), mode);
    ASSERT_NE(database->RefCount(), nullptr);
    EXPECT_EQ(*database->RefCount(), 0);
    *database->RefCount() = 5;
    EXPECT_EQ(*database->RefCount(), 5);
    arf_test::Searcher searcher(*database);
    EXPECT_EQ(searcher->GetArfDb(), database.get());
    EXPECT_EQ(searcher.Lookup("1 George St Sydney").text, "30000001") << mode;
    database->Close();
  }
}

TEST(AuDatabase, IsOpenedOnce)
{
  const DatabasePointer database = OpenSmall();
  char error[255];
  EXPECT_EQ(database->Open("/elsewhere", 1, error, sizeof error), PAF_AU_ERR_NOT_OPEN);
  EXPECT_EQ(std::string(error), "The database " + arf_test::SmallDirectory() + " is open already.");
  EXPECT_EQ(database->GetPath(), arf_test::SmallDirectory());
}

struct FaultRow
{
  const char* what;
  void (*change)(std::string& bytes);
  int status;
};

TEST(AuDatabase, RefusesFaultyFilesWithAReason)
{
  const FaultRow rows[] = {
      {"another kind",
       [](std::string& bytes) {
         bytes = "%PDF-1.7 and something else, long enough to be read as a header of this sort";
       },
       PAF_AU_ERR_NOT_A_DATABASE},
      {"empty", [](std::string& bytes) { bytes.clear(); }, PAF_AU_ERR_NOT_A_DATABASE},
      {"cut", [](std::string& bytes) { bytes.resize(bytes.size() - 1); }, PAF_AU_ERR_DATABASE_TRUNCATED},
      {"damaged", [](std::string& bytes) { bytes[bytes.size() / 2] ^= 1; }, PAF_AU_ERR_DATABASE_DAMAGED},
  };
  for (const FaultRow& row : rows) {
    for (const int mode : {1, 2, 3}) {
      const test_support::TempDir dir;
      const DatabasePointer database(GetDb());
      char error[255] = "";
      EXPECT_EQ(database->Open(ChangedCopy(dir, row.change).c_str(), mode, error, sizeof error), row.status)
          << row.what;
      EXPECT_NE(std::string(error).find("address.arf"), std::string::npos) << row.what << ": " << error;
      database->Close();
    }
  }
}

TEST(AuDatabase, MissingFile)
{
  for (const char* path : {"/nowhere/at/all", "", static_cast<const char*>(nullptr)}) {
    const DatabasePointer database(GetDb());
    char error[255] = "";
    EXPECT_EQ(database->Open(path, 1, error, sizeof error), PAF_ERR_OPEN_FILE);
    EXPECT_STRNE(error, "");
    database->Close();
    database->Close();
  }
}

TEST(AuDatabase, ErrorTextStaysInItsBuffer)
{
  for (const int size : {0, 1, 2, 20, 255}) {
    test_support::GuardedBuffer buffer(static_cast<std::size_t>(size));
    const DatabasePointer database(GetDb());
    EXPECT_EQ(database->Open("/nowhere/at/all", 1, buffer.Data(), size), PAF_ERR_OPEN_FILE);
    EXPECT_TRUE(buffer.Intact());
    if (size > 0) {
      EXPECT_LT(std::string(buffer.Data()).size(), static_cast<std::size_t>(size));
    }
  }
  const DatabasePointer database(GetDb());
  EXPECT_EQ(database->Open("/nowhere/at/all", 1, nullptr, 0), PAF_ERR_OPEN_FILE);
}

TEST(EntryPoints, CanUnloadWhenNothingLives)
{
  EXPECT_NE(CanUnloadNow(), 0);
  DatabasePointer database = OpenSmall();
  EXPECT_EQ(CanUnloadNow(), 0);
  {
    SearcherPointer searcher(GetSearcher(database.get()));
    EXPECT_EQ(CanUnloadNow(), 0);
  }
  EXPECT_EQ(CanUnloadNow(), 0);
  database.reset();
  EXPECT_NE(CanUnloadNow(), 0);
}

TEST(EntryPoints, NoSearcherWithoutADatabase)
{
  EXPECT_EQ(GetSearcher(nullptr), nullptr);
}

TEST(Searcher, OfAnUnopenedDatabaseSaysSo)
{
  const DatabasePointer database(GetDb());
  arf_test::Searcher searcher(*database);
  const arf_test::Answer notOpen{PAF_AU_ERR_NOT_OPEN, ""};
  EXPECT_EQ(searcher.Lookup("1 George St Sydney"), notOpen);
  EXPECT_EQ(searcher.Fix("Sydney"), notOpen);
  EXPECT_EQ(searcher.Get("Sydney"), notOpen);
  EXPECT_EQ(searcher.Next(), notOpen);
  EXPECT_EQ(searcher.Parsed(), notOpen);
  EXPECT_EQ(searcher.SetProperty("Delimiter", "|"), notOpen);
  EXPECT_EQ(searcher.Property("PafLibVersion").status, 0);
  EXPECT_EQ(searcher.Property("Delimiter").status, PAF_AU_ERR_UNKNOWN_PROPERTY);
  EXPECT_EQ(searcher.Property("BSP:2000").status, PAF_AU_ERR_UNKNOWN_PROPERTY);
  EXPECT_EQ(searcher.Property("Barcode:30000001").status, 0);
  EXPECT_EQ(searcher->GetFindStatus(), PAF_AU_FIND_NONE);
  EXPECT_NE(searcher.Description(PAF_AU_ERR_NOT_OPEN), "");
}

TEST(Searcher, OutlivesAnEarlyClose)
{
  const DatabasePointer database = OpenSmall();
  arf_test::Searcher searcher(*database);
  database->Close();
  EXPECT_EQ(searcher.Lookup("1 George St Sydney").text, "30000001");
}

/** A database of one address with one attribute. */
std::string OneAddress(const test_support::TempDir& dir)
{
  return arf_test::BuildDatabaseFrom(
      dir, dir.Write("one.csv",
                     "dpid,number_first,street_name,street_type,locality,state,postcode,zone\n"
                     "70000001,9,WATTLE,ROAD,BELROSE,NSW,2085,north\n"));
}

TEST(Searcher, FollowsItsDatabaseToOtherFiles)
{
  const test_support::TempDir dir;
  const DatabasePointer database = OpenSmall();
  arf_test::Searcher searcher(*database);
  EXPECT_EQ(searcher.SetProperty("Delimiter", "|").status, 0);
  EXPECT_EQ(searcher.SetProperty("OutputFields", "DPID;mesh_block;zone").status, 0);
  EXPECT_EQ(searcher.Lookup("99 George St Sydney").status, PAF_AU_ERR_WRONG_NUMBER);

  database->Close();
  char error[255] = "";
  ASSERT_EQ(database->Open(OneAddress(dir).c_str(), 2, error, sizeof error), 0) << error;
  EXPECT_EQ(searcher.Description(PAF_AU_ERR_WRONG_NUMBER).find("George"), std::string::npos);
  EXPECT_EQ(searcher.Lookup("9 Wattle Rd Belrose").text, "70000001");
  EXPECT_NE(searcher.Lookup("1 George St Sydney").status, 0);
  EXPECT_EQ(searcher.Property("Delimiter").text, "|");
  EXPECT_NE(searcher.Property("OutputFields").text.find("DPID"), std::string::npos);
  EXPECT_EQ(searcher.Property("OutputFields").text.find("mesh_block"), std::string::npos);
}

TEST(Searcher, KeepsItsOutputFieldsOnFilesThatHaveThem)
{
  const test_support::TempDir dir;
  const DatabasePointer database = OpenSmall();
  arf_test::Searcher searcher(*database);
  EXPECT_EQ(searcher.SetProperty("OutputFields", "DPID;zone").status, 0);
  database->Close();
  char error[255] = "";
  ASSERT_EQ(database->Open(OneAddress(dir).c_str(), 2, error, sizeof error), 0) << error;
  EXPECT_EQ(searcher.Property("OutputFields").text, "DPID;zone");
  EXPECT_EQ(searcher.Get("\t\t\t\t\t\t\t70000001").text, "70000001\tnorth");
}

TEST(Searcher, GoesOnWithItsFilesWhenTheNewOnesCannotBeOpened)
{
  const test_support::TempDir dir;
  const DatabasePointer database = OpenSmall();
  arf_test::Searcher searcher(*database);
  database->Close();
  char error[255] = "";
  EXPECT_NE(database->Open(dir.Path("nothing").c_str(), 2, error, sizeof error), 0);
  database->Close();
  EXPECT_EQ(searcher.Lookup("1 George St Sydney").text, "30000001");
}

}  // namespace
