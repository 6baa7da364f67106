/** Puts a failure into words: what is wrong, and what the data has instead. */
#ifndef QXPAF_ARF_MATCH_FAILURE_TEXT_H
#define QXPAF_ARF_MATCH_FAILURE_TEXT_H

#include "arf/format/database.h"
#include "arf/match/bounded_text.h"
#include "arf/match/decision.h"

namespace arf {

/**
 * Appends one sentence, such as "No number 900 in GEORGE STREET, SYDNEY NSW 2000; numbers there run from 1 to 812."
 * Nothing is appended for Fault::None.
 */
void AppendFailure(BoundedText& text, const Database& database, const Failure& failure);

}  // namespace arf

#endif
