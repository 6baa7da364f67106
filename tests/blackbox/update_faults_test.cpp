// Plug-ins that throw during an update, from every place where it calls them: the exception becomes a status, nothing
// stays locked, what was switched is counted, and a later update does the rest.
#include <gtest/gtest.h>

#include "blackbox/support/row_name.h"
#include "blackbox/support/update.h"

namespace blackbox {
namespace {

struct Fault
{
  std::string name;
  FakeOperation place;
  bool afterTheSwitch;
  FakeBehaviour what;
  int status;
};

struct Place
{
  const char* name;
  FakeOperation operation;
  bool afterTheSwitch;
};

/** Every place with every kind of exception. */
std::vector<Fault> Faults(std::initializer_list<Place> places)
{
  std::vector<Fault> faults;
  for (const Place& place : places) {
    faults.push_back({std::string(place.name) + "ThrowsBadAlloc", place.operation, place.afterTheSwitch,
                      kFakeThrowBadAlloc, PAF_ERR_OUT_OF_MEMORY});
    faults.push_back({std::string(place.name) + "ThrowsError", place.operation, place.afterTheSwitch, kFakeThrowError,
                      PAF_ERR_PLUGIN_SYSTEM});
    faults.push_back({std::string(place.name) + "ThrowsInt", place.operation, place.afterTheSwitch, kFakeThrowInt,
                      PAF_ERR_PLUGIN_SYSTEM});
  }
  return faults;
}

class NamedUpdateFault : public UpdateTest, public testing::WithParamInterface<Fault>
{
};

INSTANTIATE_TEST_SUITE_P(Where, NamedUpdateFault,
                         testing::ValuesIn(Faults({{"GetArfDb", kFakeGetArfDb, false},
                                                   {"GetPath", kFakeDbGetPath, false},
                                                   {"GetOpenMode", kFakeDbGetOpenMode, false},
                                                   {"RefCount", kFakeDbRefCount, false},
                                                   {"GetDb", kFakeGetDb, false},
                                                   {"Open", kFakeDbOpen, false},
                                                   {"GetSearcher", kFakeGetSearcher, false},
                                                   {"TakeOverFrom", kFakeTakeOverFrom, false},
                                                   {"Release", kFakeRelease, true},
                                                   {"Close", kFakeDbClose, true},
                                                   {"ReleaseOfADatabase", kFakeDbRelease, true}})),
                         RowName());

TEST_P(NamedUpdateFault, BecomesAStatusAndALaterUpdateSucceeds)
{
  workspace.Configure({"ARF/AU/a=/old", "ARF/AU/other=/other"});
  const int id = Open("AU.a");
  workspace.Configure({"ARF/AU/a=/new", "ARF/AU/other=/other"});
  au.Behave(GetParam().place, GetParam().what);
  const int switched = GetParam().afterTheSwitch ? 1 : 0;
  EXPECT_EQ(Update(), (Updated{GetParam().status, switched, switched}));
  au->clearAnswer(GetParam().place);

  ExpectUnlocked("AU.other");
  EXPECT_EQ(pafGetFindStatusId(id), 0);
  EXPECT_EQ(Update(), (Updated{0, 1 - switched, 1 - switched}));
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
  EXPECT_EQ(pafGetFindStatusId(id), 0);
  EXPECT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(au->counter(kFakeLiveSearchers), 0);
  // A reference that cannot be dropped, because the plug-in throws there, keeps its database open.
  if (GetParam().place != kFakeDbRefCount) {
    EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
  }
}

TEST_F(UpdateTest, AnOldSearcherThatDoesNotTellItsDatabaseIsSwitchedAllTheSame)
{
  workspace.Configure({"ARF/AU/a=/old", "ARF/AU/other=/other"});
  const int id = Open("AU.a");
  workspace.Configure({"ARF/AU/a=/new", "ARF/AU/other=/other"});
  au->block(kFakeTakeOverFrom);
  std::future<Updated> update = UpdateInBackground();
  ASSERT_GT(au->waitUntilBlocked(kFakeTakeOverFrom, 20000), 0);
  au.Behave(kFakeGetArfDb, kFakeThrowError);  // the instance was found before
  au->unblock(kFakeTakeOverFrom);
  EXPECT_EQ(update.get(), (Updated{PAF_ERR_PLUGIN_SYSTEM, 1, 1}));
  au->clearAnswer(kFakeGetArfDb);
  ExpectUnlocked("AU.other");
  EXPECT_EQ(pafGetFindStatusId(id), 0);
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
}

class GlobalUpdateFault : public UpdateTest, public testing::WithParamInterface<Fault>
{
};

INSTANTIATE_TEST_SUITE_P(Where, GlobalUpdateFault,
                         testing::ValuesIn(Faults({{"GetArfDb", kFakeGetArfDb, false},
                                                   {"GetPath", kFakeDbGetPath, false},
                                                   {"GetOpenMode", kFakeDbGetOpenMode, false},
                                                   {"RefCount", kFakeDbRefCount, false},
                                                   {"Close", kFakeDbClose, false},
                                                   {"Open", kFakeDbOpen, false}})),
                         RowName());

TEST_P(GlobalUpdateFault, BecomesAStatusAndALaterUpdateSucceeds)
{
  workspace.MakeDatabase("old", "DATABASENAME=AUSTRALIA\n");
  const std::string fresh = workspace.MakeDatabase("new", "DATABASENAME=AUSTRALIA\n");
  workspace.Configure({"PafDir=@/old"});
  ASSERT_EQ(pafOpenPaf(), 0);
  ASSERT_EQ(pafGet_FindStatus(), 0);
  workspace.Configure({"PafDir=@/new", "ARF/AU/other=/other"});
  au.Behave(GetParam().place, GetParam().what);
  EXPECT_EQ(Update(), (Updated{GetParam().status, 0, 0}));
  au->clearAnswer(GetParam().place);

  ExpectUnlocked("AU.other");
  EXPECT_EQ(pafGet_FindStatus(), 0);
  EXPECT_EQ(Update(), (Updated{0, 1, 1}));
  EXPECT_EQ(Update(), (Updated{0, 0, 0}));
  EXPECT_EQ(au->refCount(fresh.c_str()), 1);
  EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
}

}  // namespace
}  // namespace blackbox
