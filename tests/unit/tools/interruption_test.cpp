#include "paf/interruption.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

namespace tool {
namespace {

/** 1 when the signal was remembered, 2 when it did nothing. */
int AfterSignal(int signal)
{
  CatchInterruption();
  if (IsInterrupted() || Interruption()) return 3;
  std::raise(signal);
  return IsInterrupted() && Interruption() ? 1 : 2;
}

/** Each in a process of its own, because an interruption cannot be taken back. */
TEST(InterruptionDeathTest, IsRememberedFromEachOfTheSignals)
{
  EXPECT_EXIT(_exit(AfterSignal(SIGINT)), testing::ExitedWithCode(1), "");
  EXPECT_EXIT(_exit(AfterSignal(SIGTERM)), testing::ExitedWithCode(1), "");
  EXPECT_EXIT(_exit(AfterSignal(SIGHUP)), testing::ExitedWithCode(1), "");
}

TEST(InterruptionDeathTest, OtherSignalsEndTheProgram)
{
  EXPECT_EXIT(_exit(AfterSignal(SIGUSR1)), testing::KilledBySignal(SIGUSR1), "");
}

int AfterIgnoredSignal(int signal)
{
  std::signal(signal, SIG_IGN);
  return AfterSignal(signal);
}

TEST(InterruptionDeathTest, WhoeverStartsTheProgramMayHaveItIgnoreThem)
{
  EXPECT_EXIT(_exit(AfterIgnoredSignal(SIGINT)), testing::ExitedWithCode(2), "");
  EXPECT_EXIT(_exit(AfterIgnoredSignal(SIGTERM)), testing::ExitedWithCode(2), "");
  EXPECT_EXIT(_exit(AfterIgnoredSignal(SIGHUP)), testing::ExitedWithCode(2), "");
}

}  // namespace
}  // namespace tool
