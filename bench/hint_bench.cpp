/**
 * How long hints take, for every beginning of addresses that are typed letter by letter.
 *
 *     bench_hint [database directory]
 *
 * One call is a search with the texts of its ten hints. What is printed are percentiles over all calls, for clean
 * addresses, for addresses with one letter mistyped, and for texts that find nothing.
 */
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "arf/hint/hint_enumeration.h"
#include "hint_sample.h"

namespace {

constexpr std::size_t kHints = 10;
constexpr std::size_t kSample = 3000;

/** Swaps, drops or replaces one letter behind the third. */
std::string Mistyped(std::string text, std::mt19937& random)
{
  if (text.size() < 6) return text;
  const std::size_t place = 3 + random() % (text.size() - 5);
  switch (random() % 3) {
    case 0:
      std::swap(text[place], text[place + 1]);
      break;
    case 1:
      text.erase(place, 1);
      break;
    default:
      text[place] = static_cast<char>('a' + random() % 26);
  }
  return text;
}

class Clock
{
 public:
  explicit Clock(const arf::Database& data) : data_(data), hints_(std::make_unique<arf::HintEnumeration>(data)) {}

  /** Nanoseconds for one text; how many hints it had is added to `found`. */
  double Time(std::string_view typed, std::size_t& found)
  {
    const double start = ThreadTime();
    for (hints_->StartHints(typed, "", kHints); const arf::Hint* hint = hints_->Current(); hints_->Advance()) {
      char buffer[512];
      arf::BoundedText text(buffer, sizeof buffer);
      arf::AppendHintText(text, data_, *hint);
      found += text.Length() > 0;
    }
    return ThreadTime() - start;
  }

 private:
  /** Time that this thread was computing, so that other programs on the machine are not measured. */
  static double ThreadTime()
  {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
  }

  const arf::Database& data_;
  std::unique_ptr<arf::HintEnumeration> hints_;
};

void Measure(const arf::Database& data, const char* name, const std::vector<std::string>& texts)
{
  Clock clock(data);
  std::vector<std::pair<double, std::string>> times;
  std::size_t found = 0;
  for (const std::string& text : texts)
    for (std::size_t typed = 1; typed <= text.size(); ++typed)
      times.emplace_back(clock.Time(std::string_view(text).substr(0, typed), found), text.substr(0, typed));
  std::sort(times.begin(), times.end());
  const auto at = [&](double share) {
    return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))].first / 1000;
  };
  std::printf("%-10s %8zu calls, %4.1f hints each: p50 %6.1f us  p90 %6.1f  p99 %6.1f  p99.9 %6.1f  worst %6.1f (%s)\n",
              name, times.size(), static_cast<double>(found) / static_cast<double>(times.size()), at(0.5), at(0.9),
              at(0.99), at(0.999), at(1), times.back().second.c_str());
}

std::vector<std::string> TextsOf(const std::vector<bench::TypedAddress>& sample)
{
  std::vector<std::string> texts;
  for (const bench::TypedAddress& address : sample) texts.push_back(address.text);
  return texts;
}

}  // namespace

int main(int argc, char** argv)
{
  const std::unique_ptr<arf::Database> data = bench::OpenDatabase(argc, argv);
  if (!data) return argc > 1 ? 1 : 0;
  std::mt19937 random(1);
  std::vector<std::string> hasty = TextsOf(bench::SampleOf(*data, bench::Form::Hasty, kSample));
  Measure(*data, "label", TextsOf(bench::SampleOf(*data, bench::Form::Label, kSample)));
  Measure(*data, "hasty", hasty);
  for (std::string& text : hasty) text = Mistyped(text, random);
  Measure(*data, "mistyped", hasty);
  for (std::string& text : hasty) std::shuffle(text.begin(), text.end(), random);
  Measure(*data, "nonsense", hasty);
}
