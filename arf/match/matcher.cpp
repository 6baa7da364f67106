#include "arf/match/matcher.h"

#include <algorithm>
#include <tuple>

#include "arf/match/locality_wordings.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::size_t kLongestLocalityName = 6;  // words

bool IsSameAddress(const Point& a, const Point& b)
{
  const auto parts = [](const Point& p) {
    return std::tie(p.street, p.numberPrefix, p.numberFirst, p.numberFirstSuffix, p.numberLast, p.numberLastSuffix,
                    p.unitType, p.unitNumber, p.levelType, p.levelNumber, p.lot, p.building);
  };
  return parts(a) == parts(b);
}

/** Whether some words look like a street: one of them has a digit and one is a street type. */
bool LooksLikeStreet(const InputText& input)
{
  bool hasType = false;
  for (std::size_t i = 0; i < input.Count() && !hasType; ++i)
    hasType = input[i].text.size() > 1 && !ExpandStreetType(input[i].text).empty();
  return hasType && input.HasDigit({0, input.Count()});
}

}  // namespace

LookupAnswer Matcher::Lookup(std::string_view text, Rules rules)
{
  rules_ = rules;
  stage_ = Stage::AsWritten;
  quiet_ = false;
  repaired_ = {};
  trailing_ = {};
  visited_ = 0;
  compared_ = 0;
  seen_ = {};
  decision_.Reset();
  if (input_.Read(text) != InputFault::None) {
    Failure failure;
    failure.fault = Fault::TooLong;
    decision_.Fail(failure, {});
    return Answer();
  }
  Search();
  mayBeWorded_ = !Strict() && !decision_.IsAsWritten() && HasWordings(input_);
  SearchOtherWordings();
  if (!Strict() && !decision_.HasCandidates()) SearchRepaired(text, Stage::AsWritten);
  if (!Strict() && !decision_.HasCandidates()) SearchLocalityFirst(text);
  if (!Strict()) SearchLeniently();
  SearchBuildings();
  SearchCorners();
  if (!Strict() && !decision_.HasCandidates()) SearchRepaired(text, Stage::Alike);
  if (!Strict() && !decision_.HasCandidates()) SearchLongerNames();
  if (!Strict() && !decision_.HasCandidates()) SearchWithoutCity();
  if (!Strict() && !decision_.HasCandidates()) SearchMisread(text);
  return Answer();
}

LookupAnswer Matcher::Answer()
{
  const PointSet* equals = Strict() ? nullptr : decision_.Equals();
  const bool isFound = decision_.IsFound() || (equals && AreOneAddress(*equals));
  if (isFound && !Exhausted()) {
    const PointSet& best = decision_.Best();
    const bool isPrimary = best.departures.Has(Departure::UnknownUnit);
    return {Verdict::Found, best.ordinals[0], best.departures.HasChange(), isPrimary, best.departures};
  }
  if (decision_.HasCandidates())
    decision_.Close();
  else
    BlameLargest();
  return {VerdictOf(decision_.Deepest().fault), 0, false, false, {}};
}

/** Of namesakes that all lack the street the one with the most addresses is the likeliest to be meant. */
void Matcher::BlameLargest()
{
  Failure failure = decision_.Deepest();
  const Reading reading = decision_.Chosen();
  if (failure.fault != Fault::StreetUnknown && failure.fault != Fault::StreetMissing) return;
  const auto addresses = [&](std::uint32_t locality) {
    const IndexRange streets = data_.LocalityStreets(locality);
    if (streets.count == 0) return 0U;
    const IndexRange last = data_.StreetAt(streets.first + streets.count - 1).points;
    return last.first + last.count - data_.StreetAt(streets.first).points.first;
  };
  std::uint32_t most = addresses(failure.locality);
  for (const NameHit& hit : engine_.LocalityNames().Find(input_, reading.locality)) {
    if (hit.name != data_.LocalityNameIndex(failure.locality)) continue;
    for (const std::uint32_t other : data_.LocalitiesNamed(hit.name)) {
      if (!reading.place.Fits(data_.LocalityAt(other)) || addresses(other) <= most) continue;
      most = addresses(other);
      failure.locality = other;
    }
  }
  decision_.Fail(failure, reading);
}

