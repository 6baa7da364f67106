/** Every exported function that takes an Id and calls a plug-in, as one table. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_ID_FUNCTIONS_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_ID_FUNCTIONS_H

#include <ostream>
#include <vector>

#include "fakes/fake_control.h"

namespace blackbox {

struct IdFunction
{
  const char* name;
  FakeOperation operation;  // the operation whose status it returns
  int (*call)(int id);      // calls it with valid arguments
  bool answersFindStatus;   // returns the plug-in's number itself and -1 on any failure of its own

  /** What it answers where the others answer `status`. */
  int Failing(int status) const { return answersFindStatus ? -1 : status; }
};

const std::vector<IdFunction>& IdFunctions();

inline void PrintTo(const IdFunction& function, std::ostream* out)
{
  *out << function.name;
}

}  // namespace blackbox

#endif
