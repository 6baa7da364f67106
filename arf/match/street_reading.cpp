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
  std::size_t start = 0;  ///< equal to the end where there are none
};

using Expand = std::string_view (*)(std::string_view);

/** The longest text of the table directly before `end`. */
TableWords ReadBefore(const InputText& input, std::size_t first, std::size_t end, std::size_t longest, Expand expand)
{
  for (std::size_t count = input.WordsWithoutDigits(first, end, longest); count > 0; --count) {
    const std::string_view full = expand(input.Text(end - count, end));
    if (!full.empty()) return {full, end - count};
  }
  return {{}, end};
}

}  // namespace

StreetEndings::StreetEndings(const InputText& input, WordRange range) : first_(range.first)
{
  const std::size_t end = range.last;
  if (range.Empty()) return;
  const TableWords suffix = ReadBefore(input, first_, end, kLongestSuffix, ExpandStreetSuffix);
  if (suffix.start < end) {
    const TableWords type = ReadBefore(input, first_, suffix.start, kLongestType, ExpandStreetType);
    if (type.start < suffix.start) Add(type.start, type.full, suffix.full);
  }
  const TableWords type = ReadBefore(input, first_, end, kLongestType, ExpandStreetType);
  if (type.start < end) Add(type.start, type.full, {});
  if (suffix.start < end) Add(suffix.start, {}, suffix.full);
  Add(end, {}, {});
  if (type.start == end && suffix.start == end && !input[end - 1].hasDigit) Add(end - 1, input[end - 1].text, {}, true);
}

void StreetEndings::Add(std::size_t nameEnd, std::string_view type, std::string_view suffix, bool isGuess)
{
  if (nameEnd > first_) endings_[count_++] = {nameEnd, type, suffix, isGuess};
}

bool MayStartName(const InputText& input, std::size_t first, std::size_t position)
{
  if (position == first || input[position].before == Joint::Break) return true;
  const Word& previous = input[position - 1];
  if (previous.hasDigit) return true;
  const bool isLetter = previous.text.size() == 1;
  return isLetter && position >= first + 2 && input[position - 2].isNumber;
}

}  // namespace arf
