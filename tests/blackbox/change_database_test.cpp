// Moving an open instance to another database with the property "OpenARF".
#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <thread>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"
#include "support/random_seed.h"

namespace blackbox {
namespace {

class ChangeDatabaseTest : public testing::Test
{
 protected:
  void SetUp() override
  {
    id = Open("AU.one");
    ClearCalls();
  }

  int Change(const std::string& name) const { return pafSetPropertiesId(id, "OpenARF", name.c_str()); }
  void ClearCalls() { fakes.ClearCalls(); }
  Fake& Au() { return fakes["libqxarfau.so"]; }
  Fake& Nz() { return fakes["libqxarfnz.so"]; }

  /** The instance works on the database that it was opened on. */
  void ExpectUnchanged()
  {
    ExpectWorks();
    EXPECT_EQ(Property(id, "CountryCode"), "AU");
    EXPECT_EQ(Au()->refCount("/one"), 1);
    EXPECT_EQ(fakes.Counter(kFakeSearcherReleases), 0);
  }

  /** The first instance is served. */
  void ExpectWorks()
  {
    EXPECT_EQ(pafGetFindStatusId(id), 0);
    EXPECT_EQ(Property(id, "OpenARF"), "AU.one");
  }

  /** The instance has its Id and nothing else. */
  void ExpectWithoutSearcher()
  {
    char out[8];
    EXPECT_EQ(pafGetAddressId(id, "q", out, sizeof out), PAF_ERR_NO_SEARCHER);
    EXPECT_EQ(pafGetFindStatusId(id), -1);
    EXPECT_EQ(Property(id, "OpenARF"), "");
    EXPECT_EQ(Property(0, "OpenArfs"), ";");
    EXPECT_EQ(Property(0, "ClientCount"), "1");
    EXPECT_EQ(Change("AU.two"), PAF_ERR_NO_SEARCHER);
    EXPECT_EQ(Change(""), PAF_ERR_NO_SEARCHER);
    EXPECT_EQ(pafClosePafId(id), PAF_ERR_NO_SEARCHER);
    EXPECT_EQ(Open("AU.two"), id + 1) << "the Id stays allocated";
  }

