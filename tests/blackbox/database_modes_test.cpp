// The opening mode, and the country of a database whose name does not say it.
#include <gtest/gtest.h>

#include <climits>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

struct ModeRow
{
  int asked;
  const char* options;  // behind the configured path
  const char* openPaf;  // a configuration line; may be empty
  int expected;
};

void PrintTo(const ModeRow& row, std::ostream* out)
{
  *out << row.asked << " '" << row.options << "' '" << row.openPaf << "'";
}

class OpeningModeTest : public testing::TestWithParam<ModeRow>
{
 protected:
  Workspace workspace;
  CountryFakes fakes;
};

TEST_P(OpeningModeTest, ReachesThePlugin)
{
  workspace.Configure({std::string("ARF/AU/x=/p") + GetParam().options, GetParam().openPaf});
  for (int time = 1; time <= 2; ++time) {  // the second time from the remembered name
    fakes.ClearCalls();
    const int id = Open("AU.x", GetParam().asked);
    EXPECT_EQ(fakes.TheOpen().path, "/p");
    EXPECT_EQ(fakes.TheOpen().mode, GetParam().expected) << "time " << time;
    EXPECT_EQ(pafClosePafId(id), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Asked, OpeningModeTest,
                         testing::Values(ModeRow{1, ";OpenArf=Ram", "OpenPaf=Ram", 1},
                                         ModeRow{2, ";OpenArf=Map", "OpenPaf=Map", 2}, ModeRow{3, "", "OpenPaf=Ram", 3},
                                         ModeRow{4, ";OpenArf=Ram", "OpenPaf=Ram", 4},
                                         ModeRow{5, ";OpenArf=Ram", "OpenPaf=Ram", 1},
                                         ModeRow{-1, ";OpenArf=Ram", "", 1}, ModeRow{INT_MAX, "", "OpenPaf=Map", 1},
                                         ModeRow{INT_MIN, "", "OpenPaf=Map", 1}));

INSTANTIATE_TEST_SUITE_P(Option, OpeningModeTest,
                         testing::Values(ModeRow{0, ";OpenArf=Ram", "", 2}, ModeRow{0, ";OpenArf=Mem", "", 2},
                                         ModeRow{0, ";OpenArf=Map", "", 3}, ModeRow{0, ";OpenArf=Disk", "", 1},
                                         ModeRow{0, ";openarf=rAM", "", 2}, ModeRow{0, ";OPENARF=MEM;", "", 2},
                                         ModeRow{0, ";OpenArf=Ramp", "", 1}, ModeRow{0, ";OpenArf= Ram", "", 1},
                                         ModeRow{0, ";a=b;OpenArf=Map;c", "", 3},
                                         ModeRow{0, ";OpenArf=Disk", "OpenPaf=Ram", 1},
                                         ModeRow{0, ";OpenArf=Ram", "OpenPaf=Map", 2},
                                         ModeRow{0, ";xOpenArf=Ram", "", 1},
                                         ModeRow{0, ";OpenArf=Map;OpenArf=Ram", "", 3}));

INSTANTIATE_TEST_SUITE_P(OpenPaf, OpeningModeTest,
                         testing::Values(ModeRow{0, "", "", 1}, ModeRow{0, "", "OpenPaf=Ram", 2},
                                         ModeRow{0, "", "OpenPaf=Mem", 2}, ModeRow{0, "", "OpenPaf=Map", 3},
                                         ModeRow{0, "", "openpaf=MAP", 3}, ModeRow{0, "", "OpenPaf=Disk", 1},
                                         ModeRow{0, "", "OpenPaf=", 1}, ModeRow{0, "", "OpenPaf=2", 1},
                                         ModeRow{0, "", "OpenPaf=Ram ", 1}, ModeRow{0, "", "ARF/OpenPaf=Ram", 1},
                                         ModeRow{0, ";other", "OpenPaf=Ram", 2}));

TEST(OpeningModeOfOthers, ComesFromOpenPafToo)
{
  Workspace workspace;
  CountryFakes fakes;
  const std::string database = workspace.MakeDatabase("db", "DATABASENAME=UK\n");
  workspace.Configure({"OpenPaf=Map", "PafDir=@/db"});
  for (const std::string& name :
       {std::string("DLL:FakeOne;/p;OpenArf=Ram"), std::string("AU./p;OpenArf=Ram"), database, std::string()}) {
    fakes.ClearCalls();
    const int id = Open(name);
    EXPECT_EQ(fakes.TheOpen().mode, 3) << name;
    pafClosePafId(id);
  }
}

TEST(OpeningModeOfOthers, TheDefaultDatabaseIsOpenedByThreeFunctions)
{
  Workspace workspace;
  CountryFakes fakes;
  workspace.MakeDatabase("db", "DATABASENAME=NZ\n");
  workspace.Configure({"OpenPaf=Mem", "PafDir=@/db"});
  const std::string path = workspace.Root() + "/db";

  int id = 0;
  ASSERT_EQ(pafOpenPafId(&id), 0);
  EXPECT_EQ(fakes.TheOpen().library, "libqxarfnz.so");
  EXPECT_EQ(fakes.TheOpen().path, path);
  EXPECT_EQ(fakes.TheOpen().mode, 2);
  pafClosePafId(id);

  for (int mode = 0; mode <= 4; ++mode) {
    fakes.ClearCalls();
    ASSERT_EQ(pafOpenPafMemId(&id, mode), 0);
    EXPECT_EQ(fakes.TheOpen().mode, mode == 0 ? 2 : mode);
    pafClosePafId(id);
  }

  fakes.ClearCalls();
  id = pafOpenPafId2();
  EXPECT_EQ(id, 1);
  EXPECT_EQ(fakes.TheOpen().path, path);
  EXPECT_EQ(fakes.TheOpen().mode, 2);
  EXPECT_EQ(pafOpenArfId2(0, ""), 2);
  EXPECT_EQ(fakes["libqxarfnz.so"]->refCount(path.c_str()), 2) << "the empty name is the same database";
}

struct CountryRow
{
  std::string pafVer;
  const char* library;
};

void PrintTo(const CountryRow& row, std::ostream* out)
{
  *out << testing::PrintToString(row.pafVer.substr(0, 60));
}

class CountryOfDatabaseTest : public testing::TestWithParam<CountryRow>
{
};

TEST_P(CountryOfDatabaseTest, IsReadFromPafVer)
{
  Workspace workspace;
  CountryFakes fakes;
  const std::string database = workspace.MakeDatabase("db", GetParam().pafVer);
  workspace.Configure({"ARF/named=@/db"});
  for (const std::string& name : {database, database + "/", std::string("named")}) {
    fakes.ClearCalls();
    const int id = Open(name);
    EXPECT_EQ(fakes.TheOpen().library, GetParam().library) << name;
    EXPECT_EQ(fakes.TheOpen().path, name == "named" ? database : name);
    pafClosePafId(id);
  }
}

constexpr const char* kAu = "libqxarfau.so";
constexpr const char* kNz = "libqxarfnz.so";
constexpr const char* kUs = "libqxarfus.so";
constexpr const char* kUk = "libqxarfuk.so";

INSTANTIATE_TEST_SUITE_P(
    Names, CountryOfDatabaseTest,
    testing::Values(CountryRow{"DATABASENAME=NZ\n", kNz}, CountryRow{"DATABASENAME=NEWZEALAND\n", kNz},
                    CountryRow{"DATABASENAME=NEW ZEALAND\n", kNz}, CountryRow{"DATABASENAME=NZPAF 2020\n", kNz},
                    CountryRow{"DATABASENAME=UK\n", kUk}, CountryRow{"DATABASENAME=GB\n", kUk},
                    CountryRow{"DATABASENAME=GBR\n", kUk}, CountryRow{"DATABASENAME=UKRAINE\n", kUk},
                    CountryRow{"DATABASENAME=USA\n", kUs}, CountryRow{"DATABASENAME=US \n", kUs},
                    CountryRow{"DATABASENAME=US POSTAL\n", kUs}, CountryRow{"DATABASENAME=USAGE\n", kUs},
                    CountryRow{"DATABASENAME=AU\n", kAu}, CountryRow{"DATABASENAME=AUSTRALIA\n", kAu},
                    CountryRow{"DATABASENAME=US\n", kAu}, CountryRow{"DATABASENAME=USSR\n", kAu},
                    CountryRow{"DATABASENAME=NEW  ZEALAND\n", kAu}, CountryRow{"DATABASENAME= NZ\n", kAu},
                    CountryRow{"DATABASENAME=FRANCE\n", kAu}, CountryRow{"DATABASENAME=\n", kAu},
                    CountryRow{"DATABASENAME=INT\n", kAu}, CountryRow{"DATABASENAME=THE NZ ONE\n", kAu}));

INSTANTIATE_TEST_SUITE_P(
    Lines, CountryOfDatabaseTest,
    testing::Values(CountryRow{"", kAu}, CountryRow{"\n\n", kAu}, CountryRow{"VERSION=1\nDATE=2020\n", kAu},
                    CountryRow{"databasename=new zealand\n", kNz}, CountryRow{"DatabaseName=Usa\n", kUs},
                    CountryRow{"databasename=us \n", kUs}, CountryRow{"VERSION=1\nDATABASENAME=NZ\nMORE=2\n", kNz},
                    CountryRow{"DATABASENAME=UK", kUk}, CountryRow{"DATABASENAME=NZ\r\n", kNz},
                    CountryRow{"DATABASENAME=US\r\n", kAu}, CountryRow{"DATABASENAME=UK\nDATABASENAME=NZ\n", kUk},
                    CountryRow{"DATABASENAME=XX\nDATABASENAME=NZ\n", kAu}, CountryRow{" DATABASENAME=NZ\n", kAu},
                    CountryRow{"XDATABASENAME=NZ\n", kAu}, CountryRow{"DATABASENAME =NZ\n", kAu},
                    CountryRow{"DATABASENAME NZ\n", kAu},
                    CountryRow{std::string(300, 'x') + "\nDATABASENAME=NZ\n", kNz},
                    CountryRow{std::string(255, 'x') + "DATABASENAME=NZ\n", kNz},
                    CountryRow{std::string(254, 'x') + "DATABASENAME=NZ\n", kAu},
                    CountryRow{std::string(256, 'x') + "DATABASENAME=NZ\n", kAu}));

TEST(MissingPafVer, FailsWithItsFullPathInTheDescription)
{
  Workspace workspace;
  CountryFakes fakes;
  const std::string database = workspace.MakeDirectory("db");
  workspace.Configure({"ARF/named=@/db", "ArfBaseDir=@"});
  const std::string expected = "ERR_QXARF_OPEN_FILE. " + database + "/PAF.ver";
  for (const std::string& name : {database, database + "/", std::string("named"), std::string("db/")}) {
    EXPECT_EQ(pafOpenArfId2(0, name.c_str()), -PAF_ERR_OPEN_FILE) << name;
    EXPECT_EQ(Describe(PAF_ERR_OPEN_FILE), expected) << name;
    EXPECT_EQ(Describe(PAF_ERR_OPEN_FILE), "ERR_QXARF_OPEN_FILE");
  }
  EXPECT_EQ(fakes.TheOpen().library, "");
  workspace.WriteFile("db/PAF.ver", "DATABASENAME=NZ\n");
  EXPECT_EQ(pafOpenArfId2(0, "named"), 1) << "and works once the file is there";
}

TEST(MissingPafVer, CutsALongPathTo254Characters)
{
  Workspace workspace{std::vector<std::string>{}};
  for (size_t length : {245u, 246u, 247u, 300u, 2000u}) {
    std::string path(length, 'p');
    path[0] = '/';
    const std::string full = path + "/PAF.ver";
    EXPECT_EQ(pafOpenArfId2(0, path.c_str()), -PAF_ERR_OPEN_FILE);
    EXPECT_EQ(Describe(PAF_ERR_OPEN_FILE), "ERR_QXARF_OPEN_FILE. " + full.substr(0, 254)) << length;
  }
}

TEST(MissingPafVer, IsNotNeededWhenTheNameSaysTheCountry)
{
  Workspace workspace;
  CountryFakes fakes;
  workspace.MakeDatabase("db", "DATABASENAME=NZ\n");
  workspace.Configure({"ARF/UK/named=@/db", "ARF/AU/empty=@/nothing"});
  EXPECT_EQ(pafOpenArfId2(0, "UK.named"), 1);
  EXPECT_EQ(fakes.TheOpen().library, "libqxarfuk.so") << "the name wins";
  EXPECT_EQ(pafOpenArfId2(0, "AU.empty"), 2);
}

}  // namespace
}  // namespace blackbox
