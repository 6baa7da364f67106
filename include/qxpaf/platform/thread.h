/**
 * Mutexes and scoped locks over POSIX threads.
 *
 * Every fault of the lock layer is an exception: initialising a mutex throws QX_Thread_mutex_init_exception; locking
 * and unlocking write one line to standard error and throw QX_Thread_lock_exception. Each carries the error number that
 * the pthread call returned, or 0 for misuse of a QXScopedLock. Layouts and virtual tables are part of the interface.
 */
#ifndef QXPAF_PLATFORM_THREAD_H
#define QXPAF_PLATFORM_THREAD_H

#include <pthread.h>

#include <exception>

#include "qxpaf/export.h"

/** Base of every exception of the lock layer; what() is the standard base's text. */
class QXPAF_API QX_Thread_exception : public std::exception
{
 public:
  explicit QX_Thread_exception(int code);
  QX_Thread_exception(const QX_Thread_exception& other) noexcept;
  QX_Thread_exception& operator=(const QX_Thread_exception& other) noexcept;
  ~QX_Thread_exception() override;

  /** The error number of the pthread call, or 0 when a QXScopedLock was misused. */
  int Code() const;

 private:
  int code_;
};

/** A mutex could not be locked or unlocked, or a QXScopedLock was locked twice or unlocked while not locked. */
class QXPAF_API QX_Thread_lock_exception : public QX_Thread_exception
{
 public:
  explicit QX_Thread_lock_exception(int code);
  QX_Thread_lock_exception(const QX_Thread_lock_exception& other) noexcept;
  QX_Thread_lock_exception& operator=(const QX_Thread_lock_exception& other) noexcept;
  ~QX_Thread_lock_exception() override;

  /** "QX_Thread_lock_exception" */
  const char* what() const noexcept override;
};

/** A mutex could not be created. */
class QXPAF_API QX_Thread_mutex_init_exception : public QX_Thread_exception
{
 public:
  explicit QX_Thread_mutex_init_exception(int code);
  QX_Thread_mutex_init_exception(const QX_Thread_mutex_init_exception& other) noexcept;
  QX_Thread_mutex_init_exception& operator=(const QX_Thread_mutex_init_exception& other) noexcept;
  ~QX_Thread_mutex_init_exception() override;

  /** "QX_Thread_mutex_init_exception" */
  const char* what() const noexcept override;
};

/** Empty base of classes whose objects are neither copied nor assigned. */
class QXNonCopyable
{
 public:
  QXNonCopyable(const QXNonCopyable&) = delete;
  QXNonCopyable& operator=(const QXNonCopyable&) = delete;

 protected:
  QXNonCopyable() = default;
  ~QXNonCopyable() = default;
};

/**
 * A process-private mutex, recursive or not, whose creation may be deferred.
 *
 * Flags, for the constructor and for Init: 1 defer creation to the first Init, 2 recursive, 4 non-recursive (wins over
 * 2). Any thread may lock; taking a non-recursive mutex twice in one thread deadlocks, as pthread_mutex_lock does.
 */
class QXPAF_API QXMutex : public QXNonCopyable
{
 public:
  /** Creates the mutex unless flag 1 is given. @throws QX_Thread_mutex_init_exception */
  explicit QXMutex(int flags);

  /** Delete(). The mutex must not be held. */
  ~QXMutex();

  /** Creates the mutex from the constructor's flags combined with these; does nothing when it already exists. */
  void Init(int flags);

  /** Destroys the mutex if it exists; a later Init creates a new one. */
  void Delete();

  /** Waits for the mutex. Whether it was created is not checked. @return 0 @throws QX_Thread_lock_exception */
  int Lock();

  /** Releases the mutex. @return 0 @throws QX_Thread_lock_exception */
  int Unlock();

  /** The platform operations behind the four above; Delete_ returns what pthread_mutex_destroy returned. */
  void Init_(bool recursive);
  int Lock_();
  int Unlock_();
  int Delete_();

 private:
  bool recursive_;
  bool initialised_;
  int flags_;
  pthread_mutex_t mutex_;
};

/** Holds a QXMutex for a scope and knows whether it does. Used by one thread. */
class QXPAF_API QXScopedLock : public QXNonCopyable
{
 public:
  /** Remembers the mutex, which must outlive this object, and locks it when lockNow is true. */
  QXScopedLock(QXMutex& mutex, bool lockNow);

  /** Unlocks if locked. A failure is thrown, unless the stack is already being unwound. */
  ~QXScopedLock() noexcept(false);

  /** @throws QX_Thread_lock_exception with code 0 when this object already holds the mutex */
  void Lock();

  /** @throws QX_Thread_lock_exception with code 0 when this object does not hold the mutex */
  void Unlock();

 private:
  QXMutex& mutex_;
  bool locked_;
};

/** Operations on the calling thread. */
class QXPAF_API QXThread
{
 public:
  /** Sleeps for some milliseconds. @return the result of usleep: 0, or -1 with errno set */
  static int Sleep(int milliseconds);
};

#endif
