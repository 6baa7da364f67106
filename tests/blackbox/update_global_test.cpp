// The global database, on which the default instances are, is reopened in its place.
#include <gtest/gtest.h>

#include <chrono>

#include "blackbox/support/update.h"

namespace blackbox {
namespace {

/** A thread whose default instance is open until the object goes. */
class DefaultUser
{
 public:
  DefaultUser()
  {
    std::promise<int> opened;
    std::future<int> status = opened.get_future();
    thread_ = std::thread([this, &opened] {
      opened.set_value(pafGet_FindStatus());
      end_.get_future().wait();
    });
    EXPECT_EQ(status.get(), 0);
  }
  ~DefaultUser()
  {
    end_.set_value();
    thread_.join();
  }
  DefaultUser(const DefaultUser&) = delete;
  DefaultUser& operator=(const DefaultUser&) = delete;

 private:
  std::promise<void> end_;
  std::thread thread_;
};

class UpdateGlobal : public UpdateTest
{
 protected:
  void SetUp() override
  {
    workspace.Configure({"PafDir=@/old", "OpenPaf=Map"});
    ASSERT_EQ(pafOpenPaf(), 0);
  }

  void MoveDefault() { workspace.Configure({"PafDir=@/new", "OpenPaf=Ram", "ARF/AU/a=/a"}); }

  const std::string old = workspace.MakeDatabase("old", "DATABASENAME=AUSTRALIA\n");
  const std::string fresh = workspace.MakeDatabase("new", "DATABASENAME=AUSTRALIA\n");
};

TEST_F(UpdateGlobal, UnchangedStaysOpen)
{
  ASSERT_EQ(pafGet_FindStatus(), 0);
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
  EXPECT_EQ(au.Count(kFakeDbClose) + au.Count(kFakeDbOpen) + au.Count(kFakeTakeOverFrom), 0u);
  EXPECT_EQ(au->refCount(old.c_str()), 1);
}

TEST_F(UpdateGlobal, ClosedIsNotTouched)
{
  ASSERT_EQ(pafClosePaf(), 0);
  MoveDefault();
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
  EXPECT_EQ(au.Sequence(), "");
}

TEST_F(UpdateGlobal, IsReopenedInItsPlace)
{
  ASSERT_EQ(pafOpenPaf(), 0) << "a second user";
  ASSERT_EQ(pafGet_FindStatus(), 0);
  const void* const searcher = au.Last(kFakeGetFindStatus).object;
  const DefaultUser second;
  const DefaultUser third;
  const void* const database = au.Last(kFakeDbOpen).object;
  MoveDefault();
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{0, 1, 3}));

  const std::string sequence = au.Sequence();
  EXPECT_NE(sequence.find("DbClose DbOpen "), std::string::npos) << sequence;
  for (const FakeOperation none :
       {kFakeGetDb, kFakeGetSearcher, kFakeTakeOverFrom, kFakeRelease, kFakeDbRelease, kFakeGetOtherProperties}) {
    EXPECT_EQ(au.Count(none), 0u) << au->operationName(none);
  }
  EXPECT_EQ(au.Count(kFakeDbClose), 1u);
  EXPECT_EQ(au.Count(kFakeDbOpen), 1u);
  EXPECT_EQ(au.Last(kFakeDbClose).object, database);
  EXPECT_EQ(au.Last(kFakeDbOpen).object, database);
  EXPECT_EQ(au.Last(kFakeDbOpen).arguments[0], fresh);
  EXPECT_EQ(au.Last(kFakeDbOpen).arguments[1], 3) << "the mode it had";
  EXPECT_EQ(au.Last(kFakeDbOpen).arguments[3], 255);
  EXPECT_EQ(au->refCount(fresh.c_str()), 2) << "its users are those it had";
  EXPECT_EQ(pafGet_FindStatus(), 0);
  EXPECT_EQ(au.Last(kFakeGetFindStatus).object, searcher);
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
}

TEST_F(UpdateGlobal, IsCountedWithoutInstances)
{
  MoveDefault();
  EXPECT_EQ(Update(), (Updated{0, 1, 0}));
  EXPECT_EQ(au->refCount(fresh.c_str()), 1);
  EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0) << "its only user has closed it";
}

