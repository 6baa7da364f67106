#ifndef QXPAF_SRC_REMOTE_SIGPIPE_SHIELD_H
#define QXPAF_SRC_REMOTE_SIGPIPE_SHIELD_H

#include <csignal>

namespace qxpaf {

/**
 * Spares the process the SIGPIPE of sending to a peer that is gone: for this object's life the signal is blocked in the
 * calling thread, and one that came up meanwhile is taken off. The process's handling of the signal is not changed, and
 * a SIGPIPE that was pending before stays pending. errno survives the destructor.
 */
class SigpipeShield
{
 public:
  SigpipeShield();
  ~SigpipeShield();

  SigpipeShield(const SigpipeShield&) = delete;
  SigpipeShield& operator=(const SigpipeShield&) = delete;

 private:
  /** A pending signal is blocked already: there is nothing to do, and nothing may be taken off. */
  bool wasPending_;
  sigset_t maskBefore_;
};

}  // namespace qxpaf

#endif
