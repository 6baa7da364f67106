/** Jobs done by several threads and given back in the order in which they came. */
#ifndef PAF_TOOL_ORDERED_WORKERS_H
#define PAF_TOOL_ORDERED_WORKERS_H

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace tool {

/** One thread puts jobs in and takes them out; `work` is called by the workers' threads, each with its own number. */
template <class Job>
class OrderedWorkers
{
 public:
  OrderedWorkers(std::size_t threads, std::function<void(std::size_t, Job&)> work) : work_(std::move(work))
  {
    for (std::size_t number = 0; number < threads; ++number) {
      threads_.emplace_back([this, number] { Run(number); });
    }
  }

  /** Waits for the jobs in work; those that nobody has begun are dropped. */
  ~OrderedWorkers()
  {
    {
      const std::lock_guard lock(mutex_);
      stop_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) {
      thread.join();
    }
  }

  OrderedWorkers(const OrderedWorkers&) = delete;
  OrderedWorkers& operator=(const OrderedWorkers&) = delete;

  /** Jobs that were put and not yet taken. */
  std::size_t Pending() const { return pending_; }

  void Put(std::unique_ptr<Job> job)
  {
    {
      const std::lock_guard lock(mutex_);
      slots_.push_back(std::make_shared<Slot>(Slot{std::move(job), false, nullptr}));
      waiting_.push_back(slots_.back());
    }
    ++pending_;
    changed_.notify_all();
  }

  /** Waits for the oldest job, which there must be; throws what its work threw. */
  std::unique_ptr<Job> Take()
  {
    std::unique_lock lock(mutex_);
    const std::shared_ptr<Slot> slot = slots_.front();
    changed_.wait(lock, [&] { return slot->done; });
    slots_.pop_front();
    --pending_;
    if (slot->error) {
      std::rethrow_exception(std::exchange(slot->error, nullptr));
    }
    return std::move(slot->job);
  }

 private:
  /** Once done, what it holds is the taker's alone: the worker may let go of the slot later than the taker does. */
  struct Slot
  {
    std::unique_ptr<Job> job;
    bool done;
    std::exception_ptr error;
  };

  /** The next job to work on; null when there is none any more. */
  std::shared_ptr<Slot> Next()
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return stop_ || !waiting_.empty(); });
    if (stop_) {
      return nullptr;
    }
    std::shared_ptr<Slot> slot = std::move(waiting_.front());
    waiting_.pop_front();
    return slot;
  }

  void Run(std::size_t number)
  {
    while (const std::shared_ptr<Slot> slot = Next()) {
      std::exception_ptr error;
      try {
        work_(number, *slot->job);
      } catch (...) {
        error = std::current_exception();
      }
      {
        const std::lock_guard lock(mutex_);
        slot->error = std::move(error);
        slot->done = true;
      }
      changed_.notify_all();
    }
  }

  std::function<void(std::size_t, Job&)> work_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::shared_ptr<Slot>> slots_;    ///< in the order of Put, until Take
  std::deque<std::shared_ptr<Slot>> waiting_;  ///< those that nobody has begun
  bool stop_ = false;
  std::size_t pending_ = 0;
  std::vector<std::thread> threads_;
};

}  // namespace tool

#endif
