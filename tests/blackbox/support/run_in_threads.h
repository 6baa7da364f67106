#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_RUN_IN_THREADS_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_RUN_IN_THREADS_H

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace blackbox {

/** Runs body(number of the thread, round) in every thread, over and over, until the time is up. */
template <class Body>
void RunInThreads(int count, std::chrono::milliseconds duration, Body body)
{
  std::atomic<bool> stop{false};
  std::vector<std::thread> threads;
  for (int number = 0; number < count; ++number) {
    threads.emplace_back([&stop, &body, number] {
      for (unsigned round = 0; !stop.load(std::memory_order_relaxed); ++round) body(number, round);
    });
  }
  std::this_thread::sleep_for(duration);
  stop = true;
  for (std::thread& thread : threads) thread.join();
}

}  // namespace blackbox

#endif
