#include "signals.h"

#include <initializer_list>

namespace pafd {
namespace {

sigset_t MakeSet()
{
  sigset_t set;
  sigemptyset(&set);
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    sigaddset(&set, number);
  }
  return set;
}

}  // namespace

const sigset_t& ServedSignals()
{
  static const sigset_t kSet = MakeSet();
  return kSet;
}

void BlockSignals()
{
  pthread_sigmask(SIG_BLOCK, &ServedSignals(), nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace pafd
