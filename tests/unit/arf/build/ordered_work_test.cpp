// Pieces taken, worked on and given back by several threads.
#include "arf/build/ordered_work.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using Work = arf::OrderedWork<int, std::string>;

/** Gives the numbers from 0 to count - 1; not by two threads at once, or the thread sanitizer tells. */
class Numbers
{
 public:
  explicit Numbers(int count) : count_(count) {}

  bool operator()(int& number)
  {
    number = next_;
    return next_ < count_ && next_++ < count_;
  }

 private:
  int count_;
  int next_ = 0;
};

std::string Text(int number)
{
  // Every seventh piece takes long, so that those behind it are ready before it.
  if (number % 7 == 0) std::this_thread::sleep_for(std::chrono::microseconds(200));
  return std::to_string(number);
}

TEST(OrderedWork, GivesResultsInTheOrderOfThePieces)
{
  for (const unsigned threads : {1U, 2U, 5U}) {
    for (const int count : {0, 1, 2, 500}) {
      Work work(threads, Numbers(count), Text);
      for (int i = 0; i < count; ++i) ASSERT_EQ(work.Next(), std::to_string(i)) << threads;
      EXPECT_EQ(work.Next(), std::nullopt);
      EXPECT_EQ(work.Next(), std::nullopt);
    }
  }
}

TEST(OrderedWork, IsOnlyAFewPiecesAheadOfTheCaller)
{
  std::atomic<int> taken = 0;
  Numbers numbers(1000);
  Work work(
      3, [&](int& number) { return ++taken, numbers(number); }, Text);
  for (int asked = 0; asked < 50; ++asked) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_LE(taken, asked + 3 + 2);
    work.Next();
  }
}

std::string FailureOf(Work& work)
{
  try {
    while (work.Next()) {
    }
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "none";
}

TEST(OrderedWork, RethrowsWhatAThreadThrew)
{
  Work work(4, Numbers(100), [](int&& number) {
    if (number == 50) throw std::runtime_error("piece 50");
    return Text(number);
  });
  EXPECT_EQ(FailureOf(work), "piece 50");
  EXPECT_EQ(FailureOf(work), "piece 50");
}

TEST(OrderedWork, RethrowsWhatTakingThrew)
{
  Numbers numbers(100);
  Work work(
      4,
      [&](int& number) {
        if (numbers(number) && number == 30) throw std::runtime_error("no more");
        return true;
      },
      Text);
  EXPECT_EQ(FailureOf(work), "no more");
}

TEST(OrderedWork, MayBeGivenUp)
{
  std::atomic<int> done = 0;
  {
    Work work(4, Numbers(1'000'000), [&](int&& number) { return ++done, Text(number); });
    EXPECT_EQ(work.Next(), "0");
  }
  EXPECT_LT(done, 20);
}

}  // namespace
