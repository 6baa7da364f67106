#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <string>
#include <vector>

#include "qxpaf/socket.h"
#include "unit/remote/socket_support.h"

namespace {

using test_support::GuardedBuffer;
using test_support::LineReader;
using test_support::ReadGuarded;
using test_support::Reading;
using test_support::ReadLine;
using test_support::Socket;
using test_support::SocketPair;

constexpr const char* kTooSmall = "socket recv buffer too small: (90) Message too long";
constexpr const char* kTooLong = "socket recv failed: (90) Message too long";

Reading ReadCount(int sock, int count)
{
  return ReadGuarded(count, [&](char* buffer, int size, char* errbuf) { return readn(sock, buffer, size, errbuf); });
}

/** A socket whose peer has sent something and is gone, with or without having read what was sent to it. */
Socket Ended(const std::string& sent, bool reset)
{
  SocketPair pair;
  if (reset) pair.near.Send("never read");
  if (!sent.empty()) pair.far.Send(sent);
  pair.far.Close();
  return std::move(pair.near);
}

struct Failure
{
  int sock;
  const char* reason;
};

/** Sockets that nothing can be received from. */
class Failures
{
 public:
  Failures()
  {
    EXPECT_EQ(0, pipe(pipe_));
    fcntl(pair_.near.Fd(), F_SETFL, O_NONBLOCK);
  }
  ~Failures()
  {
    close(pipe_[0]);
    close(pipe_[1]);
  }
  std::vector<Failure> All() const
  {
    return {{-1, ": (9) Bad file descriptor"},
            {pipe_[0], ": (88) Socket operation on non-socket"},
            {pair_.near.Fd(), ": (11) Resource temporarily unavailable"}};
  }

