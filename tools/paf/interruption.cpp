#include "interruption.h"

#include <signal.h>

namespace tool {
namespace {

std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may only touch lock-free atomics");

}  // namespace

void CatchInterruption()
{
  struct sigaction remember = {};
  remember.sa_handler = [](int) { interrupted = true; };
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before = {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) {
      sigaction(signal, &remember, nullptr);
    }
  }
}

bool IsInterrupted()
{
  return interrupted;
}

const std::atomic<bool>& Interruption()
{
  return interrupted;
}

}  // namespace tool
