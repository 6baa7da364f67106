// Instances on a server: opening, closing, changing their database, and what the server's failures leave.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/remote.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"

namespace blackbox {
namespace {

using fake::Reply;

struct OpenRow
{
  const char* name;
  int (*open)(int* id);
  const char* request;
  bool folds;  // returns the Id or the negated status
};

const OpenRow kOpens[] = {
    {"pafOpenArfId", [](int* id) { return pafOpenArfId(id, 2, "AU.x"); }, "pafOpenArfId|2|AU.x", false},
    {"pafOpenArfId_null", [](int* id) { return pafOpenArfId(id, -1, nullptr); }, "pafOpenArfId|-1|", false},
    {"pafOpenArfId2", [](int*) { return pafOpenArfId2(7, "/a/path"); }, "pafOpenArfId|7|/a/path", true},
    {"pafOpenPafMemId", [](int* id) { return pafOpenPafMemId(id, 3); }, "pafOpenArfId|3|", false},
    {"pafOpenPafId", [](int* id) { return pafOpenPafId(id); }, "pafOpenArfId|0|", false},
    {"pafOpenPafId2", [](int*) { return pafOpenPafId2(); }, "pafOpenArfId|0|", true},
};

class RemoteOpen : public RemoteTest, public testing::WithParamInterface<OpenRow>
{
 protected:
  /** Opens. @return the status, with the Id in `id` after a success */
  int Open()
  {
    const int result = GetParam().open(&id);
    if (!GetParam().folds) return result;
    if (result > 0) id = result;
    return result > 0 ? 0 : -result;
  }

