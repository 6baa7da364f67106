// Whether calls are answered here or belong to a socket server, which a process decides once, by its configuration.
#include <gtest/gtest.h>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

const std::vector<std::string> kLocal = {"ARF/AU/x=/p", "PafDir=DLL:FakeOne;/p"};

/** What the configuration says of the server, none of which can be reached, and what connecting to it answers. */
struct ServerRow
{
  const char* lines;
  int status;
};

class RemoteModeTest : public testing::TestWithParam<ServerRow>
{
 protected:
  void SetUp() override
  {
    std::vector<std::string> lines = kLocal;
    lines.push_back(GetParam().lines);
    workspace.Configure(lines);
  }

  void ExpectEveryOpenGoesToTheServer()
  {
    const int status = GetParam().status;
    int id = 0;
    for (const char* name : {"", "AU.x", "AU./p", "DLL:FakeOne;/p", "abcd.x", "AU.nowhere"}) {
      EXPECT_EQ(pafOpenArfId(&id, 0, name), status) << name;
      EXPECT_EQ(pafOpenArfId2(0, name), -status) << name;
      EXPECT_EQ(pafClosePafId(1), PAF_ERR_INVALID_ID);
    }
    EXPECT_EQ(pafOpenPafId(&id), status);
    EXPECT_EQ(pafOpenPafMemId(&id, 2), status);
    EXPECT_EQ(pafOpenPafId2(), -status);
    EXPECT_EQ(pafOpenPaf(), status);
  }

  Workspace workspace;
  CountryFakes fakes;
};

TEST_P(RemoteModeTest, EveryOpenIsTheServersAndNoPluginIsAsked)
{
  ExpectEveryOpenGoesToTheServer();
  EXPECT_EQ(fakes.TheOpen().library, "");
  EXPECT_EQ(pafGetFindStatusId(1), -1);
  EXPECT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(pafUnloadPlugins(), 0);
}

TEST_P(RemoteModeTest, IsDecidedOnceForTheProcess)
{
  ExpectEveryOpenGoesToTheServer();
  workspace.Configure(kLocal);
  ExpectEveryOpenGoesToTheServer();
}

INSTANTIATE_TEST_SUITE_P(Configured, RemoteModeTest,
                         testing::Values(ServerRow{"PindleSvr/TcpHost=127.0.0.1", 4204},
                                         ServerRow{"PindleSvr/TcpPort=1", 4204},
                                         ServerRow{"PindleSvr/TcpHost=127.0.0.1\nPindleSvr/TcpPort=1", 4204},
                                         ServerRow{"pindlesvr/tcphost=127.0.0.1\nPINDLESVR/TCPPORT=no-service", 4206},
                                         ServerRow{"PindleSvr/TcpHost=\nPindleSvr/TcpPort=1", 4204}));

class LocalModeTest : public testing::TestWithParam<const char*>
{
};

TEST_P(LocalModeTest, IsDecidedOnceForTheProcess)
{
  Workspace workspace;
  CountryFakes fakes;
  std::vector<std::string> lines = kLocal;
  lines.push_back(GetParam());
  workspace.Configure(lines);
  EXPECT_EQ(Open("AU.x"), 1);
  lines.push_back("PindleSvr/TcpHost=127.0.0.1");
  workspace.Configure(lines);
  EXPECT_EQ(Open("AU.x"), 2);
  EXPECT_EQ(fakes.TheOpen().library, "libqxarfau.so");
}

INSTANTIATE_TEST_SUITE_P(NotConfigured, LocalModeTest,
                         testing::Values("", "PindleSvr/TcpHost=", "PindleSvr/TcpPort=", "TcpHost=127.0.0.1",
                                         "PindleSvr/Host=127.0.0.1", "PindleSvr=127.0.0.1",
                                         "Other/PindleSvr/TcpHost=x"));

}  // namespace
}  // namespace blackbox
