// The default database and the calling thread's default instance: opening, closing, properties.
#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <thread>

#include "blackbox/support/default_database.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

class DefaultInstanceTest : public DefaultDatabaseTest
{
 protected:
  void ExpectClosed()
  {
    EXPECT_EQ(au->refCount(path.c_str()), -1);
    EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
    EXPECT_EQ(au->counter(kFakeLiveSearchers), 0);
    EXPECT_EQ(Property(0, "ClientCount"), "0");
    char out[255];
    EXPECT_EQ(pafGetAddress("q", out), PAF_ERR_NOT_OPEN);
  }
};

TEST_F(DefaultInstanceTest, OpeningOpensTheDatabaseAndNothingElse)
{
  EXPECT_EQ(pafOpenPaf(), 0);
  EXPECT_EQ(au.Sequence(), "GetDb DbOpen ");
  EXPECT_EQ(au.Last(kFakeDbOpen).arguments.at(0), path);
  EXPECT_EQ(au->refCount(path.c_str()), 1);
  EXPECT_EQ(Property(0, "ClientCount"), "0");
  EXPECT_EQ(Property(0, "OpenArfPaths"), "") << "it is not among the databases of the instances";
}

TEST_F(DefaultInstanceTest, ClosingReleasesTheInstanceAndClosesTheDatabase)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  ASSERT_EQ(pafGet_FindStatus(), 0);
  EXPECT_TRUE(au.Last(kFakeGetSearcher).arguments.at(0).Is(au.Last(kFakeDbOpen).object));
  EXPECT_EQ(Property(0, "OpenArfs"), ";") << "it is an instance without a name";
  au->clearCalls();
  EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(au.Sequence(), "Release DbClose DbRelease ");
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, OpensAndClosesAgainAndAgain)
{
  for (int time = 0; time < 5; ++time) {
    ASSERT_EQ(pafOpenPaf(), 0);
    ASSERT_EQ(pafGet_FindStatus(), 0);
    EXPECT_EQ(Property(1, "CountryCode"), "AU") << "the Id is used again";
    ASSERT_EQ(pafClosePaf(), 0);
    ExpectClosed();
  }
}

TEST_F(DefaultInstanceTest, EachOpenNeedsItsClose)
{
  for (int time = 0; time < 3; ++time) ASSERT_EQ(pafOpenPafMem(time), 0);
  EXPECT_EQ(au->counter(kFakeOpens), 1);
  EXPECT_EQ(au->refCount(path.c_str()), 3);
  for (int left = 2; left >= 1; --left) {
    ASSERT_EQ(pafGet_FindStatus(), 0);
    EXPECT_EQ(pafClosePaf(), 0);
    EXPECT_EQ(au->refCount(path.c_str()), left);
    EXPECT_EQ(Property(0, "ClientCount"), "0") << "the thread's instance goes with every close";
  }
  EXPECT_EQ(pafClosePaf(), 0);
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, ClosingWhatIsNotOpenIsNoError)
{
  for (int time = 0; time < 3; ++time) EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(au.Sequence(), "");
  ASSERT_EQ(pafOpenPaf(), 0);
  EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(pafClosePaf(), 0);
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, ClosingForgetsTheLastError)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  au.Answer(kFakeSetGeographicalCodes, 12, "bad code");
  const int id = Open("AU.one");
  ASSERT_EQ(pafSetGeographicalCodesId(id, "x"), 12);
  EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(Describe(12), "");
}

TEST_F(DefaultInstanceTest, TheModeIsTheCallersOrTheConfiguredOne)
{
  const struct
  {
    const char* openPaf;
    int mode;
    int expected;
  } kRows[] = {{"", 0, 1},    {"Ram", 0, 2},    {"mem", 0, 2},   {"MAP", 0, 3}, {"Disk", 0, 1},
               {"Ram", 1, 1}, {"Ram", 3, 3},    {"Map", 4, 4},   {"Map", 5, 1}, {"Map", -1, 1},
               {"", 2, 2},    {"", INT_MAX, 1}, {"", INT_MIN, 1}};
  for (const auto& row : kRows) {
    workspace.Configure({"PafDir=@/paf", std::string("OpenPaf=") + row.openPaf});
    ASSERT_EQ(pafOpenPafMem(row.mode), 0);
    EXPECT_EQ(au.Last(kFakeDbOpen).arguments.at(1), row.expected) << row.openPaf << " " << row.mode;
    ASSERT_EQ(pafClosePaf(), 0);
  }
  workspace.Configure({"PafDir=@/paf", "OpenPaf=Map"});
  ASSERT_EQ(pafOpenPaf(), 0);
  EXPECT_EQ(au.Last(kFakeDbOpen).arguments.at(1), 3);
}

