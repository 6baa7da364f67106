// Many threads at once. The fakes take no lock of their own here, so that only the library's locking counts.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/run_in_threads.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr int kThreads = 8;
constexpr auto kDuration = std::chrono::milliseconds(1500);

template <class Body>
void RunInThreads(Body body)
{
  blackbox::RunInThreads(kThreads, kDuration, body);
}

class ThreadsTest : public testing::Test
{
 protected:
  ThreadsTest()
  {
    for (const char* library : {"libqxarfau.so", "libqxarfnz.so", "libfakeone.so", "libfaketwo.so"})
      fakes[library]->setRecording(0);
  }

  /** Nothing is left open in any plug-in. */
  void ExpectAllClosed()
  {
    EXPECT_EQ(fakes.Counter(kFakeLiveSearchers), 0);
    EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
    EXPECT_EQ(fakes.Counter(kFakeOpens), fakes.Counter(kFakeCloses));
  }

  Workspace workspace{{"ARF/AU/shared=/shared", "ARF/NZ/shared=/shared-nz", "OpenPaf=Ram"}};
  CountryFakes fakes;
};

TEST_F(ThreadsTest, EachThreadQueriesItsOwnInstance)
{
  Fake& au = fakes["libqxarfau.so"];
  au.Answer(kFakeLookupAddress, 0, "12345678");
  au.Answer(kFakeGetParsedInput, 12);
  int ids[kThreads];
  for (int& id : ids) id = Open("AU.shared");
  std::atomic<long> calls{0};
  RunInThreads([&](int number, unsigned) {
    char text[32] = "1 High St";
    ASSERT_EQ(pafGetDpidId(ids[number], text, sizeof text), 0);
    ASSERT_STREQ(text, "12345678");
    ASSERT_EQ(pafGetParsedInputId(ids[number], text, sizeof text), 12);
    ASSERT_EQ(Describe(12), "fake text for 12");
    ASSERT_EQ(Describe(12), "");
    calls.fetch_add(1, std::memory_order_relaxed);
  });
  EXPECT_GT(calls, kThreads) << "every thread came round";
  for (int id : ids) EXPECT_EQ(pafClosePafId(id), 0);
  ExpectAllClosed();
}

TEST_F(ThreadsTest, ThreadsOnOneIdGetZeroOrInUse)
{
  const int id = Open("AU.shared");
  std::atomic<long> served{0};
  std::atomic<long> refused{0};
  RunInThreads([&](int, unsigned) {
    char text[32] = "1 High St";
    const int status = pafLookupAddress(id, text, sizeof text, 0);
    if (status == 0)
      served.fetch_add(1, std::memory_order_relaxed);
    else if (status == PAF_ERR_ID_IN_USE)
      refused.fetch_add(1, std::memory_order_relaxed);
    else
      ADD_FAILURE() << "status " << status;
  });
  EXPECT_GT(served, 0);
  RecordProperty("refused", std::to_string(refused));
  EXPECT_EQ(pafClosePafId(id), 0);
  ExpectAllClosed();
}

TEST_F(ThreadsTest, OpeningAndClosingOnSharedAndOwnDatabases)
{
  std::atomic<long> opened{0};
  RunInThreads([&](int number, unsigned round) {
    const std::string names[] = {"AU.shared", "NZ.shared", "AU./own" + std::to_string(number), "DLL:FakeOne;/p"};
    int id = 0;
    ASSERT_EQ(pafOpenArfId(&id, static_cast<int>(round % 4), names[round % 4].c_str()), 0);
    ASSERT_EQ(pafGetFindStatusId(id), 0);
    ASSERT_EQ(pafClosePafId(id), 0);
    opened.fetch_add(1, std::memory_order_relaxed);
  });
  EXPECT_GT(opened, kThreads);
  ExpectAllClosed();
  EXPECT_EQ(Open("AU.shared"), 1) << "no Id was lost";
  EXPECT_EQ(pafClosePafId(1), 0);
}