  Workspace workspace{{"ARF/AU/one=/one", "ARF/AU/same=/one", "ARF/AU/two=/two", "ARF/AU/mem=/mem;OPENARF=Mem",
                       "ARF/NZ/other=/nz", "PafDir=@/paf", "ARF/lost=@/lost"}};
  CountryFakes fakes;
  int id = 0;
};

TEST_F(ChangeDatabaseTest, TheOldDatabaseIsLetGoOnceTheNewOneIsOpen)
{
  const void* searcher = (pafGetFindStatusId(id), Au().Last(kFakeGetFindStatus).object);
  ClearCalls();
  EXPECT_EQ(Change("AU.two"), 0);
  EXPECT_EQ(Au().Sequence(), "GetDb DbOpen GetArfDb Release DbClose DbRelease GetSearcher ");
  EXPECT_EQ(Au().Last(kFakeRelease).object, searcher);
  EXPECT_TRUE(Au().Last(kFakeGetSearcher).arguments.at(0).Is(Au().Last(kFakeDbOpen).object));
  EXPECT_EQ(Au()->refCount("/two"), 1);
  EXPECT_EQ(Au()->refCount("/one"), -1);
  EXPECT_EQ(Property(id, "OpenARF"), "AU.two");
  EXPECT_EQ(Property(0, "OpenArfs"), "AU.two;");
  EXPECT_EQ(Property(0, "OpenArfPaths"), "/two");
  EXPECT_EQ(pafGetFindStatusId(id), 0);
  EXPECT_NE(Au().Last(kFakeGetFindStatus).object, searcher);
  EXPECT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
  EXPECT_EQ(fakes.Counter(kFakeLiveSearchers), 0);
}

TEST_F(ChangeDatabaseTest, TheNameOfThePropertyMayBeWrittenInAnyCase)
{
  const char* const kNames[] = {"AU.two", "AU.one", "AU.two", "AU.one"};
  const std::vector<std::string> spellings = Spellings("OpenARF");
  for (size_t i = 0; i < spellings.size(); ++i) {
    EXPECT_EQ(pafSetPropertiesId(id, spellings[i].c_str(), kNames[i]), 0);
    EXPECT_EQ(Property(id, "OpenARF"), kNames[i]);
  }
  EXPECT_EQ(fakes.Counter(kFakeOpens), 5);
  EXPECT_EQ(Au().Count(kFakeSetProperties), 0u);
}

TEST_F(ChangeDatabaseTest, GoesToAnotherPlugin)
{
  EXPECT_EQ(Change("NZ.other"), 0);
  EXPECT_EQ(Nz().Sequence(), "GetDb DbOpen GetSearcher ");
  EXPECT_EQ(Au().Sequence(), "GetArfDb Release DbClose DbRelease ");
  EXPECT_EQ(Property(id, "CountryCode"), "NZ");
  EXPECT_EQ(Change("DLL:FakeTwo;/p"), 0);
  EXPECT_EQ(Property(id, "CountryCode"), "XX");
  EXPECT_EQ(Property(id, "OpenARF"), "DLL:FakeTwo;/p");
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 1);
}

TEST_F(ChangeDatabaseTest, TheSameNameChangesNothing)
{
  EXPECT_EQ(Change("AU.one"), 0);
  EXPECT_EQ(Au().Sequence(), "");
  Au().Answer(kFakeDbOpen, 77);
  workspace.RemoveConfiguration();
  EXPECT_EQ(Change("AU.one"), 0) << "the name is not even resolved";
  ExpectUnchanged();
}

TEST_F(ChangeDatabaseTest, AnotherSpellingOfTheNameIsAnotherName)
{
  for (const char* name : {"au.ONE", "AU.same", "AU./one"}) {
    ClearCalls();
    EXPECT_EQ(Change(name), 0) << name;
    EXPECT_EQ(Au().Sequence(), "GetArfDb Release GetSearcher ") << "the database is shared with itself";
    EXPECT_EQ(Property(id, "OpenARF"), name);
    EXPECT_EQ(Au()->refCount("/one"), 1) << name;
  }
  EXPECT_EQ(fakes.Counter(kFakeOpens), 1);
}

TEST_F(ChangeDatabaseTest, OtherUsersKeepTheOldDatabaseOpen)
{
  const int other = Open("AU.one");
  const int third = Open("AU.two");
  ASSERT_EQ(Au()->refCount("/one"), 2);
  ClearCalls();
  EXPECT_EQ(Change("AU.two"), 0);
  EXPECT_EQ(Au().Sequence(), "GetArfDb Release GetSearcher ");
  EXPECT_EQ(Au()->refCount("/one"), 1);
  EXPECT_EQ(Au()->refCount("/two"), 2);
  EXPECT_EQ(Property(0, "OpenArfs"), "AU.two;AU.one;AU.two;");
  for (int each : {other, third, id}) EXPECT_EQ(pafClosePafId(each), 0);
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
}

TEST_F(ChangeDatabaseTest, TheModeIsTheConfiguredOne)
{
  const struct
  {
    const char* openPaf;
    const char* name;
    int mode;
  } kRows[] = {{"Ram", "AU.two", 2}, {"Map", "AU.one", 3}, {"Disk", "AU.two", 1}, {"Map", "AU.mem", 2}};
  for (const auto& row : kRows) {
    workspace.Configure(
        {"ARF/AU/one=/one", "ARF/AU/two=/two", "ARF/AU/mem=/mem;OPENARF=Mem", std::string("OpenPaf=") + row.openPaf});
    ASSERT_EQ(Change(row.name), 0);
    EXPECT_EQ(Au().Last(kFakeDbOpen).arguments.at(1), row.mode) << row.openPaf << " " << row.name;
  }
}

TEST_F(ChangeDatabaseTest, TheEmptyNameIsTheDefaultDatabase)
{
  workspace.MakeDatabase("paf", "DATABASENAME=NZ\n");
  EXPECT_EQ(Change(""), 0);
  EXPECT_EQ(Property(id, "OpenARF"), "");
  EXPECT_EQ(Property(0, "OpenArfPaths"), workspace.Root() + "/paf");
  EXPECT_EQ(Property(id, "CountryCode"), "NZ");
  ClearCalls();
  EXPECT_EQ(pafSetPropertiesId(id, "OpenARF", nullptr), 0) << "null is the empty name";
  EXPECT_EQ(Nz().Sequence(), "");
}

/** A name that cannot be opened, and what is remembered about it. */
struct Refused
{
  const char* name;
  int status;
};

TEST_F(ChangeDatabaseTest, ANameThatCannotBeOpenedLeavesEverythingAsItIs)
{
  for (const Refused& refused :
       {Refused{"AU.nowhere", PAF_ERR_NOT_CONFIGURED}, Refused{"abcd.x", PAF_ERR_UNKNOWN_COUNTRY},
        Refused{"DLL:FakeNowhere", PAF_ERR_LIBRARY_NOT_LOADED}, Refused{"lost", PAF_ERR_OPEN_FILE},
        Refused{"", PAF_ERR_OPEN_FILE}}) {
    ClearCalls();
    EXPECT_EQ(Change(refused.name), refused.status) << refused.name;
    EXPECT_EQ(Au().Sequence(), "") << "nothing is asked of the old database: " << refused.name;
    ExpectUnchanged();
  }
}

TEST_F(ChangeDatabaseTest, APluginsRefusalLeavesEverythingAsItIs)
{
  Nz().Answer(kFakeDbOpen, 77, "the file is locked");
  EXPECT_EQ(Change("NZ.other"), 77);
  EXPECT_EQ(Nz().Sequence(), "GetDb DbOpen DbClose DbRelease ");
  EXPECT_EQ(Au().Sequence(), "");
  EXPECT_EQ(Describe(77), "the file is locked");
  EXPECT_EQ(Describe(77), "");
  Nz().Answer(kFakeDbOpen, 78);
  EXPECT_EQ(Change("NZ.other"), 78);
  EXPECT_EQ(Describe(78), "fake text for 78") << "without words the instance's searcher is asked";
  Nz().Behave(kFakeGetDb, kFakeAnswerNull);
  EXPECT_EQ(Change("NZ.other"), PAF_ERR_PLUGIN_MEMORY);
  ExpectUnchanged();
  EXPECT_EQ(Nz()->counter(kFakeLiveDbs), 0);
}

TEST_F(ChangeDatabaseTest, AFailureToOpenBelongsToTheInstance)
{
  Au().Answer(kFakeGetParsedInput, 12);
  char out[8];
  ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), 12);
  EXPECT_EQ(Change("AU.nowhere"), PAF_ERR_NOT_CONFIGURED);
  EXPECT_EQ(Describe(12), "") << "it took the place of the earlier failure";
  EXPECT_EQ(Change("lost"), PAF_ERR_OPEN_FILE);
  EXPECT_EQ(Describe(PAF_ERR_OPEN_FILE), "ERR_QXARF_OPEN_FILE") << "so that the library's own text stands alone";
  EXPECT_EQ(Change("DLL:FakeNowhere"), PAF_ERR_LIBRARY_NOT_LOADED);
  EXPECT_NE(Describe(PAF_ERR_LIBRARY_NOT_LOADED).find("libfakenowhere.so"), std::string::npos);
}