TEST_F(UpdateGlobal, DefaultInstancesAreNoPartOfTheUpdateOfAName)
{
  ASSERT_EQ(pafGet_FindStatus(), 0);
  int id = 0;
  ASSERT_EQ(pafOpenPafId(&id), 0);  // the default database too, but not the global one
  ASSERT_EQ(au->counter(kFakeLiveDbs), 2);
  MoveDefault();
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{0, 2, 2}));
  EXPECT_EQ(au.Count(kFakeTakeOverFrom), 1u);
  EXPECT_EQ(SearcherOf(au, id), au.Last(kFakeTakeOverFrom).object);
  EXPECT_EQ(au->counter(kFakeLiveDbs), 2);
}

TEST_F(UpdateGlobal, ComesAfterTheNamedDatabases)
{
  MoveDefault();
  Open("AU.a");
  workspace.Configure({"PafDir=@/new", "ARF/AU/a=/a2"});
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{0, 2, 1}));
  ASSERT_EQ(au.Count(kFakeDbOpen), 2u);
  EXPECT_EQ(au.Calls(kFakeDbOpen)[0].arguments[0], "/a2");
  EXPECT_EQ(au.Calls(kFakeDbOpen)[1].arguments[0], fresh);
}

TEST_F(UpdateGlobal, IsNotReachedWhenANamedDatabaseFails)
{
  MoveDefault();
  Open("AU.a");
  workspace.Configure({"PafDir=@/new"});
  EXPECT_EQ(Update(), (Updated{PAF_ERR_NOT_CONFIGURED, 0, 0}));
  EXPECT_EQ(au->refCount(old.c_str()), 1);
}

TEST_F(UpdateGlobal, FailingToReopenIsReportedWithThePluginsText)
{
  ASSERT_EQ(pafGet_FindStatus(), 0);
  MoveDefault();
  au.Answer(kFakeDbOpen, 77, "no such luck");
  au->clearCalls();
  EXPECT_EQ(Update(), (Updated{77, 0, 0}));
  EXPECT_NE(au.Sequence().find("DbClose DbOpen DbClose "), std::string::npos) << au.Sequence();
  EXPECT_EQ(au.Count(kFakeDbOpen), 1u);
  EXPECT_EQ(au.Count(kFakeDbClose), 2u);
  EXPECT_EQ(au.Count(kFakeDbRelease), 0u);
  EXPECT_EQ(Describe(77), "no such luck");
  EXPECT_EQ(Describe(77), "");
}

TEST_F(UpdateGlobal, FailingToReopenKeepsWhatWasSwitchedBefore)
{
  workspace.Configure({"PafDir=@/old", "ARF/NZ/b=/b1"});
  Open("NZ.b");
  workspace.Configure({"PafDir=@/new", "ARF/NZ/b=/b2"});
  au.Answer(kFakeDbOpen, 77, "no such luck");
  EXPECT_EQ(Update(), (Updated{77, 1, 1}));
  EXPECT_EQ(fakes["libqxarfnz.so"]->refCount("/b2"), 1);
}

TEST_F(UpdateGlobal, ALaterUpdateRetriesWhatFailedToReopen)
{
  ASSERT_EQ(pafOpenPaf(), 0) << "a second user";
  ASSERT_EQ(pafGet_FindStatus(), 0);
  MoveDefault();
  for (int time = 0; time < 2; ++time) {
    au.Answer(kFakeDbOpen, 77, "no such luck");
    EXPECT_EQ(Update(), (Updated{77, 0, 0}));
    EXPECT_EQ(Describe(77), "no such luck");
  }
  au->clearAnswer(kFakeDbOpen);
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(au->refCount(fresh.c_str()), 2);
  EXPECT_EQ(pafGet_FindStatus(), 0);
}

