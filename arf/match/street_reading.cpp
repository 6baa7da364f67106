#include "arf/match/street_reading.h"

#include <algorithm>

#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::size_t kLongestType = 3;    // words: "RIGHT OF WAY"
constexpr std::size_t kLongestSuffix = 2;  // "NORTH EAST"

struct TableWords
{
  std::string_view full;
  std::size_t start = 0;
};

using Expand = std::string_view (*)(std::string_view);

/** The texts of the table directly before `end`, the longest first. */
class TableReadings
{
 public:
  TableReadings(const InputText& input, std::size_t first, std::size_t end, std::size_t longest, Expand expand)
  {
    for (std::size_t count = input.WordsWithoutDigits(first, end, longest); count > 0; --count) {
      const std::string_view full = expand(input.Text(end - count, end));
      if (!full.empty()) readings_[count_++] = {full, end - count};
    }
  }

  const TableWords* begin() const { return readings_.data(); }
  const TableWords* end() const { return readings_.data() + count_; }
  bool Empty() const { return count_ == 0; }

 private:
  std::array<TableWords, std::max(kLongestType, kLongestSuffix)> readings_;
  std::size_t count_ = 0;
};

}  // namespace

StreetEndings::StreetEndings(const InputText& input, WordRange range) : first_(range.first)
{
  static_assert(kMax == kLongestSuffix * kLongestType + kLongestType + kLongestSuffix + 2);
  const std::size_t end = range.last;
  if (range.Empty()) return;
  const auto typesBefore = [&](std::size_t typeEnd) {
    return TableReadings(input, first_, typeEnd, kLongestType, ExpandStreetType);
  };
  const TableReadings suffixes(input, first_, end, kLongestSuffix, ExpandStreetSuffix);
  const TableReadings types = typesBefore(end);
  const auto isApart = [&](const TableWords& suffix) { return input[suffix.start].before == Joint::Break; };
  for (const TableWords& suffix : suffixes) {
    for (const TableWords& type : typesBefore(suffix.start))
      Add({type.start, type.full, suffix.full, isApart(suffix), false});
  }
  for (const TableWords& type : types) Add({type.start, type.full, {}, false, false});
  for (const TableWords& suffix : suffixes) Add({suffix.start, {}, suffix.full, isApart(suffix), false});
  Add({end, {}, {}, false, false});
  const bool mayGuess = types.Empty() && suffixes.Empty() && !input[end - 1].hasDigit;
  if (mayGuess) Add({end - 1, input[end - 1].text, {}, false, true});
}

void StreetEndings::Add(const StreetEnding& ending)
{
  if (ending.nameEnd > first_) endings_[count_++] = ending;
}

/** With what a unit or level without a number ends. */
constexpr std::string_view kUnitEnds[] = {"REAR", "FLOOR", "GROUND", "BASEMENT", "PENTHOUSE"};

bool MayStartName(const InputText& input, std::size_t first, std::size_t position)
{
  if (position == first || input[position].before == Joint::Break) return true;
  const Word& previous = input[position - 1];
  if (previous.hasDigit) return true;
  if (position < first + 2) return false;
  if (previous.text.size() == 1) return input[position - 2].isNumber;
  // "12 Rear Smith St", "12 Ground Floor Smith St"
  const bool mayBeUnit = std::find(std::begin(kUnitEnds), std::end(kUnitEnds), previous.text) != std::end(kUnitEnds);
  return mayBeUnit && (input[position - 2].hasDigit || (position > first + 2 && input[position - 3].hasDigit));
}

}  // namespace arf