/** A default database that cannot be opened, and the description of the failure. */
struct Unopened
{
  const char* name;
  const char* line;
  const char* pafVer;
  int status;
  const char* description;
};

class UnopenedTest : public DefaultInstanceTest, public testing::WithParamInterface<Unopened>
{
};

TEST_P(UnopenedTest, IsRefusedAndLeavesNothing)
{
  workspace.Configure({GetParam().line});
  if (GetParam().pafVer != nullptr) workspace.MakeDatabase("paf", GetParam().pafVer);
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(pafOpenPaf(), GetParam().status);
    EXPECT_EQ(Describe(GetParam().status), Expand(GetParam().description, workspace));
    EXPECT_EQ(pafOpenPafMem(2), GetParam().status);
    Describe(GetParam().status);
    ExpectClosed();
  }
  workspace.Configure({"PafDir=@/good"});
  path = workspace.MakeDatabase("good", "DATABASENAME=AU\n");
}

INSTANTIATE_TEST_SUITE_P(Ways, UnopenedTest,
                         testing::Values(Unopened{"NotConfigured", "x=y", nullptr, PAF_ERR_NOT_CONFIGURED,
                                                  "ARF not installed"},
                                         Unopened{"NamesALibrary", "PafDir=DLL:FakeOne;/p", nullptr,
                                                  PAF_ERR_DEFAULT_NOT_AU, "ERR_QXARF_DEFAULT_ARF_NOT_AU"},
                                         Unopened{"OfAnotherCountry", "PafDir=@/paf", "DATABASENAME=NZ\n",
                                                  PAF_ERR_DEFAULT_NOT_AU, "ERR_QXARF_DEFAULT_ARF_NOT_AU"},
                                         Unopened{"WithoutPafVer", "PafDir=@/lost", nullptr, PAF_ERR_OPEN_FILE,
                                                  "ERR_QXARF_OPEN_FILE. @/lost/PAF.ver"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(DefaultInstanceTest, WithoutAConfigurationFileNothingOpens)
{
  workspace.RemoveConfiguration();
  if (std::filesystem::exists("/usr/etc/.morvex")) GTEST_SKIP() << "this machine has a configuration file of its own";
  EXPECT_EQ(pafOpenPaf(), PAF_ERR_CONFIGURATION);
  EXPECT_EQ(Describe(PAF_ERR_CONFIGURATION), "Cannot open registry or configuration file");
}

TEST_F(DefaultInstanceTest, APluginsRefusalIsPassedOnWithItsWords)
{
  au.Answer(kFakeDbOpen, 77, "the file is locked");
  EXPECT_EQ(pafOpenPaf(), 77);
  EXPECT_EQ(au.Sequence(), "GetDb DbOpen DbClose DbRelease ");
  EXPECT_EQ(Describe(77), "the file is locked");
  EXPECT_EQ(Describe(77), "");
  au.Behave(kFakeDbOpen, kFakeFill, 77);
  EXPECT_EQ(pafOpenPaf(), 77);
  const std::string words = Describe(77);
  EXPECT_TRUE(words == std::string(254, 'x') || words == std::string(255, 'x')) << words;
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, ARefusalWithoutWordsIsNotRemembered)
{
  const int id = Open("AU.one");
  au.Answer(kFakeGetParsedInput, 12);
  char out[8];
  ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), 12);
  au.Answer(kFakeDbOpen, 77);
  EXPECT_EQ(pafOpenPaf(), 77);
  EXPECT_EQ(Describe(12), "fake text for 12");
  au.Behave(kFakeGetDb, kFakeAnswerNull);
  EXPECT_EQ(pafOpenPaf(), PAF_ERR_PLUGIN_MEMORY);
}

TEST_F(DefaultInstanceTest, NotBeingOpenIsNotRemembered)
{
  const int id = Open("AU.one");
  au.Answer(kFakeGetParsedInput, 12);
  char out[255];
  ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), 12);
  EXPECT_EQ(pafGetAddress("q", out), PAF_ERR_NOT_OPEN);
  EXPECT_EQ(Describe(12), "fake text for 12");
}

