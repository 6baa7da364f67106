#ifndef QXPAF_TESTS_UNIT_TOOLS_FAILURE_OF_H
#define QXPAF_TESTS_UNIT_TOOLS_FAILURE_OF_H

#include <string>

#include "paf/exit_code.h"

namespace tool_test {

/** The message of the Failure that a call throws; "none" when it throws none. */
template <class Call>
std::string FailureOf(Call call)
{
  try {
    call();
  } catch (const tool::Failure& failure) {
    return failure.what();
  }
  return "none";
}

}  // namespace tool_test

#endif
