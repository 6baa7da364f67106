#include "remote/socket_wait.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <string>

#include "qxpaf/socket.h"
#include "unit/remote/socket_support.h"

namespace {

using qxpaf::DrainLine;
using qxpaf::WaitReadable;
using test_support::DescriptorLimit;
using test_support::ReadAheadLine;
using test_support::ReadLine;
using test_support::Socket;
using test_support::SocketPair;

/** What can still be received without waiting. */
std::string Left(const Socket& sock)
{
  char bytes[1024];
  const ssize_t got = recv(sock.Fd(), bytes, sizeof bytes, MSG_DONTWAIT);
  return got > 0 ? std::string(bytes, static_cast<std::size_t>(got)) : "";
}

TEST(WaitReadable, LooksAtNothingWithoutATimeOut)
{
  errno = 0;
  EXPECT_EQ(0, WaitReadable(-1, 0));
  EXPECT_EQ(0, WaitReadable(SocketPair().near.Fd(), 0));
  EXPECT_EQ(0, errno);
}

TEST(WaitReadable, SeesDataAndTheEnd)
{
  SocketPair pair;
  pair.far.Send("x");
  EXPECT_EQ(0, WaitReadable(pair.near.Fd(), 60));
  EXPECT_EQ("x", Left(pair.near));
  pair.far.Close();
  EXPECT_EQ(0, WaitReadable(pair.near.Fd(), 60));
}

TEST(WaitReadable, SeesUrgentData)
{
  Socket server;
  ASSERT_EQ(0, tcp_server(server.Out(), "127.0.0.1", "0", nullptr));
  Socket client;
  ASSERT_EQ(0, tcp_client(client.Out(), "127.0.0.1", test_support::PortOf(server.Fd()).c_str(), nullptr));
  const Socket accepted(accept(server.Fd(), nullptr, nullptr));
  ASSERT_EQ(1, send(client.Fd(), "!", 1, MSG_OOB));
  EXPECT_EQ(0, WaitReadable(accepted.Fd(), 60));
}

TEST(WaitReadable, WaitsForAsManySecondsAsItIsTold)
{
  const SocketPair pair;
  const auto start = std::chrono::steady_clock::now();
  errno = EXDEV;
  EXPECT_EQ(ERR_SOCKET_TIMEDOUT, WaitReadable(pair.near.Fd(), 1));
  EXPECT_EQ(EXDEV, errno);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(999));
}

TEST(WaitReadable, FailsAtOnceOnWhatIsNoDescriptor)
{
  Socket closed = std::move(SocketPair().near);
  const int number = closed.Fd();
  closed.Close();
  for (const int fd : {-1, INT_MIN, INT_MAX, number}) {
    errno = 0;
    EXPECT_EQ(ERR_SOCKET_SELECT, WaitReadable(fd, 60)) << fd;
    EXPECT_EQ(EBADF, errno) << fd;
  }
}

TEST(WaitReadable, RefusesATimeOutThatIsNoTime)
{
  SocketPair pair;
  pair.far.Send("x");
  EXPECT_EQ(0, WaitReadable(pair.near.Fd(), LONG_MAX));
  EXPECT_EQ(ERR_SOCKET_SELECT, WaitReadable(pair.near.Fd(), ULONG_MAX));
  EXPECT_EQ(EINVAL, errno);
}

// Above what a set of descriptors for select has room for.
TEST(WaitReadable, ServesDescriptorsOfAnySize)
{
  const DescriptorLimit limit(4096);
  if (!limit.Allowed()) GTEST_SKIP() << "this process may not open 4096 descriptors";
  for (const int lowest : {1022, 1023, 1024, 1025, 2048, 4000}) {
    SocketPair pair;
    ASSERT_TRUE(pair.near.MoveTo(lowest));
    const int fd = pair.near.Fd();
    pair.far.Send("abc\n");
    EXPECT_EQ(0, WaitReadable(fd, 60)) << fd;
    EXPECT_EQ(3, ReadLine(readcrlf, fd, 16, '\n', 60).result) << fd;
    pair.far.Send("abc\n");
    EXPECT_EQ(3, ReadLine(readcrlf1, fd, 16, '\n', 60).result) << fd;
    pair.far.Send("abc\n");
    EXPECT_EQ(4, ReadAheadLine(fd, 16).result) << fd;
    pair.near.Close();
    EXPECT_EQ(ERR_SOCKET_SELECT, WaitReadable(fd, 60)) << fd;
  }
}

TEST(WaitReadable, TimesOutOnLargeDescriptors)
{
  const DescriptorLimit limit(4096);
  if (!limit.Allowed()) GTEST_SKIP() << "this process may not open 4096 descriptors";
  SocketPair pair;
  ASSERT_TRUE(pair.near.MoveTo(1500));
  EXPECT_EQ(ERR_SOCKET_TIMEDOUT, WaitReadable(pair.near.Fd(), 1));
}

struct Drained
{
  std::string sent;
  std::string left;
};

class DrainLineRows : public testing::TestWithParam<Drained>
{
};

TEST_P(DrainLineRows, StopsBehindAChunkThatEndsALine)
{
  for (const unsigned long timeout : {0ul, 60ul}) {
    SocketPair pair;
    pair.far.Send(GetParam().sent);
    pair.far.Close();
    DrainLine(pair.near.Fd(), timeout);
    EXPECT_EQ(GetParam().left, Left(pair.near)) << timeout;
  }
}

const std::string k255(255, 'x');

INSTANTIATE_TEST_SUITE_P(Rows, DrainLineRows,
                         testing::Values(Drained{"", ""}, Drained{"\n", ""}, Drained{"rest\n", ""},
                                         Drained{"no end", ""}, Drained{"two\nlines\n", ""}, Drained{"one\nhalf", ""},
                                         Drained{"other;", ""}, Drained{k255 + "\nnext\n", "next\n"},
                                         Drained{k255 + "xnext\n", ""}, Drained{k255 + k255 + "x\nnext\n", "next\n"},
                                         Drained{k255 + k255 + "\nnext\n", ""},
                                         Drained{k255 + "\n" + k255 + "\n", k255 + "\n"}));

TEST(DrainLine, EndsWithTheTimeOutOrAnError)
{
  SocketPair pair;
  pair.far.Send("no end");
  DrainLine(pair.near.Fd(), 1);
  EXPECT_EQ("", Left(pair.near));
  DrainLine(-1, 0);
  DrainLine(-1, 60);
}

}  // namespace