 private:
  SocketPair pair_;
  int pipe_[2];
};

// ---- readn --------------------------------------------------------------------------------------------------------

TEST(Readn, ReceivesUntilTheCount)
{
  SocketPair pair(SOCK_SEQPACKET);
  for (const char* chunk : {"a", "bc", "def"}) pair.far.Send(chunk);
  const Reading reading = ReadCount(pair.near.Fd(), 6);
  EXPECT_EQ(6, reading.result);
  EXPECT_EQ("abcdef", reading.bytes);
  EXPECT_EQ("", reading.message);
  EXPECT_TRUE(reading.intact);
}

TEST(Readn, LeavesWhatIsBehindTheCount)
{
  SocketPair pair;
  pair.far.Send("abcdef");
  EXPECT_EQ("abcd", ReadCount(pair.near.Fd(), 4).bytes);
  EXPECT_EQ("ef", ReadCount(pair.near.Fd(), 2).bytes);
}

TEST(Readn, TellsHowMuchThereWasBeforeTheEnd)
{
  const Socket sock = Ended("abc", false);
  const Reading reading = ReadCount(sock.Fd(), 5);
  EXPECT_EQ(3, reading.result);
  EXPECT_EQ(std::string("abc") + GuardedBuffer::kFill + GuardedBuffer::kFill, reading.bytes);
  EXPECT_EQ("", reading.message);
  EXPECT_EQ(0, ReadCount(sock.Fd(), 5).result);
}

TEST(Readn, FailsOnAReset)
{
  const Reading reading = ReadCount(Ended("abc", true).Fd(), 5);
  EXPECT_EQ(-1, reading.result);
  EXPECT_EQ("socket recv failed: (104) Connection reset by peer", reading.message);
}

TEST(Readn, ReceivesNothingForACountBelowOne)
{
  SocketPair pair;
  pair.far.Send("abc");
  for (const int count : {0, -1, INT_MIN}) {
    const Reading reading = ReadCount(pair.near.Fd(), count);
    EXPECT_EQ(0, reading.result);
    EXPECT_TRUE(reading.intact);
  }
  EXPECT_EQ("abc", ReadCount(pair.near.Fd(), 3).bytes);
}

TEST(Readn, SaysWhyItFailed)
{
  const Failures failures;
  for (const Failure& failure : failures.All()) {
    const Reading reading = ReadCount(failure.sock, 4);
    EXPECT_EQ(-1, reading.result);
    EXPECT_EQ(std::string("socket recv failed") + failure.reason, reading.message);
    EXPECT_EQ(std::string(4, GuardedBuffer::kFill), reading.bytes);
  }
}

// ---- Both line readers ---------------------------------------------------------------------------------------------

struct Kind
{
  const char* name;
  LineReader read;
  const char* tooLong;
};

class LineReaders : public testing::TestWithParam<Kind>
{
 protected:
  static Reading Read(int sock, int capacity, char terminator = '\n', unsigned long timeout = 0)
  {
    return ReadLine(GetParam().read, sock, capacity, terminator, timeout);
  }
};

INSTANTIATE_TEST_SUITE_P(Both, LineReaders,
                         testing::Values(Kind{"readcrlf1", readcrlf1, kTooLong}, Kind{"readcrlf", readcrlf, kTooSmall}),
                         [](const auto& kind) { return kind.param.name; });

struct Line
{
  std::string sent;
  char terminator;
  std::string line;
};

const Line kLines[] = {
    {"abc\n", '\n', "abc"},
    {"abc\r\n", '\n', "abc"},
    {"\n", '\n', ""},
    {"\r\n", '\n', ""},
    {"\r\r\n", '\n', "\r"},
    {"a\rb\n", '\n', "a\rb"},
    {"abc\n\r\n", '\r', "abc\n"},  // up to the first carriage return only
    {"0\tabc\r\n", '\n', "0\tabc"},
    {"abc;", ';', "abc"},
    {"abc\r;", ';', "abc"},
    {"abc\n;", ';', "abc\n"},
    {"ab\xE9\xFF\n", '\n', "ab\xE9\xFF"},
    {"abc\xFF", '\xFF', "abc"},
    {std::string("a\0b\n", 4), '\n', std::string("a\0b", 3)},
    {std::string("abc\0", 4), '\0', "abc"},
};

TEST_P(LineReaders, TakeTheTerminatorOff)
{
  for (const Line& row : kLines) {
    const std::string sent = row.sent.substr(0, row.sent.find(row.terminator) + 1);
    SocketPair pair;
    pair.far.Send(sent);
    const Reading reading = Read(pair.near.Fd(), 32, row.terminator, 60);
    EXPECT_EQ(static_cast<int>(row.line.size()), reading.result) << row.sent;
    EXPECT_EQ(row.line + '\0', reading.bytes.substr(0, row.line.size() + 1)) << row.sent;
    EXPECT_EQ("", reading.message);
  }
}

TEST_P(LineReaders, FitTheirCapacity)
{
  const std::string line = "12345678\n";
  for (int capacity = 0; capacity <= 12; ++capacity) {
    SocketPair pair;
    pair.far.Send(line);
    const Reading reading = Read(pair.near.Fd(), capacity);
    EXPECT_TRUE(reading.intact) << capacity;
    if (capacity > 8) {
      EXPECT_EQ(8, reading.result) << capacity;
      EXPECT_EQ("12345678", reading.Text());
      continue;
    }
    EXPECT_EQ(-1, reading.result) << capacity;
    EXPECT_EQ(EMSGSIZE, reading.error) << capacity;
    EXPECT_EQ(GetParam().tooLong, reading.message) << capacity;
    EXPECT_EQ(line.substr(0, static_cast<std::size_t>(capacity)), reading.bytes);
    pair.far.Send("next\n");
    EXPECT_EQ("next", Read(pair.near.Fd(), 8).Text()) << "the rest of the line is gone";
  }
}

TEST_P(LineReaders, GiveACarriageReturnAPlaceBeforeTheTerminator)
{
  for (const int capacity : {4, 5}) {
    SocketPair pair;
    pair.far.Send("abc\r\n");
    // In one chunk both come off, but only where the buffer had room for both.
    EXPECT_EQ(capacity == 5 ? 3 : -1, Read(pair.near.Fd(), capacity).result);
  }
}

TEST_P(LineReaders, HaveNoRoomInACapacityBelowOne)
{
  for (const int capacity : {0, -1, INT_MIN}) {
    SocketPair pair;
    pair.far.Send("abc\n");
    const Reading reading = Read(pair.near.Fd(), capacity);
    EXPECT_EQ(-1, reading.result);
    EXPECT_EQ(EMSGSIZE, reading.error);
    EXPECT_TRUE(reading.intact);
    pair.far.Send("next\n");
    EXPECT_EQ("next", Read(pair.near.Fd(), 8).Text());
  }
}

TEST_P(LineReaders, GiveUpALongLineWhereTheStreamEndsOrNothingComes)
{
  const Socket ended = Ended("12345678;90", false);
  const Reading atEnd = Read(ended.Fd(), 8, ';');
  EXPECT_EQ(-1, atEnd.result);
  EXPECT_EQ(EMSGSIZE, atEnd.error);
  const SocketPair silent;
  silent.far.Send("12345678");
  const Reading inVain = Read(silent.near.Fd(), 8, '\n', 1);
  EXPECT_EQ(-1, inVain.result);
  EXPECT_EQ(EMSGSIZE, inVain.error);
  EXPECT_EQ(GetParam().tooLong, inVain.message);
}

TEST_P(LineReaders, EndWithTheStream)
{
  for (const bool reset : {false, true}) {
    for (const char* sent : {"", "abc", "abc\r"}) {
      const Socket sock = Ended(sent, reset);
      const Reading reading = Read(sock.Fd(), 16, '\n', 60);
      EXPECT_EQ(0, reading.result) << sent << reset;
      EXPECT_EQ(sent, reading.Text()) << reset;
      EXPECT_EQ("", reading.message);
      EXPECT_EQ(0, Read(sock.Fd(), 16).result);
    }
  }
}

TEST_P(LineReaders, TerminateAPartOfALineInTheLastPlace)
{
  const Reading reading = Read(Ended("abc", false).Fd(), 4);
  EXPECT_EQ(0, reading.result);
  EXPECT_EQ(std::string("abc\0", 4), reading.bytes);
  EXPECT_TRUE(reading.intact);
}

TEST_P(LineReaders, TimeOut)
{
  for (const int before : {0, ENOENT}) {
    SocketPair pair;
    if (before == 0) pair.far.Send("part");
    const auto start = std::chrono::steady_clock::now();
    const Reading reading = ReadGuarded(16, [&](char* buffer, int size, char* errbuf) {
      errno = before;
      return GetParam().read(pair.near.Fd(), buffer, size, errbuf, '\n', 1);
    });
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(999));
    EXPECT_EQ(-1, reading.result);
    EXPECT_EQ(before == 0 ? "socket timed out" : "socket timed out: (2) No such file or directory", reading.message);
  }
}

