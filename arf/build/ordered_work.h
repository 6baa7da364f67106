/**
 * Work on pieces in several threads whose results are taken in the order of the pieces, so that the outcome does not
 * depend on the threads.
 */
#ifndef QXPAF_ARF_BUILD_ORDERED_WORK_H
#define QXPAF_ARF_BUILD_ORDERED_WORK_H

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace arf {

template <class Piece, class Result>
class OrderedWork
{
 public:
  using Take = std::function<bool(Piece&)>;   ///< gives the next piece; never called by two threads at once
  using Do = std::function<Result(Piece&&)>;  ///< called by several threads at once

  OrderedWork(unsigned threads, Take take, Do work)
      : ahead_(std::uint64_t{threads} + 2), take_(std::move(take)), do_(std::move(work))
  {
    for (unsigned i = 0; i < threads; ++i) workers_.emplace_back([this] { Run(); });
  }

  ~OrderedWork()
  {
    {
      const std::lock_guard lock(mutex_);
      stopped_ = true;
    }
    changed_.notify_all();
    for (std::thread& worker : workers_) worker.join();
  }

  OrderedWork(const OrderedWork&) = delete;
  OrderedWork& operator=(const OrderedWork&) = delete;

  /** The next result; none at the end. Rethrows what a thread threw. For one caller. */
  std::optional<Result> Next()
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return failure_ || results_.contains(wanted_) || (ended_ && wanted_ == taken_); });
    if (failure_) std::rethrow_exception(failure_);
    const auto found = results_.find(wanted_);
    if (found == results_.end()) return std::nullopt;
    std::optional<Result> result(std::move(found->second));
    results_.erase(found);
    ++wanted_;
    lock.unlock();
    changed_.notify_all();
    return result;
  }

 private:
  void Run()
  {
    try {
      for (Piece piece; const std::optional<std::uint64_t> number = TakePiece(piece); piece = Piece()) {
        Result result = do_(std::move(piece));
        const std::lock_guard lock(mutex_);
        results_.emplace(*number, std::move(result));
        changed_.notify_all();
      }
    } catch (...) {
      const std::lock_guard lock(mutex_);
      if (!failure_) failure_ = std::current_exception();
      stopped_ = true;
    }
    changed_.notify_all();
  }

  std::optional<std::uint64_t> TakePiece(Piece& piece)
  {
    const std::lock_guard taking(takeMutex_);
    {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return stopped_ || taken_ - wanted_ < ahead_; });
      if (stopped_ || ended_) return std::nullopt;
    }
    const bool has = take_(piece);
    const std::lock_guard lock(mutex_);
    ended_ = !has;
    return has ? std::optional(taken_++) : std::nullopt;
  }

  const std::uint64_t ahead_;  ///< by how many pieces the threads may be ahead of the caller, which bounds the memory
  Take take_;
  Do do_;
  std::mutex mutex_, takeMutex_;
  std::condition_variable changed_;
  std::map<std::uint64_t, Result> results_;
  std::uint64_t taken_ = 0, wanted_ = 0;
  bool ended_ = false, stopped_ = false;
  std::exception_ptr failure_;
  std::vector<std::thread> workers_;
};

}  // namespace arf

#endif
