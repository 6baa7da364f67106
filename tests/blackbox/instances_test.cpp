// Ids: how they are handed out, reused and taken back.
#include <gtest/gtest.h>

#include <climits>

#include "blackbox/support/fake.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

class InstancesTest : public testing::Test
{
 protected:
  Workspace workspace{std::vector<std::string>{}};
  Fake fake{"libfaketwo.so"};
};

constexpr const char* kName = "DLL:FakeTwo;/ids";

TEST_F(InstancesTest, IdsCountFromOne)
{
  for (int expected = 1; expected <= 20; ++expected) {
    int id = -7;
    ASSERT_EQ(pafOpenArfId(&id, 0, kName), 0);
    EXPECT_EQ(id, expected);
  }
  for (int id = 1; id <= 20; ++id) EXPECT_EQ(pafClosePafId(id), 0);
}

TEST_F(InstancesTest, TheLowestFreeIdIsReusedFirst)
{
  for (int i = 1; i <= 5; ++i) ASSERT_EQ(Open(kName), i);
  ASSERT_EQ(pafClosePafId(4), 0);
  ASSERT_EQ(pafClosePafId(2), 0);
  EXPECT_EQ(Open(kName), 2);
  EXPECT_EQ(Open(kName), 4);
  EXPECT_EQ(Open(kName), 6);
  ASSERT_EQ(pafClosePafId(1), 0);
  EXPECT_EQ(pafOpenArfId2(0, kName), 1);
}

TEST_F(InstancesTest, ClosingTwiceIsRefused)
{
  const int id = Open(kName);
  EXPECT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(pafClosePafId(id), PAF_ERR_INVALID_ID);
  EXPECT_EQ(pafClosePafId(id), PAF_ERR_INVALID_ID);
}

TEST_F(InstancesTest, ClosingAnUnknownIdIsRefused)
{
  Open(kName);
  for (int unknown : {0, -1, 2, 1000, INT_MIN, INT_MAX}) EXPECT_EQ(pafClosePafId(unknown), PAF_ERR_INVALID_ID);
  EXPECT_EQ(pafClosePafId(1), 0);
}

TEST_F(InstancesTest, AFailedOpenLeavesItsFreedIdInTheCallersVariable)
{
  ASSERT_EQ(Open(kName), 1);
  int id = -7;
  EXPECT_EQ(pafOpenArfId(&id, 0, "AU.nowhere"), PAF_ERR_NOT_CONFIGURED);
  EXPECT_EQ(id, 2);
  EXPECT_EQ(pafClosePafId(id), PAF_ERR_INVALID_ID) << "it names nothing";
  EXPECT_EQ(Open(kName), 2) << "and is free";
}

TEST_F(InstancesTest, OpenArfId2AnswersTheIdOrTheNegatedStatus)
{
  EXPECT_EQ(pafOpenArfId2(0, kName), 1);
  EXPECT_EQ(pafOpenArfId2(0, "AU.nowhere"), -PAF_ERR_NOT_CONFIGURED);
  EXPECT_EQ(pafOpenArfId2(0, "abcd.x"), -PAF_ERR_UNKNOWN_COUNTRY);
  EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeNowhere"), -PAF_ERR_LIBRARY_NOT_LOADED);
  EXPECT_EQ(pafOpenPafId2(), -PAF_ERR_NOT_CONFIGURED);
  for (int status : {1, 77, 6404}) {
    fake.Answer(kFakeDbOpen, status);
    EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeTwo;/other"), -status);
  }
  fake->clearAnswer(kFakeDbOpen);
  EXPECT_EQ(Open(kName), 2);
}