TEST_P(LineReaders, CallAFailedWaitATimeOut)
{
  const Reading reading = Read(-1, 16, '\n', 60);
  EXPECT_EQ(-1, reading.result);
  EXPECT_EQ("socket timed out: (9) Bad file descriptor", reading.message);
  EXPECT_EQ(std::string(16, GuardedBuffer::kFill), reading.bytes);
}

TEST_P(LineReaders, SayWhyTheyFailed)
{
  const Failures failures;
  for (const Failure& failure : failures.All()) {
    const Reading reading = Read(failure.sock, 16);
    EXPECT_EQ(-1, reading.result);
    EXPECT_EQ(std::string("socket recv failed") + failure.reason, reading.message);
  }
}

// ---- readcrlf1 -----------------------------------------------------------------------------------------------------

TEST(Readcrlf1, LeavesEverythingBehindTheTerminator)
{
  SocketPair pair;
  pair.far.Send("one\r\ntwo\n\nthree");
  pair.far.Close();
  for (const auto& [length, text] : {std::pair(3, "one"), {3, "two"}, {0, ""}, {0, "three"}, {0, ""}}) {
    const Reading reading = ReadLine(readcrlf1, pair.near.Fd(), 16);
    EXPECT_EQ(length, reading.result);
    EXPECT_EQ(text, reading.Text());
  }
}

