/** Sessions without a database: what they are asked and answer is up to the test. */
#ifndef QXPAF_TESTS_UNIT_TOOLS_SCRIPTED_SESSION_H
#define QXPAF_TESTS_UNIT_TOOLS_SCRIPTED_SESSION_H

#include <functional>
#include <string>

#include "paf/session.h"

namespace tool_test {

/** What every tool::Session of the program answers; a call that has no function here ends the test. */
struct SessionScript
{
  std::function<tool::Reply(const std::string& address, bool strict)> lookup;
  std::function<tool::Reply(long dpid)> address;
  std::function<tool::Reply(const std::string& name, const std::string& value)> setProperty;
  std::function<tool::Reply(const std::string& text, const std::string& place, int most)> firstHint;
  std::function<tool::Reply()> nextHint;
  int findStatus = -1;
};

SessionScript& Script();

}  // namespace tool_test

#endif
