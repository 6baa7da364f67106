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

bool IsCountry(std::string_view word) {
  return std::find(std::begin(kCountryNames), std::end(kCountryNames), word) != std::end(kCountryNames);
}

/** Four digits, or three where the leading zero was lost. */
bool ReadPostcode(std::string_view digits, FixedText<kPostcodeLength>& postcode) {
  if (!std::all_of(digits.begin(), digits.end(), IsDigit)) return false;
  if (digits.size() != kPostcodeLength && digits.size() + 1 != kPostcodeLength) return false;
  postcode.Clear();
  if (digits.size() < kPostcodeLength) postcode.Append("0");
  return postcode.Append(digits);
}

/** "NSW2000" */
bool ReadRunTogether(std::string_view word, WrittenPlace& place) {
  if (word.size() <= kPostcodeLength) return false;
  const std::size_t letters = word.size() - kPostcodeLength;
  place.state = StateCode(word.substr(0, letters));
  return !place.state.empty() && ReadPostcode(word.substr(letters), place.postcode);
}

PlaceWords ReadPostcodeWord(const Word& word, const WrittenPlace& known) {
  PlaceWords found;
  if (!known.postcode.Empty()) return found;
  const bool isPostcode = word.isNumber && ReadPostcode(word.text, found.place.postcode);
  if (isPostcode || (known.state.empty() && !word.isNumber && ReadRunTogether(word.text, found.place))) found.count = 1;
  return found;
}

}  // namespace

bool WrittenPlace::StateFits(const Locality& locality) const {
  if (state.empty() || state == locality.state) return true;
  if (locality.state != kOtherTerritories) return false;
  return std::any_of(std::begin(kTerritoryPostcodes), std::end(kTerritoryPostcodes),
                     [&](const TerritoryPostcode& row) { return row.postcode == locality.postcode && row.state == state; });
}

PlaceWords ReadPlaceBefore(const InputText& input, std::size_t first, std::size_t end, const WrittenPlace& known) {
  PlaceWords found;
  if (end <= first) return found;
  const Word& last = input[end - 1];
  if (last.hasDigit) return ReadPostcodeWord(last, known);
  for (std::size_t count = std::min(kLongestStateName, end - first); count > 0 && known.state.empty(); --count) {
    found.place.state = StateCode(input.Text(end - count, end));
    if (!found.place.state.empty()) {
      found.count = count;
      return found;
    }
  }
  found.isCountry = IsCountry(last.text);
  found.count = found.isCountry ? 1 : 0;
  return found;
}

Tails::Tails(const InputText& input) {
  Tail tail{input.Count(), {}};
  std::array<Tail, kMax> shortestFirst;
  while (count_ < kMax) {
    shortestFirst[count_++] = tail;
    const PlaceWords words = ReadPlaceBefore(input, 0, tail.localityEnd, tail.place);
    if (words.count == 0) break;
    tail.localityEnd -= words.count;
    if (!words.place.state.empty()) tail.place.state = words.place.state;
    if (!words.place.postcode.Empty()) tail.place.postcode = words.place.postcode;
  }
  std::reverse_copy(shortestFirst.begin(), shortestFirst.begin() + static_cast<std::ptrdiff_t>(count_), tails_.begin());
}

}  // namespace arf
