/** Instances that live on a server, put into the table by the test, while nobody answers at the server's address. */
#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "api/change_arf.h"
#include "api/default_instance.h"
#include "api/instance_table.h"
#include "errors/thread_data.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"
#include "support/guarded_buffer.h"
#include "unit/api/stand_in.h"

namespace {

using namespace qxpaf;
using test_support::GuardedBuffer;

/** An idle instance on a server. */
class RemoteInstance
{
 public:
  explicit RemoteInstance(const std::string& name, int serverId = 17)
  {
    SetTcpHost("127.0.0.1");
    SetTcpPort("1");
    PafInfo* info = nullptr;
    EXPECT_EQ(0, NewInstance(&id_, info));
    const DecrementUsageCountWhenFinished guard(info);
    info_ = info;
    info->serverId = serverId;
    info->remoteArfName = name;
    info->arfName = "not this";
  }
  ~RemoteInstance() { EXPECT_EQ(0, FreeInstance(id_, info_)); }
  RemoteInstance(const RemoteInstance&) = delete;
  RemoteInstance& operator=(const RemoteInstance&) = delete;

  int Id() const { return id_; }
  const PafInfo& Info() const { return *info_; }

 private:
  int id_ = 0;
  PafInfo* info_ = nullptr;
};

std::string Property(int id, const char* name)
{
  char out[256];
  EXPECT_EQ(0, pafGetPropertiesId(id, name, out, sizeof out)) << name;
  return out;
}

TEST(RemoteInstanceProperties, NameTheDatabaseItWasOpenedWith)
{
  for (const int serverId : {17, -1}) {
    const RemoteInstance remote("nz.Remote", serverId);
    EXPECT_EQ("nz.Remote", Property(remote.Id(), "openarf"));
    EXPECT_EQ("nz.Remote;", Property(0, "OpenArfs"));
    GuardedBuffer exact(10);
    EXPECT_EQ(0, pafGetPropertiesId(remote.Id(), "OpenARF", exact.Data(), 10));
    GuardedBuffer small(9);
    EXPECT_EQ(PAF_ERR_BUFFER_TOO_SMALL, pafGetPropertiesId(remote.Id(), "OpenARF", small.Data(), 9));
    EXPECT_EQ('\0', small.Data()[0]);
    EXPECT_TRUE(exact.Intact() && small.Intact());
    EXPECT_EQ(0, remote.Info().usageCount);
  }
}

TEST(RemoteInstanceProperties, AreNotAnsweredLocally)
{
  const RemoteInstance remote("nz.Remote");
  for (const char* name : {"TestProperty", "ClientCount", "ArfLibVersion", "Properties", "PropertyName1", "iPindle:x",
                           "CountryCode", "anything", "ArfStatus:nowhere"}) {
    char out[64] = "before";
    EXPECT_EQ(PAF_ERR_SOCKET_CONNECT, pafGetPropertiesId(remote.Id(), name, out, sizeof out)) << name;
    EXPECT_STREQ("", out) << name;
  }
  EXPECT_EQ(PAF_ERR_SOCKET_CONNECT, pafSetPropertiesId(remote.Id(), "anything", "x"));
  EXPECT_EQ(0, remote.Info().usageCount);
}

TEST(RemoteInstanceProperties, OpenArfOfTheSameNameIsNoWork)
{
  const RemoteInstance remote("nz.Remote");
  EXPECT_EQ(0, pafSetPropertiesId(remote.Id(), "OpenARF", "nz.Remote"));
  EXPECT_EQ(0, ChangeArf(remote.Id(), 3, "nz.Remote"));
  for (const char* other : {"NZ.Remote", "nz.remote", "", "nz.Remote "}) {
    EXPECT_EQ(PAF_ERR_SOCKET_CONNECT, pafSetPropertiesId(remote.Id(), "OpenARF", other)) << other;
    EXPECT_EQ("nz.Remote", remote.Info().remoteArfName);
    EXPECT_EQ(17, remote.Info().serverId);
  }
  EXPECT_EQ(0, remote.Info().usageCount);
}

TEST(RemoteInstanceProperties, ListBesideLocalInstances)
{
  StandInSearcher searcher;
  PafInfo* local = nullptr;
  int id = 0;
  ASSERT_EQ(0, NewInstance(&id, local));
  local->searcher = &searcher;
  local->arfName = "AU.local";
  local->remoteArfName = "not this";
  const RemoteInstance remote("NZ.remote");
  EXPECT_EQ("AU.local;NZ.remote;", Property(0, "OpenArfs")) << "busy instances too";
  local->searcher = nullptr;
  EXPECT_EQ(0, FreeInstance(id, local));
  EXPECT_EQ("NZ.remote;", Property(0, "OpenArfs"));
}

TEST(RemoteDefaultInstance, GoesWithItsThread)
{
  SetTcpHost("127.0.0.1");
  SetTcpPort("1");
  int id = 0;
  std::thread([&id] {
    ThreadData* record = nullptr;
    ASSERT_EQ(0, GetThreadData(true, record));
    PafInfo* info = nullptr;
    ASSERT_EQ(0, NewInstance(&record->defaultId, info));
    const DecrementUsageCountWhenFinished guard(info);
    info->serverId = 17;
    id = record->defaultId;
  }).join();
  PafInfo* info = nullptr;
  EXPECT_EQ(PAF_ERR_INVALID_ID, AcquireInstance(id, info));
  EXPECT_EQ(0, CountOpenInstances());
}

TEST(GetDefaultInstance, AnswersNoneWithoutMakingOne)
{
  int id = 7;
  EXPECT_EQ(0, GetDefaultInstance(&id, false, 0));
  EXPECT_EQ(0, id);
  EXPECT_EQ(0, CountOpenInstances());
  ThreadData* record = nullptr;
  ASSERT_EQ(0, GetThreadData(false, record));
  ASSERT_NE(nullptr, record) << "the thread's record is made";
  record->defaultId = 5;
  EXPECT_EQ(0, GetDefaultInstance(&id, true, 0));
  EXPECT_EQ(5, id) << "what is remembered is not looked up";
  record->defaultId = 0;
}

TEST(GetDefaultInstance, ClearsTheIdOnFailure)
{
  int id = 7;
  EXPECT_EQ(PAF_ERR_NOT_OPEN, GetDefaultInstance(&id, true, 0));
  EXPECT_EQ(0, id);
  ThreadData* record = nullptr;
  ASSERT_EQ(0, GetThreadData(false, record));
  EXPECT_EQ(0, record->defaultId);
  EXPECT_EQ(0, CountOpenInstances());
  EXPECT_EQ(0, OpenInstanceCount());
}

}  // namespace
