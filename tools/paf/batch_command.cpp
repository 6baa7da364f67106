#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <thread>

#include "advice.h"
#include "batch_columns.h"
#include "batch_output.h"
#include "batch_rows.h"
#include "command.h"
#include "database_stamp.h"
#include "exit_code.h"
#include "interruption.h"
#include "json.h"
#include "ordered_workers.h"
#include "progress_bar.h"

namespace tool {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kRowsPerChunk = 256;
constexpr std::size_t kBytesPerChunk = 1 << 20;
constexpr auto kKeepInterval = std::chrono::seconds(1);
constexpr std::uint64_t kMaxReported = 20;  // broken rows that are told one by one

struct BatchOptions
{
  QueryOptions query;
  std::string input;
  std::string output;
  std::vector<std::string> columns;
  std::vector<std::string> fields = {"AddressLine1", "AddressLine2", "Locality", "State", "Postcode"};
  std::string delimiter = ",";
  std::size_t threads = std::max(1U, std::thread::hardware_concurrency());
  bool strict = false;
  bool resume = false;
  bool restart = false;

  char Delimiter() const { return delimiter == "tab" ? '\t' : delimiter.front(); }
  Leftover ForLeftover() const { return resume ? Leftover::Resume : restart ? Leftover::Discard : Leftover::Refuse; }
};

/** One session a thread. */
class Sessions
{
 public:
  explicit Sessions(const BatchOptions& options)
  {
    std::string fields;
    for (const std::string& field : options.fields) {
      fields += (fields.empty() ? "" : ";") + field;
    }
    for (std::size_t i = 0; i < options.threads; ++i) {
      sessions_.push_back(std::make_unique<Session>());
      OpenOrExplain(*sessions_.back(), options.query.database);
      if (const Reply reply = sessions_.back()->SetProperty("OutputFields", fields); reply.status != 0) {
        throw Failure("--fields: " + StatusText(reply));
      }
    }
  }

  Session& operator[](std::size_t number) { return *sessions_[number]; }

 private:
  std::vector<std::unique_ptr<Session>> sessions_;
};

/** What must be the same when a run is gone on with. */
Json RunIdentity(const BatchOptions& options, const CsvRows& rows, const AddressColumns& columns, Session& session)
{
  return {{"input", options.input},
          {"size of the input", rows.Size()},
          {"time of change of the input", rows.Modified()},
          {"database", LibraryName(options.query.database)},
          {"version of the database", session.Property("PafVersionInfo").text},
          {"build of the database", DatabaseStamp(session)},
          {"choice of columns", columns.Names()},
          {"choice of fields", options.fields},
          {"delimiter", options.delimiter},
          {"strictness", options.strict ? "strict" : "lenient"}};
}

/** Reads, has looked up, and writes, in this order. */
class Batch
{
 public:
  explicit Batch(const BatchOptions& options)
      : options_(options),
        rows_(options.input, options.Delimiter()),
        header_(rows_.Header()),
        columns_(header_.fields, options.columns),
        sessions_(options),
        output_(options.output, RunIdentity(options, rows_, columns_, sessions_[0]), options.ForLeftover())
  {
    layout_.delimiter = options.Delimiter();
    layout_.lineEnd = rows_.HasReturns() ? "\r\n" : "\n";
    layout_.inputColumns = header_.fields.size();
    layout_.fields = options.fields;
    layout_.strict = options.strict;
    Begin();
  }

  /** False when it was interrupted. */
  bool Run()
  {
    OrderedWorkers<BatchChunk> workers(
        options_.threads, [this](std::size_t number, BatchChunk& chunk) { layout_.Process(sessions_[number], chunk); });
    ProgressBar bar;
    while (true) {
      while (!atEnd_ && !IsInterrupted() && workers.Pending() < 2 * options_.threads + 2) {
        PutChunk(workers);
      }
      if (workers.Pending() == 0) {
        break;
      }
      Finish(*workers.Take(), bar);
      ShowProgress(bar);
    }
    output_.Keep(progress_);
    if (!atEnd_) {
      return false;
    }
    output_.Finish();
    return true;
  }

  const AddressColumns& Columns() const { return columns_; }
  const Tally& Result() const { return progress_.tally; }
  std::uint64_t RowsBefore() const { return rowsBefore_; }
  double Seconds() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }

 private:
  /** Brings input and output to where the work begins. */
  void Begin()
  {
    if (output_.Resumed()) {
      progress_ = *output_.Resumed();
      rows_.Seek(progress_.inputOffset, progress_.inputLine);
    } else {
      output_.Write(layout_.Header(header_));
      progress_ = {rows_.Offset(), rows_.Line(), {}};
      output_.Keep(progress_);
    }
    rowsBefore_ = progress_.tally.Total();
  }

  void PutChunk(OrderedWorkers<BatchChunk>& workers)
  {
    auto chunk = std::make_unique<BatchChunk>();
    const std::uint64_t begin = rows_.Offset();
    CsvRow row;
    while (chunk->rows.size() < kRowsPerChunk && rows_.Offset() - begin < kBytesPerChunk && !atEnd_) {
      if (rows_.Next(row)) {
        chunk->rows.push_back({row.line, std::string(row.text),
                               row.fault.empty() ? columns_.Join(row.fields) : std::string(), row.fault});
      } else {
        atEnd_ = true;
      }
    }
    chunk->endOffset = rows_.Offset();
    chunk->endLine = rows_.Line();
    workers.Put(std::move(chunk));
  }

  void Finish(const BatchChunk& chunk, ProgressBar& bar)
  {
    ReportBroken(chunk, bar);
    output_.Write(chunk.output);
    progress_.inputOffset = chunk.endOffset;
    progress_.inputLine = chunk.endLine;
    progress_.tally.Add(chunk.tally);
    if (Clock::now() - kept_ >= kKeepInterval) {
      output_.Keep(progress_);
      kept_ = Clock::now();
    }
  }

  void ReportBroken(const BatchChunk& chunk, ProgressBar& bar)
  {
    std::uint64_t count = progress_.tally.Of(Outcome::BrokenRow);
    for (const BatchRow& row : chunk.rows) {
      if (!row.fault.empty() && ++count <= kMaxReported) {
        bar.Clear();
        std::cerr << options_.input << ':' << row.line << ": " << row.fault << "; passed through as it is\n";
      }
    }
  }

  void ShowProgress(ProgressBar& bar) const
  {
    const double size = static_cast<double>(rows_.Size());
    const std::uint64_t rows = progress_.tally.Total();
    const double perSecond = static_cast<double>(rows - rowsBefore_) / std::max(Seconds(), 1e-3);
    bar.Show(size > 0 ? static_cast<double>(progress_.inputOffset) / size : 0,
             std::to_string(rows) + " rows, " + std::to_string(std::lround(perSecond)) + "/s");
  }

  const BatchOptions& options_;
  CsvRows rows_;
  CsvRow header_;
  AddressColumns columns_;
  Sessions sessions_;
  BatchOutput output_;
  BatchLayout layout_;
  Progress progress_;
  std::uint64_t rowsBefore_ = 0;
  bool atEnd_ = false;
  Clock::time_point start_ = Clock::now();
  Clock::time_point kept_ = start_;
};

double RowsPerSecond(const Batch& batch, double seconds)
{
  return static_cast<double>(batch.Result().Total() - batch.RowsBefore()) / std::max(seconds, 1e-6);
}

void PrintTable(const BatchOptions& options, const Batch& batch)
{
  const double seconds = batch.Seconds();
  const std::uint64_t total = batch.Result().Total();
  std::string columns;
  for (const std::string& name : batch.Columns().Names()) {
    columns += (columns.empty() ? "" : ", ") + name;
  }
  std::cout << options.output << ": " << total << (total == 1 ? " row" : " rows") << ", addresses from " << columns
            << '\n'
            << std::fixed;
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    const auto outcome = static_cast<Outcome>(i);
    if (const std::uint64_t count = batch.Result().Of(outcome); count > 0) {
      std::cout << "  " << std::left << std::setw(16) << NameOf(outcome) << std::right << std::setw(12) << count
                << std::setw(8) << std::setprecision(2) << 100 * static_cast<double>(count) / static_cast<double>(total)
                << " %\n";
    }
  }
  if (batch.RowsBefore() > 0) {
    std::cout << batch.RowsBefore() << " of the rows were there from the run before\n";
  }
  std::cout << std::setprecision(0) << RowsPerSecond(batch, seconds) << " rows/s, " << std::setprecision(2) << seconds
            << " s, " << options.threads << (options.threads == 1 ? " thread\n" : " threads\n");
}

