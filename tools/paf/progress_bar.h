/** A progress bar on standard error; silent when that is no terminal. */
#ifndef PAF_TOOL_PROGRESS_BAR_H
#define PAF_TOOL_PROGRESS_BAR_H

#include <chrono>
#include <string>

namespace tool {

class ProgressBar
{
 public:
  ProgressBar();
  ~ProgressBar() { Clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /** Draws the bar at a fraction from 0 to 1, ten times a second at most; cheap to call often. */
  void Show(double fraction, const std::string& label);

  /** Takes the bar off the screen until it is shown again, so that something else can be written. */
  void Clear();

 private:
  bool isTerminal_;
  bool shown_ = false;
  std::chrono::steady_clock::time_point last_{};
};

/** The bar as text: "[#####.....]  50 % label". */
std::string BarText(double fraction, const std::string& label);

}  // namespace tool

#endif
