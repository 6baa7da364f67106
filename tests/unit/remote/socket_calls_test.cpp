/**
 * What the socket functions ask of the system, and what they do when it refuses or a signal interrupts: this program's
 * socket calls go through functions of the test (the linker's --wrap), which note them and can answer themselves.
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <deque>
#include <string>
#include <vector>

#include "qxpaf/socket.h"
#include "remote/socket_wait.h"
#include "unit/remote/socket_support.h"

namespace {

/** One answer to recv: bytes (none is the end of the stream), or an error. */
struct Received
{
  std::string bytes;
  int error = 0;
};

/** One answer to ppoll: the number of ready descriptors, or an error. */
struct Polled
{
  int ready = 1;
  int error = 0;
};

struct System
{
  std::deque<Received> receives;
  std::deque<Polled> polls;
  int failSetsockopt = 0;
  int failListen = 0;

  std::vector<std::size_t> asked;
  std::vector<long> limits;
  std::vector<std::string> calls;
};

System theSystem;

int Fail(int error)
{
  errno = error;
  return -1;
}

void Note(const std::string& name, std::initializer_list<long> arguments)
{
  std::string call = name;
  for (const long argument : arguments) call += " " + std::to_string(argument);
  theSystem.calls.push_back(call);
}

template <class T>
T TakeFirst(std::deque<T>& script)
{
  if (script.empty()) throw std::runtime_error("more system calls than the test has answers for");
  T first = script.front();
  script.pop_front();
  return first;
}

}  // namespace

extern "C" {

ssize_t __wrap_recv(int sock, void* buffer, std::size_t size, int flags);
int __wrap_ppoll(pollfd* fds, nfds_t count, const timespec* limit, const sigset_t* mask);
int __wrap_socket(int family, int type, int protocol);
int __wrap_setsockopt(int sock, int level, int option, const void* value, socklen_t size);
int __wrap_listen(int sock, int backlog);
int __real_socket(int family, int type, int protocol);
int __real_setsockopt(int sock, int level, int option, const void* value, socklen_t size);
int __real_listen(int sock, int backlog);

ssize_t __wrap_recv(int, void* buffer, std::size_t size, int flags)
{
  EXPECT_EQ(0, flags);
  theSystem.asked.push_back(size);
  const Received answer = TakeFirst(theSystem.receives);
  if (answer.error != 0) return Fail(answer.error);
  const std::size_t given = std::min(size, answer.bytes.size());
  std::memcpy(buffer, answer.bytes.data(), given);
  if (given < answer.bytes.size()) theSystem.receives.push_front({answer.bytes.substr(given)});
  return static_cast<ssize_t>(given);
}

int __wrap_ppoll(pollfd* fds, nfds_t count, const timespec* limit, const sigset_t* mask)
{
  EXPECT_EQ(1u, count);
  EXPECT_EQ(POLLIN | POLLPRI, fds->events);
  EXPECT_EQ(0, limit->tv_nsec);
  EXPECT_EQ(nullptr, mask);
  theSystem.limits.push_back(limit->tv_sec);
  const Polled answer = TakeFirst(theSystem.polls);
  if (answer.error != 0) return Fail(answer.error);
  fds->revents = answer.ready > 0 ? POLLIN : 0;
  return answer.ready;
}

int __wrap_socket(int family, int type, int protocol)
{
  Note("socket", {family, type, protocol});
  return __real_socket(family, type, protocol);
}

int __wrap_setsockopt(int sock, int level, int option, const void* value, socklen_t size)
{
  Note("setsockopt", {level, option, *static_cast<const int*>(value), size});
  return theSystem.failSetsockopt != 0 ? Fail(theSystem.failSetsockopt)
                                       : __real_setsockopt(sock, level, option, value, size);
}

int __wrap_listen(int sock, int backlog)
{
  Note("listen", {backlog});
  return theSystem.failListen != 0 ? Fail(theSystem.failListen) : __real_listen(sock, backlog);
}

}  // extern "C"