TEST_F(DefaultInstanceTest, TheDefaultDatabaseIsNotSharedWithInstancesOfTheSamePath)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  const int id = Open("AU." + path);
  EXPECT_EQ(au->counter(kFakeOpens), 2);
  EXPECT_EQ(Property(0, "OpenArfPaths"), path);
  ASSERT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(pafGet_FindStatus(), 0);
  ASSERT_EQ(pafClosePaf(), 0);
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, ForceCloseAllLeavesTheDefaultDatabaseOpen)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  ASSERT_EQ(pafGet_FindStatus(), 0);
  ASSERT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(au->counter(kFakeLiveSearchers), 0);
  EXPECT_EQ(au->refCount(path.c_str()), 1);
  EXPECT_EQ(pafGet_FindStatus(), -1);
  EXPECT_EQ(pafClosePaf(), 0);
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, ClosingTheIdByHandClosesNoDatabase)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  ASSERT_EQ(pafGet_FindStatus(), 0);
  au->clearCalls();
  EXPECT_EQ(pafClosePafId(1), 0);
  EXPECT_EQ(au.Sequence(), "GetArfDb Release ");
  EXPECT_EQ(pafClosePaf(), 0) << "the thread's instance is gone already";
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, AnInstanceThatIsBusyElsewhereIsLeftAlone)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  ASSERT_EQ(pafOpenPaf(), 0);
  ASSERT_EQ(pafGet_FindStatus(), 0);
  {
    BusyInstance busy(au, 1);
    EXPECT_EQ(pafClosePaf(), 0);
    EXPECT_EQ(au->counter(kFakeSearcherReleases), 0);
    EXPECT_EQ(Property(0, "ClientCount"), "1");
    EXPECT_EQ(busy.Finish(), 0);
  }
  EXPECT_EQ(au->refCount(path.c_str()), 1) << "the database lost its reference all the same";
  EXPECT_EQ(pafGet_FindStatus(), 0);
  EXPECT_EQ(Property(0, "ClientCount"), "2") << "the thread has a new instance";
  EXPECT_EQ(pafClosePafId(1), 0);
  EXPECT_EQ(pafClosePaf(), 0);
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, ASearcherThatThrowsWhenReleasedIsGoneAllTheSame)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  ASSERT_EQ(pafGet_FindStatus(), 0);
  au.Behave(kFakeRelease, kFakeThrowError);
  std::thread([] { EXPECT_EQ(pafGet_FindStatus(), 0); }).join();
  EXPECT_EQ(Property(0, "ClientCount"), "1") << "the thread's instance went with it";
  EXPECT_EQ(pafClosePaf(), 0);
  au->clearAnswer(kFakeRelease);
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, MovesToAnotherDatabaseLikeAnyInstance)
{
  Fake nz("libqxarfnz.so");
  ASSERT_EQ(pafOpenPaf(), 0);
  EXPECT_EQ(pafSetProperties("openarf", ""), 0) << "an instance on the default database has the empty name";
  EXPECT_EQ(au.Sequence(), "GetDb DbOpen GetSearcher ");
  au->clearCalls();
  EXPECT_EQ(pafSetProperties("OpenARF", "NZ.other"), 0);
  EXPECT_EQ(au.Sequence(), "GetArfDb Release ");
  EXPECT_EQ(nz.Sequence(), "GetDb DbOpen GetSearcher ");
  EXPECT_EQ(ReadDefault("OpenARF"), (Answer{0, "NZ.other"}));
  EXPECT_EQ(ReadDefault("CountryCode"), (Answer{0, "NZ"}));
  EXPECT_EQ(au->refCount(path.c_str()), 1);
  EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(nz->counter(kFakeLiveSearchers), 0);
  EXPECT_EQ(nz->refCount("/nz"), 1) << "closing lets go of the default database only";
  ExpectClosed();
}

