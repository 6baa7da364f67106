/** The functions that work on an instance and answer the status of one operation, for tests of what they share. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_ID_FUNCTIONS_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_ID_FUNCTIONS_H

#include <ostream>
#include <vector>

#include "blackbox/support/exported_functions.h"

namespace blackbox {

struct IdFunction
{
  const char* name;
  FakeOperation operation;  // the operation whose status it returns
  int (*run)(int id, const char* in, char* text, int size);
  bool answersFindStatus;  // returns the plug-in's number itself and -1 on any failure of its own

  /** Calls it with valid arguments. */
  int call(int id) const;
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
