/** What may be meant by a text that is still being typed. */
#ifndef PAF_TOOL_HINTS_H
#define PAF_TOOL_HINTS_H

#include <string>
#include <vector>

#include "session.h"

namespace tool {

struct Hint
{
  std::string text;   ///< what to put in the place of what was typed
  std::string kind;   ///< "locality", "street", "building" or "address"
  std::string count;  ///< addresses behind it
  std::string dpid;   ///< of the address that it is; empty when it is none

  /** True when nothing is left to choose. */
  bool IsFinal() const { return kind == "address" && !dpid.empty(); }
};

/**
 * The hints for a text, the best first, at most so many.
 *
 * @return 0 in `status`, also when there are no hints
 */
Reply ReadHints(Session& session, const std::string& text, const std::string& place, int most,
                std::vector<Hint>& hints);

}  // namespace tool

#endif
