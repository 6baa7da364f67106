#include "api/default_instance.h"

#include <gtest/gtest.h>

#include <thread>

#include "api/instance_table.h"
#include "errors/thread_data.h"
#include "qxpaf/paf.h"
#include "unit/api/stand_in.h"

namespace {

using namespace qxpaf;

/** Makes an idle instance and the calling thread's default. */
int MakeDefault(IArfSearcher* searcher, PafInfo** out = nullptr)
{
  ThreadData* record = nullptr;
  EXPECT_EQ(0, GetThreadData(true, record));
  PafInfo* info = nullptr;
  EXPECT_EQ(0, NewInstance(&record->defaultId, info));
  const DecrementUsageCountWhenFinished guard(info);
  info->searcher = searcher;
  if (out != nullptr) *out = info;
  return record->defaultId;
}

TEST(DefaultInstance, IsClosedWhenItsThreadEnds)
{
  StandInSearcher searcher;
  int id = 0;
  std::thread([&] { id = MakeDefault(&searcher); }).join();
  EXPECT_TRUE(searcher.released);
  PafInfo* info = nullptr;
  EXPECT_EQ(PAF_ERR_INVALID_ID, AcquireInstance(id, info));
}

TEST(DefaultInstance, ThatIsBusyElsewhereSurvivesItsThread)
{
  StandInSearcher searcher;
  PafInfo* info = nullptr;
  int id = 0;
  std::thread([&] {
    id = MakeDefault(&searcher, &info);
    info->usageCount = 1;
  }).join();
  EXPECT_FALSE(searcher.released);
  EXPECT_EQ(&searcher, info->searcher);
  info->searcher = nullptr;
  EXPECT_EQ(0, FreeInstance(id, info));
}

TEST(DefaultInstance, ThatIsGoneDoesNotDisturbTheThreadsEnd)
{
  std::thread([] {
    PafInfo* info = nullptr;
    const int id = MakeDefault(nullptr, &info);
    EXPECT_EQ(0, FreeInstance(id, info));
  }).join();
  CloseThreadInstance(nullptr);
}

}  // namespace