  int id = 0;
};

INSTANTIATE_TEST_SUITE_P(By, RemoteOpen, testing::ValuesIn(kOpens), RowName());

TEST_P(RemoteOpen, AsksTheServer)
{
  for (const int expected : {1, 2}) {
    Expect(GetParam().request, "0|" + std::to_string(40 + expected));
    ASSERT_EQ(Open(), 0);
    EXPECT_EQ(id, expected) << "Ids are the library's own";
  }
  Expect("pafGetFindStatusId|42", "5");
  EXPECT_EQ(pafGetFindStatusId(2), 5);
  Expect("pafClosePafId|41", "0");
  EXPECT_EQ(pafClosePafId(1), 0);
  Expect("pafClosePafId|42", "0");
  EXPECT_EQ(pafClosePafId(2), 0);
  EXPECT_EQ(pafClosePafId(2), PAF_ERR_INVALID_ID);
}

TEST_P(RemoteOpen, FreesTheIdWhenTheServerRefuses)
{
  for (const char* reply : {"6499|the server's words", "6499", "6499|88"}) {
    Expect(GetParam().request, reply);
    EXPECT_EQ(Open(), 6499);
    EXPECT_EQ(pafClosePafId(1), PAF_ERR_INVALID_ID);
    EXPECT_EQ(Describe(6499), "ARF not installed") << "nothing was recorded";
  }
  EXPECT_EQ(OpenRemote(), 1);
}

TEST_P(RemoteOpen, FreesTheIdWhenTheExchangeFails)
{
  Expect(GetParam().request, TooLong());
  EXPECT_EQ(Open(), 4555);
  EXPECT_EQ(pafClosePafId(1), PAF_ERR_INVALID_ID);
  EXPECT_EQ(Describe(4555), "ERR_SOC_RESPONSE_TOO_LONG. socket recv buffer too small: (90) Message too long");
  Expect(GetParam().request, "0|9");
  EXPECT_EQ(Open(), 0) << "the next one takes a new connection";
  EXPECT_EQ(id, 1);
  EXPECT_EQ(server.Connections(), 2);
}

TEST_P(RemoteOpen, FreesTheIdWhenThereIsNoServer)
{
  ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", "1"), 0);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(Open(), 4204) << "tried again each time";
    EXPECT_FALSE(IsSocketBroken());
    EXPECT_EQ(pafClosePafId(1), PAF_ERR_INVALID_ID);
    EXPECT_EQ(Describe(4204), "socket connect. socket connect error to 127.0.0.1 1: (111) Connection refused");
    EXPECT_EQ(Describe(4204), "socket connect");
  }
  ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", server.Port().c_str()), 0);
  Expect(GetParam().request, "0|9");
  EXPECT_EQ(Open(), 0);
}

TEST_P(RemoteOpen, WithoutAServersIdIsAnInstanceOfNothing)
{
  for (const char* reply : {"0", "0|0", "0|x"}) {
    Expect(GetParam().request, reply);
    ASSERT_EQ(Open(), 0);
    char text[8];
    EXPECT_EQ(pafGetNextAddressId(id, text, sizeof text), PAF_ERR_NO_SEARCHER);
    EXPECT_EQ(pafClosePafId(id), PAF_ERR_NO_SEARCHER);
    EXPECT_EQ(pafClosePafId(id), PAF_ERR_NO_SEARCHER) << "the Id stays";
  }
}

class RemoteInstances : public RemoteTest
{
 protected:
  Fake local{"libfaketwo.so"};
};

TEST_F(RemoteInstances, UseTheLowestFreeId)
{
  for (const int id : {1, 2, 3}) EXPECT_EQ(OpenRemote("AU.x", 10 + id), id);
  Expect("pafClosePafId|12", "0");
  EXPECT_EQ(pafClosePafId(2), 0);
  EXPECT_EQ(OpenRemote("NZ.y", 50), 2);
  Expect("pafGetFindStatusId|50", "1");
  EXPECT_EQ(pafGetFindStatusId(2), 1);
}

TEST_F(RemoteInstances, AreClosedHereWhateverTheServerSays)
{
  for (const char* reply : {"6405", "12|text", "-3"}) {
    const int id = OpenRemote();
    Expect("pafClosePafId|17", reply);
    EXPECT_EQ(pafClosePafId(id), std::stoi(reply));
    EXPECT_EQ(pafClosePafId(id), PAF_ERR_INVALID_ID);
  }
  const int id = OpenRemote();
  Expect("pafClosePafId|17", TooLong());
  EXPECT_EQ(pafClosePafId(id), 4555);
  EXPECT_EQ(pafClosePafId(id), PAF_ERR_INVALID_ID);
}

TEST_F(RemoteInstances, LiveBesideLocalOnes)
{
  const int remote = OpenRemote();
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "False"), 0);
  const int here = Open("DLL:FakeTwo;/p");
  EXPECT_EQ(Property(0, "OpenArfs"), "AU.x;DLL:FakeTwo;/p;");
  EXPECT_EQ(Property(remote, "OpenARF"), "AU.x");
  EXPECT_EQ(pafGetFindStatusId(here), 0);
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
  EXPECT_EQ(pafGetFindStatusId(here), 0) << "it stays local";
  EXPECT_EQ(pafClosePafId(here), 0);
  EXPECT_EQ(Sent(), Lines());
  Expect("pafClosePafId|17", "0");
  EXPECT_EQ(pafClosePafId(remote), 0) << "and the other remote";
}

TEST_F(RemoteInstances, AreNotTheBusinessOfForceCloseAll)
{
  const int id = OpenRemote();
  EXPECT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(pafUnloadPlugins(), 0);
  EXPECT_EQ(Sent(), Lines());
  Expect("pafGetFindStatusId|17", "1");
  EXPECT_EQ(pafGetFindStatusId(id), 1);
}

TEST_F(RemoteInstances, AreNotUpdated)
{
  OpenRemote();
  int databases = 9;
  int instances = 9;
  EXPECT_EQ(pafUpdateArfs(&databases, &instances), PAF_ERR_NOT_IMPLEMENTED);
  EXPECT_EQ(Sent(), Lines());
}

