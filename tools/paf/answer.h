/** What the program tells about one input, as a line of text or as an element of a JSON array. */
#ifndef PAF_TOOL_ANSWER_H
#define PAF_TOOL_ANSWER_H

#include <iosfwd>
#include <optional>
#include <string>

#include "json.h"
#include "record.h"
#include "reply.h"

namespace tool {

struct Answer
{
  std::string input;
  Reply reply;                   ///< status and description; its text is not printed
  std::string dpid;              ///< empty where the question was not about one
  std::string address;           ///< in one line
  std::string verdict;           ///< of a validation; printed in the identifier's place
  std::optional<double> metres;  ///< how far away the address is; printed behind it
  std::optional<Record> record;  ///< the address in fields, where there is one
};

/** The answer that a reply with a record is. */
Answer RecordAnswer(const std::string& input, const Reply& reply);

/** The exit status of a run whose only reply was this. */
int ExitStatusOf(const Reply& reply);

/**
 * Prints answers one by one and keeps the exit status that they add up to.
 *
 * Text: "DPID<TAB>address", or the address alone where there is no DPID; "-<TAB>description (status n)" for a failure,
 * the verdict instead of the dash where there is one, the distance behind another TAB.
 * JSON: one array of objects, always valid UTF-8: bytes that are not are replaced by U+FFFD.
 */
class AnswerWriter
{
 public:
  AnswerWriter(std::ostream& out, bool json);

  void Write(const Answer& answer);

  bool HasWritten() const { return any_; }
  int ExitStatus() const { return exitStatus_; }

 private:
  void WriteText(const Answer& answer);
  void WriteJson(const Answer& answer);

  std::ostream& out_;
  std::optional<JsonArray> json_;  ///< empty for text
  bool any_ = false;
  int exitStatus_;
};

}  // namespace tool

#endif
