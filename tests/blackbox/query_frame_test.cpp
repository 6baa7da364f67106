// What every function with an Id has in common: the Id is checked, an instance serves one call at a time, and a
// plug-in's failure is passed on and remembered.
#include <gtest/gtest.h>

#include <climits>
#include <thread>

#include "blackbox/support/fake.h"
#include "blackbox/support/id_functions.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr int kPluginCode = 12;
constexpr const char* kPluginText = "fake text for 12";

class QueryFrameTest : public SessionTest, public testing::WithParamInterface<IdFunction>
{
 protected:
  const IdFunction& Function() const { return GetParam(); }
  int Call(int instance) const { return Function().call(instance); }
  int Call() const { return Call(id); }
};

INSTANTIATE_TEST_SUITE_P(Every, QueryFrameTest, testing::ValuesIn(IdFunctions()), RowName());

TEST_P(QueryFrameTest, SucceedsOnAnOpenInstanceWithOneCallOfItsOperation)
{
  EXPECT_EQ(Call(), 0);
  EXPECT_EQ(fake.Count(Function().operation), 1u);
}

TEST_P(QueryFrameTest, RefusesIdsThatNameNoInstance)
{
  const int closed = Open("DLL:FakeTwo;/closed");
  ASSERT_EQ(pafClosePafId(closed), 0);
  fake->clearCalls();
  for (int unknown : {0, -1, -id, INT_MIN, INT_MIN + 1, closed, id + 100, INT_MAX, INT_MAX - 1})
    EXPECT_EQ(Call(unknown), Function().Failing(PAF_ERR_INVALID_ID)) << "Id " << unknown;
  EXPECT_EQ(fake.Sequence(), "");
}

TEST_P(QueryFrameTest, RefusesABusyInstanceAtOnceAndLeavesTheRunningCallAlone)
{
  fake.Answer(kFakeLookupAddress, 0, "12345678");
  BusyInstance busy(fake, id);
  fake->clearCalls();
  EXPECT_EQ(Call(), Function().Failing(PAF_ERR_ID_IN_USE));
  EXPECT_EQ(pafClosePafId(id), PAF_ERR_ID_IN_USE);
  EXPECT_EQ(fake.Sequence(), "") << "a refused call must not reach the plug-in";
  EXPECT_EQ(busy.Finish(), 0);
  EXPECT_STREQ(busy.Text(), "12345678");
  EXPECT_EQ(Call(), 0) << "the instance is idle again";
}

TEST_P(QueryFrameTest, PassesThePluginsStatusOn)
{
  for (int status : {1, kPluginCode, 599, 7777, -1, -6405, INT_MAX, INT_MIN, 6405, 6408, 6412}) {
    fake.Answer(Function().operation, status);
    EXPECT_EQ(Call(), status);
  }
  fake->clearAnswer(Function().operation);
  EXPECT_EQ(Call(), 0) << "the instance is idle again";
}

TEST_P(QueryFrameTest, RemembersThePluginsFailureOnceForThisThreadAndThisCode)
{
  fake.Answer(Function().operation, kPluginCode);
  ASSERT_EQ(Call(), kPluginCode);
  std::thread([] { EXPECT_EQ(Describe(kPluginCode), "") << "another thread has no such error"; }).join();
  EXPECT_EQ(Describe(kPluginCode), Function().answersFindStatus ? "" : kPluginText);
  EXPECT_EQ(Describe(kPluginCode), "") << "asking consumes the error";
}

TEST_P(QueryFrameTest, AsksTheSearcherOfTheFailingInstanceForItsText)
{
  const int other = Open("DLL:FakeTwo;/other");
  ASSERT_EQ(Call(), 0);
  const void* searcher = fake.Last(Function().operation).object;
  fake.Answer(Function().operation, kPluginCode);
  ASSERT_EQ(Call(), kPluginCode);
  fake->clearAnswer(Function().operation);
  ASSERT_EQ(Call(other), 0) << "a success elsewhere changes nothing";
  Describe(kPluginCode);
  EXPECT_EQ(fake.Count(kFakeGetErrorDescription), Function().answersFindStatus ? 0u : 1u);
  if (!Function().answersFindStatus) {
    EXPECT_EQ(fake.Last(kFakeGetErrorDescription).object, searcher);
  }
  pafClosePafId(other);
}

TEST_P(QueryFrameTest, DoesNotRememberWhatTheLibraryFindsItself)
{
  fake.Answer(kFakeGetParsedInput, kPluginCode);
  char out[16];
  ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), kPluginCode);
  EXPECT_EQ(Call(id + 100), Function().Failing(PAF_ERR_INVALID_ID));
  EXPECT_EQ(Describe(kPluginCode), kPluginText);
}

TEST_P(QueryFrameTest, ASuccessKeepsTheLastError)
{
  fake.Answer(kFakeGetParsedInput, kPluginCode);
  char out[16];
  ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), kPluginCode);
  fake->clearAnswer(kFakeGetParsedInput);
  EXPECT_EQ(Call(), 0);
  EXPECT_EQ(Describe(kPluginCode), kPluginText);
}

