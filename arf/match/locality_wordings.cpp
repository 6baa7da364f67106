#include "arf/match/locality_wordings.h"

#include <algorithm>

namespace arf {
namespace {

constexpr std::string_view kDirections[] = {"CENTRAL", "EAST", "LOWER", "NORTH", "SOUTH", "UPPER", "WEST"};
constexpr std::string_view kMiddle = "CBD";
constexpr std::string_view kCity = "CITY";
constexpr std::string_view kPortOrPoint = "PT";

}  // namespace

bool IsDirection(const Word& word)
{
  return std::find(std::begin(kDirections), std::end(kDirections), word.canonical) != std::end(kDirections);
}

LocalityWordings::LocalityWordings(const InputText& input, WordRange words)
{
  if (words.Empty() || words.last - words.first < 2) return;
  const Word& first = input[words.first];
  const Word& last = input[words.last - 1];
  const bool isMiddle = last.text == kMiddle;
  const bool isTown = isMiddle || last.text == kCity;
  if (!isTown && first.text != kPortOrPoint && !IsDirection(first) && !IsDirection(last)) return;
  if (input.HasInnerBreak(words) || input.HasDigit(words)) return;
  const std::string_view behindFirst = input.Text(words.first + 1, words.last);
  const std::string_view beforeLast = input.Text(words.first, words.last - 1);
  if (IsDirection(first)) Add(Departure::LocalityOrder, behindFirst, first.canonical);
  if (IsDirection(last)) Add(Departure::LocalityOrder, last.canonical, beforeLast);
  if (first.text == kPortOrPoint) Add(Departure::LocalityVariant, "PORT", behindFirst);
  if (isMiddle) Add(Departure::LocalityPart, beforeLast, kCity);
  if (isTown) Add(Departure::LocalityPart, beforeLast, {});
}

void LocalityWordings::Add(Departure departure, std::string_view first, std::string_view second)
{
  LocalityWording& wording = wordings_[count_];
  wording.departure = departure;
  const bool fits =
      wording.name.Append(first) && (second.empty() || wording.name.Append(" ")) && wording.name.Append(second);
  if (fits) ++count_;
}

}  // namespace arf
