/**
 * How many written addresses find the right one, and how many a wrong one.
 *
 *     accuracy PAIRS.csv DATABASE [--strict] [--show KIND] [--time ROUNDS]
 *
 * PAIRS.csv has the columns kind, input and acceptable_pids (source identifiers separated by ';', any of which is
 * right; empty where nothing may be found). For each kind the table counts right answers, open ones ("several"), none,
 * and wrong ones. --show prints the inputs of a kind that were not answered rightly, --time measures the inputs
 * of all kinds in turn, on one core: lookups a second, and the time of one at the median, the 99th percentile and the
 * longest; of the rounds the best time of each input counts, so that other programs do not spoil it. Exit status 1 when
 * there is a wrong answer.
 */
#include <csv.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "arf/match/address_text.h"
#include "arf/match/engine.h"
#include "arf/match/failure_text.h"
#include "arf/match/matcher.h"

namespace {

using Row = std::vector<std::string>;

/** What libcsv calls back with. */
struct Reader
{
  std::vector<Row> rows;
  Row row;
  static void Field(void* text, std::size_t size, void* self)
  {
    static_cast<Reader*>(self)->row.emplace_back(static_cast<const char*>(text), size);
  }
  static void End(int, void* self)
  {
    auto* reader = static_cast<Reader*>(self);
    reader->rows.push_back(std::move(reader->row));
    reader->row.clear();
  }
};

std::vector<Row> ReadCsv(const std::string& path)
{
  std::ifstream file(path, std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  Reader reader;
  csv_parser parser;
  csv_init(&parser, CSV_APPEND_NULL);
  csv_parse(&parser, text.data(), text.size(), Reader::Field, Reader::End, &reader);
  csv_fini(&parser, Reader::Field, Reader::End, &reader);
  csv_free(&parser);
  return reader.rows;
}

struct Pair
{
  std::string kind;
  std::string input;
  std::string acceptable;
};

std::vector<Pair> ReadPairs(const std::string& path)
{
  const std::vector<Row> rows = ReadCsv(path);
  if (rows.empty()) throw std::runtime_error("cannot read " + path);
  const auto column = [&](const char* name) {
    const auto found = std::find(rows[0].begin(), rows[0].end(), name);
    if (found == rows[0].end()) throw std::runtime_error(path + " has no column " + name);
    return static_cast<std::size_t>(found - rows[0].begin());
  };
  const std::size_t kind = column("kind");
  const std::size_t input = column("input");
  const std::size_t pids = column("acceptable_pids");
  std::vector<Pair> pairs;
  for (std::size_t i = 1; i < rows.size(); ++i)
    if (rows[i].size() == rows[0].size()) pairs.push_back({rows[i][kind], rows[i][input], rows[i][pids]});
  return pairs;
}

struct Score
{
  std::size_t asked = 0;
  std::size_t right = 0;
  std::size_t several = 0;
  std::size_t none = 0;
  std::size_t wrong = 0;
};

double Percent(std::size_t part, std::size_t whole)
{
  return whole == 0 ? 0 : 100 * static_cast<double>(part) / static_cast<double>(whole);
}

void Print(const std::string& name, const Score& score)
{
  std::printf("%-24s %6zu %8.2f %8.2f %8.2f %8.2f %6zu\n", name.c_str(), score.asked, Percent(score.right, score.asked),
              Percent(score.several, score.asked), Percent(score.none, score.asked), Percent(score.wrong, score.asked),
              score.wrong);
}

class Examination
{
 public:
  Examination(const arf::Engine& engine, arf::Rules rules, std::string shown)
      : engine_(engine), matcher_(std::make_unique<arf::Matcher>(engine)), rules_(rules), shown_(std::move(shown))
  {
    const auto column = engine.Data().FindAttribute("source_identifier");
    if (!column) throw std::runtime_error("the database has no source identifiers");
    column_ = *column;
  }

  void Ask(const Pair& pair)
  {
    const arf::LookupAnswer answer = matcher_->Lookup(pair.input, rules_);
    Score& score = scores_[pair.kind];
    ++score.asked;
    bool isRight = false;
    if (answer.verdict == arf::Verdict::Found) {
      isRight = Accepts(pair, PidOf(answer.ordinal));
      ++(isRight ? score.right : score.wrong);
    } else {
      isRight = pair.acceptable.empty();
      ++(isRight ? score.right : answer.verdict == arf::Verdict::Several ? score.several : score.none);
    }
    if (!isRight && (pair.kind == shown_ || shown_ == "all")) Show(pair, answer);
  }

  /** The number of wrong answers. */
  std::size_t Report() const
  {
    std::printf("%-24s %6s %8s %8s %8s %8s %6s\n", "kind", "asked", "right%", "several%", "none%", "wrong%", "wrong");
    Score all;
    for (const auto& [kind, score] : scores_) {
      Print(kind, score);
      all.asked += score.asked;
      all.right += score.right;
      all.several += score.several;
      all.none += score.none;
      all.wrong += score.wrong;
    }
    Print("all", all);
    return all.wrong;
  }

 private:
  std::string PidOf(std::uint32_t ordinal) const
  {
    arf::AttributeText text;
    return std::string(engine_.Data().AttributeOf(ordinal, column_, text));
  }

  static bool Accepts(const Pair& pair, const std::string& pid)
  {
    return !pid.empty() && (";" + pair.acceptable + ";").find(";" + pid + ";") != std::string::npos;
  }

  void Show(const Pair& pair, const arf::LookupAnswer& answer)
  {
    char buffer[1024];
    arf::BoundedText text(buffer, sizeof buffer);
    if (answer.verdict == arf::Verdict::Found) {
      text << "WRONG ";
      arf::AppendAddress(text, engine_.Data(), answer.ordinal);
      text << ' ';
      char faults[512];
      arf::BoundedText names(faults, sizeof faults);
      arf::AppendDepartures(names, answer.departures);
      text << names.View();
    } else {
      arf::AppendFailure(text, engine_.Data(), matcher_->LastFailure());
    }
    std::printf("%s: %s [%s]\n  %s\n", pair.kind.c_str(), pair.input.c_str(), pair.acceptable.c_str(), buffer);
  }

  const arf::Engine& engine_;
  std::unique_ptr<arf::Matcher> matcher_;
  arf::Rules rules_;
  std::string shown_;
  std::uint32_t column_ = 0;
  std::map<std::string, Score> scores_;
};

using Clock = std::chrono::steady_clock;

double Microseconds(Clock::duration time)
{
  return std::chrono::duration<double, std::micro>(time).count();
}

void Time(const arf::Engine& engine, arf::Rules rules, const std::vector<Pair>& pairs, unsigned rounds)
{
  const auto matcher = std::make_unique<arf::Matcher>(engine);
  std::vector<double> best(pairs.size(), std::numeric_limits<double>::max());
  double fastest = std::numeric_limits<double>::max();
  for (unsigned round = 0; round < rounds; ++round) {
    const auto start = Clock::now();
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      const auto before = Clock::now();
      matcher->Lookup(pairs[i].input, rules);
      best[i] = std::min(best[i], Microseconds(Clock::now() - before));
    }
    fastest = std::min(fastest, Microseconds(Clock::now() - start));
  }
  std::sort(best.begin(), best.end());
  const auto at = [&](double part) {
    return best[static_cast<std::size_t>(part * static_cast<double>(best.size() - 1))];
  };
  std::printf("%.0f lookups/s; median %.1f us, 99th percentile %.1f us, longest %.1f us\n",
              1e6 * static_cast<double>(pairs.size()) / fastest, at(0.5), at(0.99), at(1));
}

}  // namespace