TEST_F(ThreadsTest, FailingOpensBesideWorkingOnes)
{
  fakes["libfaketwo.so"].Answer(kFakeDbOpen, 77, "no such luck");
  RunInThreads([&](int number, unsigned round) {
    if (number % 2 == 0) {
      const int id = pafOpenArfId2(0, "AU.shared");
      ASSERT_GT(id, 0);
      ASSERT_EQ(pafClosePafId(id), 0);
    } else if (round % 3 == 0) {
      ASSERT_EQ(pafOpenArfId2(0, "AU.nowhere"), -PAF_ERR_NOT_CONFIGURED);
      ASSERT_EQ(pafOpenArfId2(0, "DLL:FakeNowhere"), -PAF_ERR_LIBRARY_NOT_LOADED);
      ASSERT_NE(Describe(PAF_ERR_LIBRARY_NOT_LOADED), "");
    } else {
      ASSERT_EQ(pafOpenArfId2(0, "DLL:FakeTwo;/bad"), -77);
      ASSERT_EQ(Describe(77), "no such luck");
    }
  });
  ExpectAllClosed();
  EXPECT_EQ(Open("AU.shared"), 1) << "no Id was lost";
  EXPECT_EQ(pafClosePafId(1), 0);
}

/** What a call on an Id may answer while another thread closes it or fails to open it. */
bool IsAnswerDuringAChange(int status)
{
  return status == PAF_ERR_INVALID_ID || status == PAF_ERR_ID_IN_USE;
}

TEST_F(ThreadsTest, ClosingAnIdThatOthersUse)
{
  std::atomic<int> current{Open("AU.shared")};
  RunInThreads([&](int number, unsigned) {
    const int id = current.load();
    if (number != 0) {
      char text[32] = "1 High St";
      const int status = pafLookupAddress(id, text, sizeof text, 0);
      ASSERT_TRUE(status == 0 || IsAnswerDuringAChange(status)) << status;
      return;
    }
    const int status = pafClosePafId(id);
    ASSERT_TRUE(status == 0 || status == PAF_ERR_ID_IN_USE) << status;
    if (status == 0) current = Open("AU.shared");
  });
  EXPECT_EQ(pafClosePafId(current), 0);
  ExpectAllClosed();
}

TEST_F(ThreadsTest, UsingAnIdWhoseOpenFails)
{
  fakes["libfaketwo.so"].Answer(kFakeDbOpen, 77, "no such luck");
  RunInThreads([&](int number, unsigned) {
    if (number == 0) {
      int id = 0;
      ASSERT_EQ(pafOpenArfId(&id, 0, "DLL:FakeTwo;/bad"), 77);
      ASSERT_EQ(id, 1);
      return;
    }
    char text[32] = "1 High St";
    const int status = pafLookupAddress(1, text, sizeof text, 0);
    ASSERT_TRUE(IsAnswerDuringAChange(status)) << status;
  });
  EXPECT_EQ(Open("AU.shared"), 1) << "no Id was lost";
  EXPECT_EQ(pafClosePafId(1), 0);
  ExpectAllClosed();
}

TEST_F(ThreadsTest, ManyShortThreadsWithErrors)
{
  const int id = Open("AU.shared");
  fakes["libqxarfau.so"].Answer(kFakeSetGeographicalCodes, 12, "bad code");
  for (int i = 0; i < 300; ++i) {
    std::thread([id] {
      EXPECT_EQ(pafSetGeographicalCodesId(id, "x"), 12);
      EXPECT_EQ(Describe(12), "bad code");
      EXPECT_EQ(pafSetGeographicalCodesId(id, "x"), 12) << "the thread ends with its error unread";
    }).join();
  }
  EXPECT_EQ(pafClosePafId(id), 0);
  ExpectAllClosed();
}

}  // namespace
}  // namespace blackbox
