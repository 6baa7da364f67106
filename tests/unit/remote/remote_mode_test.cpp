/** The mode is decided once for a process, so every test decides it in a process of its own. */
#include "remote/remote_mode.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "qxpaf/paf.h"
#include "support/config_sandbox.h"

namespace {

using qxpaf::IsRemoteMode;

struct Row
{
  const char* config;
  bool remote;
};

class RemoteMode : public testing::TestWithParam<Row>
{
};

TEST_P(RemoteMode, IsDecidedByTheServersHostOrPort)
{
  const test_support::ConfigSandbox sandbox;
  sandbox.Configure(GetParam().config);
  EXPECT_EXIT(std::_Exit(IsRemoteMode() ? 1 : 0), testing::ExitedWithCode(GetParam().remote ? 1 : 0), "");
}

INSTANTIATE_TEST_SUITE_P(Settings, RemoteMode,
                         testing::Values(Row{"", false}, Row{"PindleSvr/TcpHost=paf.example\n", true},
                                         Row{"pindlesvr/TCPPORT=7070\n", true},
                                         Row{"PindleSvr/TcpHost=\nPindleSvr/TcpPort=\n", false},
                                         Row{"PindleSvr/TcpHost=\nPindleSvr/TcpPort=1\n", true},
                                         Row{"TcpHost=a\nPindleSvr/Other=1\n", false}));

TEST(RemoteModeDeathTest, IsDecidedOnce)
{
  const test_support::ConfigSandbox sandbox;
  sandbox.Configure("");
  EXPECT_EXIT(
      {
        const bool first = IsRemoteMode();
        sandbox.Configure("PindleSvr/TcpHost=paf.example\n");
        std::_Exit(!first && !IsRemoteMode() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(RemoteModeDeathTest, OpensNothingWhileRequestsCannotTravel)
{
  const test_support::ConfigSandbox sandbox;
  sandbox.Configure("PindleSvr/TcpHost=paf.example\nARF/AU/=/nowhere\n");
  EXPECT_EXIT(
      {
        int id = 0;
        char text[64] = "";
        const bool right = pafOpenArfId(&id, 0, "AU") == 6408 && pafOpenArfId2(0, "AU") == -6408 &&
                           pafOpenPafId(&id) == 6408 && pafOpenPafId2() == -6408 && pafClosePafId(id) == 6405 &&
                           pafGetErrorDescription(text, 12, sizeof text) == 0 && std::string(text).empty();
        std::_Exit(right ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