TEST_F(RemoteInstances, TellTheirNameWithoutTheServer)
{
  const int first = OpenRemote("nz.Remote");
  const int second = OpenRemote("", 18);
  for (const std::string& name : Spellings("OpenARF")) {
    ExpectWholeOrRefused([&](char* out, int size) { return pafGetPropertiesId(first, name.c_str(), out, size); },
                         "nz.Remote");
    EXPECT_EQ(Property(second, name), "");
  }
  EXPECT_EQ(Property(0, "OpenArfs"), "nz.Remote;;");
  EXPECT_EQ(Sent(), Lines());
}

TEST_F(RemoteInstances, SurviveTheSignalOfABrokenPipe)
{
  static volatile std::sig_atomic_t signals = 0;
  std::signal(SIGPIPE, [](int) { signals = signals + 1; });
  const int id = OpenRemote();
  Expect("pafGetNextAddressId|17", Reply::Line("0\tlast").ThenClose());
  char text[8];
  int status = pafGetNextAddressId(id, text, sizeof text);
  EXPECT_EQ(status, 0);
  // The system takes one request for the closed connection; the next one meets the broken pipe.
  for (int round = 0; status == 0 && round < 3; ++round) status = pafGetNextAddressId(id, text, sizeof text);
  EXPECT_EQ(status, 4551);
  EXPECT_EQ(signals, 0);
  EXPECT_EQ(pafClosePafId(id), 0);
}

TEST_F(RemoteInstances, SurviveTheSignalThatWouldEndTheProcess)
{
  std::signal(SIGPIPE, SIG_DFL);
  const int id = OpenRemote();
  Expect("pafGetNextAddressId|17", Reply::Line("0\tlast").ThenClose());
  char text[8];
  int status = pafGetNextAddressId(id, text, sizeof text);
  for (int round = 0; status == 0 && round < 3; ++round) status = pafGetNextAddressId(id, text, sizeof text);
  EXPECT_EQ(status, 4551);
}

TEST_F(RemoteInstances, AreNotClosedByTheEndOfTheProcess)
{
  Expect("pafOpenArfId|0|AU.x", "0|17");
  Expect("pafOpenPafMemId|0", "0|18");
  const pid_t child = fork();
  if (child == 0) std::exit(pafOpenArfId2(0, "AU.x") == 1 && pafOpenPaf() == 0 ? 0 : 1);
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  EXPECT_EQ(Sent().size(), 2u) << "the end of the connection says it";
}

class RemoteChange : public RemoteTest
{
 protected:
  void SetUp() override
  {
    RemoteTest::SetUp();
    id = OpenRemote("AU.x", kServerId, 3);
  }

  int Change(const char* name) { return pafSetPropertiesId(id, "openarf", name); }

  int id = 0;
};

TEST_F(RemoteChange, ToTheSameDatabaseIsNoWork)
{
  EXPECT_EQ(Change("AU.x"), 0);
  EXPECT_EQ(Sent(), Lines());
}

TEST_F(RemoteChange, OpensTheNewOneBeforeTheOldOneGoes)
{
  int serverId = kServerId;
  for (const char* name : {"au.x", "", "AU.x ", "AU.x"}) {
    Expect(std::string("pafOpenArfId|0|") + name, "0|" + std::to_string(serverId + 1));
    Expect("pafClosePafId|" + std::to_string(serverId), "0");
    EXPECT_EQ(Change(name), 0) << name;
    EXPECT_EQ(Property(id, "OpenARF"), name);
    ++serverId;
  }
  Expect("pafGetFindStatusId|" + std::to_string(serverId), "4");
  EXPECT_EQ(pafGetFindStatusId(id), 4);
}

TEST_F(RemoteChange, IgnoresHowTheOldOneWasClosed)
{
  Expect("pafOpenArfId|0|NZ.y", "0|18");
  Expect("pafClosePafId|17", "6405");
  EXPECT_EQ(Change("NZ.y"), 0);
  EXPECT_EQ(Property(id, "OpenARF"), "NZ.y");
}

