/** Commands whose answer is a list of addresses. */
#ifndef PAF_TOOL_ENUMERATION_H
#define PAF_TOOL_ENUMERATION_H

#include <functional>
#include <string>

#include "answer.h"

namespace tool {

/** Adds to an answer what the record alone does not say. */
using Supplement = std::function<void(Answer&)>;

/** A list: what it answers, how it goes on, and how much of it is wanted. */
struct Enumeration
{
  std::string input;
  std::function<Reply()> next;
  unsigned long limit = 0;  ///< 0: none
  Supplement supplement;    ///< may be empty
};

/**
 * Prints records from `first` on, until an empty one, a failure or the limit.
 *
 * @return the exit status; kExitNotFound when there was no record at all
 */
int WriteAll(const Enumeration& enumeration, Reply first, AnswerWriter& writer);

/** The same for searches that begin without giving a record: `begun` is what the beginning answered. */
int WriteBegun(const Enumeration& enumeration, const Reply& begun, AnswerWriter& writer);

}  // namespace tool

#endif
