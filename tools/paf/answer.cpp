#include "answer.h"

#include <algorithm>
#include <ostream>

#include "exit_code.h"
#include "json.h"

namespace tool {
namespace {

int ExitStatusOf(const Reply& reply)
{
  if (reply.status == 0) {
    return kExitFound;
  }
  return IsAboutTheQuestion(reply.status) ? kExitNotFound : kExitFailed;
}

Json Fields(const Record& record)
{
  Json fields = Json::object();
  for (std::size_t number = 1; number <= record.Size(); ++number) {
    const std::string_view name = FieldName(number);
    if (!name.empty() && !record.Field(number).empty()) {
      fields[std::string(name)] = record.Field(number);
    }
  }
  return fields;
}

}  // namespace

AnswerWriter::AnswerWriter(std::ostream& out, bool json) : out_(out), json_(json), exitStatus_(kExitFound) {}

void AnswerWriter::Write(const Answer& answer)
{
  exitStatus_ = std::max(exitStatus_, ExitStatusOf(answer.reply));
  if (json_) {
    WriteJson(answer);
  } else {
    WriteText(answer);
  }
  any_ = true;
}

AnswerWriter::~AnswerWriter()
{
  if (json_) {
    out_ << (any_ ? "\n]\n" : "[]\n");
  }
}

void AnswerWriter::WriteText(const Answer& answer)
{
  if (answer.reply.status != 0) {
    out_ << "-\t" << StatusText(answer.reply) << '\n';
  } else if (answer.dpid.empty()) {
    out_ << answer.address << '\n';
  } else {
    out_ << answer.dpid << '\t' << answer.address << '\n';
  }
}

void AnswerWriter::WriteJson(const Answer& answer)
{
  Json object = {{"input", answer.input},    {"status", answer.reply.status},
                 {"dpid", answer.dpid},      {"address", answer.address},
                 {"fields", Json::object()}, {"description", answer.reply.description}};
  if (answer.record) {
    object["fields"] = Fields(*answer.record);
  }
  out_ << (any_ ? ",\n" : "[\n") << ToText(object);
}

}  // namespace tool