/** Registers have some addresses more than once, with nothing but the identifier to tell them apart. */
bool Matcher::AreOneAddress(const PointSet& points) const
{
  if (points.count > PointSet::kKept) return false;
  Point first = data_.PointAt(points.ordinals[0]);
  for (std::size_t i = 1; i < points.count; ++i) {
    const Point other = data_.PointAt(points.ordinals[i]);
    if (!IsSameAddress(first, other)) return false;
  }
  return true;
}

void Matcher::Search()
{
  if (input_.Count() == 0) return;
  ForEachPlace(&Matcher::SearchStreets);
  if (decision_.HasCandidates()) return;
  if (!seen_.locality) FailWithoutPlace(*Tails(input_).begin());
}

/** A building's name alone, where no street was found. */
void Matcher::SearchBuildings()
{
  if (decision_.HasCandidates() || !seen_.locality || decision_.Deepest().fault > Fault::StreetMissing) return;
  ForEachPlace(&Matcher::SearchBuilding);
}

void Matcher::ForEachPlace(PlaceStep step)
{
  const Tails tails(input_);
  for (const Tail& tail : tails) {
    const std::size_t end = tail.localityEnd;
    for (std::size_t start = end > kLongestLocalityName ? end - kLongestLocalityName : 0; start < end; ++start)
      ReadLocality(tail, start, step);
    if (decision_.HasCandidates()) return;
  }
}

/** Takes the words from `start` to the end of the locality as its name, if there is such a name. */
void Matcher::ReadLocality(const Tail& tail, std::size_t start, PlaceStep step)
{
  const WordRange words{start, tail.localityEnd};
  const NameHits hits = engine_.LocalityNames().Find(input_, words);
  for (const NameHit& hit : hits)
    if (hit.fit != NameFit::Article)
      ReadKnownLocality(tail, words, data_.LocalitiesNamed(hit.name), LocalityDepartures(hit.fit), step);
  if (!hits.Empty() || data_.LocalityAliasCount() == 0) return;
  std::array<std::uint32_t, kMaxAliases> others;
  const IndexRange aliases = data_.LocalityAliasesNamed(input_.Text(words));
  const std::uint32_t count = std::min<std::uint32_t>(aliases.count, kMaxAliases);
  for (std::uint32_t i = 0; i < count; ++i) others[i] = data_.LocalityAliasAt(aliases.first + i).locality;
  if (count > 0) ReadKnownLocality(tail, words, {others.data(), count}, Departure::LocalityAlias, step);
}

/** Some words name these localities; state and postcode may stand before them too. */
void Matcher::ReadKnownLocality(const Tail& tail, WordRange words, std::span<const std::uint32_t> named,
                                const Departures& departures, PlaceStep step)
{
  Place place;
  place.reading.locality = words;
  place.body = {0, words.first};
  place.departures = departures;
  if (input_.HasInnerBreak(words)) place.departures.Add(Departure::BrokenLocality);
  TryLocality(tail.place, place, named, step);
  const PlaceWords before = ReadPlaceBefore(input_, 0, words.first, tail.place);
  if (before.count == 0 || before.isCountry) return;
  Tail reordered = tail;
  reordered.place.Merge(before.place);
  const PlaceWords further = ReadPlaceBefore(input_, 0, words.first - before.count, reordered.place);
  if (!further.isCountry) reordered.place.Merge(further.place);
  place.body.last = words.first - before.count - (further.isCountry ? 0 : further.count);
  place.departures.Add(Departure::PlaceOrder);
  TryLocality(reordered.place, place, named, step);
}

