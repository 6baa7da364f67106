/** Tells the caller of a build how far it is, and learns whether to stop. */
#ifndef QXPAF_ARF_BUILD_BUILD_WATCH_H
#define QXPAF_ARF_BUILD_BUILD_WATCH_H

#include <atomic>
#include <cstdint>

#include "arf/build/build_error.h"
#include "arf/build/builder.h"

namespace arf {

class BuildWatch
{
 public:
  BuildWatch(const ProgressCallback& progress, const std::atomic<bool>* cancel) : progress_(progress), cancel_(cancel)
  {
  }

  /** Reports progress; throws BuildCancelled when the caller wants to stop. */
  void Reached(BuildPhase phase, std::uint64_t done, std::uint64_t total) const
  {
    if (progress_) progress_({phase, done, total});
    if (cancel_ && cancel_->load(std::memory_order_relaxed)) throw BuildCancelled();
  }

 private:
  const ProgressCallback& progress_;
  const std::atomic<bool>* cancel_;
};

}  // namespace arf

#endif
