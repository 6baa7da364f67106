// Sort plans of postcodes, which the thread's default instance answers as properties.
#include <gtest/gtest.h>

#include <climits>
#include <thread>

#include "blackbox/support/fake.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

struct SortPlan
{
  const char* name;
  int (*call)(char* text, int size);
  const char* keyword;
};

class SortPlanTest : public testing::TestWithParam<SortPlan>
{
 protected:
  void SetUp() override
  {
    workspace.MakeDatabase("db", "DATABASENAME=AUSTRALIA\n");
    workspace.Configure({"PafDir=@/db"});
  }

  void OpenGlobal() { ASSERT_EQ(pafOpenPaf(), 0); }

  /** Asks for the plan of a postcode in a buffer of one byte more than the size, and at least for the postcode. */
  std::string Plan(int size, const std::string& postcode = "2000")
  {
    GuardedBuffer text(postcode, size < 0 ? 1 : static_cast<size_t>(size) + 1);
    EXPECT_EQ(GetParam().call(text.data(), size), 0) << "size " << size;
    EXPECT_TRUE(text.IsTerminated());
    return text.Text();
  }

  Workspace workspace{std::vector<std::string>{}};
  Fake fake{"libqxarfau.so"};
};

INSTANTIATE_TEST_SUITE_P(Kind, SortPlanTest,
                         testing::Values(SortPlan{"Bsp", pafPostcodeToBsp, "BSP:"},
                                         SortPlan{"Npsp", pafPostcodeToNpsp, "NPSP:"}),
                         RowName());

TEST_P(SortPlanTest, IsAPropertyOfTheDefaultInstance)
{
  OpenGlobal();
  ASSERT_EQ(pafGet_FindStatus(), 0);
  fake.Answer(kFakeGetProperties, 0, "015");
  for (const std::string& postcode :
       {std::string("2000"), std::string(), std::string("a;b =\t"), std::string(400, '2')}) {
    fake->clearCalls();
    ASSERT_EQ(pafGet_FindStatus(), 0);
    EXPECT_EQ(Plan(10, postcode), "015");
    ASSERT_EQ(fake.Count(kFakeGetProperties), 1u);
    const Call call = fake.Last(kFakeGetProperties);
    EXPECT_EQ(call.object, fake.Last(kFakeGetFindStatus).object);
    EXPECT_EQ(call.arguments[0], GetParam().keyword + postcode);
    EXPECT_EQ(call.arguments[2], 20);
    EXPECT_EQ(fake.Count(kFakeGetOtherProperties), 0u);
  }
}

TEST_P(SortPlanTest, OpensTheDefaultInstanceOnce)
{
  OpenGlobal();
  fake.Answer(kFakeGetProperties, 0, "015");
  EXPECT_EQ(Plan(10), "015");
  EXPECT_EQ(Plan(10), "015");
  EXPECT_EQ(fake.Count(kFakeGetSearcher), 1u);
}

TEST_P(SortPlanTest, WithoutADatabaseIsEmpty)
{
  EXPECT_EQ(Plan(10), "");
  EXPECT_EQ(fake.Sequence(), "");
  Open("AU./another");
  fake->clearCalls();
  EXPECT_EQ(Plan(10), "") << "another database is not the global one";
  EXPECT_EQ(fake.Sequence(), "");
}

TEST_P(SortPlanTest, AnswersUpToTheSizeAreCopiedWhole)
{
  OpenGlobal();
  for (size_t length = 0; length <= 19; ++length) {
    const std::string answer = std::string("ABCDEFGHIJKLMNOPQRS").substr(0, length);
    fake.Answer(kFakeGetProperties, 0, answer.c_str());
    const int exact = static_cast<int>(length);
    EXPECT_EQ(Plan(exact - 1), "") << "too long by one";
    EXPECT_EQ(Plan(exact), answer) << "exactly the size";
    EXPECT_EQ(Plan(exact + 1), answer);
    EXPECT_EQ(Plan(300), answer);
  }
}

