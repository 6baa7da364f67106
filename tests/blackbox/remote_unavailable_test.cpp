// With a socket server configured every call belongs to that server. This release has no client for it, and says so
// instead of answering from a local database.
#include <gtest/gtest.h>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

class RemoteModeTest : public testing::TestWithParam<const char*>
{
 protected:
  void ExpectEveryOpenRefused()
  {
    for (const char* name : {"", "AU.x", "AU./p", "DLL:FakeOne;/p", "abcd.x", "AU.nowhere"}) {
      int id = 0;
      EXPECT_EQ(pafOpenArfId(&id, 0, name), PAF_ERR_NOT_IMPLEMENTED) << name;
      EXPECT_EQ(pafOpenArfId2(0, name), -PAF_ERR_NOT_IMPLEMENTED) << name;
      EXPECT_EQ(pafClosePafId(1), PAF_ERR_INVALID_ID);
    }
    int id = 0;
    EXPECT_EQ(pafOpenPafId(&id), PAF_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(pafOpenPafMemId(&id, 2), PAF_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(pafOpenPafId2(), -PAF_ERR_NOT_IMPLEMENTED);
  }

  Workspace workspace;
  CountryFakes fakes;
};

const std::vector<std::string> kLocal = {"ARF/AU/x=/p", "PafDir=DLL:FakeOne;/p"};

TEST_P(RemoteModeTest, EveryOpenIsRefusedAndNoPluginIsAsked)
{
  std::vector<std::string> lines = kLocal;
  lines.push_back(GetParam());
  workspace.Configure(lines);
  ExpectEveryOpenRefused();
  EXPECT_EQ(fakes.TheOpen().library, "");
  EXPECT_EQ(Describe(PAF_ERR_NOT_IMPLEMENTED), "Functionality not implemented");
  EXPECT_EQ(pafGetFindStatusId(1), -1);
  EXPECT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(pafUnloadPlugins(), 0);
}

TEST_P(RemoteModeTest, IsDecidedOnceForTheProcess)
{
  std::vector<std::string> lines = kLocal;
  lines.push_back(GetParam());
  workspace.Configure(lines);
  ExpectEveryOpenRefused();
  workspace.Configure(kLocal);
  ExpectEveryOpenRefused();
}

INSTANTIATE_TEST_SUITE_P(Configured, RemoteModeTest,
                         testing::Values("PindleSvr/TcpHost=127.0.0.1", "PindleSvr/TcpPort=4711",
                                         "PindleSvr/TcpHost=127.0.0.1\nPindleSvr/TcpPort=4711", "pindlesvr/tcphost=x",
                                         "PindleSvr/TcpHost=\nPindleSvr/TcpPort=1"));

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