// ---- readcrlf: chunks ----------------------------------------------------------------------------------------------

struct Chunks
{
  std::vector<std::string> chunks;
  int capacity;
  int result;
  std::string text;
};

class ReadcrlfChunks : public testing::TestWithParam<Chunks>
{
};

TEST_P(ReadcrlfChunks, AreLookedAtByTheirLastByte)
{
  SocketPair pair(SOCK_SEQPACKET);
  for (const std::string& chunk : GetParam().chunks) pair.far.Send(chunk);
  pair.far.Close();
  const Reading reading = ReadLine(readcrlf, pair.near.Fd(), GetParam().capacity);
  EXPECT_EQ(GetParam().result, reading.result);
  EXPECT_TRUE(reading.intact);
  if (GetParam().result >= 0) {
    EXPECT_EQ(GetParam().text, reading.Text());
    return;
  }
  EXPECT_EQ(GetParam().text, reading.bytes);
  EXPECT_EQ(kTooSmall, reading.message);
}

INSTANTIATE_TEST_SUITE_P(Rows, ReadcrlfChunks,
                         testing::Values(Chunks{{"0\tabc\r\n"}, 64, 5, "0\tabc"},
                                         Chunks{{"0\tabc\r", "\n"}, 64, 6, "0\tabc\r"},
                                         Chunks{{"a\nb", "c\n"}, 64, 4, "a\nbc"}, Chunks{{"abc", "\r\n"}, 64, 3, "abc"},
                                         Chunks{{"abc", "\n"}, 64, 3, "abc"}, Chunks{{"one\n", "two\n"}, 64, 3, "one"},
                                         Chunks{{"one\ntwo\n"}, 64, 7, "one\ntwo"},
                                         Chunks{{"one\r\ntwo\r\n"}, 64, 8, "one\r\ntwo"},
                                         Chunks{{"\r", "\n"}, 64, 1, "\r"}, Chunks{{"a", "b", "c"}, 64, 0, "abc"},
                                         Chunks{{"a\nb"}, 64, 0, "a\nb"}, Chunks{{"abcd", "efg\n"}, 8, 7, "abcdefg"},
                                         Chunks{{"abcd", "efgh", "\n"}, 8, -1, "abcdefgh"},
                                         Chunks{{"a", "b", "c", "d", "\n"}, 4, -1, "abcd"}));

TEST(Readcrlf, KeepsACarriageReturnOnlyFromAnEarlierChunk)
{
  const std::string line = "0\tabc\r\n";
  for (std::size_t split = 1; split < line.size(); ++split) {
    SocketPair pair(SOCK_SEQPACKET);
    pair.far.Send(line.substr(0, split));
    pair.far.Send(line.substr(split));
    const Reading reading = ReadLine(readcrlf, pair.near.Fd(), 64, '\n', 60);
    EXPECT_EQ(split == 6 ? 6 : 5, reading.result) << split;
    EXPECT_EQ(split == 6 ? "0\tabc\r" : "0\tabc", reading.Text()) << split;
  }
}

TEST(Readcrlf, ServesOneRequestAfterTheOther)
{
  SocketPair pair;
  for (const char* line : {"one", "", "three", "0\tfour"}) {
    pair.far.Send(line + std::string("\r\n"));
    EXPECT_EQ(line, ReadLine(readcrlf, pair.near.Fd(), 64).Text());
  }
}

}  // namespace
