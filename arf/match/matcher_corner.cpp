// Corners: "Cnr Smith St & Jones Rd, Darwin". A corner is no address. With a number at one of the streets it says which
// address is meant; without one the failure tells where the streets meet.
#include <algorithm>
#include <optional>

#include "arf/match/matcher.h"

namespace arf {
namespace {

/** The full form of a type that both streets may have, as written behind the second. */
std::string_view SharedType(const InputText& input, WordRange words)
{
  const std::string_view plural = PluralType(input[words.last - 1].text);
  if (!plural.empty()) return plural;
  for (const StreetEnding& ending : StreetEndings(input, words))
    if (!ending.isGuess && !ending.type.empty()) return ending.type;
  return {};
}

}  // namespace

void Matcher::CornerStreets::Add(std::uint32_t street, unsigned withSum)
{
  if (count > 0 && withSum > sum) return;
  if (withSum < sum) count = 0;
  sum = withSum;
  const auto end = streets.begin() + static_cast<std::ptrdiff_t>(count);
  if (count < streets.size() && std::find(streets.begin(), end, street) == end) streets[count++] = street;
}

void Matcher::SearchCorners()
{
  if (decision_.HasCandidates() || quiet_ || Exhausted() || !MayBeCorner(input_)) return;
  const Seen seen = seen_;
  seen_.street = seen_.number = false;
  isAtCorner_ = true;
  ForEachPlace(&Matcher::SearchStreets);
  if (!Strict() && decision_.GoesFurther(Fault::CornerWritten)) SearchLeniently();
  isAtCorner_ = false;
  seen_ = seen;
}

void Matcher::SearchCorner(const Place& place)
{
  for (const CornerWords& words : CornerReadings(input_, place.body)) {
    if (decision_.HasCandidates() || Exhausted()) return;
    if (!Strict()) SearchCornerNumber(place, words);
    if (!decision_.HasCandidates()) DescribeCorner(place, words);
  }
}

/** "34 Smith St (cnr Jones)": the number must be there; where no word says that it is a corner, the street too. */
void Matcher::SearchCornerNumber(const Place& place, const CornerWords& words)
{
  const bool isFirst = HasHouseNumber(input_, words.first);
  if (isFirst == HasHouseNumber(input_, words.second)) return;
  if (!words.isCertain && FindCornerStreets(place, isFirst ? words.second : words.first, {}).count == 0) return;
  Place numbered = place;
  numbered.body = isFirst ? words.first : words.second;
  numbered.departures.Add(Departure::Corner);
  const Stage stage = stage_;
  isAtCorner_ = false;
  for (const Stage next : {Stage::AsWritten, Stage::Alike}) {
    stage_ = next;
    if (!decision_.HasCandidates() && !seen_.number) SearchStreets(numbered);
  }
  isAtCorner_ = true;
  stage_ = stage;
  seen_.street = seen_.number = false;
}

/** The streets of a place that some words mean, those nearest to what was written. */
Matcher::CornerStreets Matcher::FindCornerStreets(const Place& place, WordRange words, std::string_view sharedType)
{
  CornerStreets found;
  Place one = place;
  one.body = words;
  one.departures = {};
  const Stage stage = stage_;
  quiet_ = true;
  cornerStreets_ = &found;
  const StreetEnding shared{words.last, sharedType, {}, false};
  const StreetEnding plural{words.last - 1, PluralType(input_[words.last - 1].text), {}, false};
  const auto search = [&] {
    SearchStreetsOf(one);
    if (found.count == 0 && !shared.type.empty()) SearchEnding(one, shared);
    if (found.count == 0 && !plural.type.empty() && plural.nameEnd > words.first) SearchEnding(one, plural);
    seen_.street = false;
  };
  stage_ = Stage::AsWritten;
  search();
  stage_ = Stage::Alike;
  if (found.count == 0 && !Strict()) search();
  cornerStreets_ = nullptr;
  quiet_ = false;
  stage_ = stage;
  return found;
}

/** Notes where the streets meet, or which of them is not there. */
void Matcher::DescribeCorner(const Place& place, const CornerWords& words)
{
  if (!decision_.GoesFurther(Fault::CornerWritten)) return;
  const Failure failure = FailureOfCorner(place, words);
  const bool mayBeUnknown =
      words.isCertain && !HasHouseNumber(input_, words.first) && !HasHouseNumber(input_, words.second);
  if (failure.fault == Fault::CornerStreetUnknown && !mayBeUnknown) return;
  if (failure.fault == Fault::None || !decision_.GoesFurther(failure.fault)) return;
  Reading reading = place.reading;
  DescribeBody(words.first, reading);
  decision_.Fail(failure, reading);
}

/** Of the localities of a place the one that says most. */
Failure Matcher::FailureOfCorner(const Place& place, const CornerWords& words)
{
  Failure failure;
  std::optional<Meeting> nearest;
  Place one = place;
  one.count = 1;
  for (std::size_t i = 0; i < place.count && !Exhausted(); ++i) {
    one.localities[0] = place.localities[i];
    const CornerStreets a = FindCornerStreets(one, words.first, SharedType(input_, words.second));
    const CornerStreets b = FindCornerStreets(one, words.second, {});
    if (a.count > 0 && b.count > 0) {
      TakeNearest(a, b, nearest, failure);
      continue;
    }
    const bool saysMore = failure.street == kNoIndex && a.count + b.count > 0;
    if (failure.fault != Fault::None && !saysMore) continue;
    failure = {};
    failure.fault = Fault::CornerStreetUnknown;
    failure.locality = place.localities[i];
    if (a.count + b.count > 0) failure.street = a.count > 0 ? a.streets[0] : b.streets[0];
    if (a.count == 0) failure.written.Append(input_.Text(words.first));
    if (b.count == 0) failure.otherWritten.Append(input_.Text(words.second));
  }
  return failure;
}

/** Keeps the pair of streets that come nearest to each other. */
void Matcher::TakeNearest(const CornerStreets& a, const CornerStreets& b, std::optional<Meeting>& nearest,
                          Failure& failure)
{
  for (std::size_t i = 0; i < a.count * b.count && !Exhausted(); ++i) {
    const Street first = data_.StreetAt(a.streets[i / b.count]), second = data_.StreetAt(b.streets[i % b.count]);
    if (first.index == second.index) {
      if (nearest) continue;
      failure = {};
      failure.fault = Fault::NumberMissing;
      failure.locality = first.locality;
      failure.street = first.index;
      continue;
    }
    const Meeting meeting = meetings_.Find(data_, first, second, visited_);
    const bool isNearer = !nearest || (meeting.Found() && (!nearest->Found() || meeting.metres < nearest->metres));
    if (!isNearer) continue;
    nearest = meeting;
    failure = {};
    failure.fault = meeting.isLocated && !meeting.Found() ? Fault::CornerApart : Fault::CornerWritten;
    failure.locality = first.locality;
    failure.street = first.index;
    failure.otherStreet = second.index;
    if (!meeting.Found()) continue;
    failure.points.Add(meeting.first, {});
    failure.points.Add(meeting.second, {});
  }
}

}  // namespace arf