TEST_F(ChangeDatabaseTest, ANewDatabaseWithoutASearcherLeavesTheInstanceWithout)
{
  Nz().Behave(kFakeGetSearcher, kFakeAnswerNull);
  EXPECT_EQ(Change("NZ.other"), PAF_ERR_OUT_OF_MEMORY);
  EXPECT_EQ(Au().Sequence(), "GetArfDb Release DbClose DbRelease ");
  EXPECT_EQ(Nz().Sequence(), "GetDb DbOpen GetSearcher DbClose DbRelease ");
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
  EXPECT_EQ(fakes.Counter(kFakeLiveSearchers), 0);
  ExpectWithoutSearcher();
}

TEST_F(ChangeDatabaseTest, FailingOnASharedDatabaseDropsOnlyItsOwnReference)
{
  const int other = Open("NZ.other");
  Nz().Behave(kFakeGetSearcher, kFakeAnswerNull);
  EXPECT_EQ(Change("NZ.other"), PAF_ERR_OUT_OF_MEMORY);
  EXPECT_EQ(Nz()->refCount("/nz"), 1);
  EXPECT_EQ(pafGetFindStatusId(other), 0);
  EXPECT_EQ(Property(0, "OpenArfs"), ";NZ.other;");
  EXPECT_EQ(pafClosePafId(other), 0);
  EXPECT_EQ(Nz()->counter(kFakeLiveDbs), 0);
}

