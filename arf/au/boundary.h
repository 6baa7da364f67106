/** The edge of the plug-in: no exception passes it. */
#ifndef QXPAF_ARF_AU_BOUNDARY_H
#define QXPAF_ARF_AU_BOUNDARY_H

#include <new>
#include <string_view>

#include "arf/match/bounded_text.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"

namespace arf {

/** Runs an operation and turns what it throws into a status. */
template <class Operation>
int Guarded(Operation&& operation) noexcept
{
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return PAF_ERR_OUT_OF_MEMORY;
  } catch (...) {
    return PAF_AU_ERR_INTERNAL;
  }
}

/** A text that a caller passed; null counts as empty. */
inline std::string_view TextOf(const char* text)
{
  return text ? std::string_view(text) : std::string_view();
}

/** Runs an operation that fills `out`; an answer that does not fit leaves an empty text and 6406. */
template <class Operation>
int Answer(char* out, int outSize, Operation&& operation)
{
  BoundedText text(out, outSize);
  int status = Guarded([&] { return operation(text); });
  if (status == 0 && !text.IsWhole()) status = PAF_ERR_BUFFER_TOO_SMALL;
  if (status != 0) text.Clear();
  return status;
}

}  // namespace arf

#endif