void PrintJson(const BatchOptions& options, const Batch& batch)
{
  const double seconds = batch.Seconds();
  std::cout << ToText({{"output", options.output},
                       {"columns", batch.Columns().Names()},
                       {"rows", batch.Result().Total()},
                       {"resumed", batch.RowsBefore()},
                       {"results", batch.Result().ToJson()},
                       {"seconds", seconds},
                       {"rowsPerSecond", RowsPerSecond(batch, seconds)},
                       {"threads", options.threads}})
            << '\n';
}

void RefuseSameFile(const BatchOptions& options)
{
  std::error_code ignored;
  if (std::filesystem::equivalent(options.input, options.output, ignored)) {
    throw Failure("the output would replace the input; give it another name");
  }
}

void TellUnreported(const Batch& batch)
{
  const std::uint64_t broken = batch.Result().Of(Outcome::BrokenRow);
  if (broken > kMaxReported) {
    std::cerr << "... and " << broken - kMaxReported << " more broken rows\n";
  }
}

int Run(const BatchOptions& options)
{
  RefuseSameFile(options);
  CatchInterruption();
  Batch batch(options);
  const std::string kept =
      "what is done is in " + options.output + ".partial, and the same command with --resume goes on with it";
  try {
    if (!batch.Run()) {
      throw Failure("interrupted after " + std::to_string(batch.Result().Total()) + " rows");
    }
  } catch (const Failure& failure) {
    throw Failure(std::string(failure.what()) + "\n" + kept);
  }
  TellUnreported(batch);
  if (options.query.json) {
    PrintJson(options, batch);
  } else {
    PrintTable(options, batch);
  }
  return batch.Result().AllFound() ? kExitFound : kExitNotFound;
}

std::string CheckDelimiter(const std::string& text)
{
  const bool usable =
      text == "tab" || (text.size() == 1 && text != "\"" && text != "\n" && text != "\r" && text != " ");
  return usable ? "" : "must be one character, or tab";
}

}  // namespace

Command AddBatchCommand(CLI::App& program)
{
  auto options = std::make_shared<BatchOptions>();
  CLI::App* app =
      program.add_subcommand("batch", "Look up every row of a CSV file and write it out with what was found");
  app->add_option("input", options->input, "CSV file; its first row names the columns")
      ->option_text("IN.csv")
      ->required();
  app->add_option("output", options->output, "File to write: the rows of the input, in their order, with more columns")
      ->option_text("OUT.csv")
      ->required();
  app->add_option("-c,--column", options->columns,
                  "Columns to join to the address; without this option those with usual names")
      ->option_text("NAME[,NAME...]")
      ->delimiter(',');
  app->add_option("-f,--fields", options->fields,
                  "Fields of the address to add, by name or number, otherwise\n"
                  "AddressLine1,AddressLine2,Locality,State,Postcode")
      ->option_text("NAME[,NAME...]")
      ->delimiter(',');
  app->add_flag("--strict", options->strict, "Never guess: the strict addressing rules (AMAS)");
  app->add_option("-t,--threads", options->threads, "Threads that look up, otherwise one a processor")
      ->option_text("N")
      ->check(CLI::Range(1, 256));
  app->add_option("--delimiter", options->delimiter,
                  "What separates columns, one character or \"tab\", otherwise a comma")
      ->option_text("C")
      ->check(CheckDelimiter);
  CLI::Option* resume =
      app->add_flag("--resume", options->resume, "Go on with a run that was interrupted, if there is one");
  app->add_flag("--restart", options->restart, "Begin anew, although there is a run to go on with")->excludes(resume);
  AddQueryOptions(*app, options->query);
  app->footer(
      "Adds the columns paf_dpid, paf_status, paf_result, paf_match_quality, the fields, and paf_description.\n"
      "Rows that are broken are reported and stand in the output as one field, with the result \"broken row\".\n"
      "OUT.csv appears when it is complete; until then there are OUT.csv.partial and OUT.csv.journal.\n"
      "Exit status 0: all found, 1: at least one row not found, ambiguous or broken, 2: error.");
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
