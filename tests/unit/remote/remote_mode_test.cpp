/** The mode is decided once for a process, so every test decides it in a process of its own. */
#include "remote/remote_mode.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "qxpaf/remote.h"
#include "support/config_sandbox.h"

namespace {

using qxpaf::IsRemoteMode;
using qxpaf::IsRemoteModeOn;
using qxpaf::SetRemoteMode;

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

/** What the program and the configuration say, and what comes of it. */
struct Decision
{
  const char* hostSet;
  const char* portSet;
  const char* config;
  bool remote;
  const char* host;
  const char* port;
};

class RemoteModeDecision : public testing::TestWithParam<Decision>
{
};

TEST_P(RemoteModeDecision, TakesWhatTheProgramHasNotSet)
{
  const test_support::ConfigSandbox sandbox;
  sandbox.Configure(GetParam().config);
  const auto decidesRightly = [] {
    SetTcpHost(GetParam().hostSet);
    SetTcpPort(GetParam().portSet);
    const bool undecided = !IsRemoteModeOn();
    return undecided && IsRemoteMode() == GetParam().remote && IsRemoteModeOn() == GetParam().remote &&
           std::string(GetTcpHost()) == GetParam().host && std::string(GetTcpPort()) == GetParam().port;
  };
  EXPECT_EXIT(std::_Exit(decidesRightly() ? 0 : 1), testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RemoteModeDecision,
    testing::Values(Decision{"", "", "PindleSvr/TcpHost=h\nPindleSvr/TcpPort=1\n", true, "h", "1"},
                    Decision{"", "", "PindleSvr/TcpHost=h\n", true, "h", ""},
                    Decision{"", "", "PindleSvr/TcpPort=1\n", true, "", "1"},
                    Decision{"mine", "", "", false, "mine", ""}, Decision{"", "2", "", false, "", "2"},
                    Decision{"mine", "2", "", false, "mine", "2"},
                    Decision{"mine", "", "PindleSvr/TcpHost=h\n", false, "mine", ""},
                    Decision{"", "2", "PindleSvr/TcpPort=1\n", false, "", "2"},
                    Decision{"mine", "2", "PindleSvr/TcpHost=h\nPindleSvr/TcpPort=1\n", false, "mine", "2"},
                    Decision{"mine", "", "PindleSvr/TcpHost=h\nPindleSvr/TcpPort=1\n", true, "mine", "1"},
                    Decision{"", "2", "PindleSvr/TcpHost=h\nPindleSvr/TcpPort=1\n", true, "h", "2"},
                    Decision{"mine", "", "PindleSvr/TcpPort=1\n", true, "mine", "1"}));

TEST(RemoteModeDeathTest, IsSwitchedWhateverWasDecided)
{
  const test_support::ConfigSandbox sandbox;
  sandbox.Configure("PindleSvr/TcpHost=h\n");
  EXPECT_EXIT(
      {
        SetRemoteMode(false);
        bool right = !IsRemoteMode() && std::string(GetTcpHost()).empty();
        SetRemoteMode(true);
        right = right && IsRemoteMode() && IsRemoteModeOn() && std::string(GetTcpHost()).empty();
        SetRemoteMode(false);
        right = right && !IsRemoteMode() && !IsRemoteModeOn();
        std::_Exit(right ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(RemoteModeDeathTest, LongSettingsAreCut)
{
  const test_support::ConfigSandbox sandbox;
  sandbox.Configure("PindleSvr/TcpHost=" + std::string(300, 'h') + "\nPindleSvr/TcpPort=" + std::string(40, '1') +
                    "\n");
  EXPECT_EXIT(
      {
        const bool right = IsRemoteMode() && std::string(GetTcpHost()) == std::string(255, 'h') &&
                           std::string(GetTcpPort()) == std::string(31, '1');
        std::_Exit(right ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
