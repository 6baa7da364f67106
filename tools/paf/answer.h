/** What the program tells about one input, as a line of text or as an element of a JSON array. */
#ifndef PAF_TOOL_ANSWER_H
#define PAF_TOOL_ANSWER_H

#include <iosfwd>
#include <optional>
#include <string>

#include "record.h"
#include "session.h"

namespace tool {

struct Answer
{
  std::string input;
  Reply reply;                   ///< status and description; its text is not printed
  std::string dpid;              ///< empty where the question was not about one
  std::string address;           ///< in one line
  std::optional<Record> record;  ///< the address in fields, where there is one
};

/**
 * Prints answers one by one and keeps the exit status that they add up to.
 *
 * Text: "DPID<TAB>address", or the address alone where there is no DPID; "-<TAB>description (status n)" for a failure.
 * JSON: one array of objects, always valid UTF-8: bytes that are not are replaced by U+FFFD.
 */
class AnswerWriter
{
 public:
  AnswerWriter(std::ostream& out, bool json);
  ~AnswerWriter();  ///< ends the document, also when a failure cuts the run short
  AnswerWriter(const AnswerWriter&) = delete;
  AnswerWriter& operator=(const AnswerWriter&) = delete;

  void Write(const Answer& answer);

  bool HasWritten() const { return any_; }
  int ExitStatus() const { return exitStatus_; }

 private:
  void WriteText(const Answer& answer);
  void WriteJson(const Answer& answer);

  std::ostream& out_;
  bool json_;
  bool any_ = false;
  int exitStatus_;
};

}  // namespace tool

#endif
