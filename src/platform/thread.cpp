#include "qxpaf/platform/thread.h"

#include <unistd.h>

#include <cstdio>

QX_Thread_exception::QX_Thread_exception(int code) : code_(code) {}
QX_Thread_exception::QX_Thread_exception(const QX_Thread_exception& other) noexcept = default;
QX_Thread_exception& QX_Thread_exception::operator=(const QX_Thread_exception& other) noexcept = default;
QX_Thread_exception::~QX_Thread_exception() = default;
int QX_Thread_exception::Code() const
{
  return code_;
}

QX_Thread_lock_exception::QX_Thread_lock_exception(int code) : QX_Thread_exception(code) {}
QX_Thread_lock_exception::QX_Thread_lock_exception(const QX_Thread_lock_exception& other) noexcept = default;
QX_Thread_lock_exception& QX_Thread_lock_exception::operator=(const QX_Thread_lock_exception& other) noexcept = default;
QX_Thread_lock_exception::~QX_Thread_lock_exception() = default;
const char* QX_Thread_lock_exception::what() const noexcept
{
  return "QX_Thread_lock_exception";
}

QX_Thread_mutex_init_exception::QX_Thread_mutex_init_exception(int code) : QX_Thread_exception(code) {}
QX_Thread_mutex_init_exception::QX_Thread_mutex_init_exception(const QX_Thread_mutex_init_exception& other) noexcept =
    default;
QX_Thread_mutex_init_exception& QX_Thread_mutex_init_exception::operator=(
    const QX_Thread_mutex_init_exception& other) noexcept = default;
QX_Thread_mutex_init_exception::~QX_Thread_mutex_init_exception() = default;
const char* QX_Thread_mutex_init_exception::what() const noexcept
{
  return "QX_Thread_mutex_init_exception";
}

namespace {

enum Flag
{
  kDefer = 1,
  kRecursive = 2,
  kNonRecursive = 4
};

void ThrowIfInitFailed(int result)
{
  if (result != 0) throw QX_Thread_mutex_init_exception(result);
}

/** Misuse and system faults of a held lock are programming errors worth a line even where the exception is swallowed.
 */
void ThrowIfLockFailed(int result, const char* call)
{
  if (result == 0) return;
  std::fprintf(stderr, "\n%s returned %d\n", call, result);
  throw QX_Thread_lock_exception(result);
}

}  // namespace

QXMutex::QXMutex(int flags) : recursive_(false), initialised_(false), flags_(flags), mutex_()
{
  if ((flags & kDefer) == 0) Init(0);
}

QXMutex::~QXMutex()
{
  Delete();
}

void QXMutex::Init(int flags)
{
  if (initialised_) return;
  const int all = flags_ | flags;
  Init_((all & kRecursive) != 0 && (all & kNonRecursive) == 0);
  initialised_ = true;
}

void QXMutex::Delete()
{
  if (!initialised_) return;
  Delete_();
  initialised_ = false;
}

int QXMutex::Lock()
{
  return Lock_();
}

int QXMutex::Unlock()
{
  return Unlock_();
}

void QXMutex::Init_(bool recursive)
{
  recursive_ = recursive;
  if (!recursive) {
    ThrowIfInitFailed(pthread_mutex_init(&mutex_, nullptr));
    return;
  }
  pthread_mutexattr_t attributes;
  ThrowIfInitFailed(pthread_mutexattr_init(&attributes));
  ThrowIfInitFailed(pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE));
  ThrowIfInitFailed(pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_PRIVATE));
  ThrowIfInitFailed(pthread_mutex_init(&mutex_, &attributes));
  ThrowIfInitFailed(pthread_mutexattr_destroy(&attributes));
}

int QXMutex::Lock_()
{
  ThrowIfLockFailed(pthread_mutex_lock(&mutex_), "pthread_mutex_lock");
  return 0;
}

int QXMutex::Unlock_()
{
  ThrowIfLockFailed(pthread_mutex_unlock(&mutex_), "pthread_mutex_unlock");
  return 0;
}

int QXMutex::Delete_()
{
  return pthread_mutex_destroy(&mutex_);
}

QXScopedLock::QXScopedLock(QXMutex& mutex, bool lockNow) : mutex_(mutex), locked_(false)
{
  if (lockNow) Lock();
}

QXScopedLock::~QXScopedLock() noexcept(false)
{
  if (!locked_) return;
  if (std::uncaught_exceptions() == 0) {
    Unlock();
    return;
  }
  try {
    Unlock();
  } catch (const QX_Thread_lock_exception&) {
    // Already reported on standard error; a second exception in flight would end the process.
  }
}

void QXScopedLock::Lock()
{
  if (locked_) throw QX_Thread_lock_exception(0);
  mutex_.Lock();
  locked_ = true;
}

void QXScopedLock::Unlock()
{
  if (!locked_) throw QX_Thread_lock_exception(0);
  mutex_.Unlock();
  locked_ = false;
}

int QXThread::Sleep(int milliseconds)
{
  // Unsigned arithmetic: the product may wrap, as the argument of usleep always did.
  return usleep(static_cast<useconds_t>(milliseconds) * 1000U);
}
