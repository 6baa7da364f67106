#include "qxpaf/platform/thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>

namespace {

static_assert(!std::is_copy_constructible_v<QXMutex> && !std::is_copy_assignable_v<QXMutex>);
static_assert(!std::is_copy_constructible_v<QXScopedLock>);
static_assert(std::is_empty_v<QXNonCopyable>);
static_assert(std::is_base_of_v<std::exception, QX_Thread_exception>);
static_assert(std::is_base_of_v<QX_Thread_exception, QX_Thread_lock_exception>);
static_assert(std::is_base_of_v<QX_Thread_exception, QX_Thread_mutex_init_exception>);
// Two flags, the creation flags, the mutex, in this order and without a virtual table.
static_assert(sizeof(QXMutex) == 8 + sizeof(pthread_mutex_t));

/** Whether another thread could take the mutex now; a recursive one is told from a plain one by who holds it. */
bool AnotherThreadGets(QXMutex& mutex)
{
  std::atomic<bool> got = false;
  std::thread other([&] {
    mutex.Lock();
    got = true;
    mutex.Unlock();
  });
  for (int i = 0; i < 20 && !got; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  const bool gotInTime = got;
  if (!gotInTime) mutex.Unlock();
  other.join();
  if (!gotInTime) mutex.Lock();
  return gotInTime;
}

struct FlagsRow
{
  int constructorFlags;
  int initFlags;
  bool recursive;
};

class MutexKinds : public testing::TestWithParam<FlagsRow>
{
};

/** Taking a recursive mutex twice works; taking it with the owner gone away fails to unlock, which a plain one allows.
 */
TEST_P(MutexKinds, AreChosenByBothSetsOfFlags)
{
  const FlagsRow row = GetParam();
  QXMutex mutex(row.constructorFlags);
  mutex.Init(row.initFlags);
  mutex.Lock();
  if (row.recursive) {
    EXPECT_EQ(0, mutex.Lock());
    EXPECT_EQ(0, mutex.Unlock());
  }
  int foreignUnlock = -1;
  std::thread([&] {
    testing::internal::CaptureStderr();
    try {
      foreignUnlock = mutex.Unlock();
    } catch (const QX_Thread_lock_exception& e) {
      foreignUnlock = e.Code();
    }
    testing::internal::GetCapturedStderr();
  }).join();
  // Only recursive mutexes know their owner.
  EXPECT_EQ(row.recursive ? EPERM : 0, foreignUnlock);
  if (row.recursive) mutex.Unlock();
}

INSTANTIATE_TEST_SUITE_P(Flags, MutexKinds,
                         testing::Values(FlagsRow{0, 0, false}, FlagsRow{2, 0, true}, FlagsRow{4, 0, false},
                                         FlagsRow{6, 0, false}, FlagsRow{1, 0, false}, FlagsRow{1, 2, true},
                                         FlagsRow{1, 4, false}, FlagsRow{1, 6, false}, FlagsRow{3, 0, true},
                                         FlagsRow{3, 4, false}, FlagsRow{5, 2, false}, FlagsRow{7, 0, false},
                                         // Already initialised by the constructor: Init changes nothing.
                                         FlagsRow{0, 2, false}, FlagsRow{2, 4, true}));

TEST(Mutex, IsLockedAndUnlockedWithResultZero)
{
  QXMutex mutex(0);
  EXPECT_EQ(0, mutex.Lock());
  EXPECT_EQ(0, mutex.Unlock());
}

TEST(Mutex, CanBeDeletedAndInitialisedAgain)
{
  QXMutex mutex(1);
  mutex.Delete();
  mutex.Init(2);
  mutex.Lock();
  mutex.Lock();
  mutex.Unlock();
  mutex.Unlock();
  mutex.Delete();
  mutex.Delete();
  mutex.Init(0);
  EXPECT_EQ(0, mutex.Lock());
  EXPECT_TRUE(mutex.Unlock() == 0 && AnotherThreadGets(mutex));
}

TEST(Mutex, ReportsAndThrowsWhatUnlockReturns)
{
  QXMutex mutex(2);
  testing::internal::CaptureStderr();
  try {
    mutex.Unlock();
    FAIL() << "unlocking an unowned recursive mutex succeeded";
  } catch (const QX_Thread_lock_exception& e) {
    EXPECT_EQ(EPERM, e.Code());
    EXPECT_STREQ("QX_Thread_lock_exception", e.what());
  }
  EXPECT_EQ("\npthread_mutex_unlock returned " + std::to_string(EPERM) + "\n", testing::internal::GetCapturedStderr());
}

TEST(ThreadExceptions, CarryTheirCodeAndName)
{
  const QX_Thread_exception base(7);
  EXPECT_EQ(7, base.Code());
  EXPECT_STREQ(std::exception().what(), base.what());
  const QX_Thread_lock_exception lock(-3);
  EXPECT_EQ(-3, lock.Code());
  EXPECT_STREQ("QX_Thread_lock_exception", lock.what());
  QX_Thread_mutex_init_exception init(11);
  EXPECT_STREQ("QX_Thread_mutex_init_exception", init.what());
  const QX_Thread_mutex_init_exception other(12);
  init = other;
  EXPECT_EQ(12, init.Code());
  EXPECT_THROW(throw lock, QX_Thread_exception);
}

TEST(ScopedLock, HoldsTheMutexForItsScope)
{
  QXMutex mutex(0);
  {
    const QXScopedLock lock(mutex, true);
    EXPECT_FALSE(AnotherThreadGets(mutex));
  }
  EXPECT_TRUE(AnotherThreadGets(mutex));
}

TEST(ScopedLock, LocksLaterWhenAsked)
{
  QXMutex mutex(0);
  QXScopedLock lock(mutex, false);
  EXPECT_TRUE(AnotherThreadGets(mutex));
  lock.Lock();
  EXPECT_FALSE(AnotherThreadGets(mutex));
}

TEST(ScopedLock, MisuseThrowsCodeZeroAndLeavesTheMutex)
{
  QXMutex mutex(0);
  QXScopedLock lock(mutex, true);
  try {
    lock.Lock();
    FAIL() << "locked twice";
  } catch (const QX_Thread_lock_exception& e) {
    EXPECT_EQ(0, e.Code());
  }
  EXPECT_FALSE(AnotherThreadGets(mutex));
  lock.Unlock();
  try {
    lock.Unlock();
    FAIL() << "unlocked twice";
  } catch (const QX_Thread_lock_exception& e) {
    EXPECT_EQ(0, e.Code());
  }
  EXPECT_TRUE(AnotherThreadGets(mutex));
}

TEST(ScopedLock, UnlockedByHandIsNotUnlockedAgain)
{
  QXMutex mutex(2);
  testing::internal::CaptureStderr();
  {
    QXScopedLock lock(mutex, true);
    lock.Unlock();
  }
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST(ScopedLock, ReleasesWhenAnExceptionPasses)
{
  QXMutex mutex(0);
  try {
    const QXScopedLock lock(mutex, true);
    throw 1;
  } catch (int) {
  }
  EXPECT_TRUE(AnotherThreadGets(mutex));
}

TEST(ScopedLock, ThatCannotUnlockThrowsUnlessUnwinding)
{
  QXMutex mutex(2);
  testing::internal::CaptureStderr();
  auto lock = std::make_unique<QXScopedLock>(mutex, true);
  mutex.Unlock();
  EXPECT_THROW(lock.reset(), QX_Thread_lock_exception);
  try {
    const QXScopedLock second(mutex, true);
    mutex.Unlock();
    throw 1;
  } catch (int) {
  }
  EXPECT_NE("", testing::internal::GetCapturedStderr());
}

TEST(Thread, SleepsForMilliseconds)
{
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(0, QXThread::Sleep(50));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
  EXPECT_EQ(0, QXThread::Sleep(0));
}

}  // namespace
