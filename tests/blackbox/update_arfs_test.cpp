// Instances move onto newly installed databases.
#include <gtest/gtest.h>

#include <chrono>
#include <sstream>

#include "blackbox/support/update.h"

namespace blackbox {
namespace {

class UpdateArfs : public UpdateTest
{
 protected:
  /** The operations that reached the Australian plug-in, without the getters. */
  std::string Operations() const
  {
    std::istringstream names(au.Sequence());
    std::string kept;
    for (std::string name; names >> name;) {
      if (name != "GetArfDb") kept += name + " ";
    }
    return kept;
  }
};

TEST_F(UpdateArfs, WithoutInstancesAndConfigurationThereIsNothingToDo)
{
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
  workspace.RemoveConfiguration();
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
}

TEST_F(UpdateArfs, OfAnUnchangedConfigurationLeavesEverythingAsItIs)
{
  workspace.Configure({"ARF/AU/a=/a", "ARF/AU/b=/b"});
  for (const char* const name : {"AU.a", "AU.b", "AU.a"}) Open(name);
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
  EXPECT_EQ(Operations(), "");
  EXPECT_EQ(au->refCount("/a"), 2);
  EXPECT_EQ(au->refCount("/b"), 1);
}

TEST_F(UpdateArfs, OpensADatabaseThatCannotBeSharedOncePerNameAndClosesIt)
{
  Fake& two = fakes["libfaketwo.so"];
  const std::string name = "DLL:FakeTwo;/p";
  Open(name);
  Open(name);
  const long opens = two->counter(kFakeOpens);
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
  EXPECT_EQ(two->counter(kFakeOpens), opens + 1);
  EXPECT_EQ(two->counter(kFakeCloses), 1);
  EXPECT_EQ(two->counter(kFakeDbReleases), 1);
  EXPECT_EQ(two.Count(kFakeTakeOverFrom), 0u);
}

class MovedDatabase : public UpdateArfs, public testing::WithParamInterface<int>
{
};

INSTANTIATE_TEST_SUITE_P(Instances, MovedDatabase, testing::Values(1, 2, 5));

TEST_P(MovedDatabase, TakesAllItsInstancesAlong)
{
  const int count = GetParam();
  workspace.Configure({"ARF/AU/a=/old"});
  std::vector<int> ids;
  for (int i = 0; i < count; ++i) ids.push_back(Open("AU.a"));
  workspace.Configure({"ARF/AU/a=/new"});
  EXPECT_EQ(Update(), (Updated{0, 1, count}));

  EXPECT_EQ(au->refCount("/old"), -1);
  EXPECT_EQ(au->refCount("/new"), count);
  EXPECT_EQ(OpenPaths(), "/new");
  EXPECT_EQ(au->counter(kFakeLiveDbs), 1);
  EXPECT_EQ(au->counter(kFakeLiveSearchers), count);
  EXPECT_EQ(au->counter(kFakeOpens), 2);
  EXPECT_EQ(au->counter(kFakeCloses), 1);
  EXPECT_EQ(au->counter(kFakeDbReleases), 1);
  EXPECT_EQ(au->counter(kFakeSearcherReleases), count);
  EXPECT_EQ(au.Count(kFakeTakeOverFrom), static_cast<size_t>(count));

  EXPECT_EQ(Update(), (Updated{0, 0, 0})) << "it has moved";
  for (const int id : ids) {
    char name[16];
    EXPECT_EQ(pafGetPropertiesId(id, "OpenARF", name, sizeof name), 0);
    EXPECT_STREQ(name, "AU.a");
    EXPECT_EQ(pafClosePafId(id), 0);
  }
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
}

TEST_F(UpdateArfs, GivesEachInstanceASearcherThatTakesOverFromItsOldOne)
{
  workspace.Configure({"ARF/AU/a=/old"});
  const int ids[] = {Open("AU.a"), Open("AU.a"), Open("AU.a")};
  std::vector<std::pair<const void*, const void*>> expected;
  for (const int id : ids) expected.emplace_back(nullptr, SearcherOf(au, id));
  workspace.Configure({"ARF/AU/a=/new"});
  ASSERT_EQ(Update(), (Updated{0, 1, 3}));
  for (size_t i = 0; i < expected.size(); ++i) expected[i].first = SearcherOf(au, ids[i]);

  std::vector<std::pair<const void*, const void*>> takenOver;
  for (const Call& call : au.Calls(kFakeTakeOverFrom)) {
    takenOver.emplace_back(call.object, call.arguments.at(0).raw.pointer);
  }
  EXPECT_EQ(takenOver, expected) << "in the order of the Ids";
}

TEST_F(UpdateArfs, ReleasesTheOldSearcherAndThenItsDatabaseWhenTheNewOneHasTakenOver)
{
  workspace.Configure({"ARF/AU/a=/old"});
  Open("AU.a");
  workspace.Configure({"ARF/AU/a=/new"});
  au->clearCalls();
  ASSERT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(Operations(), "GetDb DbOpen GetSearcher TakeOverFrom Release DbClose DbRelease ");
  EXPECT_NE(au.Sequence().find("TakeOverFrom GetArfDb Release DbClose "), std::string::npos)
      << "a searcher is asked for its database before it goes: " << au.Sequence();
  EXPECT_EQ(au.Last(kFakeGetSearcher).arguments[0].raw.pointer, au.Calls(kFakeDbOpen).at(0).object);
  EXPECT_EQ(au.Last(kFakeRelease).object, au.Last(kFakeTakeOverFrom).arguments[0].raw.pointer);
}

TEST_F(UpdateArfs, CountsTheDatabasesThatMovedAndTheirInstances)
{
  workspace.Configure({"ARF/AU/a=/a1", "ARF/NZ/b=/b1", "ARF/AU/c=/c1"});
  for (const char* const name : {"AU.a", "NZ.b", "AU.c", "NZ.b", "AU.a", "NZ.b"}) Open(name);
  workspace.Configure({"ARF/AU/a=/a1", "ARF/NZ/b=/b2", "ARF/AU/c=/c1"});
  EXPECT_EQ(Update(), (Updated{0, 1, 3}));
  workspace.Configure({"ARF/AU/a=/a2", "ARF/NZ/b=/b2", "ARF/AU/c=/c2"});
  EXPECT_EQ(Update(), (Updated{0, 2, 3}));
  EXPECT_EQ(au->refCount("/a2"), 2);
  EXPECT_EQ(au->refCount("/c2"), 1);
  EXPECT_EQ(fakes["libqxarfnz.so"]->refCount("/b2"), 3);
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 3);
}

TEST_F(UpdateArfs, OpensTheNewDatabasesInTheOrderOfTheFirstInstances)
{
  workspace.Configure({"ARF/AU/a=/a1", "ARF/AU/b=/b1", "ARF/AU/c=/c1"});
  for (const char* const name : {"AU.c", "AU.a", "AU.c", "AU.b", "AU.a"}) Open(name);
  workspace.Configure({"ARF/AU/a=/a2", "ARF/AU/b=/b2", "ARF/AU/c=/c2"});
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{0, 3, 5}));
  std::string opened;
  for (const Call& call : au.Calls(kFakeDbOpen)) opened += call.arguments.at(0).text;
  EXPECT_EQ(opened, "/c2/a2/b2");
}

