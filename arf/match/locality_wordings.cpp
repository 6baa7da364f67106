#include "arf/match/locality_wordings.h"

namespace arf {
namespace {

constexpr std::string_view kMiddle = "CBD";
constexpr std::string_view kCity = "CITY";
constexpr std::string_view kPortOrPoint = "PT";

}  // namespace

bool IsDirection(const Word& word)
{
  const std::string_view text = word.canonical;
  switch (text.size()) {
    case 4:
      return text == "EAST" || text == "WEST";
    case 5:
      return text == "NORTH" || text == "SOUTH" || text == "UPPER" || text == "LOWER";
    case 7:
      return text == "CENTRAL";
    default:
      return false;
  }
}

bool HasWordings(const InputText& input)
{
  for (std::size_t i = 0; i < input.Count(); ++i) {
    const Word& word = input[i];
    if (word.text == kMiddle || word.text == kCity || word.text == kPortOrPoint || IsDirection(word)) return true;
  }
  return false;
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