TEST_F(ChangeDatabaseTest, FailingOnTheDatabaseItIsOnClosesIt)
{
  Au().Behave(kFakeGetSearcher, kFakeAnswerNull);
  EXPECT_EQ(Change("AU.same"), PAF_ERR_OUT_OF_MEMORY);
  EXPECT_EQ(Au().Sequence(), "GetArfDb Release GetSearcher DbClose DbRelease ");
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
}

TEST_F(ChangeDatabaseTest, AFailureToGiveASearcherIsNotRemembered)
{
  Au().Answer(kFakeGetParsedInput, 12, "");
  char out[8];
  const int other = Open("AU.two");
  ASSERT_EQ(pafGetParsedInputId(other, out, sizeof out), 12);
  Nz().Behave(kFakeGetSearcher, kFakeAnswerNull);
  EXPECT_EQ(Change("NZ.other"), PAF_ERR_OUT_OF_MEMORY);
  EXPECT_EQ(Describe(12), "fake text for 12");
}

TEST_F(ChangeDatabaseTest, ASearcherThatKnowsNoDatabaseIsReleasedAllTheSame)
{
  Au().Behave(kFakeGetArfDb, kFakeAnswerNull);
  EXPECT_EQ(Change("NZ.other"), 0);
  EXPECT_EQ(Au().Sequence(), "GetArfDb Release ");
  EXPECT_EQ(Au()->refCount("/one"), 1) << "nothing says which database to let go";
  EXPECT_EQ(Property(id, "CountryCode"), "NZ");
}

TEST_F(ChangeDatabaseTest, APluginThatThrowsCostsNoReference)
{
  for (FakeOperation operation : {kFakeGetDb, kFakeDbOpen}) {
    Nz().Behave(operation, kFakeThrowError);
    EXPECT_EQ(Change("NZ.other"), PAF_ERR_PLUGIN_SYSTEM);
    Nz()->clearAnswer(operation);
    ExpectUnchanged();
  }
  Nz().Behave(kFakeGetSearcher, kFakeThrowBadAlloc);
  EXPECT_EQ(Change("NZ.other"), PAF_ERR_OUT_OF_MEMORY);
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
  ExpectWithoutSearcher();
}

