#include "paf/ordered_workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <string>

namespace tool {
namespace {

struct Sum
{
  explicit Sum(int last) : to(last) {}

  int to;
  long result = 0;
};

void AddUp(std::size_t, Sum& sum)
{
  // Later jobs are shorter, so that they are ready first.
  for (int i = 1; i <= sum.to; ++i) sum.result += i;
}

TEST(OrderedWorkers, GiveResultsInTheOrderOfTheJobs)
{
  for (const std::size_t threads : {1U, 2U, 7U}) {
    OrderedWorkers<Sum> workers(threads, AddUp);
    int taken = 3000;
    for (int put = 3000; taken > 0;) {
      while (put > 0 && workers.Pending() < 20) workers.Put(std::make_unique<Sum>(put--));
      const auto sum = workers.Take();
      ASSERT_EQ(sum->to, taken);
      ASSERT_EQ(sum->result, static_cast<long>(taken) * (taken + 1) / 2);
      --taken;
    }
    EXPECT_EQ(workers.Pending(), 0U);
  }
}

TEST(OrderedWorkers, ThreadsHaveNumbersOfTheirOwn)
{
  constexpr std::size_t kThreads = 4;
  std::vector<long> perThread(kThreads);  // without a lock: no two threads have one number
  OrderedWorkers<int> workers(kThreads, [&](std::size_t number, int&) { ++perThread.at(number); });
  for (int i = 0; i < 2000; ++i) {
    workers.Put(std::make_unique<int>(i));
    if (i >= 50) workers.Take();
  }
  while (workers.Pending() > 0) workers.Take();
  long sum = 0;
  for (const long count : perThread) sum += count;
  EXPECT_EQ(sum, 2000);
}

TEST(OrderedWorkers, AFailureComesWithItsJobAndOnlyWithThat)
{
  OrderedWorkers<int> workers(2, [](std::size_t, int& job) {
    if (job == 1) throw std::runtime_error("job 1");
  });
  for (int i = 0; i < 3; ++i) workers.Put(std::make_unique<int>(i));
  EXPECT_EQ(*workers.Take(), 0);
  try {
    workers.Take();
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "job 1");
  }
  EXPECT_EQ(*workers.Take(), 2);
}

TEST(OrderedWorkers, JobsThatNobodyHasBegunAreDropped)
{
  std::atomic<int> begun = 0;
  std::atomic<bool> ending = false;
  // The one job that is in work ends a while after the destructor has been called.
  const auto work = [&](std::size_t, int&) {
    ++begun;
    while (!ending) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  };
  {
    OrderedWorkers<int> workers(1, work);
    for (int i = 0; i < 100; ++i) workers.Put(std::make_unique<int>(i));
    while (begun == 0) std::this_thread::yield();
    ending = true;
  }
  EXPECT_LT(begun, 10);
}

TEST(OrderedWorkers, EndWithoutAnyJob)
{
  const OrderedWorkers<int> workers(8, [](std::size_t, int&) {});
  EXPECT_EQ(workers.Pending(), 0U);
}

}  // namespace
}  // namespace tool