TEST_F(UpdateGlobal, GoesBackToTheOldPathAfterItFailedToReopen)
{
  ASSERT_EQ(pafGet_FindStatus(), 0);
  MoveDefault();
  au.Answer(kFakeDbOpen, 77, "no such luck");
  EXPECT_EQ(Update(), (Updated{77, 0, 0}));
  au->clearAnswer(kFakeDbOpen);
  workspace.Configure({"PafDir=@/old"});
  EXPECT_EQ(Update(), (Updated{0, 1, 1})) << "it is closed, not open on the old path";
  EXPECT_EQ(au->refCount(old.c_str()), 1);
}

TEST_F(UpdateGlobal, WaitsForABusyDefaultInstance)
{
  ASSERT_EQ(pafGet_FindStatus(), 0);
  MoveDefault();
  BlockedCall busy(au, kFakeGetParsedInput, [] {
    char out[255];
    return pafGet_ParsedInput(out);
  });
  std::future<Updated> update = UpdateInBackground();
  EXPECT_FALSE(IsReady(update, kAWhile));
  EXPECT_EQ(au.Count(kFakeDbClose), 0u);
  EXPECT_EQ(pafGet_FindStatus(), 0) << "the others are served";
  EXPECT_EQ(busy.Finish(), 0);
  const Updated updated = update.get();
  EXPECT_EQ(updated.status, 0);
  EXPECT_EQ(updated.databases, 1);
  EXPECT_EQ(updated.instances, 1) << "the other thread's instance went with it";
  EXPECT_EQ(au->refCount(fresh.c_str()), 1);
}

TEST_F(UpdateGlobal, WaitsFifteenSecondsForABusyDefaultInstance_slow)
{
  ASSERT_EQ(pafGet_FindStatus(), 0);
  MoveDefault();
  BlockedCall busy(au, kFakeGetParsedInput, [] {
    char out[255];
    return pafGet_ParsedInput(out);
  });
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Update(), (Updated{PAF_ERR_TIMED_OUT, 0, 0}));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(15));
  EXPECT_EQ(au.Count(kFakeDbClose), 0u);
  EXPECT_EQ(au->refCount(old.c_str()), 1);
  EXPECT_EQ(busy.Finish(), 0);
  EXPECT_EQ(Update(), (Updated{0, 1, 1})) << "another update succeeds";
}

TEST_F(UpdateGlobal, IsReopenedWhileNoCallCanBegin)
{
  ASSERT_EQ(pafGet_FindStatus(), 0);
  MoveDefault();
  const int id = Open("AU.a");
  au->block(kFakeDbOpen);
  std::future<Updated> update = UpdateInBackground();
  ASSERT_GT(au->waitUntilBlocked(kFakeDbOpen, 20000), 0);
  auto call = std::async(std::launch::async, [id] { return pafGetFindStatusId(id); });
  EXPECT_EQ(call.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
  au->unblock(kFakeDbOpen);
  EXPECT_EQ(call.get(), 0);
  EXPECT_EQ(update.get(), (Updated{0, 1, 1}));
}

/** The call in progress is the making or releasing of a default instance's searcher: the plug-in is in both. */
class UpdateGlobalMeanwhile : public UpdateGlobal, public testing::WithParamInterface<FakeOperation>
{
};

INSTANTIATE_TEST_SUITE_P(InSearcher, UpdateGlobalMeanwhile, testing::Values(kFakeGetSearcher, kFakeRelease),
                         [](const auto& row) { return row.param == kFakeGetSearcher ? "Making" : "Releasing"; });

TEST_P(UpdateGlobalMeanwhile, TheDatabaseStaysOpen)
{
  MoveDefault();
  // The thread's first call makes the searcher, and its end releases it.
  BlockedCall busy(au, GetParam(), [] { return pafGet_FindStatus(); });
  std::future<Updated> update = UpdateInBackground();
  EXPECT_FALSE(IsReady(update, kAWhile));
  EXPECT_EQ(au.Count(kFakeDbClose), 0u);
  EXPECT_EQ(busy.Finish(), 0);
  EXPECT_EQ(update.get().status, 0);
  EXPECT_EQ(au->refCount(fresh.c_str()), 1);
}

}  // namespace
}  // namespace blackbox
