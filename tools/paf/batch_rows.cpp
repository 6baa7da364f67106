#include "batch_rows.h"

#include <charconv>
#include <cstdlib>

#include "exit_code.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"
#include "record.h"

namespace tool {
namespace {

constexpr std::string_view kAddedBefore[] = {"paf_dpid", "paf_status", "paf_result", "paf_match_quality"};
constexpr std::string_view kAddedBehind = "paf_description";

/** The status can only be an answer about this one row; anything else would fail for all that follow. */
bool IsAboutTheRow(int status)
{
  return status == 0 || IsAboutTheQuestion(status) || status == PAF_ERR_BUFFER_TOO_SMALL ||
         status == PAF_ERR_SERVER_INPUT_TOO_LONG;
}

/** Asks again once: a connection to a server that broke is mended by the next call. */
template <class Ask>
Reply AskTwice(Ask ask)
{
  Reply reply = ask();
  if (!IsAboutTheRow(reply.status)) {
    reply = ask();
  }
  if (!IsAboutTheRow(reply.status)) {
    throw Failure("the database cannot be asked any more: " + StatusText(reply));
  }
  return reply;
}

}  // namespace

std::string BatchLayout::Header(const CsvRow& header) const
{
  std::string out(header.text);
  for (const std::string_view name : kAddedBefore) {
    Append(name, out);
  }
  for (const std::string& field : fields) {
    Append("paf_" + field, out);
  }
  Append(kAddedBehind, out);
  return out.append(lineEnd);
}

void BatchLayout::Process(Session& session, BatchChunk& chunk) const
{
  for (const BatchRow& row : chunk.rows) {
    if (!row.fault.empty()) {
      AppendBroken(row, chunk.output);
      chunk.tally.Count(Outcome::BrokenRow);
    } else {
      chunk.tally.Count(AppendLookedUp(session, row, chunk.output));
    }
    chunk.output += lineEnd;
  }
}

/** The whole text becomes one field, so that every other row keeps its columns. */
void BatchLayout::AppendBroken(const BatchRow& row, std::string& out) const
{
  AppendCsvField(out, row.text, delimiter);
  out.append(inputColumns - 1, delimiter);
  out.append(2, delimiter);
  Append(NameOf(Outcome::BrokenRow), out);
  out.append(1 + fields.size(), delimiter);
  Append(row.fault, out);
}

Outcome BatchLayout::AppendLookedUp(Session& session, const BatchRow& row, std::string& out) const
{
  Reply reply = AskTwice([&] { return session.Lookup(row.address, strict); });
  const bool isAsked = reply.status != PAF_ERR_SERVER_INPUT_TOO_LONG;
  const int findStatus = isAsked ? session.FindStatus() : int{PAF_AU_FIND_NOT_SEARCHED};
  std::string dpid;
  if (reply.status == 0) {
    dpid = reply.text;
    reply = AskTwice([&] { return session.Address(std::strtol(dpid.c_str(), nullptr, 10)); });
  }
  const Outcome outcome = OutcomeOf(reply.status, findStatus);
  out += row.text;
  AppendAdded(reply, outcome, std::to_string(findStatus), dpid, out);
  return outcome;
}

void BatchLayout::AppendAdded(const Reply& reply, Outcome outcome, std::string_view quality, const std::string& dpid,
                              std::string& out) const
{
  Append(dpid, out);
  Append(std::to_string(reply.status), out);
  Append(NameOf(outcome), out);
  Append(quality, out);
  const Record record(reply.text);
  for (std::size_t number = 1; number <= fields.size(); ++number) {
    Append(record.Field(number), out);
  }
  Append(reply.description, out);
}

void BatchLayout::Append(std::string_view field, std::string& out) const
{
  out += delimiter;
  AppendCsvField(out, field, delimiter);
}

}  // namespace tool
