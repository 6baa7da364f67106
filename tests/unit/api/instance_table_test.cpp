#include "api/instance_table.h"

#include <gtest/gtest.h>

#include <vector>

#include "qxpaf/paf.h"
#include "unit/api/stand_in.h"

namespace {

using namespace qxpaf;

/** A new instance, idle. */
int NewIdle()
{
  int id = 0;
  PafInfo* info = nullptr;
  EXPECT_EQ(0, NewInstance(&id, info));
  EXPECT_EQ(1, info->usageCount);
  const DecrementUsageCountWhenFinished guard(info);
  return id;
}

/** Takes an idle instance and frees it. */
int Free(int id)
{
  PafInfo* info = nullptr;
  const DecrementUsageCountWhenFinished guard(info);
  const int status = AcquireInstance(id, info);
  return status != 0 ? status : FreeInstance(id, info);
}

TEST(InstanceTable, GivesTheLowestFreeIdAndCounts)
{
  const int before = CountOpenInstances();
  const int first = NewIdle();
  const int second = NewIdle();
  const int third = NewIdle();
  EXPECT_EQ(first + 1, second);
  EXPECT_EQ(second + 1, third);
  EXPECT_EQ(before + 3, CountOpenInstances());
  EXPECT_EQ(0, Free(second));
  EXPECT_EQ(before + 2, CountOpenInstances());
  EXPECT_EQ(second, NewIdle());
  for (const int id : {first, second, third}) EXPECT_EQ(0, Free(id));
  EXPECT_EQ(before, CountOpenInstances());
}

TEST(InstanceTable, NewInstancesAreBlank)
{
  int id = 0;
  PafInfo* info = nullptr;
  ASSERT_EQ(0, NewInstance(&id, info));
  EXPECT_EQ(nullptr, info->searcher);
  EXPECT_EQ("", info->arfName);
  EXPECT_EQ(0, info->serverId);
  EXPECT_EQ(0, FreeInstance(id, info));
  EXPECT_EQ(nullptr, info);
}

TEST(InstanceTable, RefusesIdsThatAreNotOpen)
{
  const int id = NewIdle();
  PafInfo* info = nullptr;
  for (const int wrong : {0, -1, -2147483647 - 1, id + 1, 2147483647}) {
    EXPECT_EQ(PAF_ERR_INVALID_ID, AcquireInstance(wrong, info)) << wrong;
    EXPECT_EQ(PAF_ERR_INVALID_ID, FreeInstance(wrong, info)) << wrong;
  }
  EXPECT_EQ(0, Free(id));
  EXPECT_EQ(PAF_ERR_INVALID_ID, AcquireInstance(id, info));
  EXPECT_EQ(PAF_ERR_INVALID_ID, FreeInstance(id, info));
  EXPECT_EQ(nullptr, info);
}

TEST(InstanceTable, ABusyInstanceIsRefusedUntilItsGuardLeaves)
{
  const int id = NewIdle();
  PafInfo* second = nullptr;
  {
    PafInfo* first = nullptr;
    const DecrementUsageCountWhenFinished guard(first);
    ASSERT_EQ(0, AcquireInstance(id, first));
    EXPECT_EQ(PAF_ERR_ID_IN_USE, AcquireInstance(id, second));
    EXPECT_EQ(nullptr, second);
  }
  EXPECT_EQ(0, AcquireInstance(id, second));
  EXPECT_EQ(0, FreeInstance(id, second));
}

TEST(InstanceTable, AnInstanceWithASearcherIsNotFreed)
{
  StandInSearcher searcher;
  int id = 0;
  PafInfo* info = nullptr;
  ASSERT_EQ(0, NewInstance(&id, info));
  info->searcher = &searcher;
  PafInfo* const before = info;
  EXPECT_EQ(PAF_ERR_HAS_SEARCHER, FreeInstance(id, info));
  EXPECT_EQ(before, info);
  info->searcher = nullptr;
  EXPECT_EQ(0, FreeInstance(id, info));
}

IArfSearcher* GiveSearcher(IArfDb*)
{
  static StandInSearcher searcher;
  return &searcher;
}

TEST(CreateSearcher, TellsWhatIsMissing)
{
  StandInDb db;
  PafInfo info;
  ArfInfo arfInfo;
  EXPECT_EQ(PAF_ERR_NO_DATABASE_OBJECT, CreateSearcher(info, arfInfo));
  arfInfo.functions.getSearcher = GiveSearcher;
  EXPECT_EQ(PAF_ERR_NO_DATABASE_OBJECT, CreateSearcher(info, arfInfo));
  arfInfo.db = &db;
  EXPECT_EQ(0, CreateSearcher(info, arfInfo));
  EXPECT_EQ(GiveSearcher(nullptr), info.searcher);
  arfInfo.functions.getSearcher = nullptr;
  EXPECT_EQ(PAF_ERR_NO_DATABASE_OBJECT, CreateSearcher(info, arfInfo));
  arfInfo.functions.getSearcher = [](IArfDb*) -> IArfSearcher* { return nullptr; };
  EXPECT_EQ(PAF_ERR_OUT_OF_MEMORY, CreateSearcher(info, arfInfo));
}

TEST(ReleaseAllSearchers, LeavesTheIdsAndSkipsEmptySlots)
{
  StandInSearcher searcher;
  int id = 0;
  PafInfo* info = nullptr;
  ASSERT_EQ(0, NewInstance(&id, info));
  info->searcher = &searcher;
  const int without = NewIdle();
  const int freed = NewIdle();
  EXPECT_EQ(0, Free(freed));
  ReleaseAllSearchers();
  EXPECT_TRUE(searcher.released);
  EXPECT_EQ(nullptr, info->searcher);
  EXPECT_EQ(0, FreeInstance(id, info));
  EXPECT_EQ(0, Free(without));
}

}  // namespace
