#include <iostream>
#include <memory>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "exit_code.h"

namespace tool {
namespace {

struct ListOptions
{
  QueryOptions query;
  std::string locality;
  unsigned long limit = 0;
};

Answer MakeAnswer(const std::string& input, const Reply& reply)
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

/** Prints the enumeration that `reply` begins; a failure in it ends it. */
void WriteAll(Session& session, Reply reply, const ListOptions& options, AnswerWriter& writer)
{
  for (unsigned long count = 0; options.limit == 0 || count < options.limit; ++count) {
    const Answer answer = MakeAnswer(options.locality, reply);
    if (answer.record && answer.record->IsEmpty()) {
      return;
    }
    writer.Write(answer);
    if (reply.status != 0) {
      return;
    }
    reply = session.NextRecord();
  }
}

int Run(const ListOptions& options)
{
  Session session;
  OpenOrExplain(session, options.query.database);
  AnswerWriter writer(std::cout, options.query.json);
  WriteAll(session, session.FirstRecord(LocalityQuery(options.locality)), options, writer);
  return writer.HasWritten() ? writer.ExitStatus() : kExitNotFound;
}

}  // namespace

Command AddListCommand(CLI::App& program)
{
  auto options = std::make_shared<ListOptions>();
  CLI::App* app = program.add_subcommand("list", "List the addresses of a locality");
  app->add_option("locality", options->locality, "Locality, state and postcode, as in \"CARLTON VIC 3053\"")
      ->option_text("LOCALITY")
      ->required();
  app->add_option("-n,--limit", options->limit, "Stop after so many addresses")->option_text("COUNT");
  AddQueryOptions(*app, options->query);
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
