#include "arf/match/matcher.h"

#include <algorithm>

#include "arf/match/penalties.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::size_t kLongestLocalityName = 6;  // words

/** The words behind the last break before `end`. */
WordRange LastPart(const InputText& input, std::size_t end)
{
  std::size_t first = end;
  while (first > 0 && input[first - 1].before != Joint::Break) --first;
  return {first > 0 ? first - 1 : 0, end};
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
  visited_ = 0;
  sawLocality_ = false;
  decision_.Reset();
  if (input_.Read(text) != InputFault::None) {
    Failure failure;
    failure.fault = Fault::TooLong;
    decision_.Fail(failure, {});
  } else {
    Search();
  }
  decision_.Close(Exhausted());
  const Fault fault = decision_.Deepest().fault;
  if (decision_.HasCandidates() && fault != Fault::SeveralAddresses)
    return {Verdict::Found, decision_.Ordinal(), decision_.Penalty() >= kFirstChange};
  return {VerdictOf(fault), 0, false};
}

void Matcher::Search()
{
  if (input_.Count() == 0) return;
  ForEachPlace(&Matcher::SearchStreets);
  if (decision_.HasCandidates()) return;
  if (sawLocality_) {
    if (decision_.Deepest().fault <= Fault::StreetUnknown) ForEachPlace(&Matcher::SearchBuilding);
    return;
  }
  const Tails tails(input_);
  if (!Strict()) TryPostcodeOnly(*tails.begin());
  FailWithoutPlace(*tails.begin());
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
  for (const NameHit& hit : hits) {
    if (hit.fit == NameFit::Article && Strict()) continue;
    sawLocality_ = true;
    Place place;
    place.reading.locality = words;
    place.body = {0, start};
    place.penalty = FitPenalty(hit.fit);
    if (input_.HasInnerBreak(words)) place.penalty += kBrokenNamePenalty;
    TryLocality(tail, place, hit, step);
    const PlaceWords before = ReadPlaceBefore(input_, 0, start, tail.place);
    if (before.count == 0 || before.isCountry) continue;
    Tail reordered = tail;
    reordered.place.Merge(before.place);
    const PlaceWords further = ReadPlaceBefore(input_, 0, start - before.count, reordered.place);
    if (!further.isCountry) reordered.place.Merge(further.place);
    place.body.last = start - before.count - (further.isCountry ? 0 : further.count);
    place.penalty += kPlaceOrderPenalty;
    TryLocality(reordered, place, hit, step);
  }
}

void Matcher::TryLocality(const Tail& tail, Place& place, const NameHit& hit, PlaceStep step)
{
  place.reading.place = tail.place;
  place.count = 0;
  const std::span<const std::uint32_t> named = data_.LocalitiesNamed(hit.name);
  for (const std::uint32_t locality : named)
    if (tail.place.Fits(data_.LocalityAt(locality))) AddLocality(place, locality);
  if (place.count > 0) return (this->*step)(place);
  if (!Worthwhile(Fault::PlaceContradicts) || named.empty()) return;
  Failure failure;
  failure.fault = Fault::PlaceContradicts;
  failure.locality = named.front();
  failure.writtenPlace = tail.place.Text();
  decision_.Fail(failure, place.reading);
}

void Matcher::AddLocality(Place& place, std::uint32_t locality)
{
  if (place.count < kMaxPlaces)
    place.localities[place.count++] = locality;
  else
    visited_ = kMaxVisited + 1;  // an answer from some of the localities would look surer than it is
}

/** "12 Smith St 2000": the postcode's localities together have just one such address. */
void Matcher::TryPostcodeOnly(const Tail& tail)
{
  if (tail.place.postcode.Empty()) return;
  Place place;
  place.body = {0, tail.localityEnd};
  place.penalty = kMissingLocalityPenalty;
  place.reading.place = tail.place;
  for (const std::uint32_t locality : data_.LocalitiesOfPostcode(tail.place.postcode.View()))
    if (tail.place.StateFits(data_.LocalityAt(locality))) AddLocality(place, locality);
  if (place.count > 0) SearchStreets(place);
}

void Matcher::FailWithoutPlace(const Tail& tail)
{
  if (decision_.HasCandidates()) return;
  Failure failure;
  const bool something = !tail.place.Empty() || LooksLikeStreet(input_);
  failure.fault = something ? Fault::LocalityUnknown : Fault::NothingRecognised;
  failure.written.Append(input_.Text(LastPart(input_, tail.localityEnd)));
  failure.writtenPlace = tail.place.Text();
  Reading reading;
  reading.place = tail.place;
  decision_.Fail(failure, reading);
}

void Matcher::FailPlace(Fault fault, const Place& place, WordRange written)
{
  if (!Worthwhile(fault)) return;
  Failure failure;
  failure.fault = fault;
  failure.locality = place.localities.front();
  failure.written.Append(input_.Text(written));
  decision_.Fail(failure, place.reading);
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

}  // namespace arf
