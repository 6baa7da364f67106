// Mutexes, scoped locks and their exceptions, as another program sees them.
#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>
#include <type_traits>

#include "qxpaf/platform/thread.h"

namespace blackbox {
namespace {

/** Whether another thread can take the mutex now. The platform's mutex stands behind the two flags and the integer. */
bool IsFree(QXMutex& mutex)
{
  auto* platform = reinterpret_cast<pthread_mutex_t*>(reinterpret_cast<char*>(&mutex) + 8);
  bool free = false;
  std::thread([&] {
    free = pthread_mutex_trylock(platform) == 0;
    if (free) pthread_mutex_unlock(platform);
  }).join();
  return free;
}

bool IsRecursive(QXMutex& mutex)
{
  return *reinterpret_cast<const bool*>(&mutex);
}
bool IsInitialised(QXMutex& mutex)
{
  return *(reinterpret_cast<const bool*>(&mutex) + 1);
}
int Flags(QXMutex& mutex)
{
  return *reinterpret_cast<const int*>(reinterpret_cast<const char*>(&mutex) + 4);
}

TEST(MutexLayout, IsTwoFlagsAnIntegerAndThePlatformsMutex)
{
  EXPECT_EQ(sizeof(QXMutex), 8 + sizeof(pthread_mutex_t));
  EXPECT_EQ(sizeof(QXScopedLock), 2 * sizeof(void*));
  EXPECT_FALSE(std::is_polymorphic_v<QXMutex>);
  EXPECT_FALSE(std::is_polymorphic_v<QXScopedLock>);
  EXPECT_TRUE((std::is_base_of_v<QXNonCopyable, QXMutex>));
  EXPECT_TRUE((std::is_base_of_v<QXNonCopyable, QXScopedLock>));
  EXPECT_TRUE(std::is_empty_v<QXNonCopyable>);
  EXPECT_FALSE(std::is_copy_constructible_v<QXMutex>);
  EXPECT_FALSE(std::is_copy_assignable_v<QXMutex>);
}

struct FlagRow
{
  int constructor;
  int init;  // -1: not called
  bool initialised;
  bool recursive;
};

TEST(Mutex, FlagsDecideWhenAndHowItIsMade)
{
  for (const FlagRow& row : {FlagRow{0, -1, true, false}, FlagRow{2, -1, true, true}, FlagRow{4, -1, true, false},
                             FlagRow{6, -1, true, false}, FlagRow{1, -1, false, false}, FlagRow{1, 0, true, false},
                             FlagRow{1, 2, true, true}, FlagRow{1, 4, true, false}, FlagRow{1, 6, true, false},
                             FlagRow{3, 0, true, true}, FlagRow{3, 4, true, false}, FlagRow{5, 2, true, false},
                             FlagRow{7, 2, true, false}, FlagRow{0, 2, true, false}, FlagRow{2, 4, true, true}}) {
    QXMutex mutex(row.constructor);
    if (row.init >= 0) mutex.Init(row.init);
    EXPECT_EQ(IsInitialised(mutex), row.initialised) << row.constructor << " " << row.init;
    EXPECT_EQ(Flags(mutex), row.constructor);
    if (!row.initialised) continue;
    EXPECT_EQ(IsRecursive(mutex), row.recursive) << row.constructor << " " << row.init;
    EXPECT_EQ(mutex.Lock(), 0);
    EXPECT_FALSE(IsFree(mutex));
    if (row.recursive) {
      EXPECT_EQ(mutex.Lock(), 0);
      EXPECT_EQ(mutex.Unlock(), 0);
      EXPECT_FALSE(IsFree(mutex)) << "taken twice, released once";
    }
    EXPECT_EQ(mutex.Unlock(), 0);
    EXPECT_TRUE(IsFree(mutex));
  }
}

TEST(Mutex, MayBeDeletedAndMadeAgain)
{
  QXMutex mutex(2);
  mutex.Delete();
  EXPECT_FALSE(IsInitialised(mutex));
  mutex.Delete();
  mutex.Init(4);
  EXPECT_TRUE(IsInitialised(mutex));
  EXPECT_FALSE(IsRecursive(mutex)) << "the stored flag 2 and the new flag 4 together";
  EXPECT_EQ(mutex.Lock(), 0);
  EXPECT_EQ(mutex.Unlock(), 0);
  EXPECT_EQ(mutex.Delete_(), 0);
  mutex.Init_(true);
  EXPECT_TRUE(IsRecursive(mutex));
  EXPECT_EQ(mutex.Lock_(), 0);
  EXPECT_EQ(mutex.Unlock_(), 0);
}

TEST(Mutex, AFailingUnlockSaysSoAndThrows)
{
  QXMutex mutex(2);
  mutex.Lock();
  std::thread([&] {
    testing::internal::CaptureStderr();
    try {
      mutex.Unlock();
      ADD_FAILURE() << "a recursive mutex of another thread cannot be unlocked";
    } catch (const QX_Thread_lock_exception& exception) {
      EXPECT_EQ(exception.Code(), EPERM);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "\npthread_mutex_unlock returned " + std::to_string(EPERM) + "\n");
  }).join();
  mutex.Unlock();
}

TEST(Mutex, Excludes)
{
  QXMutex mutex(0);
  long counter = 0;
  const auto count = [&] {
    for (int i = 0; i < 20000; ++i) {
      QXScopedLock lock(mutex, true);
      ++counter;
    }
  };
  std::thread first(count);
  std::thread second(count);
  first.join();
  second.join();
  EXPECT_EQ(counter, 40000);
}

TEST(ScopedLock, HoldsForItsScope)
{
  QXMutex mutex(0);
  {
    QXScopedLock lock(mutex, true);
    EXPECT_FALSE(IsFree(mutex));
  }
  EXPECT_TRUE(IsFree(mutex));
  {
    QXScopedLock lock(mutex, false);
    EXPECT_TRUE(IsFree(mutex));
    lock.Lock();
    EXPECT_FALSE(IsFree(mutex));
    lock.Unlock();
    EXPECT_TRUE(IsFree(mutex));
    lock.Lock();
  }
  EXPECT_TRUE(IsFree(mutex));
}

TEST(ScopedLock, DoesNotUnlockTwice)
{
  QXMutex mutex(2);
  mutex.Lock();
  {
    QXScopedLock lock(mutex, true);
    lock.Unlock();
  }
  EXPECT_FALSE(IsFree(mutex)) << "the outer lock still holds";
  mutex.Unlock();
  EXPECT_TRUE(IsFree(mutex));
}

TEST(ScopedLock, MisuseThrowsCodeZeroAndLeavesTheMutexAlone)
{
  QXMutex mutex(0);
  QXScopedLock lock(mutex, false);
  testing::internal::CaptureStderr();
  try {
    lock.Unlock();
    ADD_FAILURE();
  } catch (const QX_Thread_lock_exception& exception) {
    EXPECT_EQ(exception.Code(), 0);
  }
  EXPECT_TRUE(IsFree(mutex));
  lock.Lock();
  try {
    lock.Lock();
    ADD_FAILURE();
  } catch (const QX_Thread_lock_exception& exception) {
    EXPECT_EQ(exception.Code(), 0);
  }
  EXPECT_FALSE(IsFree(mutex));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ScopedLock, IsReleasedWhenAnExceptionPasses)
{
  QXMutex mutex(0);
  try {
    QXScopedLock lock(mutex, true);
    throw 1;
  } catch (int) {
  }
  EXPECT_TRUE(IsFree(mutex));
}

TEST(LockExceptions, HaveTheirNamesCodesAndBases)
{
  EXPECT_STREQ(QX_Thread_lock_exception(5).what(), "QX_Thread_lock_exception");
  EXPECT_STREQ(QX_Thread_mutex_init_exception(5).what(), "QX_Thread_mutex_init_exception");
  EXPECT_STREQ(QX_Thread_exception(5).what(), std::exception().what());
  EXPECT_TRUE((std::is_base_of_v<std::exception, QX_Thread_exception>));
  for (int code : {0, 5, -1}) {
    EXPECT_EQ(QX_Thread_exception(code).Code(), code);
    EXPECT_EQ(QX_Thread_lock_exception(code).Code(), code);
    EXPECT_EQ(QX_Thread_mutex_init_exception(code).Code(), code);
  }
  EXPECT_THROW(throw QX_Thread_lock_exception(1), QX_Thread_exception);
  EXPECT_THROW(throw QX_Thread_mutex_init_exception(1), std::exception);
  // The code stands directly behind the base.
  const QX_Thread_lock_exception exception(77);
  int code = 0;
  std::memcpy(&code, reinterpret_cast<const char*>(&exception) + sizeof(std::exception), sizeof code);
  EXPECT_EQ(code, 77);
}

TEST(Sleep, TakesItsTime)
{
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(QXThread::Sleep(50), 0);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
  EXPECT_EQ(QXThread::Sleep(0), 0);
}

}  // namespace
}  // namespace blackbox
