// The part of the matcher that works inside localities: streets, their addresses, buildings and postal deliveries.
#include <algorithm>
#include <optional>

#include "arf/format/word_index.h"
#include "arf/match/canonical_words.h"
#include "arf/match/matcher.h"
#include "arf/match/occupancy_words.h"
#include "arf/match/postal_words.h"

namespace arf {
namespace {

constexpr std::size_t kLongestStreetName = 8;  // words
constexpr std::uint32_t kMostAliasStreets = 4096;

/** The number as written, for texts: "12A-14", "LOT 5", "UNIT 3 LEVEL 2". */
using PremiseText = FixedText<80>;

void AppendNumber(PremiseText& text, std::uint32_t number, std::string_view suffix)
{
  char digits[12];
  char* start = std::end(digits);
  do *--start = static_cast<char>('0' + number % 10);
  while ((number /= 10) != 0);
  text.Append({start, static_cast<std::size_t>(std::end(digits) - start)});
  text.Append(suffix);
}

void AppendOccupancy(PremiseText& text, const Occupancy& part, std::string_view defaultType)
{
  if (!part.Written()) return;
  if (!text.Empty()) text.Append(" ");
  text.Append(part.type.empty() ? defaultType : part.type);
  if (!part.number.Empty()) text.Append(" ");
  text.Append(part.number.View());
}

PremiseText OccupancyText(const Premise& premise)
{
  PremiseText text;
  AppendOccupancy(text, premise.unit, "UNIT");
  AppendOccupancy(text, premise.level, "LEVEL");
  if (!premise.lot.Empty()) AppendOccupancy(text, {"LOT", premise.lot}, {});
  return text;
}

PremiseText NumberText(const Premise& premise)
{
  PremiseText text;
  if (!premise.HasNumber()) {
    text.Append("LOT ");
    text.Append(premise.lot.View());
    return text;
  }
  text.Append(premise.numberPrefix);
  AppendNumber(text, premise.numberFirst, premise.numberFirstSuffix);
  if (premise.numberLast != 0) {
    text.Append("-");
    AppendNumber(text, premise.numberLast, premise.numberLastSuffix);
  }
  return text;
}

/** The words behind the last one with a digit: what is most likely meant as the street. */
WordRange BehindDigits(const InputText& input, WordRange body)
{
  std::size_t first = body.last;
  while (first > body.first && !input[first - 1].hasDigit) --first;
  return first < body.last ? WordRange{first, body.last} : body;
}

}  // namespace

void Matcher::SearchStreets(const Place& place)
{
  if (isAtCorner_) return SearchCorner(place);
  if (place.body.Empty()) return FailPlace(Fault::StreetMissing, place, place.body);
  if (SearchPostal(place)) return;
  SearchStreetsOf(place);
  if (!decision_.HasCandidates()) {
    const OccupancyWords behind = ReadOccupancyBefore(input_, place.body.first, place.body.last, Preference::Units);
    const Word& last = input_[place.body.last - 1];
    const bool mayBeName = behind.count == 1 || (behind.count == 0 && last.afterHash);  // "M06", "#3"
    if (mayBeName && last.hasDigit) SearchUnitBehind(place, {{}, last.text, false, false, 1});
    if (behind.count > 0) SearchUnitBehind(place, behind);
  }
  if (!decision_.HasCandidates() && stage_ == Stage::AsWritten) SearchBehindBuilding(place);
  if (!decision_.HasCandidates() && stage_ == Stage::AsWritten && !Strict()) SearchPostalBeforeStreet(place);
  FailPlace(Fault::StreetUnknown, place, BehindDigits(input_, place.body));
}

/** "12 Smith St Unit 3" */
void Matcher::SearchUnitBehind(const Place& place, const OccupancyWords& unit)
{
  Place shorter = place;
  shorter.body.last -= unit.count;
  if (!shorter.body.Empty() && trailing_.part.number.Append(unit.number)) {
    trailing_.part.type = unit.type;
    trailing_.isLevel = unit.isLevel;
    shorter.departures.Add(Departure::UnitBehindStreet);
    SearchStreetsOf(shorter);
  }
  trailing_ = {};
}

/** "Central Station Smith St": a street without a number, and nothing between it and the building's name. */
void Matcher::SearchBehindBuilding(const Place& place)
{
  constexpr std::size_t kLeastWords = 3;
  if (place.body.last - place.body.first < kLeastWords || input_.HasDigit(place.body)) return;
  const Seen seen = seen_;
  const bool quiet = quiet_;
  quiet_ = isBehindBuilding_ = true;
  SearchStreetsOf(place);
  quiet_ = quiet;
  isBehindBuilding_ = false;
  if (!decision_.HasCandidates()) seen_ = seen;
}

void Matcher::SearchStreetsOf(const Place& place)
{
  const StreetEndings endings(input_, place.body);
  for (const StreetEnding& ending : endings) SearchEnding(place, ending);
  if (decision_.HasCandidates() || seen_.street || place.departures.Has(Departure::Neighbour)) return;
  for (const StreetEnding& ending : endings) SearchSpelledOut(place, ending);
}

void Matcher::SearchEnding(const Place& place, const StreetEnding& ending)
{
  const std::size_t first = place.body.first;
  std::size_t start = ending.nameEnd - std::min(kLongestStreetName, ending.nameEnd - first);
  for (; start < ending.nameEnd; ++start) {
    if (isBehindBuilding_ ? !IsBuilding({first, start}) : !MayStartName(input_, first, start)) continue;
    for (const NameHit& hit : engine_.StreetNames().Find(input_, {start, ending.nameEnd}))
      if (hit.fit != NameFit::Article || stage_ == Stage::Alike) SearchName(place, ending, start, hit);
    if (stage_ == Stage::Alike) SearchLikeNames(place, ending, start);
    if (stage_ == Stage::AsWritten && data_.StreetAliasCount() > 0) SearchAliases(place, ending, start);
  }
}

/** Streets whose names have a word that was abbreviated: "The Pde", "High St Rd". */
void Matcher::SearchSpelledOut(const Place& place, const StreetEnding& ending)
{
  const std::size_t first = place.body.first;
  std::size_t start = ending.nameEnd - std::min(kLongestStreetName, ending.nameEnd - first);
  for (; start < ending.nameEnd; ++start) {
    if (!MayStartName(input_, first, start)) continue;
    // "Gren Rd" is no GREEN ROAD, and "Smith St" hardly a SMITH STREET without a type.
    const bool isOneWord = start + 1 == ending.nameEnd;
    if (isOneWord && !ending.type.empty()) continue;
    const bool mayEndShort = isOneWord || !ending.type.empty() || IsArticle(input_[start].text);
    const std::size_t end = ending.nameEnd - !mayEndShort;
    for (const NameHit& hit : engine_.StreetNames().FindSpelledOut(input_, {start, ending.nameEnd}, end))
      if (hit.fit != NameFit::Article || stage_ == Stage::Alike) SearchName(place, ending, start, hit);
  }
}

void Matcher::SearchName(const Place& place, const StreetEnding& ending, std::size_t start, const NameHit& hit)
{
  std::optional<Premises> premises;
  Reading reading = place.reading;
  reading.streetName = {start, ending.nameEnd};
  reading.streetType = ending.type;
  reading.streetSuffix = ending.suffix;
  Departures departures = place.departures + StreetDepartures(hit.fit);
  if (input_.HasInnerBreak({start, place.body.last})) departures.Add(Departure::BrokenStreet);
  for (const std::uint32_t locality : place.Localities()) {
    const IndexRange streets = data_.StreetsOf(data_.LocalityStreets(locality), hit.name);
    if (streets.count == 0) continue;
    if (!premises) premises.emplace(input_, WordRange{place.body.first, start});
    for (std::uint32_t i = streets.first; i < streets.first + streets.count; ++i) {
      const Street street = data_.StreetAt(i);
      if (stage_ == Stage::Alike) {
        if (const auto type = CompareType(place, ending, street, streets))
          SearchStreet(reading, *premises, i, departures + *type);
      } else if (street.type == ending.type && street.suffix == ending.suffix) {
        seen_.street = true;
        SearchStreet(reading, *premises, i, departures);
      } else if (!ending.isGuess) {
        FailStreet(Fault::StreetTypeDiffers, reading, i, input_.Text(start, place.body.last));
      }
    }
  }
}

/** Streets that have the name as another one of theirs. */
void Matcher::SearchAliases(const Place& place, const StreetEnding& ending, std::size_t start)
{
  const WordRange words{start, ending.nameEnd};
  if (ending.isGuess || decision_.HasCandidates()) return;
  const IndexRange aliases = data_.StreetAliasesNamed(input_.Text(words));
  if (aliases.count == 0) return;
  Reading reading = place.reading;
  reading.streetName = words;
  reading.streetType = ending.type;
  reading.streetSuffix = ending.suffix;
  const Premises premises(input_, WordRange{place.body.first, start});
  const std::uint32_t end = aliases.first + std::min<std::uint32_t>(aliases.count, kMostAliasStreets);
  for (std::uint32_t i = aliases.first; i < end; ++i) {
    const StreetAliasEntry alias = data_.StreetAliasAt(i);
    const auto localities = place.Localities();
    const std::uint32_t locality = data_.StreetAt(alias.street).locality;
    const bool isHere = std::find(localities.begin(), localities.end(), locality) != localities.end();
    if (isHere && alias.type == ending.type && alias.suffix == ending.suffix)
      SearchStreet(reading, premises, alias.street, place.departures + Departure::StreetAlias);
  }
}

void Matcher::SearchStreet(Reading& reading, const Premises& premises, std::uint32_t street,
                           const Departures& departures)
{
  if (cornerStreets_) {
    // Words before a street may be a building's name; a number is for those to judge who look for addresses.
    const bool mayPrecede = premises.Empty() || !premises.begin()->HasNumber();
    if (mayPrecede || Strict()) cornerStreets_->Add(street, departures.Sum());
    return;
  }
  const Street data = data_.StreetAt(street);
  for (const bool isLastResort : {false, true}) {
    for (const Premise& premise : premises) {
      if (premise.isLastResort != isLastResort || !MayBeMeant(premise)) continue;
      reading.premise = premise;
      if (AddTrailing(trailing_, reading.premise)) SearchPremise(reading, data, departures + premise.departures);
    }
  }
}

bool Matcher::MayBeMeant(const Premise& premise) const
{
  if (premise.lenientOnly && Strict()) return false;
  if (!premise.isLastResort) return true;
  if (!premise.buildingIsBinding) return !decision_.HasCandidates();
  const bool isOpen = !decision_.HasCandidates() || decision_.Best().departures.Has(Departure::UnknownUnit);
  return isOpen && IsBuilding(premise.building);
}

/** Names of buildings as written, or with a street type's short form written out: "Harbour St Station". */
NameHits Matcher::BuildingsNamed(WordRange words) const
{
  const NameHits names = engine_.BuildingNames().Find(input_, words);
  return names.Empty() ? engine_.BuildingNames().FindSpelledOut(input_, words, words.last) : names;
}

bool Matcher::IsBuilding(WordRange words) const
{
  return !words.Empty() && !BuildingsNamed(words).Empty();
}

/** Gives a premise the unit or level that was written behind the street; false when it has one already. */
bool Matcher::AddTrailing(const Trailing& trailing, Premise& premise)
{
  if (!trailing.part.Written()) return true;
  Occupancy& part = trailing.isLevel ? premise.level : premise.unit;
  if (part.Written()) return false;
  part = trailing.part;
  return true;
}

void Matcher::SearchPremise(const Reading& reading, const Street& street, const Departures& departures)
{
  if (departures.Sum() >= kPenaltyLimit || Exhausted()) return;
  const Premise& premise = reading.premise;
  const bool isGuess = stage_ == Stage::Alike || departures.HasChange();
  if (isGuess && !premise.HasNumber() && premise.lot.Empty())
    return FailStreet(Fault::NumberMissing, reading, street.index, {});
  if (premise.IsEmpty() && street.points.count != 1) return FailStreet(Fault::NumberMissing, reading, street.index, {});
  const PointSearch search = SearchPoints(data_, input_, street, premise, rules_);
  visited_ += search.visited;
  if (stage_ == Stage::AsWritten && search.numberExists) seen_.number = true;
  const Departures all = departures + repaired_;
  if (!search.found.Empty()) {
    if (IsConvincing(search.found.departures + all)) decision_.Match(search.found, all, reading, street.index);
    return;
  }
  if (!search.units.Empty()) {
    if (IsConvincing(search.units.departures + all)) decision_.Units(search.units, all, reading, street.index);
    return;
  }
  if (search.alias != kNoIndex) return FailAlias(reading, street.index, search.alias);
  if (!premise.HasNumber() && premise.lot.Empty()) return FailStreet(Fault::NumberMissing, reading, street.index, {});
  if (!search.numberExists || !premise.HasNumber())
    return FailStreet(Fault::NumberUnknown, reading, street.index, NumberText(premise).View());
  const PremiseText occupancy = OccupancyText(premise);
  FailStreet(Fault::UnitUnknown, reading, street.index,
             occupancy.Empty() ? input_.Text(premise.building) : occupancy.View());
}

/** Where no street was found, the words may be the name of a building: "Parliament House, Canberra". */
void Matcher::SearchBuilding(const Place& place)
{
  if (place.body.Empty()) return;
  const Premises premises(input_, place.body);
  Reading reading = place.reading;
  for (const Premise& premise : premises) {
    if (premise.HasNumber() || !premise.lot.Empty() || premise.building.Empty()) continue;
    reading.premise = premise;
    const NameHits names = BuildingsNamed(premise.building);
    for (const std::uint32_t locality : place.Localities()) SearchBuildingIn(place, reading, names, locality);
  }
}

void Matcher::SearchBuildingIn(const Place& place, const Reading& reading, const NameHits& names,
                               std::uint32_t locality)
{
  StreetSet streets;
  for (const NameHit& name : names) AddStreetsOfBuilding(name.name, locality, streets);
  for (const std::uint32_t street : streets) {
    if (Exhausted()) return;
    const PointSearch search = SearchPoints(data_, input_, data_.StreetAt(street), reading.premise, rules_);
    visited_ += search.visited;
    if (!search.found.Empty()) decision_.Match(search.found, place.departures + repaired_, reading, street);
    if (search.found.Empty() && !search.units.Empty())
      decision_.Units(search.units, place.departures + repaired_, reading, street);
  }
}

/** The streets of a locality in which a building of that name stands. */
void Matcher::AddStreetsOfBuilding(std::uint32_t name, std::uint32_t locality, StreetSet& streets) const
{
  const IndexRange all = data_.LocalityStreets(locality);
  if (all.count == 0) return;
  const std::uint32_t firstPoint = data_.StreetAt(all.first).points.first;
  const std::span<const std::uint32_t> points = data_.Words().PointsOf(name);
  for (auto point = std::lower_bound(points.begin(), points.end(), firstPoint); point != points.end();) {
    const std::uint32_t street = data_.StreetOf(*point);
    if (street < all.first || street >= all.first + all.count || !streets.Add(street)) return;
    const IndexRange inStreet = data_.StreetAt(street).points;
    point = std::lower_bound(point + 1, points.end(), inStreet.first + inStreet.count);
  }
}

/** False when the words are no postal delivery. */
bool Matcher::SearchPostal(const Place& place)
{
  const PostalWords words = ReadPostalAtEnd(input_, place.body);
  if (words.type.empty()) return false;
  Reading reading = place.reading;
  reading.postalType = words.type;
  reading.postalNumber = input_.Text(words.number);
  for (const std::uint32_t locality : place.Localities()) {
    const IndexRange streets = data_.PostalStreetsOf(data_.LocalityAt(locality));
    for (std::uint32_t i = streets.first; i < streets.first + streets.count; ++i)
      if (data_.StreetAt(i).type == words.type) SearchPostalStreet(reading, i, place.departures + repaired_);
  }
  FailPlace(Fault::StreetUnknown, place, {words.start, place.body.last});
  return true;
}

/** "PO Box 12, Smith St": the box is the address. */
void Matcher::SearchPostalBeforeStreet(const Place& place)
{
  for (std::size_t number = place.body.first + 1; number + 1 < place.body.last; ++number) {
    if (!input_[number].hasDigit || PostalTypeBefore(input_, place.body.first, number) == number) continue;
    Place box = place;
    box.body.last = number + 1;
    box.departures.Add(Departure::Noise);
    SearchPostal(box);
    return;
  }
}

void Matcher::SearchPostalStreet(const Reading& reading, std::uint32_t street, const Departures& departures)
{
  PostalNumber number;
  if (!ReadPostalNumber(reading.postalNumber, number)) return;
  PointSet found;
  PointCursor cursor = data_.PointsNumbered(data_.StreetAt(street), number.number);
  for (Point point; cursor.Next(point);) {
    ++visited_;
    const bool same = point.numberFirst == number.number && point.numberPrefix == number.prefix &&
                      point.numberFirstSuffix == number.suffix;
    if (same) found.Add(point.ordinal, {});
  }
  if (!found.Empty()) return decision_.Match(found, departures, reading, street);
  FailStreet(Fault::NumberUnknown, reading, street, reading.postalNumber);
}

}  // namespace arf