TEST_F(ChangeDatabaseTest, AThrowWhileTheOldDatabaseGoesCostsNoReference)
{
  for (FakeOperation operation : {kFakeRelease, kFakeDbClose, kFakeDbRelease}) {
    SCOPED_TRACE(Au()->operationName(operation));
    const int instance = Open("AU.two");
    Au().Behave(operation, kFakeThrowError);
    EXPECT_EQ(pafSetPropertiesId(instance, "OpenARF", "NZ.other"), PAF_ERR_PLUGIN_SYSTEM);
    Au()->clearAnswer(operation);
    EXPECT_EQ(Au()->refCount("/two"), -1);
    EXPECT_EQ(Nz()->refCount("/nz"), -1);
    EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 1);
    EXPECT_EQ(fakes.Counter(kFakeLiveSearchers), 1);
    EXPECT_EQ(pafGetFindStatusId(instance), -1);
    EXPECT_EQ(pafClosePafId(instance), PAF_ERR_NO_SEARCHER);
  }
  ExpectWorks();
}

TEST_F(ChangeDatabaseTest, IsBusyWhileItChanges)
{
  Nz()->block(kFakeDbOpen);
  std::thread changer([this] { EXPECT_EQ(Change("NZ.other"), 0); });
  ASSERT_GT(Nz()->waitUntilBlocked(kFakeDbOpen, 10000), 0);
  EXPECT_EQ(Change("AU.two"), PAF_ERR_ID_IN_USE);
  EXPECT_EQ(Change("AU.one"), PAF_ERR_ID_IN_USE);
  EXPECT_EQ(pafGetFindStatusId(id), -1);
  EXPECT_EQ(pafClosePafId(id), PAF_ERR_ID_IN_USE);
  EXPECT_EQ(Property(0, "OpenArfs"), "AU.one;") << "the table is not locked meanwhile";
  Nz()->unblock(kFakeDbOpen);
  changer.join();
  EXPECT_EQ(Property(0, "OpenArfs"), "NZ.other;");
}

/** Three instances and, beside them, what should be known about each: its name, or that it has no searcher. */
TEST_F(ChangeDatabaseTest, ARandomWalkLosesNoReference)
{
  std::mt19937 random(test_support::RandomSeed());
  static const char* const kNames[] = {"AU.one", "AU.same",       "AU.two",     "AU.mem", "NZ.other",
                                       "au.ONE", "DLL:FakeOne;/", "AU.nowhere", "abcd.x", "lost"};
  constexpr size_t kGood = 7;
  std::vector<std::pair<int, std::string>> instances = {
      {id, "AU.one"}, {Open("AU.two"), "AU.two"}, {Open("NZ.other"), "NZ.other"}};
  for (int step = 0; step < 3000; ++step) {
    auto& [instance, current] = instances[random() % instances.size()];
    const size_t choice = random() % std::size(kNames);
    const std::string name = kNames[choice];
    const bool starved = random() % 10 == 0;
    for (Fake* each : {&Au(), &Nz(), &fakes["libfakeone.so"]}) {
      if (starved) each->Behave(kFakeGetSearcher, kFakeAnswerNull);
    }
    const int status = pafSetPropertiesId(instance, "OpenARF", name.c_str());
    for (Fake* each : {&Au(), &Nz(), &fakes["libfakeone.so"]}) (*each)->clearAnswer(kFakeGetSearcher);
    ClearCalls();
    if (name == current) {
      ASSERT_EQ(status, 0) << name;
    } else if (choice >= kGood) {
      ASSERT_NE(status, 0) << name;
    } else if (starved) {
      ASSERT_EQ(status, PAF_ERR_OUT_OF_MEMORY) << name;
      ASSERT_EQ(pafClosePafId(instance), PAF_ERR_NO_SEARCHER);
      instance = Open(name);
      current = name;
    } else {
      ASSERT_EQ(status, 0) << name;
      current = name;
    }
    ASSERT_EQ(Property(instance, "OpenARF"), current);
    ASSERT_EQ(fakes.Counter(kFakeLiveSearchers), 3);
    ASSERT_LE(fakes.Counter(kFakeLiveDbs), 3);
  }
  for (const auto& [instance, current] : instances) EXPECT_EQ(pafClosePafId(instance), 0);
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
  EXPECT_EQ(fakes.Counter(kFakeLiveSearchers), 0);
}

}  // namespace
}  // namespace blackbox