TEST_F(RemoteChange, KeepsTheOldOneWhenTheNewOneFails)
{
  Expect("pafSetPropertiesId|17|a|b", "0");
  ASSERT_EQ(pafSetPropertiesId(id, "a", "b"), 0);
  Expect("pafOpenArfId|0|NZ.y", "6499|words");
  EXPECT_EQ(Change("NZ.y"), 6499);
  EXPECT_EQ(Property(id, "OpenARF"), "AU.x");
  Expect("pafGetFindStatusId|17", "4");
  EXPECT_EQ(pafGetFindStatusId(id), 4);
  Break(id);
  Expect("pafOpenArfId|3|AU.x", "0|30");
  Expect("pafSetPropertiesId|30|a|b", "0");
  Expect("pafGetNextPopupHintId|30", "0|x");
  char text[8];
  EXPECT_EQ(pafGetNextPopupHintId(id, text, sizeof text), 0) << "mode, name and properties are the old ones";
}

TEST_F(RemoteChange, ForgetsThePropertiesAndTheModeOfTheOldOne)
{
  Expect("pafSetPropertiesId|17|a|b", "0");
  ASSERT_EQ(pafSetPropertiesId(id, "a", "b"), 0);
  Expect("pafOpenArfId|0|NZ.y", "0|18");
  Expect("pafClosePafId|17", "0");
  EXPECT_EQ(Change("NZ.y"), 0);
  Break(id);
  Expect("pafOpenArfId|0|NZ.y", "0|30");
  Expect("pafGetNextPopupHintId|30", "0|x");
  char text[8];
  EXPECT_EQ(pafGetNextPopupHintId(id, text, sizeof text), 0);
}

TEST_F(RemoteChange, BringsTheOldOneBackFirst)
{
  Break(id);
  Expect("pafOpenArfId|3|AU.x", "0|30");
  Expect("pafOpenArfId|0|NZ.y", "0|31");
  Expect("pafClosePafId|30", "0");
  EXPECT_EQ(Change("NZ.y"), 0);
  Break(id);
  EXPECT_EQ(Change("NZ.y"), 0);
  EXPECT_EQ(Sent(), Lines()) << "the same database needs no connection";
  Expect("pafOpenArfId|0|NZ.y", "6498");
  EXPECT_EQ(Change("UK.z"), 6498);
  EXPECT_EQ(Property(id, "OpenARF"), "NZ.y");
}

TEST_F(RemoteChange, NeedsAnInstance)
{
  for (const int any : {0, -1, id + 1, 1000}) {
    EXPECT_EQ(pafSetPropertiesId(any, "OpenARF", "NZ.y"), PAF_ERR_INVALID_ID);
  }
  EXPECT_EQ(Sent(), Lines());
}

class RemoteConfigured : public testing::TestWithParam<const char*>
{
};

TEST_P(RemoteConfigured, ConnectsToTheConfiguredServer)
{
  fake::ScriptedServer server;
  std::string line = GetParam();
  line.replace(line.find('#'), 1, server.Port());
  const Workspace workspace({line});
  server.Expect("pafOpenArfId\t0\tAU.x", Reply::Line("0\t17"));
  EXPECT_EQ(Open("AU.x"), 1);
  EXPECT_EQ(Property(0, "UseSockets"), "True");
  EXPECT_EQ(server.StepsLeft(), 0u);
}

INSTANTIATE_TEST_SUITE_P(By, RemoteConfigured,
                         testing::Values("PindleSvr/TcpHost=127.0.0.1\nPindleSvr/TcpPort=#",
                                         "PindleSvr/TcpHost=localhost\nPindleSvr/TcpPort=#", "pindlesvr/tcpport=#"));

}  // namespace
}  // namespace blackbox
