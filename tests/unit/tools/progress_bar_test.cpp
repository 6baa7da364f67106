#include "paf/progress_bar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "unit/tools/pseudo_terminal.h"

namespace tool {
namespace {

struct BarRow
{
  double fraction;
  std::size_t filled;
  const char* percent;
};

constexpr BarRow kBars[] = {{0, 0, "  0"},  {0.04, 2, "  4"}, {0.5, 20, " 50"}, {1, 40, "100"},
                            {-1, 0, "  0"}, {7, 40, "100"},   {NAN, 0, "  0"},  {INFINITY, 40, "100"}};

TEST(ProgressBar, FillsFromTheLeft)
{
  for (const BarRow& row : kBars) {
    const std::string bar = std::string(row.filled, '#') + std::string(40 - row.filled, '.');
    EXPECT_EQ(BarText(row.fraction, "rows"), "[" + bar + "] " + row.percent + " % rows");
  }
}

TEST(ProgressBar, IsSilentWhereStandardErrorIsNoTerminal)
{
  testing::internal::CaptureStderr();
  {
    ProgressBar bar;
    bar.Show(0.5, "rows");
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ProgressBar, IsDrawnOverItselfAndTakenAway)
{
  const tool_test::PseudoTerminal user;
  const std::string erase = "\r\033[K";
  ProgressBar bar;
  EXPECT_EQ(user.Shown(), "");
  bar.Show(0.5, "5 rows");
  EXPECT_EQ(user.Shown("rows"), erase + BarText(0.5, "5 rows"));
  bar.Clear();
  EXPECT_EQ(user.Shown("K"), erase);
  bar.Clear();
  EXPECT_EQ(user.Shown(), "");
  // Shown again at once, because it is not there any more.
  bar.Show(1, "10 rows");
  EXPECT_EQ(user.Shown("rows"), erase + BarText(1, "10 rows"));
}

TEST(ProgressBar, IsDrawnTenTimesASecondAtMost)
{
  const tool_test::PseudoTerminal user;
  ProgressBar bar;
  const auto begin = std::chrono::steady_clock::now();
  long calls = 0;
  for (; std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(350); ++calls) {
    bar.Show(0.5, "x");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  const auto elapsed = std::chrono::steady_clock::now() - begin;
  const std::string shown = user.Shown("x");
  const auto drawn = std::count(shown.begin(), shown.end(), '\r');
  EXPECT_GE(drawn, 2);
  EXPECT_LE(drawn, 1 + elapsed / std::chrono::milliseconds(100)) << calls;
}

TEST(ProgressBar, IsTakenAwayAtTheEnd)
{
  const tool_test::PseudoTerminal user;
  {
    ProgressBar bar;
    bar.Show(0.5, "x");
  }
  EXPECT_TRUE(user.Shown("x\r\033[K").ends_with("x\r\033[K"));
}

}  // namespace
}  // namespace tool
