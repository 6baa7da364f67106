/** Rows of a batch, looked up and written out. */
#ifndef PAF_TOOL_BATCH_ROWS_H
#define PAF_TOOL_BATCH_ROWS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "batch_columns.h"
#include "batch_tally.h"
#include "csv_rows.h"
#include "session.h"

namespace tool {

struct BatchRow
{
  std::uint64_t line = 0;
  std::string text;     ///< the row as it was, without its line end
  std::string address;  ///< to be looked up
  std::string fault;    ///< why it is not; empty when it is
};

/** Rows that lie one behind the other in the input, and what becomes of them. */
struct BatchChunk
{
  std::vector<BatchRow> rows;
  std::uint64_t endOffset = 0;
  std::uint64_t endLine = 0;
  std::string output;
  Tally tally;
};

/** How rows look in the output. Not changed after construction, so that threads can share it. */
struct BatchLayout
{
  char delimiter = ',';
  std::string_view lineEnd = "\n";
  std::size_t inputColumns = 0;
  std::vector<std::string> fields;  ///< of the address record; the sessions' "OutputFields"
  bool strict = false;

  /** The row of names: the input's and behind them those that are added. */
  std::string Header(const CsvRow& header) const;

  /** Looks the rows of a chunk up and fills in its output. Throws Failure when the database cannot be asked. */
  void Process(Session& session, BatchChunk& chunk) const;

 private:
  void AppendBroken(const BatchRow& row, std::string& out) const;
  Outcome AppendLookedUp(Session& session, const BatchRow& row, std::string& out) const;
  void AppendAdded(const Reply& reply, Outcome outcome, std::string_view quality, const std::string& dpid,
                   std::string& out) const;
  void Append(std::string_view field, std::string& out) const;
};

}  // namespace tool

#endif
