/**
 * Lookups a second over an address database: one searcher in one thread, and two in two threads over one mapped file.
 *
 *     bench_lookup [benchmark options] [database directory]
 *
 * The directory may also be named by QXPAF_BENCH_DATABASE; without either there is nothing to measure and the program
 * says so. Queries are made from addresses of the database itself, spread evenly over it, in two forms: as written on
 * letters ("3/12 George Street, Sydney NSW 2000") and as typed in haste ("unit 3 12 george st sydney nsw 2000"). What
 * was right, open ("several") and wrong is reported with the speed, so that a fast run that finds nothing is seen.
 * What "threads:2" does a second is what both threads do together.
 */
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "arf/match/address_text.h"
#include "arf/match/engine.h"
#include "arf/match/last_line_fixer.h"
#include "arf/match/matcher.h"
#include "arf/tables/level_types.h"
#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"
#include "arf/tables/unit_types.h"

namespace {

constexpr std::uint32_t kQueries = 20'000;

/** Words put behind each other. */
void Append(std::string& text, std::string_view words)
{
  if (words.empty()) return;
  if (!text.empty()) text += ' ';
  text += words;
}

std::string NumberOf(const arf::Point& point)
{
  char buffer[64];
  arf::BoundedText text(buffer, sizeof buffer);
  arf::AppendNumber(text, point);
  return buffer;
}

std::string PlaceOf(const arf::Locality& locality)
{
  std::string text(locality.name);
  Append(text, locality.state);
  Append(text, locality.postcode);
  return text;
}

std::string WrittenForm(const arf::Database& data, const arf::Point& point)
{
  const arf::Street street = data.StreetAt(point.street);
  std::string text;
  const bool slashed =
      point.unitType == "UNIT" && !point.unitNumber.empty() && point.levelNumber.empty() && point.levelType.empty();
  if (!slashed) {
    Append(text, point.unitType);
    Append(text, point.unitNumber);
  }
  Append(text, point.levelType);
  Append(text, point.levelNumber);
  if (!point.lot.empty()) Append(text, "LOT " + std::string(point.lot));
  if (street.isPostal) Append(text, street.type);
  Append(text, (slashed ? std::string(point.unitNumber) + "/" : "") + NumberOf(point));
  Append(text, street.name);
  if (!street.isPostal) Append(text, street.type);
  Append(text, street.suffix);
  return text + ", " + PlaceOf(data.LocalityAt(street.locality));
}

std::string AbbreviatedForm(const arf::Database& data, const arf::Point& point)
{
  const arf::Street street = data.StreetAt(point.street);
  std::string text(arf::AbbreviateUnitType(point.unitType));
  Append(text, point.unitNumber);
  Append(text, arf::AbbreviateLevelType(point.levelType));
  Append(text, point.levelNumber);
  if (!point.lot.empty()) Append(text, "LOT " + std::string(point.lot));
  if (street.isPostal) Append(text, street.type);
  Append(text, NumberOf(point));
  Append(text, street.name);
  if (!street.isPostal) Append(text, arf::AbbreviateStreetType(street.type));
  Append(text, arf::AbbreviateStreetSuffix(street.suffix));
  Append(text, PlaceOf(data.LocalityAt(street.locality)));
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

struct Query
{
  std::string text;
  std::uint32_t ordinal = 0;  ///< of the address that it was made from
};

std::vector<Query> Queries(const arf::Database& data, std::string (*form)(const arf::Database&, const arf::Point&))
{
  std::vector<Query> queries;
  const std::uint32_t count = std::min(kQueries, data.PointCount());
  for (std::uint32_t i = 0; i < count; ++i) {
    // A stride that shares no factor with most sizes, so that neighbouring queries are far apart in the file.
    const auto ordinal = static_cast<std::uint32_t>(std::uint64_t{i} * 7'919'009 % data.PointCount());
    queries.push_back({form(data, data.PointAt(ordinal)), ordinal});
  }
  return queries;
}

/** Whether two addresses read alike: registers have some twice, and either is right. */
bool ReadAlike(const arf::Database& data, std::uint32_t a, std::uint32_t b)
{
  char first[1024];
  char second[1024];
  arf::BoundedText firstText(first, sizeof first);
  arf::BoundedText secondText(second, sizeof second);
  arf::AppendAddress(firstText, data, a);
  arf::AppendAddress(secondText, data, b);
  return firstText.View() == secondText.View();
}

void Lookup(benchmark::State& state, const arf::Engine& engine, const std::vector<Query>& queries, arf::Rules rules)
{
  const auto matcher = std::make_unique<arf::Matcher>(engine);
  std::size_t next =
      queries.size() / static_cast<std::size_t>(state.threads()) * static_cast<std::size_t>(state.thread_index());
  std::size_t right = 0;
  std::size_t wrong = 0;
  std::size_t several = 0;
  for (auto _ : state) {
    const arf::LookupAnswer answer = matcher->Lookup(queries[next].text, rules);
    if (answer.verdict == arf::Verdict::Found) {
      const std::uint32_t expected = queries[next].ordinal;
      ++(answer.ordinal == expected || ReadAlike(engine.Data(), answer.ordinal, expected) ? right : wrong);
    }
    several += answer.verdict == arf::Verdict::Several;
    next = next + 1 == queries.size() ? 0 : next + 1;
  }
  const auto percent = [&state](std::size_t count) {
    return benchmark::Counter(100 * static_cast<double>(count) / static_cast<double>(state.iterations()),
                              benchmark::Counter::kAvgThreads);
  };
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
  state.counters["right%"] = percent(right);
  state.counters["wrong%"] = percent(wrong);
  state.counters["several%"] = percent(several);
}

void FixLastLine(benchmark::State& state, const arf::Engine& engine, const std::vector<std::string>& lines)
{
  const auto fixer = std::make_unique<arf::LastLineFixer>(engine);
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(fixer->Fix(lines[next]));
    next = next + 1 == lines.size() ? 0 : next + 1;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

/** Last lines as they are, and with the second letter of the locality missing. */
std::vector<std::string> LastLines(const arf::Database& data, bool mistyped)
{
  std::vector<std::string> lines;
  for (std::uint32_t i = 0; i < data.LocalityCount(); ++i) {
    std::string line = PlaceOf(data.LocalityAt(i));
    if (mistyped) line.erase(1, 1);
    lines.push_back(line);
  }
  return lines;
}

/** Null, with a message, when the database cannot be opened. */
std::unique_ptr<const arf::Engine> OpenEngine(const char* directory, arf::OpenMode mode)
{
  arf::OpenResult result;
  std::unique_ptr<const arf::Database> database = arf::Database::Open(directory, mode, result);
  if (!database) {
    std::fprintf(stderr, "%s\n", result.message.c_str());
    return nullptr;
  }
  return std::make_unique<arf::Engine>(std::move(database));
}

}  // namespace

int main(int argc, char** argv)
{
  benchmark::Initialize(&argc, argv);
  const char* directory = argc > 1 ? argv[1] : std::getenv("QXPAF_BENCH_DATABASE");
  if (directory == nullptr) {
    std::puts("skipped: name a database directory as argument or in QXPAF_BENCH_DATABASE");
    return 0;
  }
  const std::unique_ptr<const arf::Engine> inMemory = OpenEngine(directory, arf::OpenMode::Memory);
  const std::unique_ptr<const arf::Engine> mapped = OpenEngine(directory, arf::OpenMode::Mapped);
  if (!inMemory || !mapped) return 1;
  const arf::Engine& engine = *inMemory;
  const arf::Database& data = engine.Data();
  if (data.PointCount() == 0) {
    std::puts("skipped: the database is empty");
    return 0;
  }
  std::printf("%u addresses, %u streets, %u localities\n", data.PointCount(), data.StreetCount(), data.LocalityCount());
  const std::vector<Query> written = Queries(data, WrittenForm);
  const std::vector<Query> abbreviated = Queries(data, AbbreviatedForm);
  const std::vector<std::string> exact = LastLines(data, false);
  const std::vector<std::string> mistyped = LastLines(data, true);
  const auto lookup = [&](const char* name, const std::vector<Query>& queries, arf::Rules rules) {
    benchmark::RegisterBenchmark(
        name, [&engine, &queries, rules](benchmark::State& state) { Lookup(state, engine, queries, rules); });
  };
  lookup("lookup/written/strict", written, arf::Rules::Strict);
  lookup("lookup/written/lenient", written, arf::Rules::Lenient);
  lookup("lookup/abbreviated/strict", abbreviated, arf::Rules::Strict);
  lookup("lookup/abbreviated/lenient", abbreviated, arf::Rules::Lenient);
  for (const int threads : {1, 2}) {
    benchmark::RegisterBenchmark(
        "lookup/abbreviated/lenient/mapped",
        [&](benchmark::State& state) { Lookup(state, *mapped, abbreviated, arf::Rules::Lenient); })
        ->Threads(threads)
        ->UseRealTime();
  }
  benchmark::RegisterBenchmark("fix_last_line/exact",
                               [&](benchmark::State& state) { FixLastLine(state, engine, exact); });
  benchmark::RegisterBenchmark("fix_last_line/mistyped",
                               [&](benchmark::State& state) { FixLastLine(state, engine, mistyped); });
  benchmark::RunSpecifiedBenchmarks();
}
