#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "qxpaf/socket.h"
#include "unit/remote/socket_support.h"

namespace {

using test_support::GuardedBuffer;
using test_support::ReadAheadLine;
using test_support::Reading;
using test_support::Socket;
using test_support::SocketPair;

class Readline : public testing::Test
{
 protected:
  Readline() { test_support::ForgetReadAhead(); }
  ~Readline() override { test_support::ForgetReadAhead(); }
};

/** A socket whose peer has sent chunks and is gone. */
Socket Sent(const std::vector<std::string>& chunks)
{
  SocketPair pair(SOCK_SEQPACKET);
  for (const std::string& chunk : chunks) pair.far.Send(chunk);
  pair.far.Close();
  return std::move(pair.near);
}

TEST_F(Readline, KeepsTheLineFeed)
{
  const Socket sock = Sent({"one\ntwo\r\n\nfour\n"});
  for (const std::string line : {"one\n", "two\r\n", "\n", "four\n"}) {
    const Reading reading = ReadAheadLine(sock.Fd(), 64);
    EXPECT_EQ(static_cast<int>(line.size()), reading.result);
    EXPECT_EQ(line, reading.Text());
    EXPECT_EQ("", reading.message);
  }
  EXPECT_EQ(0, ReadAheadLine(sock.Fd(), 64).result);
}

TEST_F(Readline, PutsLinesTogetherFromChunks)
{
  const std::string sent = "abc\r\nde\n";
  for (std::size_t split = 1; split < sent.size(); ++split) {
    const Socket sock = Sent({sent.substr(0, split), sent.substr(split)});
    EXPECT_EQ("abc\r\n", ReadAheadLine(sock.Fd(), 64).Text()) << split;
    EXPECT_EQ("de\n", ReadAheadLine(sock.Fd(), 64).Text()) << split;
    EXPECT_EQ(0, ReadAheadLine(sock.Fd(), 64).result) << split;
  }
}

TEST_F(Readline, FitsItsCapacity)
{
  const Reading fits = ReadAheadLine(Sent({"abc\n"}).Fd(), 5);
  EXPECT_EQ(4, fits.result);
  EXPECT_EQ(std::string("abc\n\0", 5), fits.bytes);
  EXPECT_TRUE(fits.intact);
}

TEST_F(Readline, LeavesTheRestOfALongLineForTheNextCall)
{
  const Socket sock = Sent({"abcdef\n"});
  const Reading first = ReadAheadLine(sock.Fd(), 5);
  EXPECT_EQ(-1, first.result);
  EXPECT_EQ(EMSGSIZE, first.error);
  EXPECT_EQ("socket recv failed: (90) Message too long", first.message);
  EXPECT_EQ(std::string("abcd") + GuardedBuffer::kFill, first.bytes);
  EXPECT_TRUE(first.intact);
  EXPECT_EQ("ef\n", ReadAheadLine(sock.Fd(), 5).Text());
}

TEST_F(Readline, ReceivesNothingIntoACapacityBelowTwo)
{
  const Socket sock = Sent({"abc\n"});
  for (const int capacity : {1, 0, -1, INT_MIN}) {
    const Reading reading = ReadAheadLine(sock.Fd(), capacity);
    EXPECT_EQ(-1, reading.result);
    EXPECT_EQ(EMSGSIZE, reading.error);
    EXPECT_EQ("socket recv failed: (90) Message too long", reading.message);
    EXPECT_TRUE(reading.intact);
  }
  EXPECT_EQ("abc\n", ReadAheadLine(sock.Fd(), 16).Text());
}

TEST_F(Readline, EndsWithTheStreamAlsoWithinALine)
{
  const Socket sock = Sent({"abc"});
  const Reading reading = ReadAheadLine(sock.Fd(), 5);
  EXPECT_EQ(0, reading.result);
  EXPECT_EQ(std::string("abc") + GuardedBuffer::kFill + GuardedBuffer::kFill, reading.bytes);
  EXPECT_EQ("", reading.message);
  EXPECT_EQ(0, ReadAheadLine(sock.Fd(), 5).result);
}

TEST_F(Readline, SharesOneReadAheadBetweenAllSockets)
{
  const Socket first = Sent({"one\ntwo\nthree"});
  const Socket second = Sent({"four\n"});
  EXPECT_EQ("one\n", ReadAheadLine(first.Fd(), 64).Text());
  EXPECT_EQ("two\n", ReadAheadLine(second.Fd(), 64).Text());
  EXPECT_EQ("threefour\n", ReadAheadLine(second.Fd(), 64).Text());
}

TEST_F(Readline, ServesLinesLongerThanTheReadAhead)
{
  for (const std::size_t length : {1499u, 1500u, 1501u, 3000u, 4000u}) {
    SocketPair pair;
    const std::string line = std::string(length - 1, 'x') + "\n";
    pair.far.Send(line + "next\n");
    EXPECT_EQ(line, ReadAheadLine(pair.near.Fd(), 5000).Text()) << length;
    EXPECT_EQ("next\n", ReadAheadLine(pair.near.Fd(), 5000).Text()) << length;
  }
}

TEST_F(Readline, FailsOnAResetAndTheNextCallReadsOn)
{
  SocketPair pair;
  pair.near.Send("never read");
  pair.far.Send("abc");
  pair.far.Close();
  const Reading reading = ReadAheadLine(pair.near.Fd(), 16);
  EXPECT_EQ(-1, reading.result);
  EXPECT_EQ("socket recv failed: (104) Connection reset by peer", reading.message);
  EXPECT_EQ("abc" + std::string(13, GuardedBuffer::kFill), reading.bytes);
  EXPECT_EQ("de\n", ReadAheadLine(Sent({"de\n"}).Fd(), 16).Text());
}

TEST_F(Readline, SaysWhyItFailed)
{
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ("socket recv failed: (9) Bad file descriptor", ReadAheadLine(-1, 16).message);
  }
  EXPECT_EQ("abc\n", ReadAheadLine(Sent({"abc\n"}).Fd(), 16).Text());
}

}  // namespace