TEST_F(UpdateArfs, NamesInOtherCaseAreTheSameDatabase)
{
  workspace.Configure({"ARF/AU/a=/old"});
  for (const char* const name : {"AU.a", "au.A", "Au.a", "AU.a"}) Open(name);
  workspace.Configure({"ARF/AU/a=/new"});
  EXPECT_EQ(Update(), (Updated{0, 1, 4}));
  EXPECT_EQ(au->refCount("/new"), 4);
  EXPECT_EQ(au->refCount("/old"), -1);
}

TEST_F(UpdateArfs, MovesTheOthersWhenTheFirstInstanceIsOnTheNewPathAlready)
{
  workspace.Configure({"ARF/AU/a=/old"});
  const int first = Open("AU.a");
  Open("AU.a");
  workspace.Configure({"ARF/AU/a=/new"});
  ASSERT_EQ(pafClosePafId(first), 0);
  ASSERT_EQ(Open("au.a"), first) << "resolved anew, because it is written otherwise";
  ASSERT_EQ(au->refCount("/new"), 1);
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(au->refCount("/new"), 2);
  EXPECT_EQ(au->refCount("/old"), -1);
}

TEST_F(UpdateArfs, TwoNamesOfOnePathPart)
{
  workspace.Configure({"ARF/AU/a=/x", "ARF/AU/b=/x"});
  Open("AU.a");
  Open("AU.b");
  workspace.Configure({"ARF/AU/a=/y", "ARF/AU/b=/x"});
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(au->refCount("/x"), 1);
  EXPECT_EQ(au->refCount("/y"), 1);
}