TEST_P(SortPlanTest, WritesOnlyTheAnswerAndItsTerminator)
{
  OpenGlobal();
  fake.Answer(kFakeGetProperties, 0, "0123");
  GuardedBuffer text(32);
  text.data()[0] = '\0';
  EXPECT_EQ(GetParam().call(text.data(), 31), 0);
  EXPECT_TRUE(text.IsUntouchedFrom(5));
  GuardedBuffer emptied("2000", 8);
  EXPECT_EQ(GetParam().call(emptied.data(), 3), 0);
  EXPECT_EQ(emptied.Text(), "");
  EXPECT_EQ(emptied.Bytes().substr(1, 4), std::string("000\0", 4)) << "emptied by one byte";
}

TEST_P(SortPlanTest, OfALongerAnswerIsWhatFits20Bytes)
{
  OpenGlobal();
  fake.Behave(kFakeGetProperties, kFakeFill);
  EXPECT_EQ(Plan(19), std::string(19, 'x'));
  EXPECT_EQ(Plan(18), "");
}

TEST_P(SortPlanTest, WithASizeBelowZeroIsEmpty)
{
  OpenGlobal();
  fake.Answer(kFakeGetProperties, 0, "015");
  for (const int size : {-1, -20, INT_MIN}) EXPECT_EQ(Plan(size), "");
  fake.Answer(kFakeGetProperties, 0, "");
  for (const int size : {0, -1, INT_MIN}) EXPECT_EQ(Plan(size), "");
}

TEST_P(SortPlanTest, ThatThePluginRefusesIsEmptyAndTheReasonRemembered)
{
  OpenGlobal();
  for (const int status : {77, -1, 6405, INT_MAX}) {
    fake.Answer(kFakeGetProperties, status, "015");
    EXPECT_EQ(Plan(10), "");
  }
  fake.Answer(kFakeGetProperties, 77, "015");
  EXPECT_EQ(Plan(10), "");
  EXPECT_EQ(Describe(77), "fake text for 77");
}

TEST_P(SortPlanTest, OfAThrowingPluginIsEmpty)
{
  OpenGlobal();
  for (const FakeOperation place : {kFakeGetSearcher, kFakeGetProperties}) {
    for (const FakeBehaviour what : {kFakeThrowBadAlloc, kFakeThrowError, kFakeThrowInt}) {
      fake.Behave(place, what);
      EXPECT_EQ(Plan(10), "");
    }
    fake->clearAnswer(place);
  }
  fake.Answer(kFakeGetProperties, 0, "015");
  EXPECT_EQ(Plan(10), "015") << "the instance is idle again";
}

TEST_P(SortPlanTest, WithoutASearcherIsEmpty)
{
  OpenGlobal();
  fake.Behave(kFakeGetSearcher, kFakeAnswerNull);
  EXPECT_EQ(Plan(10), "");
  fake->clearAnswer(kFakeGetSearcher);
  fake.Answer(kFakeGetProperties, 0, "015");
  EXPECT_EQ(Plan(10), "015");
}

TEST_P(SortPlanTest, InRemoteModeIsNotAskedFromTheLocalPlugin)
{
  OpenGlobal();
  ASSERT_EQ(pafSetPropertiesId(0, "TcpHost", "127.0.0.1"), 0);
  ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", "1"), 0);  // where nobody listens
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
  fake.Answer(kFakeGetProperties, 0, "015");
  fake->clearCalls();
  EXPECT_EQ(Plan(10), "");
  EXPECT_EQ(fake.Sequence(), "");
}

TEST_P(SortPlanTest, OfEachThreadComesFromItsOwnInstance)
{
  OpenGlobal();
  fake.Answer(kFakeGetProperties, 0, "015");
  EXPECT_EQ(Plan(10), "015");
  const void* const mine = fake.Last(kFakeGetProperties).object;
  std::thread([&] {
    EXPECT_EQ(Plan(10), "015");
    EXPECT_NE(fake.Last(kFakeGetProperties).object, mine);
  }).join();
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 1);
}

}  // namespace
}  // namespace blackbox
