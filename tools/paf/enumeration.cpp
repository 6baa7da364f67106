#include "enumeration.h"

#include "exit_code.h"

namespace tool {

int WriteAll(const Enumeration& enumeration, Reply first, AnswerWriter& writer)
{
  Reply reply = std::move(first);
  for (unsigned long count = 0; enumeration.limit == 0 || count < enumeration.limit; ++count) {
    Answer answer = RecordAnswer(enumeration.input, reply);
    if (answer.record && answer.record->IsEmpty()) {
      break;
    }
    if (answer.record && enumeration.supplement) {
      enumeration.supplement(answer);
    }
    writer.Write(answer);
    if (reply.status != 0) {
      break;
    }
    reply = enumeration.next();
  }
  return writer.HasWritten() ? writer.ExitStatus() : kExitNotFound;
}

int WriteBegun(const Enumeration& enumeration, const Reply& begun, AnswerWriter& writer)
{
  return WriteAll(enumeration, begun.status == 0 ? enumeration.next() : begun, writer);
}

}  // namespace tool
