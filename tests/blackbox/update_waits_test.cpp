// An update interrupts no call: it waits for busy instances, for a limited time, and keeps nothing locked meanwhile.
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>

#include <chrono>

#include "blackbox/support/row_name.h"
#include "blackbox/support/update.h"

namespace blackbox {
namespace {

using std::chrono::steady_clock;

int FixLastLine(int id)
{
  char text[16] = "Sydney";
  return pafFixLastLineId(id, text, sizeof text);
}

class UpdateWaits : public UpdateTest
{
 protected:
  void SetUp() override
  {
    workspace.Configure({"ARF/AU/a=/old", "ARF/AU/other=/other"});
    for (int& id : ids) id = Open("AU.a");
    other = Open("AU.other");
    workspace.Configure({"ARF/AU/a=/new", "ARF/AU/other=/other"});
  }

  void WaitForTakeOvers(size_t count)
  {
    const auto limit = steady_clock::now() + kLong;
    while (au.Count(kFakeTakeOverFrom) < count && steady_clock::now() < limit) std::this_thread::yield();
    EXPECT_EQ(au.Count(kFakeTakeOverFrom), count);
  }

  int ids[3] = {};
  int other = 0;
};

TEST_F(UpdateWaits, ForTheBusyInstanceAfterTheIdleOnesMoved)
{
  const void* const old = SearcherOf(au, ids[0]);
  BusyInstance busy(au, ids[1]);
  std::future<Updated> update = UpdateInBackground();
  EXPECT_FALSE(IsReady(update, kAWhile));
  WaitForTakeOvers(2);
  EXPECT_NE(SearcherOf(au, ids[0]), old) << "an idle one has moved and is served";
  EXPECT_EQ(pafGetFindStatusId(ids[1]), -1) << "busy";
  ExpectUnlocked("AU.other");

  EXPECT_EQ(busy.Finish(), 0);
  EXPECT_EQ(update.get(), (Updated{0, 1, 3}));
  EXPECT_EQ(au->refCount("/new"), 3);
  EXPECT_EQ(au->refCount("/old"), -1);
}

TEST_F(UpdateWaits, NotForAnInstanceOfAnotherDatabase)
{
  BusyInstance busy(au, other);
  EXPECT_EQ(Update(), (Updated{0, 1, 3}));
}

TEST_F(UpdateWaits, NotForABusyInstanceOfADatabaseThatStays)
{
  ASSERT_EQ(Update(), (Updated{0, 1, 3}));
  BusyInstance busy(au, ids[0]);
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
}

TEST_F(UpdateWaits, AndGivesUpWhenNoSearcherIsMadeAfterwards)
{
  BusyInstance busy(au, ids[1]);
  std::future<Updated> update = UpdateInBackground();
  WaitForTakeOvers(2);
  au.Behave(kFakeGetSearcher, kFakeAnswerNull);
  EXPECT_EQ(busy.Finish(), 0);
  EXPECT_EQ(update.get(), (Updated{PAF_ERR_OUT_OF_MEMORY, 1, 2})) << "half way";
  EXPECT_EQ(au->refCount("/new"), 2);
  EXPECT_EQ(au->refCount("/old"), 1);
  EXPECT_EQ(pafGetFindStatusId(ids[1]), 0) << "it keeps its searcher";
  au->clearAnswer(kFakeGetSearcher);
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
}

/** A program may use timers and other signals; each ends a sleep early. */
TEST_F(UpdateWaits, AsLongUnderSignals)
{
  struct sigaction ignoring = {};
  ignoring.sa_handler = [](int) {};
  ASSERT_EQ(sigaction(SIGUSR1, &ignoring, nullptr), 0);
  BusyInstance busy(au, ids[1]);
  const pthread_t updating = pthread_self();
  auto signals = std::async(std::launch::async, [&busy, updating] {
    for (int i = 0; i < 200; ++i) {
      pthread_kill(updating, SIGUSR1);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return busy.Finish();
  });
  EXPECT_EQ(Update(), (Updated{0, 1, 3}));
  EXPECT_EQ(signals.get(), 0);
}

TEST_F(UpdateWaits, TwoUpdatesAtOnceShareTheWork)
{
  for (int round = 0; round < 20; ++round) {
    const std::string path = "/round" + std::to_string(round);
    workspace.Configure({"ARF/AU/a=" + path, "ARF/AU/other=/other"});
    std::future<Updated> update = UpdateInBackground();
    const Updated mine = Update();
    EXPECT_EQ(mine.status, 0);
    const Updated theirs = update.get();
    EXPECT_EQ(theirs.status, 0);
    EXPECT_EQ(mine.instances + theirs.instances, 3);
    EXPECT_EQ(au->refCount(path.c_str()), 3);
    EXPECT_EQ(au->counter(kFakeLiveDbs), 2);
  }
}

/** One instance is busy for some seconds and another one all the time: the moving of the first gains no more time. */
TEST_F(UpdateWaits, FifteenSecondsInAll_slow)
{
  BusyInstance busyForLong(au, ids[1]);
  BlockedCall busyForAWhile(au, kFakeFixLastLine, [this] { return FixLastLine(ids[2]); });
  const auto begin = steady_clock::now();
  std::future<Updated> update = UpdateInBackground();
  EXPECT_FALSE(IsReady(update, std::chrono::seconds(8)));
  EXPECT_EQ(busyForAWhile.Finish(), 0);
  EXPECT_EQ(update.get(), (Updated{PAF_ERR_TIMED_OUT, 1, 2}));
  const auto waited = steady_clock::now() - begin;
  EXPECT_GE(waited, std::chrono::seconds(15));
  EXPECT_LT(waited, std::chrono::seconds(21)) << "the waits were counted anew";

  EXPECT_EQ(au->refCount("/new"), 2);
  EXPECT_EQ(au->refCount("/old"), 1);
  EXPECT_EQ(busyForLong.Finish(), 0);
  EXPECT_EQ(Update(), (Updated{0, 1, 1})) << "another update takes the rest";
  EXPECT_EQ(au->refCount("/new"), 3);
  EXPECT_EQ(au->refCount("/old"), -1);
}

struct Place
{
  const char* name;
  FakeOperation operation;
};

class UpdateOutsideTheLock : public UpdateWaits, public testing::WithParamInterface<Place>
{
};

INSTANTIATE_TEST_SUITE_P(While, UpdateOutsideTheLock,
                         testing::Values(Place{"OpeningAfresh", kFakeDbOpen},
                                         Place{"ReleasingTheOldSearcher", kFakeRelease},
                                         Place{"ClosingTheOldDatabase", kFakeDbClose},
                                         Place{"ReleasingTheOldDatabase", kFakeDbRelease}),
                         RowName());

TEST_P(UpdateOutsideTheLock, OtherInstancesAreServed)
{
  au->block(GetParam().operation);
  std::future<Updated> update = UpdateInBackground();
  ASSERT_GT(au->waitUntilBlocked(GetParam().operation, 20000), 0);
  auto call = std::async(std::launch::async, [this] { return pafGetFindStatusId(other); });
  EXPECT_EQ(call.wait_for(kLong), std::future_status::ready);
  au->unblock(GetParam().operation);
  EXPECT_EQ(call.get(), 0);
  EXPECT_EQ(update.get(), (Updated{0, 1, 3}));
}

class UpdateUnderTheLock : public UpdateWaits, public testing::WithParamInterface<Place>
{
};

INSTANTIATE_TEST_SUITE_P(While, UpdateUnderTheLock,
                         testing::Values(Place{"TheNewSearcherIsMade", kFakeGetSearcher},
                                         Place{"ItTakesOver", kFakeTakeOverFrom}),
                         RowName());

TEST_P(UpdateUnderTheLock, NoCallRunsOnTheInstance)
{
  const void* const old = SearcherOf(au, ids[0]);
  au->clearCalls();
  au->block(GetParam().operation);
  std::future<Updated> update = UpdateInBackground();
  ASSERT_GT(au->waitUntilBlocked(GetParam().operation, 20000), 0);
  auto call = std::async(std::launch::async, [this] { return pafGetFindStatusId(ids[0]); });
  EXPECT_EQ(call.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
  au->unblock(GetParam().operation);
  EXPECT_EQ(call.get(), 0);
  EXPECT_EQ(update.get(), (Updated{0, 1, 3}));
  EXPECT_NE(au.Last(kFakeGetFindStatus).object, old) << "the call waited for the new searcher";
}

}  // namespace
}  // namespace blackbox