TEST_F(UpdateArfs, TwoNamesOfOnePathMoveTogether)
{
  workspace.Configure({"ARF/AU/a=/x", "ARF/AU/b=/x"});
  Open("AU.a");
  Open("AU.b");
  workspace.Configure({"ARF/AU/a=/y", "ARF/AU/b=/y"});
  EXPECT_EQ(Update(), (Updated{0, 2, 2}));
  EXPECT_EQ(au->refCount("/x"), -1);
  EXPECT_EQ(au->refCount("/y"), 2);
  EXPECT_EQ(au->counter(kFakeOpens), 2);
}

TEST_F(UpdateArfs, AnInstanceNamedByItsPathStays)
{
  workspace.Configure({"ARF/AU/a=/x"});
  const int byPath = Open("AU./x");
  const void* const searcher = SearcherOf(au, byPath);
  Open("AU.a");
  workspace.Configure({"ARF/AU/a=/y"});
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(SearcherOf(au, byPath), searcher);
  EXPECT_EQ(OpenPaths(), "/x;/y");
}

TEST_F(UpdateArfs, TheDefaultDatabaseOfAnInstanceMoves)
{
  const std::string australian = "DATABASENAME=AUSTRALIA\n";
  workspace.MakeDatabase("one", australian);
  const std::string two = workspace.MakeDatabase("two", australian);
  workspace.Configure({"PafDir=@/one"});
  int id = 0;
  ASSERT_EQ(pafOpenPafId(&id), 0);
  workspace.Configure({"PafDir=@/two"});
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(au->refCount(two.c_str()), 1);
}

TEST_F(UpdateArfs, TheBaseDirectoryMoves)
{
  for (const char* const name : {"one/sub", "two/sub"}) workspace.MakeDatabase(name, "DATABASENAME=AUSTRALIA\n");
  workspace.Configure({"ArfBaseDir=@/one"});
  Open("sub/");
  workspace.Configure({"ArfBaseDir=@/two"});
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(OpenPaths(), workspace.Root() + "/two/sub/");
}

TEST_F(UpdateArfs, IsWhatMakesAChangedConfigurationSeen)
{
  workspace.Configure({"ARF/AU/a=/old"});
  ASSERT_EQ(pafClosePafId(Open("AU.a")), 0);
  workspace.Configure({"ARF/AU/a=/new"});
  const int id = Open("AU.a");
  EXPECT_EQ(OpenPaths(), "/old") << "the name was resolved before";
  ASSERT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
  Open("AU.a");
  EXPECT_EQ(OpenPaths(), "/new");
}

TEST_F(UpdateArfs, InstancesWithoutASearcherAreNoPartOfIt)
{
  workspace.Configure({"ARF/AU/a=/old"});
  Open("AU.a");
  ASSERT_EQ(pafForceCloseAll(), 0);
  workspace.Configure({"ARF/AU/a=/new"});
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
  EXPECT_EQ(au.Sequence(), "");
  Open("AU.a");
  EXPECT_EQ(OpenPaths(), "/new");
}

class UpdateMode : public UpdateArfs, public testing::WithParamInterface<int>
{
};

INSTANTIATE_TEST_SUITE_P(Modes, UpdateMode, testing::Values(1, 2, 3, 4));

TEST_P(UpdateMode, IsCarriedOver)
{
  workspace.Configure({"ARF/AU/a=/old", "OpenPaf=Map"});
  Open("AU.a", GetParam());
  workspace.Configure({"ARF/AU/a=/new", "OpenPaf=Ram"});
  ASSERT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(au.Last(kFakeDbOpen).arguments[1], GetParam());
}

