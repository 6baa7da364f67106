// The part of the matcher that works inside localities: streets, their addresses, buildings and postal deliveries.
#include <algorithm>
#include <optional>

#include "arf/match/matcher.h"
#include "arf/match/penalties.h"
#include "arf/match/postal_words.h"

namespace arf {
namespace {

constexpr std::size_t kLongestStreetName = 8;  // words

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
  AppendNumber(text, premise.numberFirst, premise.numberFirstSuffix);
  if (premise.numberLast != 0) {
    text.Append("-");
    AppendNumber(text, premise.numberLast, premise.numberLastSuffix);
  }
  return text;
}

bool IsEmpty(const Premise& premise)
{
  return !premise.HasNumber() && premise.lot.Empty() && !premise.unit.Written() && !premise.level.Written() &&
         premise.building.Empty();
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
  if (place.body.Empty()) return FailPlace(Fault::StreetMissing, place, place.body);
  if (SearchPostal(place)) return;
  const StreetEndings endings(input_, place.body);
  for (const StreetEnding& ending : endings) SearchEnding(place, ending);
  FailPlace(Fault::StreetUnknown, place, BehindDigits(input_, place.body));
}

void Matcher::SearchEnding(const Place& place, const StreetEnding& ending)
{
  const std::size_t first = place.body.first;
  std::size_t start = ending.nameEnd - std::min(kLongestStreetName, ending.nameEnd - first);
  for (; start < ending.nameEnd; ++start) {
    if (!MayStartName(input_, first, start)) continue;
    for (const NameHit& hit : engine_.StreetNames().Find(input_, {start, ending.nameEnd}))
      if (hit.fit != NameFit::Article || !Strict()) SearchName(place, ending, start, hit);
  }
}

void Matcher::SearchName(const Place& place, const StreetEnding& ending, std::size_t start, const NameHit& hit)
{
  std::optional<Premises> premises;
  Reading reading = place.reading;
  reading.streetName = {start, ending.nameEnd};
  reading.streetType = ending.type;
  reading.streetSuffix = ending.suffix;
  auto penalty = static_cast<std::uint8_t>(place.penalty + FitPenalty(hit.fit));
  if (input_.HasInnerBreak({start, place.body.last})) penalty += kBrokenNamePenalty;
  for (const std::uint32_t locality : place.Localities()) {
    const IndexRange streets = data_.StreetsOf(data_.LocalityAt(locality), hit.name);
    if (streets.count == 0) continue;
    if (!premises) premises.emplace(input_, WordRange{place.body.first, start});
    for (std::uint32_t i = streets.first; i < streets.first + streets.count; ++i) {
      const Street street = data_.StreetAt(i);
      if (street.type == ending.type && street.suffix == ending.suffix)
        SearchStreet(reading, *premises, i, penalty);
      else if (ending.isGuess)
        continue;
      else if (!Strict() && streets.count == 1)
        SearchStreet(reading, *premises, i, static_cast<std::uint8_t>(penalty + kStreetTypePenalty));
      else
        FailStreet(Fault::StreetTypeDiffers, reading, i, input_.Text(start, place.body.last));
    }
  }
}

void Matcher::SearchStreet(Reading& reading, const Premises& premises, std::uint32_t street, std::uint8_t penalty)
{
  const Street data = data_.StreetAt(street);
  for (const Premise& premise : premises) {
    if (premise.lenientOnly && Strict()) continue;
    reading.premise = premise;
    SearchPremise(reading, data, street, static_cast<std::uint8_t>(penalty + premise.penalty));
  }
}

void Matcher::SearchPremise(const Reading& reading, const Street& street, std::uint32_t streetIndex,
                            std::uint8_t penalty)
{
  if (penalty >= kPenaltyLimit || Exhausted()) return;
  const Premise& premise = reading.premise;
  if (IsEmpty(premise) && street.points.count != 1) return FailStreet(Fault::NumberMissing, reading, streetIndex, {});
  PointSearch search = SearchPoints(data_, input_, street, premise, rules_);
  visited_ += search.visited;
  search.found.DropFrom(static_cast<std::uint8_t>(kPenaltyLimit - penalty));
  search.units.DropFrom(static_cast<std::uint8_t>(kPenaltyLimit - penalty));
  if (!search.found.Empty()) return decision_.Match(search.found, penalty, reading);
  if (!search.units.Empty()) return decision_.Units(search.units, penalty, reading);
  if (!premise.HasNumber() && premise.lot.Empty()) return FailStreet(Fault::NumberMissing, reading, streetIndex, {});
  if (!search.numberExists || !premise.HasNumber())
    return FailStreet(Fault::NumberUnknown, reading, streetIndex, NumberText(premise).View());
  const PremiseText occupancy = OccupancyText(premise);
  FailStreet(Fault::UnitUnknown, reading, streetIndex,
             occupancy.Empty() ? input_.Text(premise.building) : occupancy.View());
}

/** Where no street was found, the words may be the name of a building: "Parliament House, Canberra". */
void Matcher::SearchBuilding(const Place& place)
{
  if (place.body.Empty()) return;
  const Premises premises(input_, place.body);
  Reading reading = place.reading;
  for (const Premise& premise : premises) {
    if (premise.HasNumber() || premise.building.Empty()) continue;
    reading.premise = premise;
    for (const std::uint32_t locality : place.Localities()) {
      const IndexRange streets = data_.LocalityAt(locality).streets;
      for (std::uint32_t i = streets.first; i < streets.first + streets.count && !Exhausted(); ++i) {
        const PointSearch search = SearchPoints(data_, input_, data_.StreetAt(i), premise, rules_);
        visited_ += search.visited;
        if (!search.found.Empty()) decision_.Match(search.found, place.penalty, reading);
        if (search.found.Empty() && !search.units.Empty()) decision_.Units(search.units, place.penalty, reading);
      }
    }
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
      if (data_.StreetAt(i).type == words.type) SearchPostalStreet(reading, i, place.penalty);
  }
  FailPlace(Fault::StreetUnknown, place, {words.start, place.body.last});
  return true;
}

void Matcher::SearchPostalStreet(const Reading& reading, std::uint32_t street, std::uint8_t penalty)
{
  PostalNumber number;
  if (!ReadPostalNumber(reading.postalNumber, number)) return;
  PointSet found;
  PointCursor cursor = data_.PointsNumbered(data_.StreetAt(street), number.number);
  for (Point point; cursor.Next(point);) {
    ++visited_;
    const bool same = point.numberFirst == number.number && point.numberPrefix == number.prefix &&
                      point.numberFirstSuffix == number.suffix;
    if (same) found.Add(point.ordinal, 0);
  }
  if (!found.Empty()) return decision_.Match(found, penalty, reading);
  FailStreet(Fault::NumberUnknown, reading, street, reading.postalNumber);
}

}  // namespace arf
