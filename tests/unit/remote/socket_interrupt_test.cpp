/** Signals that arrive while a function waits for its peer. */
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/time.h>

#include <csignal>
#include <string>

#include "qxpaf/socket.h"
#include "remote/socket_wait.h"
#include "unit/remote/socket_support.h"

namespace {

using test_support::ReadAheadLine;
using test_support::ReadLine;
using test_support::SocketPair;

volatile std::sig_atomic_t signalsSeen = 0;
volatile std::sig_atomic_t peer = -1;

/** Every signal interrupts; with the fifth the peer sends its line. */
void SendLineWithTheFifth(int)
{
  const int savedErrno = errno;
  signalsSeen = signalsSeen + 1;
  if (signalsSeen == 5) static_cast<void>(send(peer, "line\n", 5, MSG_NOSIGNAL));
  errno = savedErrno;
}

/** The thread gets a signal every few milliseconds, whose handler lets system calls fail with EINTR. */
class Interruptions
{
 public:
  explicit Interruptions(int sender)
  {
    signalsSeen = 0;
    peer = sender;
    struct sigaction action
    {
    };
    action.sa_handler = SendLineWithTheFifth;
    sigaction(SIGALRM, &action, &before_);
    SetTimer(5000);
    pthread_kill(pthread_self(), SIGALRM);
  }
  ~Interruptions()
  {
    SetTimer(0);
    sigaction(SIGALRM, &before_, nullptr);
  }

  Interruptions(const Interruptions&) = delete;
  Interruptions& operator=(const Interruptions&) = delete;

 private:
  static void SetTimer(suseconds_t interval)
  {
    const itimerval timer{{0, interval}, {0, interval}};
    setitimer(ITIMER_REAL, &timer, nullptr);
  }

  struct sigaction before_
  {
  };
};

struct Call
{
  const char* name;
  int (*run)(int sock);
  int result;
};

int ReadFive(int sock)
{
  char buffer[5];
  return readn(sock, buffer, 5, nullptr);
}

int Drain(int sock)
{
  qxpaf::DrainLine(sock, 0);
  return 0;
}

class SocketInterruption : public testing::TestWithParam<Call>
{
};

TEST_P(SocketInterruption, IsNotSeenByTheCaller)
{
  SocketPair pair;
  const Interruptions interruptions(pair.far.Fd());
  EXPECT_EQ(GetParam().result, GetParam().run(pair.near.Fd()));
  EXPECT_GE(signalsSeen, 5);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, SocketInterruption,
    testing::Values(Call{"readn", ReadFive, 5},
                    Call{"readcrlf1", [](int sock) { return ReadLine(readcrlf1, sock, 16).result; }, 4},
                    Call{"readcrlf1_timed", [](int sock) { return ReadLine(readcrlf1, sock, 16, '\n', 60).result; }, 4},
                    Call{"readcrlf", [](int sock) { return ReadLine(readcrlf, sock, 16).result; }, 4},
                    Call{"readcrlf_timed", [](int sock) { return ReadLine(readcrlf, sock, 16, '\n', 60).result; }, 4},
                    Call{"readline", [](int sock) { return ReadAheadLine(sock, 16).result; }, 5},
                    Call{"wait", [](int sock) { return qxpaf::WaitReadable(sock, 60); }, 0}, Call{"drain", Drain, 0}),
    [](const auto& call) { return call.param.name; });

}  // namespace
