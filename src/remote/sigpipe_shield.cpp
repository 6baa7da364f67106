#include "remote/sigpipe_shield.h"

#include <pthread.h>

#include <cerrno>
#include <ctime>

namespace qxpaf {
namespace {

sigset_t OnlySigpipe()
{
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  return set;
}

bool IsPending()
{
  sigset_t pending;
  sigemptyset(&pending);
  sigpending(&pending);
  return sigismember(&pending, SIGPIPE) == 1;
}

/** Waiting for a signal is a cancellation point, which a destructor must not be. */
void TakeOff(const sigset_t& set)
{
  int cancelState = PTHREAD_CANCEL_ENABLE;
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancelState);
  constexpr timespec kAtOnce{0, 0};
  while (sigtimedwait(&set, nullptr, &kAtOnce) < 0 && errno == EINTR) continue;
  pthread_setcancelstate(cancelState, nullptr);
}

}  // namespace

SigpipeShield::SigpipeShield() : wasPending_(IsPending()), maskBefore_()
{
  const sigset_t sigpipe = OnlySigpipe();
  if (!wasPending_) pthread_sigmask(SIG_BLOCK, &sigpipe, &maskBefore_);
}

SigpipeShield::~SigpipeShield()
{
  if (wasPending_) return;
  const int savedErrno = errno;
  if (IsPending()) TakeOff(OnlySigpipe());
  pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
  errno = savedErrno;
}

}  // namespace qxpaf