void Matcher::TryLocality(const WrittenPlace& written, Place& place, std::span<const std::uint32_t> named,
                          PlaceStep step)
{
  place.reading.place = written;
  place.count = 0;
  for (const std::uint32_t index : named) {
    const Locality locality = data_.LocalityAt(index);
    if (!written.StateFits(locality)) continue;
    seen_.locality = true;
    if (written.PostcodeFits(locality)) AddLocality(place, index);
  }
  if (place.count > 0) return (this->*step)(place);
  if (!Worthwhile(Fault::PlaceContradicts) || named.empty()) return;
  Failure failure;
  failure.fault = Fault::PlaceContradicts;
  failure.locality = named.front();
  failure.writtenPlace = written.Text();
  decision_.Fail(failure, place.reading);
}

void Matcher::AddLocality(Place& place, std::uint32_t locality)
{
  if (place.count < kMaxPlaces)
    place.localities[place.count++] = locality;
  else
    visited_ = kMaxVisited + 1;  // an answer from some of the localities would look surer than it is
}

void Matcher::FailWithoutPlace(const Tail& tail)
{
  if (decision_.HasCandidates() || !decision_.GoesFurther(Fault::LocalityUnknown)) return;
  Failure failure;
  const bool something = !tail.place.Empty() || LooksLikeStreet(input_);
  failure.fault = something ? Fault::LocalityUnknown : Fault::NothingRecognised;
  failure.written.Append(input_.Text(input_.LastPart(tail.localityEnd)));
  failure.writtenPlace = tail.place.Text();
  failure.locality = LocalityAround(tail);
  Reading reading;
  reading.place = tail.place;
  if (const WordRange last = input_.LastPart(tail.localityEnd); something && last.first > 0) {
    reading.locality = last;
    DescribeBody({0, last.first}, reading);
  }
  decision_.Fail(failure, reading);
}

/** What the words before a locality look like, where the data could not tell. */
void Matcher::DescribeBody(WordRange body, Reading& reading) const
{
  std::size_t start = body.last;
  while (start > body.first && !input_[start - 1].hasDigit) --start;
  const Premises premises(input_, {body.first, start});
  if (!premises.Empty()) reading.premise = *premises.begin();
  const StreetEndings endings(input_, {start, body.last});
  const auto likely = std::find_if(endings.begin(), endings.end(), [](const StreetEnding& e) { return !e.isGuess; });
  if (likely == endings.end()) return;
  reading.streetName = {start, likely->nameEnd};
  reading.streetType = likely->type;
  reading.streetSuffix = likely->suffix;
}

void Matcher::FailPlace(Fault fault, const Place& place, WordRange written)
{
  if (!Worthwhile(fault)) return;
  Failure failure;
  failure.fault = fault;
  failure.locality = place.localities.front();
  failure.written.Append(input_.Text(written));
  Reading reading = place.reading;
  if (fault == Fault::StreetUnknown && reading.postalType.empty()) DescribeBody(place.body, reading);
  decision_.Fail(failure, reading);
}

void Matcher::FailStreet(Fault fault, const Reading& reading, std::uint32_t street, std::string_view written)
{
  if (!Worthwhile(fault)) return;
  Failure failure;
  failure.fault = fault;
  failure.locality = data_.StreetAt(street).locality;
  failure.street = street;
  failure.number = reading.premise.numberFirst;
  failure.written.Append(written);
  decision_.Fail(failure, reading);
}

/** A strict search found another way to say an address, with another number or unit than the address has. */
void Matcher::FailAlias(const Reading& reading, std::uint32_t street, std::uint32_t alias)
{
  if (!Worthwhile(Fault::AliasWritten)) return;
  Failure failure;
  failure.fault = Fault::AliasWritten;
  failure.locality = data_.StreetAt(street).locality;
  failure.street = street;
  failure.number = alias;
  decision_.Fail(failure, reading);
}

}  // namespace arf