namespace {

using test_support::ErrorBuffer;
using test_support::IsOpen;
using test_support::ReadAheadLine;
using test_support::Reading;
using test_support::ReadLine;
using test_support::Socket;
using testing::Each;
using testing::ElementsAre;

constexpr int kSock = 3;
const Received kInterrupted{"", EINTR};
const Received kEnd{"", 0};

class SocketCalls : public testing::Test
{
 protected:
  SocketCalls() { theSystem = System(); }

  /** Every answer that the test has prepared has been asked for. */
  ~SocketCalls() override
  {
    EXPECT_TRUE(theSystem.receives.empty());
    EXPECT_TRUE(theSystem.polls.empty());
  }
};

// ---- Opening -------------------------------------------------------------------------------------------------------

TEST_F(SocketCalls, ServersAreMadeInTheUsualSteps)
{
  Socket server;
  EXPECT_EQ(0, tcp_server(server.Out(), "127.0.0.1", "0", nullptr));
  EXPECT_THAT(theSystem.calls, ElementsAre("socket 2 1 0", "setsockopt 1 2 1 4", "listen 128"));
}

TEST_F(SocketCalls, ServersTellWhenAnOptionIsRefused)
{
  theSystem.failSetsockopt = ENOPROTOOPT;
  Socket server;
  ErrorBuffer error;
  EXPECT_EQ(4201, tcp_server(server.Out(), "127.0.0.1", "0", error.Data()));
  EXPECT_EQ("set socket option error: (92) Protocol not available", error.Text());
  EXPECT_TRUE(IsOpen(server.Fd()));
  EXPECT_THAT(theSystem.calls, ElementsAre("socket 2 1 0", testing::StartsWith("setsockopt")));
}

TEST_F(SocketCalls, ServersTellWhenListeningFails)
{
  theSystem.failListen = EADDRINUSE;
  Socket server;
  ErrorBuffer error;
  EXPECT_EQ(4203, tcp_server(server.Out(), "127.0.0.1", "0", error.Data()));
  EXPECT_EQ("socket listen error: (98) Address already in use", error.Text());
  EXPECT_TRUE(IsOpen(server.Fd()));
}

TEST_F(SocketCalls, ClientsAreMadeWithPlainSockets)
{
  Socket server;
  ASSERT_EQ(0, tcp_server(server.Out(), "127.0.0.1", "0", nullptr));
  theSystem.calls.clear();
  Socket client;
  EXPECT_EQ(0, tcp_client(client.Out(), "127.0.0.1", test_support::PortOf(server.Fd()).c_str(), nullptr));
  EXPECT_THAT(theSystem.calls, ElementsAre("socket 2 1 0"));
}

// ---- Waiting -------------------------------------------------------------------------------------------------------

TEST_F(SocketCalls, WaitsAnewWithTheWholeLimitAfterASignal)
{
  theSystem.polls = {{0, EINTR}, {0, EINTR}, {1, 0}};
  EXPECT_EQ(0, qxpaf::WaitReadable(kSock, 7));
  EXPECT_THAT(theSystem.limits, ElementsAre(7, 7, 7));
  theSystem.polls = {{0, EINTR}, {0, 0}};
  EXPECT_EQ(ERR_SOCKET_TIMEDOUT, qxpaf::WaitReadable(kSock, 7));
}

TEST_F(SocketCalls, WaitsNotAtAllWithoutATimeOut)
{
  EXPECT_EQ(0, qxpaf::WaitReadable(kSock, 0));
  EXPECT_THAT(theSystem.limits, ElementsAre());
}

TEST_F(SocketCalls, WaitingFailsWithAnyOtherError)
{
  theSystem.polls = {{0, ENOMEM}};
  EXPECT_EQ(ERR_SOCKET_SELECT, qxpaf::WaitReadable(kSock, 7));
  EXPECT_EQ(ENOMEM, errno);
}

TEST_F(SocketCalls, LineReadersWaitBeforeEveryReceive)
{
  theSystem.polls = {{}, {}, {}, {}};
  theSystem.receives = {{"ab"}, kInterrupted, {"c"}, {"d\n"}};
  EXPECT_EQ("abcd", ReadLine(readcrlf, kSock, 16, '\n', 5).Text());
  EXPECT_THAT(theSystem.limits, ElementsAre(5, 5, 5, 5));
  theSystem.polls = {{}, {}, {}};
  theSystem.receives = {{"a"}, kInterrupted, {"\n"}};
  EXPECT_EQ("a", ReadLine(readcrlf1, kSock, 16, '\n', 5).Text());
}

TEST_F(SocketCalls, LineReadersTimeOutWithinALine)
{
  for (const test_support::LineReader reader : {readcrlf, readcrlf1}) {
    theSystem.polls = {{}, {0, 0}};
    theSystem.receives = {{"a"}};
    const Reading reading = ReadLine(reader, kSock, 16, '\n', 5);
    EXPECT_EQ(-1, reading.result);
    EXPECT_EQ("socket timed out", reading.message);
    EXPECT_EQ('a', reading.bytes[0]);
  }
}

TEST_F(SocketCalls, DrainingWaitsBeforeEveryReceive)
{
  theSystem.polls = {{}, {}, {0, 0}};
  theSystem.receives = {{"abc"}, kInterrupted};
  qxpaf::DrainLine(kSock, 5);
  EXPECT_THAT(theSystem.limits, ElementsAre(5, 5, 5));
}

// ---- Receiving -----------------------------------------------------------------------------------------------------

TEST_F(SocketCalls, ReadnAsksForWhatIsMissing)
{
  theSystem.receives = {kInterrupted, {"ab"}, kInterrupted, kInterrupted, {"cde"}};
  char buffer[5];
  EXPECT_EQ(5, readn(kSock, buffer, 5, nullptr));
  EXPECT_EQ("abcde", std::string(buffer, 5));
  EXPECT_THAT(theSystem.asked, ElementsAre(5, 5, 3, 3, 3));
}

TEST_F(SocketCalls, Readcrlf1AsksForSingleBytes)
{
  theSystem.receives = {{"a"}, kInterrupted, {"b\r"}, kInterrupted, {"\n"}};
  const Reading reading = ReadLine(readcrlf1, kSock, 16);
  EXPECT_EQ(2, reading.result);
  EXPECT_EQ("ab", reading.Text());
  EXPECT_THAT(theSystem.asked, Each(1u));
}

TEST_F(SocketCalls, ReadcrlfAsksForWhatFits)
{
  theSystem.receives = {{"abc"}, kInterrupted, {"de"}, {"\n"}};
  EXPECT_EQ(5, ReadLine(readcrlf, kSock, 16).result);
  EXPECT_THAT(theSystem.asked, ElementsAre(16, 13, 13, 11));
}

TEST_F(SocketCalls, DrainingAsksFor256Bytes)
{
  theSystem.receives = {{"abc"}, kInterrupted, {std::string(256, 'x')}, {"\n"}};
  qxpaf::DrainLine(kSock, 0);
  EXPECT_THAT(theSystem.asked, Each(256u));
  for (const Received& last : {kEnd, Received{"", EIO}, Received{"", ECONNRESET}, Received{"\n"}}) {
    theSystem.receives = {{"a"}, last};
    qxpaf::DrainLine(kSock, 0);
  }
}

TEST_F(SocketCalls, ReadlineAsksFor1500Bytes)
{
  theSystem.receives = {kInterrupted, {"ab"}, kInterrupted, kInterrupted, {"c\nde\n"}};
  // The interruptions take no place in the buffer.
  EXPECT_EQ("abc\n", ReadAheadLine(kSock, 5).Text());
  EXPECT_THAT(theSystem.asked, ElementsAre(1500, 1500, 1500, 1500, 1500));
  EXPECT_EQ("de\n", ReadAheadLine(kSock, 5).Text());
  theSystem.receives = {kEnd};
  EXPECT_EQ(0, ReadAheadLine(kSock, 5).result);
}

struct Reader
{
  const char* name;
  Reading (*read)(int capacity);
  bool endsOnReset;
};

class SocketCallsReaders : public SocketCalls, public testing::WithParamInterface<Reader>
{
};

INSTANTIATE_TEST_SUITE_P(
    All, SocketCallsReaders,
    testing::Values(Reader{"readcrlf1", [](int capacity) { return ReadLine(readcrlf1, kSock, capacity); }, true},
                    Reader{"readcrlf", [](int capacity) { return ReadLine(readcrlf, kSock, capacity); }, true},
                    Reader{"readline", [](int capacity) { return ReadAheadLine(kSock, capacity); }, false},
                    Reader{"readn",
                           [](int capacity) {
                             return test_support::ReadGuarded(capacity, [](char* buffer, int size, char* errbuf) {
                               return readn(kSock, buffer, size, errbuf);
                             });
                           },
                           false}),
    [](const auto& reader) { return reader.param.name; });

TEST_P(SocketCallsReaders, FailWithTheErrorOfReceiving)
{
  for (const int error : {EIO, ENOTCONN, ETIMEDOUT}) {
    theSystem.receives = {{"ab"}, kInterrupted, {"", error}};
    const Reading reading = GetParam().read(16);
    EXPECT_EQ(-1, reading.result);
    EXPECT_EQ(error, reading.error);
    EXPECT_EQ("socket recv failed: (" + std::to_string(error) + ") " + std::strerror(error), reading.message);
    EXPECT_EQ("ab", reading.bytes.substr(0, 2));
    EXPECT_EQ(std::string(14, test_support::GuardedBuffer::kFill), reading.bytes.substr(2));
  }
}

TEST_P(SocketCallsReaders, TakeAResetForTheEndOrForAFailure)
{
  theSystem.receives = {{"ab"}, {"", ECONNRESET}};
  const Reading reading = GetParam().read(16);
  EXPECT_EQ(GetParam().endsOnReset ? 0 : -1, reading.result);
  EXPECT_EQ(GetParam().endsOnReset ? "" : "socket recv failed: (104) Connection reset by peer", reading.message);
  if (GetParam().endsOnReset) {
    EXPECT_EQ("ab", reading.Text());
  }
}

TEST_F(SocketCalls, EveryPlaceAReplyCanBeCutAt)
{
  const std::string line = "0\tabc\r\n";
  const unsigned int ways = 1u << (line.size() - 1);
  for (unsigned int cuts = 0; cuts < ways; ++cuts) {
    theSystem.receives = {{""}};
    for (std::size_t i = 0; i < line.size(); ++i) {
      theSystem.receives.back().bytes += line[i];
      if ((cuts >> i & 1u) != 0) theSystem.receives.push_back({""});
    }
    const std::deque<Received> chunks = theSystem.receives;
    const bool together = (cuts >> 5 & 1u) == 0;
    EXPECT_EQ(together ? "0\tabc" : "0\tabc\r", ReadLine(readcrlf, kSock, 16).Text()) << cuts;
    theSystem.receives = chunks;
    EXPECT_EQ("0\tabc", ReadLine(readcrlf1, kSock, 16).Text()) << cuts;
    theSystem.receives = chunks;
    EXPECT_EQ(line, ReadAheadLine(kSock, 16).Text()) << cuts;
  }
}

TEST_F(SocketCalls, TheLongLinesRestIsReceivedBeforeTheFailureIsTold)
{
  theSystem.receives = {{"12345678"}, {"90"}, kInterrupted, {"\n"}};
  const Reading reading = ReadLine(readcrlf, kSock, 8);
  EXPECT_EQ(-1, reading.result);
  EXPECT_EQ(EMSGSIZE, reading.error);
  EXPECT_THAT(theSystem.asked, ElementsAre(8, 256, 256, 256));
  theSystem.receives = {{"12345678"}, {"90"}, {"", EIO}};
  EXPECT_EQ(EMSGSIZE, ReadLine(readcrlf1, kSock, 8).error);
}

}  // namespace
