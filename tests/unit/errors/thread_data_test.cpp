#include "errors/thread_data.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "qxpaf/paf.h"

namespace {

using namespace qxpaf;

ThreadData* CurrentRecord()
{
  ThreadData* record = nullptr;
  EXPECT_EQ(0, GetThreadData(false, record));
  return record;
}

/** Runs a test on a thread that has no record yet. */
template <class Body>
void OnFreshThread(Body body)
{
  std::thread(body).join();
}

TEST(ThreadData, IsCreatedByTheFirstWriterOnly)
{
  OnFreshThread([] {
    EXPECT_EQ(nullptr, CurrentRecord());
    ThreadData* record = nullptr;
    ASSERT_EQ(0, GetThreadData(true, record));
    ASSERT_NE(nullptr, record);
    EXPECT_EQ(0, record->defaultId);
    EXPECT_EQ(0, record->lastError.id);
    EXPECT_EQ(0, record->lastError.code);
    EXPECT_STREQ("", record->lastError.text);
    EXPECT_EQ(record, CurrentRecord());
  });
}

TEST(ThreadData, RecordsTheLibrarysOwnErrors)
{
  OnFreshThread([] {
    EXPECT_EQ(6495, SetErrorDescription(6495, "no file"));
    ASSERT_NE(nullptr, CurrentRecord());
    EXPECT_EQ(6495, CurrentRecord()->lastError.code);
    EXPECT_EQ(0, CurrentRecord()->lastError.id);
    EXPECT_STREQ("no file", CurrentRecord()->lastError.text);
  });
}

TEST(ThreadData, RecordsAnInstancesErrorsWithOrWithoutText)
{
  OnFreshThread([] {
    EXPECT_EQ(12, SetInstanceError(12, 3, "reason"));
    EXPECT_EQ(3, CurrentRecord()->lastError.id);
    EXPECT_STREQ("reason", CurrentRecord()->lastError.text);
    for (const char* const none : {static_cast<const char*>(nullptr), ""}) {
      SetInstanceError(12, 3, "reason");
      EXPECT_EQ(13, SetInstanceError(13, 4, none));
      EXPECT_EQ(13, CurrentRecord()->lastError.code);
      EXPECT_EQ(4, CurrentRecord()->lastError.id);
      EXPECT_STREQ("", CurrentRecord()->lastError.text);
    }
  });
}

TEST(ThreadData, CutsTextsAt255Characters)
{
  OnFreshThread([] {
    for (const std::size_t length : {254U, 255U, 256U, 1000U}) {
      const std::string text(length, 'x');
      SetErrorDescription(1, text.c_str());
      EXPECT_EQ(text.substr(0, 255), CurrentRecord()->lastError.text);
      SetInstanceError(1, 1, text.c_str());
      EXPECT_EQ(text.substr(0, 255), CurrentRecord()->lastError.text);
    }
  });
}

TEST(ThreadData, BelongsToItsThread)
{
  OnFreshThread([] {
    SetErrorDescription(1, "mine");
    OnFreshThread([] { EXPECT_EQ(nullptr, CurrentRecord()); });
    EXPECT_STREQ("mine", CurrentRecord()->lastError.text);
  });
}

TEST(ThreadData, AnEmptyErrorForgetsCodeIdAndText)
{
  OnFreshThread([] {
    SetInstanceError(9, 8, "seven");
    CurrentRecord()->defaultId = 6;
    CurrentRecord()->lastError = LastError();
    EXPECT_EQ(0, CurrentRecord()->lastError.code);
    EXPECT_EQ(0, CurrentRecord()->lastError.id);
    EXPECT_STREQ("", CurrentRecord()->lastError.text);
    EXPECT_EQ(6, CurrentRecord()->defaultId);
    CurrentRecord()->defaultId = 0;
  });
}

TEST(ThreadDataDeathTest, WithoutAKeyWritersFailAndTheirCallersGoOn)
{
  EXPECT_EXIT(
      {
        DeleteThreadKey();
        ThreadData* record = nullptr;
        const bool right = GetThreadData(true, record) == PAF_ERR_THREAD_VALUE_GET && record == nullptr &&
                           GetThreadData(false, record) == 0 && record == nullptr &&
                           SetErrorDescription(6495, "text") == 6495 && SetInstanceError(7, 1, "text") == 7;
        DeleteThreadKey();
        std::_Exit(right ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
