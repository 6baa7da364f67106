/** Sending, and the signal that a vanished peer raises. Signals belong to the process, so those tests have their own.
 */
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/wait.h>

#include <climits>
#include <csignal>
#include <cstdlib>
#include <string>

#include "qxpaf/socket.h"
#include "remote/sigpipe_shield.h"
#include "unit/remote/socket_support.h"

namespace {

using test_support::IsOpen;
using test_support::SocketPair;

std::string ReceiveAll(int sock)
{
  std::string all;
  char bytes[4096];
  for (ssize_t got = recv(sock, bytes, sizeof bytes, 0); got > 0; got = recv(sock, bytes, sizeof bytes, 0)) {
    all.append(bytes, static_cast<std::size_t>(got));
  }
  return all;
}

TEST(SocketSendOnce, SendsAndCloses)
{
  for (const std::size_t length : {0u, 1u, 4095u, 4096u, 4097u, 50000u}) {
    SocketPair pair;
    const std::string data(length, 'x');
    const int sock = pair.near.Release();
    EXPECT_EQ(0, SocketSendOnce(sock, data.c_str(), static_cast<int>(length)));
    EXPECT_FALSE(IsOpen(sock));
    EXPECT_EQ(data, ReceiveAll(pair.far.Fd()));
  }
}

TEST(SocketSendOnce, SendsEveryByte)
{
  SocketPair pair;
  EXPECT_EQ(0, SocketSendOnce(pair.near.Release(), "a\0\n\xFF", 4));
  EXPECT_EQ(std::string("a\0\n\xFF", 4), ReceiveAll(pair.far.Fd()));
}

TEST(SocketSendOnce, SendsNothingForALengthBelowOne)
{
  for (const int length : {0, -1, INT_MIN}) {
    SocketPair pair;
    const int sock = pair.near.Release();
    EXPECT_EQ(0, SocketSendOnce(sock, "abc", length));
    EXPECT_FALSE(IsOpen(sock));
    EXPECT_EQ("", ReceiveAll(pair.far.Fd()));
  }
}

TEST(SocketSendOnce, TellsWhenThereIsNothingToSendTo)
{
  EXPECT_EQ(-1, SocketSendOnce(-1, "abc", 3));
  const int readOnly = open("/dev/null", O_RDONLY);
  EXPECT_EQ(-1, SocketSendOnce(readOnly, "abc", 3));
  EXPECT_TRUE(IsOpen(readOnly));
  close(readOnly);
}

// ---- The signal ----------------------------------------------------------------------------------------------------

sigset_t OnlySigpipe()
{
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  return set;
}

bool IsPending()
{
  sigset_t pending;
  sigpending(&pending);
  return sigismember(&pending, SIGPIPE) == 1;
}

bool IsBlocked()
{
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  return sigismember(&mask, SIGPIPE) == 1;
}

volatile std::sig_atomic_t signalsHandled = 0;

void CountSignal(int)
{
  signalsHandled = signalsHandled + 1;
}

/** Whether a message to a peer that is gone, short or long, seems to have been sent. */
bool SendToNobody()
{
  const std::string data(100000, 'x');
  bool sent = true;
  for (const int length : {1, 100000}) {
    SocketPair pair;
    pair.far.Close();
    sent = sent && SocketSendOnce(pair.near.Release(), data.c_str(), length) == 0;
  }
  return sent;
}

/** Runs in a process of its own; the default action of SIGPIPE would end it. */
void ExpectInChild(bool (*rightly)())
{
  EXPECT_EXIT(std::_Exit(rightly() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(SigpipeDeathTest, EndsTheProcessWithoutTheShield)
{
  EXPECT_EXIT(
      {
        std::signal(SIGPIPE, SIG_DFL);
        SocketPair pair;
        pair.far.Close();
        send(pair.near.Fd(), "x", 1, 0);
        std::_Exit(0);
      },
      testing::KilledBySignal(SIGPIPE), "");
}

TEST(SigpipeDeathTest, DoesNotReachTheProcess)
{
  ExpectInChild([] {
    std::signal(SIGPIPE, SIG_DFL);
    return SendToNobody() && !IsPending() && !IsBlocked();
  });
}

TEST(SigpipeDeathTest, DoesNotReachAHandler)
{
  ExpectInChild([] {
    std::signal(SIGPIPE, CountSignal);
    const bool spared = SendToNobody() && signalsHandled == 0 && !IsPending() && !IsBlocked();
    std::raise(SIGPIPE);
    return spared && signalsHandled == 1;  // the process's handling is as it was
  });
}

TEST(SigpipeDeathTest, StaysBlockedWhereItWas)
{
  ExpectInChild([] {
    std::signal(SIGPIPE, SIG_DFL);
    const sigset_t set = OnlySigpipe();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    return SendToNobody() && !IsPending() && IsBlocked();
  });
}

TEST(SigpipeDeathTest, StaysPendingWhereItWas)
{
  ExpectInChild([] {
    std::signal(SIGPIPE, SIG_DFL);
    const sigset_t set = OnlySigpipe();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    std::raise(SIGPIPE);
    return SendToNobody() && IsPending() && IsBlocked();
  });
}

TEST(SigpipeDeathTest, LeavesOtherSignalsAlone)
{
  ExpectInChild([] {
    std::signal(SIGUSR1, CountSignal);
    SocketPair pair;
    pair.far.Close();
    {
      const qxpaf::SigpipeShield shield;
      std::raise(SIGUSR1);
      send(pair.near.Fd(), "x", 1, 0);
    }
    return signalsHandled == 1;
  });
}

TEST(SigpipeDeathTest, KeepsTheErrorOfSending)
{
  ExpectInChild([] {
    std::signal(SIGPIPE, SIG_DFL);
    SocketPair pair;
    pair.far.Close();
    {
      const qxpaf::SigpipeShield shield;
      send(pair.near.Fd(), "x", 1, 0);
    }
    return errno == EPIPE && !IsPending();
  });
}

TEST(SigpipeDeathTest, IsNoneWhereTheProcessIgnoresIt)
{
  ExpectInChild([] {
    std::signal(SIGPIPE, SIG_IGN);
    return SendToNobody() && !IsPending() && !IsBlocked();
  });
}

}  // namespace
