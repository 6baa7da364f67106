/** Ends the process with 1 and a message when something is not as it should be. */
#ifndef QXPAF_TESTS_BLACKBOX_LIFETIME_REQUIRE_H
#define QXPAF_TESTS_BLACKBOX_LIFETIME_REQUIRE_H

#include <unistd.h>

#include <cstdio>

inline void Require(bool truth, const char* what)
{
  if (truth) return;
  std::printf("not so: %s\n", what);
  std::fflush(stdout);
  _exit(1);
}

#endif