TEST_P(QueryFrameTest, ALaterFailureReplacesTheEarlierOne)
{
  fake.Answer(kFakeGetParsedInput, 99);
  char out[16];
  ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), 99);
  fake.Answer(Function().operation, kPluginCode);
  ASSERT_EQ(Call(), kPluginCode);
  EXPECT_EQ(Describe(99), Function().answersFindStatus ? "fake text for 99" : "");
}

TEST_P(QueryFrameTest, AnswersNoSearcherAfterForceCloseAll)
{
  ASSERT_EQ(pafForceCloseAll(), 0);
  fake->clearCalls();
  EXPECT_EQ(Call(), Function().Failing(PAF_ERR_NO_SEARCHER));
  EXPECT_EQ(Call(), Function().Failing(PAF_ERR_NO_SEARCHER)) << "the Id stays allocated and idle";
  EXPECT_EQ(pafClosePafId(id), PAF_ERR_NO_SEARCHER);
  EXPECT_EQ(Call(), Function().Failing(PAF_ERR_NO_SEARCHER)) << "closing does not free it";
  EXPECT_EQ(fake.Sequence(), "");
}

TEST_P(QueryFrameTest, RunsOnTheCallersThread)
{
  std::thread([this] {
    ASSERT_EQ(Call(), 0);
    EXPECT_EQ(fake.Last(Function().operation).thread, pthread_self());
  }).join();
}

TEST_F(SessionTest, OtherInstancesAreServedWhileOneIsBusy)
{
  const int other = Open("DLL:FakeTwo;/other");
  {
    BusyInstance busy(fake, id);
    for (const IdFunction& function : IdFunctions()) {
      if (function.operation == kFakeLookupAddress) continue;  // its gate is closed
      EXPECT_EQ(function.call(other), 0) << function.name;
    }
  }
  EXPECT_EQ(pafClosePafId(other), 0);
}

struct Workless
{
  const char* name;
  int expected;
  int (*call)(int id, char* out, long* numbers);
};

class WorklessTest : public SessionTest, public testing::WithParamInterface<Workless>
{
};

const Workless kWorkless[] = {
    {"pafGetBorderPostcodesId", 6408,
     [](int id, char* out, long*) { return pafGetBorderPostcodesId(id, 2000, out, 8); }},
    {"pafReadLocalityRecordId", 6408,
     [](int id, char* out, long* n) { return pafReadLocalityRecordId(id, 1L, out, n, n + 1); }},
    {"pafReadGroupRecordId", 6408,
     [](int id, char* out, long* n) { return pafReadGroupRecordId(id, 1L, out, n, n + 1); }},
    {"pafReadPointRecordId", 6408, [](int id, char* out, long*) { return pafReadPointRecordId(id, 1L, out, 8); }},
    {"pafReadSynonymRecordId", 6408, [](int id, char* out, long* n) { return pafReadSynonymRecordId(id, 1L, out, n); }},
    {"pafReadBorderRecordId", 6408,
     [](int id, char*, long* n) {
       int* words = reinterpret_cast<int*>(n);
       return pafReadBorderRecordId(id, 1, words, words + 1);
     }},
    {"pafGetCornerGeocodesId", 6408,
     [](int id, char* out, long* n) { return pafGetCornerGeocodesId(id, out, out + 4, n, n + 1); }},
    {"pafGetLocalityRecordCountId", 0, [](int id, char*, long*) { return pafGetLocalityRecordCountId(id); }},
    {"pafGetGroupRecordCountId", 0, [](int id, char*, long*) { return pafGetGroupRecordCountId(id); }},
    {"pafGetPointRecordCountId", 0, [](int id, char*, long*) { return pafGetPointRecordCountId(id); }},
    {"pafGetSynonymRecordCountId", 0, [](int id, char*, long*) { return pafGetSynonymRecordCountId(id); }},
};

INSTANTIATE_TEST_SUITE_P(Every, WorklessTest, testing::ValuesIn(kWorkless), RowName());

TEST_P(WorklessTest, AnswersTheSameForAnyIdAndTouchesNothing)
{
  fake->clearCalls();
  for (int any : {id, 0, -1, id + 100, INT_MIN, INT_MAX}) {
    char out[8] = {'q', 'q', 'q', 'q', 'q', 'q', 'q', 'q'};
    long numbers[2] = {71, 72};
    EXPECT_EQ(GetParam().call(any, out, numbers), GetParam().expected) << "Id " << any;
    EXPECT_EQ(std::string(out, sizeof out), "qqqqqqqq");
    EXPECT_EQ(numbers[0], 71);
    EXPECT_EQ(numbers[1], 72);
  }
  EXPECT_EQ(fake.Sequence(), "");
}

TEST_P(WorklessTest, AnswersAlsoWhileTheInstanceIsBusy)
{
  BusyInstance busy(fake, id);
  char out[8] = "";
  long numbers[2] = {0, 0};
  EXPECT_EQ(GetParam().call(id, out, numbers), GetParam().expected);
}

TEST_P(WorklessTest, IsNotRemembered)
{
  fake.Answer(kFakeGetParsedInput, kPluginCode);
  char out[16];
  long numbers[2] = {0, 0};
  ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), kPluginCode);
  GetParam().call(id, out, numbers);
  EXPECT_EQ(Describe(kPluginCode), kPluginText);
}

}  // namespace
}  // namespace blackbox
