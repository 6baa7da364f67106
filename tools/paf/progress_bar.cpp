#include "progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tool {
namespace {

constexpr std::size_t kWidth = 40;
constexpr auto kInterval = std::chrono::milliseconds(100);
constexpr const char* kEraseLine = "\r\033[K";

}  // namespace

ProgressBar::ProgressBar() : isTerminal_(isatty(STDERR_FILENO) != 0) {}

void ProgressBar::Clear()
{
  if (shown_) {
    std::fputs(kEraseLine, stderr);
    shown_ = false;
  }
}

void ProgressBar::Show(double fraction, const std::string& label)
{
  const auto now = std::chrono::steady_clock::now();
  if (!isTerminal_ || (shown_ && now - last_ < kInterval)) {
    return;
  }
  shown_ = true;
  last_ = now;
  std::fprintf(stderr, "%s%s", kEraseLine, BarText(fraction, label).c_str());
}

std::string BarText(double fraction, const std::string& label)
{
  const double bounded = std::isnan(fraction) ? 0 : std::clamp(fraction, 0.0, 1.0);
  std::string bar(kWidth, '.');
  std::fill_n(bar.begin(), std::lround(bounded * kWidth), '#');
  const std::string percent = std::to_string(std::lround(bounded * 100));
  return std::string("[")
      .append(bar)
      .append("] ")
      .append(3 - percent.size(), ' ')
      .append(percent)
      .append(" % " + label);
}

}  // namespace tool
