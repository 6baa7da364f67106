#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "qxpaf/socket.h"
#include "unit/remote/socket_support.h"

namespace {

using test_support::DescriptorLimit;
using test_support::ErrorBuffer;
using test_support::IsOpen;
using test_support::LocalAddress;
using test_support::PortOf;
using test_support::Reading;
using test_support::ReadLine;
using test_support::Socket;

using Opener = int (*)(int*, const char*, const char*, char*);

int Option(int sock, int option)
{
  int value = -1;
  socklen_t length = sizeof value;
  getsockopt(sock, SOL_SOCKET, option, &value, &length);
  return value;
}

/** A port of this machine that nobody listens on as long as the socket lives. */
Socket SilentPort()
{
  Socket bound(socket(AF_INET, SOCK_STREAM, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(0, bind(bound.Fd(), reinterpret_cast<const sockaddr*>(&address), sizeof address));
  return bound;
}

TEST(TcpServer, ListensWhereItWasAsked)
{
  Socket server;
  ErrorBuffer error;
  ASSERT_EQ(0, tcp_server(server.Out(), "127.0.0.1", "0", error.Data()));
  EXPECT_EQ("", error.Text());
  EXPECT_EQ(1, Option(server.Fd(), SO_ACCEPTCONN));
  EXPECT_EQ(1, Option(server.Fd(), SO_REUSEADDR));
  EXPECT_EQ(SOCK_STREAM, Option(server.Fd(), SO_TYPE));
  EXPECT_EQ(INADDR_LOOPBACK, ntohl(LocalAddress(server.Fd()).sin_addr.s_addr));
  EXPECT_TRUE(error.Intact());
}

TEST(TcpServer, ListensEverywhereWithoutAHost)
{
  Socket server;
  ASSERT_EQ(0, tcp_server(server.Out(), nullptr, "", nullptr));
  EXPECT_EQ(INADDR_ANY, ntohl(LocalAddress(server.Fd()).sin_addr.s_addr));
}

TEST(TcpServer, LeavesTheSocketWhereBindingFails)
{
  Socket first;
  ASSERT_EQ(0, tcp_server(first.Out(), "127.0.0.1", "0", nullptr));
  Socket second;
  ErrorBuffer error;
  EXPECT_EQ(4202, tcp_server(second.Out(), "127.0.0.1", PortOf(first.Fd()).c_str(), error.Data()));
  EXPECT_EQ("socket bind error: (98) Address already in use", error.Text());
  EXPECT_TRUE(IsOpen(second.Fd()));
}

TEST(TcpServer, TakesAnAddressAgainWhoseConnectionsLinger)
{
  Socket first;
  ASSERT_EQ(0, tcp_server(first.Out(), "127.0.0.1", "0", nullptr));
  const std::string port = PortOf(first.Fd());
  Socket client;
  ASSERT_EQ(0, tcp_client(client.Out(), "127.0.0.1", port.c_str(), nullptr));
  Socket accepted(accept(first.Fd(), nullptr, nullptr));
  accepted.Close();  // The side that closes first keeps the address for a while.
  client.Close();
  first.Close();
  Socket second;
  EXPECT_EQ(0, tcp_server(second.Out(), "127.0.0.1", port.c_str(), nullptr));
}

TEST(TcpClient, ExchangesLinesWithAServer)
{
  Socket server;
  ASSERT_EQ(0, tcp_server(server.Out(), "127.0.0.1", "0", nullptr));
  Socket client;
  ErrorBuffer error;
  ASSERT_EQ(0, tcp_client(client.Out(), "127.0.0.1", PortOf(server.Fd()).c_str(), error.Data()));
  EXPECT_TRUE(error.Untouched());
  Socket accepted(accept(server.Fd(), nullptr, nullptr));
  client.Send("hello\r\n");
  EXPECT_EQ("hello", ReadLine(readcrlf1, accepted.Fd(), 64, '\n', 30).Text());
  EXPECT_EQ(0, SocketSendOnce(accepted.Release(), "bye\r\n", 5));
  const Reading last = ReadLine(readcrlf, client.Fd(), 64, '\n', 30);
  EXPECT_EQ(3, last.result);
  EXPECT_EQ("bye", last.Text());
  EXPECT_EQ(0, ReadLine(readcrlf, client.Fd(), 64, '\n', 30).result);
}

TEST(TcpClient, ConnectsToThisMachineWithoutAHost)
{
  Socket server;
  ASSERT_EQ(0, tcp_server(server.Out(), nullptr, "0", nullptr));
  Socket client;
  EXPECT_EQ(0, tcp_client(client.Out(), nullptr, PortOf(server.Fd()).c_str(), nullptr));
}

TEST(TcpClient, LeavesTheSocketWhereConnectingFails)
{
  const Socket silent = SilentPort();
  const std::string port = PortOf(silent.Fd());
  Socket client;
  ErrorBuffer error;
  EXPECT_EQ(4204, tcp_client(client.Out(), "127.0.0.1", port.c_str(), error.Data()));
  EXPECT_EQ("socket connect error to 127.0.0.1 " + port + ": (111) Connection refused", error.Text());
  EXPECT_TRUE(IsOpen(client.Fd()));
  EXPECT_TRUE(error.Intact());
}

TEST(TcpClient, NamesNeitherHostNorServiceWithoutAHost)
{
  const Socket silent = SilentPort();
  Socket client;
  ErrorBuffer error;
  EXPECT_EQ(4204, tcp_client(client.Out(), nullptr, PortOf(silent.Fd()).c_str(), error.Data()));
  EXPECT_EQ("socket connect error to : (111) Connection refused", error.Text());
}

class TcpOpeners : public testing::TestWithParam<Opener>
{
};

INSTANTIATE_TEST_SUITE_P(Both, TcpOpeners, testing::Values(tcp_client, tcp_server));

TEST_P(TcpOpeners, LeaveTheOutArgumentWhereTheAddressIsAtFault)
{
  int sock = 4711;
  ErrorBuffer error;
  EXPECT_EQ(4205, GetParam()(&sock, "bad..name", "1", error.Data()));
  EXPECT_THAT(error.Text(), testing::StartsWith("unknown socket host: bad..name"));
  EXPECT_EQ(4206, GetParam()(&sock, "127.0.0.1", "nosuch", error.Data()));
  EXPECT_THAT(error.Text(), testing::StartsWith("unknown socket service: nosuch"));
  EXPECT_EQ(4711, sock);
}

TEST_P(TcpOpeners, TellWhenThereIsNoSocket)
{
  int sock = 4711;
  ErrorBuffer error;
  int status = 0;
  {
    const DescriptorLimit none(0);
    status = GetParam()(&sock, "127.0.0.1", "0", error.Data());
  }
  EXPECT_EQ(4200, status);
  EXPECT_EQ(-1, sock);
  EXPECT_EQ("socket call error: (24) Too many open files", error.Text());
}

TEST_P(TcpOpeners, NeedNoErrorBuffer)
{
  int sock = 4711;
  EXPECT_EQ(4205, GetParam()(&sock, "bad..name", "1", nullptr));
}

}  // namespace
