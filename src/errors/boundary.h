/** Where C++ exceptions end. */
#ifndef QXPAF_SRC_ERRORS_BOUNDARY_H
#define QXPAF_SRC_ERRORS_BOUNDARY_H

#include <cxxabi.h>

#include <new>

#include "qxpaf/paf.h"

namespace qxpaf {

/**
 * Runs something that returns a status and turns an exception that escapes it into one. Only plug-ins, allocation and
 * the lock layer throw; an exception of the former and the latter is a fault of the system (6494).
 */
template <class Call>
__attribute__((no_sanitize("undefined")))  // glibc unwinds a thread with a null exception object
int AtBoundary(Call&& call)
{
  try {
    return call();
  } catch (const abi::__forced_unwind&) {
    throw;  // pthread_cancel and pthread_exit unwind with this; swallowing it would abort the process
  } catch (const std::bad_alloc&) {
    return PAF_ERR_OUT_OF_MEMORY;
  } catch (...) {
    return PAF_ERR_PLUGIN_SYSTEM;
  }
}

}  // namespace qxpaf

#endif