TEST_F(InstancesTest, EachInstanceHasASearcherOfItsOwn)
{
  const int first = Open(kName);
  const int second = Open(kName);
  ASSERT_EQ(fake.Count(kFakeGetSearcher), 2u);
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 2);
  pafGetFindStatusId(first);
  const void* searcher1 = fake.Last(kFakeGetFindStatus).object;
  pafGetFindStatusId(second);
  EXPECT_NE(fake.Last(kFakeGetFindStatus).object, searcher1);
  EXPECT_EQ(pafClosePafId(first), 0);
  EXPECT_EQ(fake.Last(kFakeRelease).object, searcher1);
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 1);
}

TEST_F(InstancesTest, TheSearcherIsMadeForTheOpenDatabase)
{
  Open(kName);
  const void* db = fake.Last(kFakeDbOpen).object;
  EXPECT_TRUE(fake.Last(kFakeGetSearcher).arguments.at(0).Is(db));
}

TEST_F(InstancesTest, OpeningAndClosingCallThePluginInOrder)
{
  const int id = Open(kName);
  EXPECT_EQ(fake.Sequence(), "GetDb DbOpen GetSearcher ");
  fake->clearCalls();
  EXPECT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(fake.Sequence(), "GetArfDb Release DbClose DbRelease ");
}

TEST_F(InstancesTest, ASearcherThatKnowsNoDatabaseIsReleasedAllTheSame)
{
  const int id = Open(kName);
  fake.Behave(kFakeGetArfDb, kFakeAnswerNull);
  EXPECT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(fake->counter(kFakeSearcherReleases), 1);
  EXPECT_EQ(fake->counter(kFakeCloses), 0) << "nothing says which database to let go";
  EXPECT_EQ(pafClosePafId(id), PAF_ERR_INVALID_ID);
}

TEST_F(InstancesTest, ForceCloseAllReleasesEverySearcherThenEveryDatabase)
{
  const int first = Open("DLL:FakeTwo;/one");
  const int second = Open("DLL:FakeTwo;/two");
  const int closed = Open("DLL:FakeTwo;/three");
  ASSERT_EQ(pafClosePafId(closed), 0);
  const int third = Open("DLL:FakeTwo;/one");
  EXPECT_EQ(third, closed);
  fake->clearCalls();
  EXPECT_EQ(pafForceCloseAll(), 0);
  const std::string sequence = fake.Sequence();
  EXPECT_EQ(sequence.find("Release Release Release "), 0u) << sequence;
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 0);
  EXPECT_EQ(fake->counter(kFakeLiveDbs), 0);
  for (int id : {first, second, third}) {
    EXPECT_EQ(pafGetFindStatusId(id), -1);
    EXPECT_EQ(pafClosePafId(id), PAF_ERR_NO_SEARCHER);
  }
}

TEST_F(InstancesTest, ForceCloseAllMayBeCalledAtAnyTime)
{
  EXPECT_EQ(pafForceCloseAll(), 0) << "nothing was ever open";
  const int first = Open(kName);
  EXPECT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(pafForceCloseAll(), 0) << "instances without a searcher are passed over";
  const int second = Open(kName);
  EXPECT_EQ(second, first + 1) << "the Id of the first stays allocated";
  EXPECT_EQ(fake->counter(kFakeOpens), 2);
  EXPECT_EQ(pafGetFindStatusId(second), 0);
  EXPECT_EQ(pafClosePafId(second), 0);
  EXPECT_EQ(pafForceCloseAll(), 0) << "with a free slot in the table";
  EXPECT_EQ(Open(kName), second);
}

TEST_F(InstancesTest, ManyInstances)
{
  constexpr int kMany = 2000;
  Fake au("libqxarfau.so");
  for (int i = 1; i <= kMany; ++i) ASSERT_EQ(Open("AU./many"), i);
  EXPECT_EQ(au->refCount("/many"), kMany);
  EXPECT_EQ(au->counter(kFakeOpens), 1);
  for (int i = kMany; i >= 1; --i) ASSERT_EQ(pafClosePafId(i), 0);
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
  EXPECT_EQ(au->counter(kFakeLiveSearchers), 0);
}

}  // namespace
}  // namespace blackbox
