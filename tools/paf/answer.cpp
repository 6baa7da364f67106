#include "answer.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "exit_code.h"

namespace tool {
namespace {

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

/** What stands before the TAB of a line of text; empty for none. */
std::string Lead(const Answer& answer)
{
  if (!answer.verdict.empty()) {
    return answer.verdict;
  }
  return answer.reply.status != 0 ? "-" : answer.dpid;
}

}  // namespace

int ExitStatusOf(const Reply& reply)
{
  if (reply.status == 0) {
    return kExitFound;
  }
  return IsAboutTheQuestion(reply.status) ? kExitNotFound : kExitFailed;
}

Answer RecordAnswer(const std::string& input, const Reply& reply)
{
  Answer answer;
  answer.input = input;
  answer.reply = reply;
  if (reply.status == 0) {
    answer.record.emplace(reply.text);
    answer.dpid = answer.record->Dpid();
    answer.address = answer.record->OneLine();
  }
  return answer;
}

AnswerWriter::AnswerWriter(std::ostream& out, bool json) : out_(out), exitStatus_(kExitFound)
{
  if (json) {
    json_.emplace(out);
  }
}

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

void AnswerWriter::WriteText(const Answer& answer)
{
  const std::string lead = Lead(answer);
  out_ << lead << (lead.empty() ? "" : "\t") << (answer.reply.status == 0 ? answer.address : StatusText(answer.reply));
  if (answer.metres) {
    out_ << '\t' << std::lround(*answer.metres) << " m";
  }
  out_ << '\n';
}

void AnswerWriter::WriteJson(const Answer& answer)
{
  Json object = {{"input", answer.input},    {"status", answer.reply.status},
                 {"dpid", answer.dpid},      {"address", answer.address},
                 {"fields", Json::object()}, {"description", answer.reply.description}};
  if (answer.record) {
    object["fields"] = Fields(*answer.record);
  }
  if (!answer.verdict.empty()) {
    object["verdict"] = answer.verdict;
  }
  if (answer.metres) {
    object["metres"] = std::round(*answer.metres * 10) / 10;
  }
  json_->Write(object);
}

}  // namespace tool
