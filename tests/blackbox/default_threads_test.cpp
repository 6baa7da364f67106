// Default instances of several threads: each has its own, which goes with its thread.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "blackbox/support/default_database.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

class DefaultThreadsTest : public DefaultDatabaseTest
{
 protected:
  void SetUp() override
  {
    DefaultDatabaseTest::SetUp();
    ASSERT_EQ(pafOpenPaf(), 0);
  }
  void TearDown() override
  {
    EXPECT_EQ(pafClosePaf(), 0);
    EXPECT_EQ(au->counter(kFakeLiveSearchers), 0);
    EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
  }
};

/** A thread that does something and then waits for its end. */
class Waiting
{
 public:
  template <class Body>
  explicit Waiting(Body body)
  {
    thread_ = std::thread([this, body] {
      body();
      done_.set_value();
      end_.get_future().wait();
    });
    done_.get_future().wait();
  }
  ~Waiting() { End(); }
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;

  void End()
  {
    if (!thread_.joinable()) return;
    end_.set_value();
    thread_.join();
  }

 private:
  std::promise<void> done_;
  std::promise<void> end_;
  std::thread thread_;
};

void QueryAddress()
{
  char out[255];
  EXPECT_EQ(pafGetAddress("query", out), 0);
}

TEST_F(DefaultThreadsTest, EveryThreadHasItsOwnInstance)
{
  QueryAddress();
  Waiting second(QueryAddress);
  Waiting third(QueryAddress);
  EXPECT_EQ(Property(0, "ClientCount"), "3");
  EXPECT_EQ(Property(0, "ClientCount2"), "3");
  EXPECT_EQ(Property(0, "OpenArfs"), ";;;");
  const std::vector<Call> calls = au.Calls(kFakeGetAddress);
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_NE(calls[0].object, calls[1].object);
  EXPECT_NE(calls[1].object, calls[2].object);
  EXPECT_NE(calls[0].object, calls[2].object);
  EXPECT_EQ(au->counter(kFakeOpens), 1) << "on one database";
  EXPECT_EQ(au->refCount(path.c_str()), 1);
}

TEST_F(DefaultThreadsTest, AThreadsEndFreesItsInstance)
{
  const void* searcher = nullptr;
  unsigned long thread = 0;
  {
    Waiting other([&] {
      QueryAddress();
      thread = pthread_self();
    });
    EXPECT_EQ(Property(0, "ClientCount"), "1");
    searcher = au.Last(kFakeGetAddress).object;
    au->clearCalls();
  }
  EXPECT_EQ(au.Sequence(), "Release ") << "and nothing is asked of it before";
  EXPECT_EQ(au.Last(kFakeRelease).object, searcher);
  EXPECT_EQ(au.Last(kFakeRelease).thread, thread) << "by the thread itself";
  EXPECT_EQ(Property(0, "ClientCount"), "0");
  EXPECT_EQ(Property(0, "ClientCount2"), "0");
  EXPECT_EQ(au->refCount(path.c_str()), 1) << "the database stays open";
  QueryAddress();
  EXPECT_EQ(Property(1, "CountryCode"), "AU") << "the Id is free again";
}

TEST_F(DefaultThreadsTest, AThreadThatNeverCalledInEndsUnnoticed)
{
  QueryAddress();
  au->clearCalls();
  std::thread([] {}).join();
  std::thread([] { EXPECT_EQ(Property(0, "ClientCount"), "1"); }).join();
  EXPECT_EQ(au.Sequence(), "");
  EXPECT_EQ(Property(0, "ClientCount"), "1");
}

