// The library's beginning and end, in processes of their own.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <fstream>
#include <sstream>

#include "blackbox/support/workspace.h"

namespace blackbox {
namespace {

std::string Contents(const std::string& path)
{
  std::ifstream file(path);
  std::ostringstream contents;
  contents << file.rdbuf();
  return contents.str();
}

class LifetimeTest : public testing::TestWithParam<const char*>
{
 protected:
  void SetUp() override { workspace.MakeDatabase("paf", "DATABASENAME=AUSTRALIA\n"); }

  /** Runs a program; it must end by itself, with 0, and print nothing else. */
  void Run(const std::string& command, const std::string& output = "")
  {
    setenv("QXPAF_FAKE_LOG", (workspace.Root() + "/log").c_str(), 1);
    const int status = std::system((command + " > output 2>&1").c_str());
    EXPECT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(Contents("output"), output);
    log = Contents("log");
    EXPECT_EQ(log.find("VIOLATION"), std::string::npos) << log;
  }

  /** No database and no searcher was touched when the library went away. */
  void ExpectNothingReleased()
  {
    for (const char* event : {"Release", "DbClose", "DbRelease"}) EXPECT_EQ(log.find(event), std::string::npos) << log;
  }

  Workspace workspace{{"PafDir=@/paf"}};
  std::string log;
};

class UnloadTest : public LifetimeTest
{
};

TEST_P(UnloadTest, LeavesTheProcessAlive)
{
  Run(std::string(UNLOAD_PROGRAM) + " " + GetParam() + " " + QXPAF_LIBRARY);
  const std::string way = GetParam();
  if (way == "open_instances" || way.find("outlives") != std::string::npos) ExpectNothingReleased();
}

INSTANTIATE_TEST_SUITE_P(Ways, UnloadTest,
                         testing::Values("thread_outlives", "default_outlives", "open_instances", "again_and_again",
                                         "by_another_thread"));

class ExitTest : public LifetimeTest
{
};

TEST_P(ExitTest, EndsWell)
{
  Run(std::string(EXIT_PROGRAM) + " " + GetParam());
  if (std::string(GetParam()).find("return") == 0 || std::string(GetParam()).find("thread") != std::string::npos)
    ExpectNothingReleased();
}

INSTANTIATE_TEST_SUITE_P(Ways, ExitTest,
                         testing::Values("return", "exit_in_thread", "thread_inside", "thread_with_error",
                                         "return_with_default", "thread_with_default", "force_close_at_exit", "fork"));

using DefaultInstanceAtTheEndTest = LifetimeTest;

/** How often an event stands in the log. */
size_t Times(const std::string& log, const std::string& event)
{
  size_t times = 0;
  for (size_t at = log.find(event); at != std::string::npos; at = log.find(event, at + 1)) ++times;
  return times;
}

TEST_F(DefaultInstanceAtTheEndTest, IsReleasedWithTheFirstThreadWhenThatEndsAlone)
{
  Run(std::string(EXIT_PROGRAM) + " first_ends_alone");
  EXPECT_EQ(Times(log, " GetSearcher\n"), 2u) << log;
  EXPECT_EQ(Times(log, " Release\n"), 1u) << log;
  EXPECT_EQ(log.find("DbClose"), std::string::npos) << log;
}

TEST_F(DefaultInstanceAtTheEndTest, IsForgottenWhenTheThreadEndsAfterTheShutDown)
{
  Run(LATE_THREAD);
  ExpectNothingReleased();
}

using StartUpTest = LifetimeTest;

TEST_F(StartUpTest, HappensWithTheFirstCallThatNeedsIt)
{
  Run(LAZY_START);
  EXPECT_EQ(Times(log, "DbClose"), 1u) << log;
}

TEST_F(StartUpTest, WithoutAPerThreadKeyFailsForEveryDefaultInstance)
{
  Run(NO_KEY, "pthread_key_created failed returning 11\n");
}

class EarlyTest : public LifetimeTest
{
};

TEST_P(EarlyTest, ServesOtherLibrariesConstructorsAndDestructors)
{
  Run(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Orders, EarlyTest, testing::Values(EARLY_FIRST, EARLY_LAST, EARLY_LINKED));

}  // namespace
}  // namespace blackbox