TEST_F(DefaultInstanceTest, PropertiesAreReadBeforeAnythingIsOpen)
{
  EXPECT_EQ(ReadDefault("ClientCount"), (Answer{0, "0"}));
  EXPECT_EQ(ReadDefault("ArfLibVersion"), (Answer{0, "5.10.246.2"}));
  EXPECT_EQ(ReadDefault("ARFs"), (Answer{0, "AU.one;NZ.other"}));
  EXPECT_EQ(ReadDefault("PropertyName12"), (Answer{0, "OutputFields"}));
  EXPECT_EQ(ReadDefault("OpenARF", 1), (Answer{0, ""}));
  EXPECT_EQ(ReadDefault("CountryCode", 1), (Answer{0, ""}));
  au.Answer(kFakeGetOtherProperties, 0, "1.2.3");
  EXPECT_EQ(ReadDefault("PafLibVersion"), (Answer{0, "1.2.3"}));
  au.Answer(kFakeGetOtherProperties, 12, "");
  EXPECT_EQ(ReadDefault("PafLibVersion").status, 12);
  EXPECT_EQ(ReadDefault("ClientCount"), (Answer{0, "0"})) << "reading opens no instance";
}

TEST_F(DefaultInstanceTest, PropertiesGoToTheInstanceOnceThereIsOne)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  au.Answer(kFakeGetOtherProperties, 0, "from the plug-in");
  au.Answer(kFakeGetProperties, 0, "from the searcher");
  EXPECT_EQ(ReadDefault("PafLibVersion"), (Answer{0, "from the plug-in"}));
  EXPECT_EQ(pafSetProperties("Delimiter", "|"), 0);
  EXPECT_EQ(au.Last(kFakeSetProperties).arguments.at(0), "Delimiter");
  EXPECT_EQ(au.Last(kFakeSetProperties).arguments.at(1), "|");
  EXPECT_EQ(ReadDefault("PafLibVersion"), (Answer{0, "from the searcher"}));
  EXPECT_EQ(ReadDefault("CountryCode"), (Answer{0, "AU"}));
  EXPECT_EQ(ReadDefault("ClientCount"), (Answer{0, "1"}));
  au.Answer(kFakeSetProperties, 12, "not this");
  EXPECT_EQ(pafSetProperties("Delimiter", "|"), 12);
  EXPECT_EQ(Describe(12), "not this");
}

TEST_F(DefaultInstanceTest, SettingThatConcernsTheProcessNeedsNoInstance)
{
  for (const std::string& name : Spellings("UseSockets")) EXPECT_EQ(pafSetProperties(name.c_str(), "False"), 0);
  for (const std::string& name : Spellings("TcpHost")) EXPECT_EQ(pafSetProperties(name.c_str(), name.c_str()), 0);
  for (const std::string& name : Spellings("TcpPort")) EXPECT_EQ(pafSetProperties(name.c_str(), "4711"), 0);
  EXPECT_EQ(ReadDefault("TcpHost"), (Answer{0, Spellings("TcpHost").back()}));
  EXPECT_EQ(ReadDefault("TcpPort"), (Answer{0, "4711"}));
  EXPECT_EQ(pafSetProperties("Delimiter", "|"), PAF_ERR_NOT_OPEN);
  EXPECT_EQ(pafSetProperties("OpenARF", "AU.one"), PAF_ERR_NOT_OPEN);
  EXPECT_EQ(pafSetProperties(nullptr, nullptr), PAF_ERR_NOT_OPEN);
  ASSERT_EQ(pafOpenPaf(), 0);
  for (const char* name : {"UseSockets", "TcpHost", "TcpPort"}) EXPECT_EQ(pafSetProperties(name, nullptr), 0);
  EXPECT_EQ(Property(0, "ClientCount"), "0");
  EXPECT_EQ(ReadDefault("TcpHost", 1), (Answer{0, ""}));
}

}  // namespace
}  // namespace blackbox