TEST_F(DefaultThreadsTest, AThreadWithNothingButAnErrorEndsUnnoticed)
{
  QueryAddress();
  au->clearCalls();
  std::thread([] { EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeNowhere"), -PAF_ERR_LIBRARY_NOT_LOADED); }).join();
  std::thread([] { EXPECT_EQ(ReadDefault("ClientCount"), (Answer{0, "1"})); }).join();
  EXPECT_EQ(au.Sequence(), "");
  EXPECT_EQ(pafGet_FindStatus(), 0);
}

TEST_F(DefaultThreadsTest, AThreadMayCloseItsInstanceByHandAndEnd)
{
  std::thread([] {
    QueryAddress();
    EXPECT_EQ(pafClosePafId(1), 0);
  }).join();
  EXPECT_EQ(Property(0, "ClientCount"), "0");
  EXPECT_EQ(au->counter(kFakeSearcherReleases), 1);
}

TEST_F(DefaultThreadsTest, AThreadEndsAfterItsInstanceLostItsSearcher)
{
  {
    Waiting other(QueryAddress);
    ASSERT_EQ(pafForceCloseAll(), 0);
    EXPECT_EQ(Property(0, "ClientCount"), "1");
    au->clearCalls();
  }
  EXPECT_EQ(au.Sequence(), "");
  EXPECT_EQ(Property(0, "ClientCount"), "0");
}

TEST_F(DefaultThreadsTest, AThreadEndsWhileAnotherUsesItsInstance)
{
  auto other = std::make_unique<Waiting>(QueryAddress);
  {
    BusyInstance busy(au, 1);
    other.reset();
    EXPECT_EQ(au->counter(kFakeSearcherReleases), 0);
    EXPECT_EQ(Property(0, "ClientCount"), "1") << "it stays in the table";
    EXPECT_EQ(busy.Finish(), 0);
  }
  QueryAddress();
  EXPECT_EQ(Property(0, "ClientCount"), "2");
  EXPECT_EQ(pafClosePafId(1), 0);
}

TEST_F(DefaultThreadsTest, ClosingConcernsTheCallersInstanceOnly)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  QueryAddress();
  std::thread([this] {
    QueryAddress();
    EXPECT_EQ(Property(0, "ClientCount"), "2");
    EXPECT_EQ(pafClosePaf(), 0);
    EXPECT_EQ(Property(0, "ClientCount"), "1");
    EXPECT_EQ(au->refCount(path.c_str()), 1);
  }).join();
  EXPECT_EQ(pafGet_FindStatus(), 0);
  EXPECT_EQ(au->counter(kFakeSearcherReleases), 1) << "the end of the thread has nothing left to do";
}

TEST_F(DefaultThreadsTest, ThreadsAreServedSideBySide)
{
  QueryAddress();
  au->block(kFakeGetAddress);
  std::thread inside([] { QueryAddress(); });
  ASSERT_GT(au->waitUntilBlocked(kFakeGetAddress, 10000), 0);
  char out[255];
  EXPECT_EQ(pafGet_ParsedInput(out), 0);
  EXPECT_EQ(pafGet_FindStatus(), 0);
  EXPECT_EQ(Property(0, "ClientCount"), "2");
  ASSERT_EQ(pafOpenPaf(), 0);
  EXPECT_EQ(pafClosePaf(), 0) << "and closed: the other's call keeps only its own instance busy";
  EXPECT_EQ(Property(0, "ClientCount"), "1");
  au->unblock(kFakeGetAddress);
  inside.join();
}

TEST_F(DefaultThreadsTest, ErrorsBelongToTheirThread)
{
  au.Answer(kFakeGetParsedInput, 12);
  char out[255];
  ASSERT_EQ(pafGet_ParsedInput(out), 12);
  std::thread([] {
    EXPECT_EQ(Describe(12), "");
    char own[255];
    EXPECT_EQ(pafGet_ParsedInput(own), 12);
    EXPECT_EQ(Describe(12), "fake text for 12");
  }).join();
  EXPECT_EQ(Describe(12), "fake text for 12");
}

/** The fakes take no lock of their own here, so that only the library's locking counts. */
TEST_F(DefaultThreadsTest, ManyThreadsComeAndGo)
{
  au->setRecording(0);
  std::atomic<bool> stop{false};
  std::atomic<long> rounds{0};
  const auto come = [&] {
    while (!stop.load(std::memory_order_relaxed)) {
      std::thread([] {
        QueryAddress();
        EXPECT_EQ(pafSetProperties("Delimiter", "|"), 0);
        EXPECT_EQ(ReadDefault("CountryCode"), (Answer{0, "AU"}));
      }).join();
      rounds.fetch_add(1, std::memory_order_relaxed);
    }
  };
  const auto watch = [&] {
    while (!stop.load(std::memory_order_relaxed)) {
      for (const char* name : {"OpenArfs", "OpenArfPaths", "ClientCount", "ClientCount2", "UseSockets", "OpenARF"}) {
        EXPECT_EQ(Read(0, name).status, 0);
      }
      ASSERT_EQ(pafOpenPaf(), 0);
      QueryAddress();
      ASSERT_EQ(pafClosePaf(), 0);
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(come);
  for (int i = 0; i < 2; ++i) threads.emplace_back(watch);
  std::this_thread::sleep_for(std::chrono::milliseconds(1500));
  stop = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_GT(rounds, 8);
  EXPECT_EQ(Property(0, "ClientCount"), "0");
  EXPECT_EQ(Property(0, "ClientCount2"), "0");
}

/** Instances that change their database while others read what is open. */
TEST_F(DefaultThreadsTest, DatabasesChangeUnderTheEyesOfReaders)
{
  Fake nz("libqxarfnz.so");
  au->setRecording(0);
  nz->setRecording(0);
  std::atomic<bool> stop{false};
  std::atomic<long> changes{0};
  const auto change = [&] {
    const int id = Open("AU.one");
    for (int round = 0; !stop.load(std::memory_order_relaxed); ++round) {
      ASSERT_EQ(pafSetPropertiesId(id, "OpenARF", round % 2 == 0 ? "NZ.other" : "AU.one"), 0);
      ASSERT_EQ(Property(id, "OpenARF"), round % 2 == 0 ? "NZ.other" : "AU.one");
      changes.fetch_add(1, std::memory_order_relaxed);
    }
    EXPECT_EQ(pafClosePafId(id), 0);
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) threads.emplace_back(change);
  threads.emplace_back([&] {
    while (!stop.load(std::memory_order_relaxed)) {
      for (const char* name : {"OpenArfs", "OpenArfPaths", "ClientCount"}) EXPECT_EQ(Read(0, name).status, 0);
      QueryAddress();
    }
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(1500));
  stop = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_GT(changes, 3);
  EXPECT_EQ(nz->counter(kFakeLiveDbs), 0);
  EXPECT_EQ(nz->counter(kFakeLiveSearchers), 0);
}

class ServerThreadsTest : public testing::Test
{
 protected:
  Workspace workspace{{"ARF/AU/one=/one", "PindleSvr/TcpHost=127.0.0.1", "PindleSvr/TcpPort=1"}};
  Fake au{"libqxarfau.so"};
};

TEST_F(ServerThreadsTest, TheModeIsDecidedForAllThreadsAlike)
{
  std::promise<void> start;
  const std::shared_future<void> started = start.get_future().share();
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([started] {
      started.wait();
      EXPECT_LT(pafOpenArfId2(0, "AU.one"), 0) << "served locally although a server is configured";
    });
  }
  start.set_value();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(au.Count(kFakeDbOpen), 0u);
  EXPECT_EQ(Property(0, "UseSockets"), "True");
}

TEST_F(ServerThreadsTest, HostAndPortAreReadWhole)
{
  std::atomic<bool> stop{false};
  std::vector<std::thread> threads;
  for (const char letter : {'a', 'b', 'c'}) {
    threads.emplace_back([&stop, text = std::string(31, letter)] {
      while (!stop.load(std::memory_order_relaxed)) {
        EXPECT_EQ(pafSetPropertiesId(0, "TcpHost", text.c_str()), 0);
        EXPECT_EQ(pafSetPropertiesId(0, "TcpPort", text.c_str()), 0);
        for (const char* name : {"TcpHost", "TcpPort"}) {
          const std::string read = Property(0, name);
          EXPECT_EQ(read, std::string(31, read.empty() ? '?' : read[0]));
        }
      }
    });
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  stop = true;
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace blackbox