int main(int argc, char** argv)
{
  CLI::App app("Counts right, open and wrong answers to written addresses.");
  std::string pairs;
  std::string directory;
  std::string shown;
  bool strict = false;
  app.add_option("pairs", pairs, "CSV with the columns kind, input, acceptable_pids")->required();
  app.add_option("database", directory, "Database directory")->required();
  app.add_flag("--strict", strict, "Ask by strict rules");
  app.add_option("--show", shown, "Print the failures of one kind, or of \"all\"");
  unsigned rounds = 0;
  app.add_option("--time", rounds, "Measure this many rounds");
  CLI11_PARSE(app, argc, argv);
  try {
    arf::OpenResult result;
    std::unique_ptr<const arf::Database> database = arf::Database::Open(directory, arf::OpenMode::Mapped, result);
    if (!database) throw std::runtime_error(result.message);
    const arf::Engine engine(std::move(database));
    Examination examination(engine, strict ? arf::Rules::Strict : arf::Rules::Lenient, shown);
    const std::vector<Pair> asked = ReadPairs(pairs);
    for (const Pair& pair : asked) examination.Ask(pair);
    if (rounds > 0) Time(engine, strict ? arf::Rules::Strict : arf::Rules::Lenient, asked, rounds);
    return examination.Report() == 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
  }
}