TEST_F(UpdateArfs, CarriesTheConfiguredModeOfTheOldDatabaseOver)
{
  workspace.Configure({"ARF/AU/a=/old;OpenArf=Map", "OpenPaf=Ram"});
  Open("AU.a", 0);
  ASSERT_EQ(au.Last(kFakeDbOpen).arguments[1], 3);
  workspace.Configure({"ARF/AU/a=/new;OpenArf=Ram", "OpenPaf=Ram"});
  ASSERT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(au.Last(kFakeDbOpen).arguments[1], 3);
  EXPECT_EQ(au.Last(kFakeDbOpen).arguments[0], "/new");
}

TEST_F(UpdateArfs, EitherCounterMayBeNull)
{
  workspace.Configure({"ARF/AU/a=/1"});
  Open("AU.a");
  int count = -5;
  workspace.Configure({"ARF/AU/a=/2"});
  EXPECT_EQ(pafUpdateArfs(nullptr, nullptr), 0);
  EXPECT_EQ(au->refCount("/2"), 1);
  workspace.Configure({"ARF/AU/a=/3"});
  EXPECT_EQ(pafUpdateArfs(&count, nullptr), 0);
  EXPECT_EQ(count, 1);
  workspace.Configure({"ARF/AU/a=/4"});
  count = -5;
  EXPECT_EQ(pafUpdateArfs(nullptr, &count), 0);
  EXPECT_EQ(count, 1);
}

TEST_F(UpdateArfs, IsNotOfferedInRemoteMode)
{
  workspace.Configure({"ARF/AU/a=/old"});
  Open("AU.a");
  workspace.Configure({"ARF/AU/a=/new"});
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{PAF_ERR_NOT_IMPLEMENTED, 0, 0}));
  EXPECT_EQ(pafUpdateArfs(nullptr, nullptr), PAF_ERR_NOT_IMPLEMENTED);
  EXPECT_EQ(au.Sequence(), "");
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "False"), 0);
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
}

TEST_F(UpdateArfs, IsNotOfferedWhenAServerIsConfigured)
{
  workspace.Configure({"PindleSvr/TcpHost=127.0.0.1"});
  EXPECT_EQ(Update(), (Updated{PAF_ERR_NOT_IMPLEMENTED, 0, 0}));
}

/** Three databases of three plug-ins, so that each can be told to fail by itself. */
class UpdateFailing : public UpdateTest
{
 protected:
  void SetUp() override
  {
    workspace.Configure({"ARF/AU/a=/a1", "ARF/NZ/b=/b1", "ARF/US/c=/c1"});
    for (const char* const name : {"AU.a", "NZ.b", "NZ.b", "US.c"}) Open(name);
    workspace.Configure({"ARF/AU/a=/a2", "ARF/NZ/b=/b2", "ARF/US/c=/c2"});
  }

  /** The second database failed: the first one is switched, the second and third are where they were. */
  void ExpectHalfDone()
  {
    EXPECT_EQ(au->refCount("/a2"), 1);
    EXPECT_EQ(nz->refCount("/b1"), 2);
    EXPECT_EQ(nz->refCount("/b2"), -1);
    EXPECT_EQ(nz->counter(kFakeLiveDbs), 1);
    EXPECT_EQ(nz->counter(kFakeLiveSearchers), 2);
    EXPECT_EQ(us->refCount("/c1"), 1);
    EXPECT_EQ(us->counter(kFakeOpens), 1);
    for (int id = 1; id <= 4; ++id) EXPECT_EQ(pafGetFindStatusId(id), 0) << "Id " << id;
  }

  void ExpectRetrySucceeds()
  {
    EXPECT_EQ(Update(), (Updated{0, 2, 3}));
    EXPECT_EQ(nz->refCount("/b2"), 2);
    EXPECT_EQ(us->refCount("/c2"), 1);
    EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 3);
  }

  Fake& nz = fakes["libqxarfnz.so"];
  Fake& us = fakes["libqxarfus.so"];
};

