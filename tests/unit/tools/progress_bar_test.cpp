#include "paf/progress_bar.h"

#include <gtest/gtest.h>

#include <cmath>

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

}  // namespace
}  // namespace tool
