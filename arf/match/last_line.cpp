#include "arf/match/last_line.h"

#include <algorithm>

#include "arf/tables/states.h"

namespace arf {
namespace {

constexpr std::size_t kLongestStateName = 3;  // words
constexpr std::size_t kPostcodeLength = 4;
constexpr std::string_view kCountryNames[] = {"AUSTRALIA", "AUS", "AUST", "AU"};

/**
 * The other territories have no state on mail of their own: their places are written with the state of their postcode.
 */
struct TerritoryPostcode
{
  std::string_view postcode;
  std::string_view state;
};
constexpr std::string_view kOtherTerritories = "OT";
constexpr TerritoryPostcode kTerritoryPostcodes[] = {
    {"2540", "ACT"}, {"2540", "NSW"}, {"2899", "NSW"}, {"6798", "WA"}, {"6799", "WA"}, {"7151", "TAS"},
};

PlaceWords ReadCountry(const Word& word)
{
  PlaceWords found;
  found.isCountry = std::find(std::begin(kCountryNames), std::end(kCountryNames), word.text) != std::end(kCountryNames);
  found.count = found.isCountry ? 1 : 0;
  return found;
}

PlaceWords ReadState(const InputText& input, std::size_t first, std::size_t end)
{
  PlaceWords found;
  found.place.state = StateCode(input.Text(first, end));
  found.count = found.place.state.empty() ? 0 : end - first;
  return found;
}

/** Four digits, or three where the leading zero was lost. */
bool ReadPostcode(std::string_view digits, FixedText<kPostcodeLength>& postcode)
{
  if (!std::all_of(digits.begin(), digits.end(), IsDigit)) return false;
  if (digits.size() != kPostcodeLength && digits.size() + 1 != kPostcodeLength) return false;
  postcode.Clear();
  if (digits.size() < kPostcodeLength) postcode.Append("0");
  return postcode.Append(digits);
}

/** "NSW2000" */
bool ReadRunTogether(std::string_view word, WrittenPlace& place)
{
  if (word.size() <= kPostcodeLength) return false;
  const std::size_t letters = word.size() - kPostcodeLength;
  place.state = StateCode(word.substr(0, letters));
  return !place.state.empty() && ReadPostcode(word.substr(letters), place.postcode);
}

/** Whether a postcode may be of one of the states with the country's name in theirs; true when none is written. */
bool IsPostcodeOf(std::string_view state, std::string_view postcode)
{
  constexpr std::string_view kOfSeveralStates = "0872";
  return postcode.empty() || postcode == kOfSeveralStates || postcode.front() == (state == "SA" ? '5' : '6');
}

PlaceWords ReadPostcodeWord(const Word& word, const WrittenPlace& known)
{
  PlaceWords found;
  if (!known.postcode.Empty()) return found;
  const bool isPostcode = word.isNumber && ReadPostcode(word.text, found.place.postcode);
  if (isPostcode || (known.state.empty() && !word.isNumber && ReadRunTogether(word.text, found.place))) found.count = 1;
  return found;
}

}  // namespace

bool WrittenPlace::StateFits(const Locality& locality) const
{
  if (state.empty() || state == locality.state) return true;
  if (locality.state != kOtherTerritories) return false;
  return std::any_of(std::begin(kTerritoryPostcodes), std::end(kTerritoryPostcodes), [&](const TerritoryPostcode& row) {
    return row.postcode == locality.postcode && row.state == state;
  });
}

void WrittenPlace::Merge(const WrittenPlace& more)
{
  if (!more.state.empty()) state = more.state;
  if (!more.postcode.Empty()) postcode = more.postcode;
}

FixedText<24> WrittenPlace::Text() const
{
  FixedText<24> text(state);
  if (!state.empty() && !postcode.Empty()) text.Append(" ");
  text.Append(postcode.View());
  return text;
}

PlaceWords ReadPlaceBefore(const InputText& input, std::size_t first, std::size_t end, const WrittenPlace& known)
{
  if (end <= first) return {};
  if (input[end - 1].hasDigit) return ReadPostcodeWord(input[end - 1], known);
  if (!known.state.empty()) return ReadCountry(input[end - 1]);
  for (std::size_t count = input.WordsWithoutDigits(first, end, kLongestStateName); count > 0; --count)
    if (const PlaceWords found = ReadState(input, end - count, end); found.count > 0) return found;
  return ReadCountry(input[end - 1]);
}

PlaceWords ReadPlaceAfter(const InputText& input, std::size_t first, std::size_t end, const WrittenPlace& known)
{
  if (end <= first) return {};
  if (input[first].hasDigit) return ReadPostcodeWord(input[first], known);
  for (std::size_t count = std::min(kLongestStateName, end - first); count > 0 && known.state.empty(); --count)
    if (const PlaceWords found = ReadState(input, first, first + count); found.count > 0) return found;
  return ReadCountry(input[first]);
}

Tails::Tails(const InputText& input)
{
  Tail tail{input.Count(), {}};
  std::array<Tail, kMax> shortestFirst;
  while (count_ < kMax) {
    shortestFirst[count_++] = tail;
    const PlaceWords words = ReadPlaceBefore(input, 0, tail.localityEnd, tail.place);
    if (words.count == 0) break;
    const bool endsInCountry = words.count > 1 && input[tail.localityEnd - 1].text.starts_with("AUST");
    if (endsInCountry && count_ + 1 < kMax && !IsPostcodeOf(words.place.state, tail.place.postcode.View()))
      shortestFirst[count_++] = {tail.localityEnd - 1, tail.place, true};
    tail.localityEnd -= words.count;
    tail.place.Merge(words.place);
  }
  std::reverse_copy(shortestFirst.begin(), shortestFirst.begin() + static_cast<std::ptrdiff_t>(count_), tails_.begin());
}

}  // namespace arf