TEST_F(UpdateFailing, ADatabaseThatDoesNotOpenEndsTheUpdate)
{
  nz.Answer(kFakeDbOpen, 77, "no such luck");
  EXPECT_EQ(Update(), (Updated{77, 1, 1}));
  std::async(std::launch::async, [] { EXPECT_EQ(Describe(77), "") << "another thread's error"; }).get();
  EXPECT_EQ(Describe(77), "no such luck");
  EXPECT_EQ(Describe(77), "");
  ExpectHalfDone();
  EXPECT_EQ(nz->counter(kFakeCloses), 1) << "what did not open is closed and released";
  nz->clearAnswer(kFakeDbOpen);
  ExpectRetrySucceeds();
}

TEST_F(UpdateFailing, ALongErrorTextIsCutTo254Characters)
{
  nz.Answer(kFakeDbOpen, 77, std::string(600, 'x').c_str());
  EXPECT_EQ(Update(), (Updated{77, 1, 1}));
  EXPECT_EQ(nz.Last(kFakeDbOpen).arguments[3], 255);
  EXPECT_EQ(Describe(77), std::string(254, 'x'));
}

TEST_F(UpdateFailing, ADatabaseObjectThatIsNotMadeEndsTheUpdate)
{
  nz.Behave(kFakeGetDb, kFakeAnswerNull);
  EXPECT_EQ(Update(), (Updated{PAF_ERR_PLUGIN_MEMORY, 1, 1}));
  ExpectHalfDone();
  nz->clearAnswer(kFakeGetDb);
  ExpectRetrySucceeds();
}

TEST_F(UpdateFailing, ADatabaseThatIsNotConfiguredAnyMoreEndsTheUpdate)
{
  workspace.Configure({"ARF/AU/a=/a2", "ARF/US/c=/c2"});
  EXPECT_EQ(Update(), (Updated{PAF_ERR_NOT_CONFIGURED, 1, 1}));
  EXPECT_EQ(Describe(PAF_ERR_NOT_CONFIGURED), "ARF not installed");
  ExpectHalfDone();
  workspace.Configure({"ARF/AU/a=/a2", "ARF/NZ/b=/b2", "ARF/US/c=/c2"});
  ExpectRetrySucceeds();
}

TEST_F(UpdateFailing, ASearcherThatIsNotMadeEndsTheUpdate)
{
  nz.Behave(kFakeGetSearcher, kFakeAnswerNull);
  EXPECT_EQ(Update(), (Updated{PAF_ERR_OUT_OF_MEMORY, 1, 1}));
  ExpectHalfDone();
  EXPECT_EQ(nz.Count(kFakeTakeOverFrom), 0u);
  nz->clearAnswer(kFakeGetSearcher);
  ExpectRetrySucceeds();
}

TEST_F(UpdateArfs, ADirectoryWithoutAVersionFileIsNamedInTheError)
{
  workspace.MakeDatabase("one", "DATABASENAME=NZ\n");
  const std::string two = workspace.MakeDirectory("two");
  workspace.Configure({"ARF/main=@/one"});
  Open("main");
  workspace.Configure({"ARF/main=@/two"});
  EXPECT_EQ(Update(), (Updated{PAF_ERR_OPEN_FILE, 0, 0}));
  EXPECT_EQ(Describe(PAF_ERR_OPEN_FILE), "ERR_QXARF_OPEN_FILE. " + two + "/PAF.ver");
}

TEST_F(UpdateArfs, MayMoveADatabaseToThePluginOfAnotherCountry)
{
  workspace.MakeDatabase("one", "DATABASENAME=AUSTRALIA\n");
  const std::string two = workspace.MakeDatabase("two", "DATABASENAME=NZ\n");
  workspace.Configure({"ARF/main=@/one"});
  const int id = Open("main");
  workspace.Configure({"ARF/main=@/two"});
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
  EXPECT_EQ(au->counter(kFakeLiveSearchers), 0);
  EXPECT_EQ(fakes["libqxarfnz.so"]->refCount(two.c_str()), 1);
  EXPECT_EQ(pafGetFindStatusId(id), 0);
}

}  // namespace
}  // namespace blackbox
