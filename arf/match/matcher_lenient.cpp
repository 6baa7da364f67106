// The part of the matcher that goes beyond what was written: names like those written, localities beside the one
// written, other postcodes, other street types. The number decides whether such a guess is right.
#include <algorithm>
#include <array>
#include <optional>

#include "arf/format/partition_point.h"
#include "arf/match/locality_wordings.h"
#include "arf/match/matcher.h"
#include "arf/match/misread.h"
#include "arf/match/occupancy_words.h"
#include "arf/tables/cities.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::size_t kLongestLikeName = 5;  // words
constexpr std::size_t kLongestWorded = 6;    // words
constexpr std::size_t kShortestPart = 4;     // letters of a name that stands for a longer one
constexpr std::uint32_t kMostContaining = 16;

/** Whether two postcodes differ in one digit, or in two that are swapped. */
bool DifferLittle(std::string_view a, std::string_view b)
{
  if (a.size() != b.size()) return false;
  std::size_t different = 0;
  std::size_t last = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] == b[i]) continue;
    ++different;
    last = i;
  }
  if (different == 2) return last > 0 && a[last] == b[last - 1] && a[last - 1] == b[last];
  return different <= 1;
}

Departures PostcodeDepartures(const WrittenPlace& written, const Locality& locality)
{
  if (written.PostcodeFits(locality)) return {};
  return DifferLittle(written.postcode.View(), locality.postcode) ? Departure::PostcodeDigit
                                                                  : Departure::PostcodeDiffers;
}

/** Whether one name is the other with whole words more in front or behind. */
bool ContainsWords(std::string_view longer, std::string_view shorter)
{
  if (shorter.size() < kShortestPart || longer.size() <= shorter.size() + 1) return false;
  return (longer.substr(0, shorter.size()) == shorter && longer[shorter.size()] == ' ') ||
         (longer.substr(longer.size() - shorter.size()) == shorter &&
          longer[longer.size() - shorter.size() - 1] == ' ');
}

/** What the likenesses of a name cost, in the order of the enumeration behind None. */
using LikenessCosts = std::array<Departure, 4>;
constexpr LikenessCosts kLocalityLikeness = {Departure::LocalityTypo, Departure::LocalityTypoShort,
                                             Departure::LocalityTwoTypos, Departure::LocalitySound};
constexpr LikenessCosts kStreetLikeness = {Departure::StreetTypo, Departure::StreetTypoShort, Departure::StreetTwoTypos,
                                           Departure::StreetSound};

bool IsStreetType(const Word& word)
{
  return !ExpandStreetType(word.text).empty();
}

/** Whether words stand behind a street or a break and may be a name, of which the last word is a name too. */
bool MayStartLongerName(const InputText& input, WordRange words)
{
  const bool isBehindStreet = input[words.first].before == Joint::Break || IsStreetType(input[words.first - 1]);
  return isBehindStreet && !IsStreetType(input[words.first]) && !input.HasDigit(words) && !input.HasInnerBreak(words);
}

std::optional<Departure> DepartureOf(Likeness likeness, const LikenessCosts& costs)
{
  if (likeness == Likeness::None) return std::nullopt;
  return costs[static_cast<std::size_t>(likeness) - 1];
}

/** Whether the locality is another than the one written, so that it confirms nothing. */
bool GuessesLocality(const Departures& departures)
{
  constexpr Departure kGuesses[] = {
      Departure::LocalityTypo, Departure::LocalityTypoShort, Departure::LocalityTwoTypos, Departure::LocalitySound,
      Departure::LocalityPart, Departure::LocalityMissing,   Departure::LocalityArticle,  Departure::Neighbour};
  return std::any_of(std::begin(kGuesses), std::end(kGuesses), [&](Departure kind) { return departures.Has(kind); });
}

}  // namespace

/** "East Kew" for "KEW EAST": names whose words were said otherwise, with streets and numbers as written. */
void Matcher::SearchOtherWordings()
{
  if (!mayBeWorded_ || decision_.HasCandidates() || seen_.street || Exhausted()) return;
  const bool seenLocality = seen_.locality;
  for (const Tail& tail : Tails(input_)) {
    const std::size_t end = tail.localityEnd;
    for (std::size_t start = end > kLongestWorded ? end - kLongestWorded : 0; start + 1 < end; ++start)
      ReadOtherWordings(tail, {start, end});
    if (decision_.HasCandidates()) return;
  }
  seen_.locality = seenLocality;  // the words may be the end of a name with a typing error
}

void Matcher::ReadOtherWordings(const Tail& tail, WordRange words)
{
  const LocalityWordings wordings(input_, words);
  if (wordings.Empty() || IsLocality(tail.place, engine_.LocalityNames().Find(input_, words))) return;
  for (const LocalityWording& wording : wordings)
    for (const NameHit& hit : engine_.LocalityNames().Find(wording.name.View()))
      if (hit.fit != NameFit::Article)
        ReadKnownLocality(tail, words, data_.LocalitiesNamed(hit.name), LocalityDepartures(hit.fit) + wording.departure,
                          &Matcher::SearchStreets);
}

/** Whether a name is that of a locality that state and postcode allow. */
bool Matcher::IsLocality(const WrittenPlace& written, const NameHits& hits) const
{
  for (const NameHit& hit : hits)
    for (const std::uint32_t locality : data_.LocalitiesNamed(hit.name))
      if (hit.fit != NameFit::Article && written.Fits(data_.LocalityAt(locality))) return true;
  return false;
}

/** Whether the words from `start` on are the end of a name that is said with a direction in front. */
bool Matcher::EndsName(const Tail& tail, std::size_t start) const
{
  if (start == 0 || !IsDirection(input_[start - 1])) return false;
  for (const LocalityWording& wording : LocalityWordings(input_, {start - 1, tail.localityEnd}))
    if (wording.departure == Departure::LocalityOrder &&
        IsLocality(tail.place, engine_.LocalityNames().Find(wording.name.View())))
      return true;
  return false;
}

void Matcher::SearchLeniently()
{
  // A number that is there, or nothing but ways of writing, needs no guess.
  if (decision_.IsAsWritten() || seen_.number || Exhausted() || input_.Count() == 0) return;
  stage_ = Stage::Alike;
  const Tails tails(input_);
  for (const Tail& tail : tails) {
    if (&tail != tails.begin() && (!tail.isOtherReading || decision_.HasCandidates())) continue;
    const std::size_t end = tail.localityEnd;
    for (std::size_t start = end > kLongestLikeName ? end - kLongestLikeName : 0; start < end; ++start)
      ReadLocalityLeniently(tail, start);
    if (!seen_.locality) TryWithoutLocality(tail);
  }
  stage_ = Stage::AsWritten;
}

/** Takes the words from `start` to the end of the locality as a name, with state and postcode behind or before it. */
void Matcher::ReadLocalityLeniently(const Tail& tail, std::size_t start)
{
  Place place;
  place.reading.locality = {start, tail.localityEnd};
  place.body = {0, start};
  if (input_.HasDigit(place.reading.locality) || input_.HasInnerBreak(place.reading.locality)) return;
  place.ownsDirection = mayBeWorded_ && EndsName(tail, start);
  TryNames(tail.place, place);
  const PlaceWords before = ReadPlaceBefore(input_, 0, start, tail.place);
  if (before.count == 0 || before.isCountry) return;
  WrittenPlace written = tail.place;
  written.Merge(before.place);
  const PlaceWords further = ReadPlaceBefore(input_, 0, start - before.count, written);
  place.body.last = start - before.count;
  if (further.count > 0 && !further.isCountry) {
    written.Merge(further.place);
    place.body.last -= further.count;
  }
  place.departures = Departure::PlaceOrder;
  TryNames(written, place);
}

void Matcher::TryNames(const WrittenPlace& written, Place& place)
{
  if (place.body.Empty()) return;
  place.reading.place = written;
  const NameHits hits = engine_.LocalityNames().Find(input_, place.reading.locality);
  for (const NameHit& hit : hits) TryKnownName(written, place, hit);
  place.isNamed = !hits.Empty();  // or has such a wording
  if (mayBeWorded_ && !IsLocality(written, hits)) TryOtherWordings(written, place);
  if (seen_.street) return;  // nothing is wrong with the names
  TryLikeNames(written, place);
  TryNamesThatContain(written, place);
}

void Matcher::TryOtherWordings(const WrittenPlace& written, Place& place)
{
  const Departures before = place.departures;
  for (const LocalityWording& wording : LocalityWordings(input_, place.reading.locality)) {
    place.departures = before + wording.departure;
    for (const NameHit& hit : engine_.LocalityNames().Find(wording.name.View()))
      if (hit.fit != NameFit::Article) {
        place.isNamed = true;
        TryKnownName(written, place, hit);
      }
  }
  place.departures = before;
}

void Matcher::TryKnownName(const WrittenPlace& written, Place& place, const NameHit& hit)
{
  const Departures before = place.departures;
  const std::span<const std::uint32_t> named = data_.LocalitiesNamed(hit.name);
  if (!seen_.street) TryLocalities(written, place, named, before + LocalityDepartures(hit.fit));
  place.count = 0;
  for (const std::uint32_t locality : named)
    if (StateFits(written, locality) && place.count < kMaxPlaces) place.localities[place.count++] = locality;
  place.departures = before + LocalityDepartures(hit.fit);
  if (place.count > 0 && !isAtCorner_) TrySurroundings(written, place);
  place.departures = before;
}

bool Matcher::StateFits(const WrittenPlace& written, std::uint32_t locality) const
{
  return written.state.empty() || written.state == data_.LocalityState(locality) ||
         written.StateFits(data_.LocalityAt(locality));
}

/** Whether the postcode is that of one of the localities, which is in another state than written. */
bool Matcher::HasNamesakeOfPostcode(const WrittenPlace& written, std::span<const std::uint32_t> localities) const
{
  if (written.state.empty() || written.postcode.Empty()) return false;
  return std::any_of(localities.begin(), localities.end(), [&](std::uint32_t index) {
    const Locality locality = data_.LocalityAt(index);
    return written.PostcodeFits(locality) && !written.StateFits(locality);
  });
}

/**
 * Searches those of some localities whose state is not another than written; a postcode may be, at its price,
 * unless it is that of a namesake: then nothing tells which of state and postcode is wrong.
 */
void Matcher::TryLocalities(const WrittenPlace& written, Place& place, std::span<const std::uint32_t> localities,
                            const Departures& departures)
{
  const bool isElsewhere = HasNamesakeOfPostcode(written, localities);
  for (const std::uint32_t index : localities) {
    if (!StateFits(written, index) || (isElsewhere && !written.PostcodeFits(data_.LocalityAt(index)))) continue;
    Place one = place;
    one.count = 1;
    one.localities[0] = index;
    one.departures = departures;
    if (!written.postcode.Empty()) one.departures = departures + PostcodeDepartures(written, data_.LocalityAt(index));
    SearchStreets(one);
  }
}

/** Localities with a name like the one written: those of the postcode, or all where none was written or none fits. */
void Matcher::TryLikeNames(const WrittenPlace& written, Place& place)
{
  const WrittenName name(input_.Text(place.reading.locality));
  if (!name.IsComparable()) return;
  const std::span<const std::uint32_t> signatures = engine_.LocalityNames().Signatures();
  if (!written.postcode.Empty()) {
    for (const std::uint32_t locality : data_.LocalitiesOfPostcode(written.postcode.View())) {
      const std::uint32_t stored = data_.LocalityNameIndex(locality);
      if (stored >= signatures.size() || name.MayBe(signatures[stored])) TryLikeName(written, place, name, stored);
    }
    if (decision_.HasCandidates()) return;
  }
  if (!seen_.locality) TryLikeNamesAnywhere(written, place, name);  // otherwise the name written is one already
}

void Matcher::TryLikeNamesAnywhere(const WrittenPlace& written, Place& place, const WrittenName& name)
{
  const NamesByLength& names = engine_.LocalitiesByLength();
  compared_ += names.Count();
  if (compared_ > kMaxCompared) return;
  names.ForEachLike(name.Signature(), [&](std::uint32_t stored) { TryLikeName(written, place, name, stored); });
}

void Matcher::TryLikeName(const WrittenPlace& written, Place& place, const WrittenName& name, std::uint32_t stored)
{
  const Likeness likeness = name.Compare(data_.LocalityName(stored));
  const bool isName = seen_.locality || place.isNamed;
  if (isName && likeness != Likeness::OneTypo && likeness != Likeness::OneTypoShort) return;
  if (const std::optional<Departure> departure = DepartureOf(likeness, kLocalityLikeness))
    TryLocalities(written, place, data_.LocalitiesNamed(stored), place.departures + *departure);
}

/** "Darwin" for "DARWIN CITY", in the postcode written or where names begin so. */
void Matcher::TryNamesThatContain(const WrittenPlace& written, Place& place)
{
  if (seen_.locality) return;
  const std::string_view text = input_.Text(place.reading.locality);
  const Departures departures = place.departures + Departure::LocalityPart;
  // A postcode that no locality has, as those of post office boxes, does not tell them apart.
  if (const auto localities = data_.LocalitiesOfPostcode(written.postcode.View()); !localities.empty()) {
    for (const std::uint32_t locality : localities) {
      const std::string_view stored = data_.LocalityName(data_.LocalityNameIndex(locality));
      if (ContainsWords(stored, text)) TryLocalities(written, place, {&locality, 1}, departures);
    }
    return;
  }
  const IndexRange names = LocalityNamesFrom(text);
  for (std::uint32_t name = names.first; name < names.first + names.count; ++name)
    if (ContainsWords(data_.LocalityName(name), text))
      TryLocalities(written, place, data_.LocalitiesNamed(name), departures);
}

/** The first names of localities that begin with a text. */
IndexRange Matcher::LocalityNamesFrom(std::string_view text) const
{
  const std::uint32_t all = data_.LocalityNameCount();
  IndexRange names{PartitionPoint(0, all, [&](std::uint32_t i) { return data_.LocalityName(i) < text; }), 0};
  while (names.count < kMostContaining && names.first + names.count < all &&
         data_.LocalityName(names.first + names.count).starts_with(text))
    ++names.count;
  return names;
}

/** A locality that the last words may be a part of, to be named in a message; kNoIndex for none. */
std::uint32_t Matcher::LocalityAround(const Tail& tail) const
{
  constexpr std::size_t kMostWords = 3;
  const std::size_t end = tail.localityEnd;
  for (std::size_t start = end > kMostWords ? end - kMostWords : 0; start < end; ++start) {
    const std::string_view text = input_.Text(start, end);
    const IndexRange names = LocalityNamesFrom(text);
    for (std::uint32_t name = names.first; name < names.first + names.count; ++name)
      for (const std::uint32_t locality : data_.LocalitiesNamed(name))
        if (ContainsWords(data_.LocalityName(name), text) && StateFits(tail.place, locality)) return locality;
  }
  return kNoIndex;
}

/** The localities around those written: people take the name next to theirs. */
void Matcher::TrySurroundings(const WrittenPlace& written, const Place& place)
{
  Place around = place;
  around.count = 0;
  around.departures.Add(Departure::Neighbour);
  const auto add = [&](std::uint32_t locality) {
    const auto known = place.Localities();
    const auto added = around.Localities();
    const bool isNew = std::find(known.begin(), known.end(), locality) == known.end() &&
                       std::find(added.begin(), added.end(), locality) == added.end();
    if (isNew && around.count < kMaxSurroundings && StateFits(written, locality))
      around.localities[around.count++] = locality;
  };
  for (const std::uint32_t locality : place.Localities()) {
    // A postcode that is not that of the locality says where the address is.
    if (!written.PostcodeFits(data_.LocalityAt(locality))) continue;
    for (const std::uint32_t other : data_.NeighboursOf(locality)) add(other);
    if (written.postcode.Empty())
      for (const std::uint32_t other : data_.LocalitiesOfPostcode(data_.LocalityAt(locality).postcode)) add(other);
  }
  for (const std::uint32_t other : data_.LocalitiesOfPostcode(written.postcode.View())) add(other);
  if (around.count > 0) SearchStreets(around);
}

/** "12 Smith St 2000": the postcode's localities together have just one such address. */
void Matcher::TryWithoutLocality(const Tail& tail)
{
  if (tail.place.postcode.Empty()) return;
  Place place;
  place.body = {0, tail.localityEnd};
  place.departures = Departure::LocalityMissing;
  place.reading.place = tail.place;
  for (const std::uint32_t locality : data_.LocalitiesOfPostcode(tail.place.postcode.View()))
    if (place.count < kMaxSurroundings && StateFits(tail.place, locality)) place.localities[place.count++] = locality;
  if (place.count > 0) SearchStreets(place);
}

/** Streets whose names are like the words from `start` on. */
void Matcher::SearchLikeNames(const Place& place, const StreetEnding& ending, std::size_t start)
{
  const WordRange words{start, ending.nameEnd};
  const bool isGuessed = place.departures.Has(Departure::Neighbour) || place.departures.Has(Departure::LocalityMissing);
  if (isGuessed || seen_.street || words.last - words.first > kLongestLikeName || input_.HasInnerBreak(words)) return;
  const WrittenName written(input_.Text(words));
  if (!written.IsComparable()) return;
  Reading reading = place.reading;
  reading.streetName = words;
  reading.streetType = ending.type;
  reading.streetSuffix = ending.suffix;
  std::optional<Premises> premises;
  for (const std::uint32_t locality : place.Localities())
    SearchLikeNamesIn(place, ending, reading, written, locality, premises);
}

void Matcher::SearchLikeNamesIn(const Place& place, const StreetEnding& ending, Reading& reading,
                                const WrittenName& written, std::uint32_t locality, std::optional<Premises>& premises)
{
  const std::span<const std::uint32_t> signatures = engine_.StreetNames().Signatures();
  const IndexRange streets = data_.LocalityStreets(locality);
  compared_ += streets.count;
  if (compared_ > kMaxCompared) return;
  std::uint32_t compared = kNoIndex;
  std::optional<Departure> departure;
  for (std::uint32_t i = streets.first; i < streets.first + streets.count; ++i) {
    const std::uint32_t name = data_.StreetNameIndex(i);
    if (name == kNoIndex || (name < signatures.size() && !written.MayBe(signatures[name]))) continue;
    if (name != compared) departure = DepartureOf(written.Compare(data_.StreetName(name)), kStreetLikeness);
    compared = name;
    if (!departure) continue;
    const Street street = data_.StreetAt(i);
    const std::optional<Departures> type = CompareType(place, ending, street, data_.StreetsOf(streets, name));
    const bool isTypo = departure == Departure::StreetTypo || departure == Departure::StreetTypoShort;
    if (!type || type->Has(Departure::StreetTypeDiffers) || (!isTypo && type->HasChange())) continue;
    if (!premises) premises.emplace(input_, WordRange{place.body.first, reading.streetName.first});
    SearchStreet(reading, *premises, i, place.departures + *departure + *type);
  }
}

/** How a street's type and suffix depart from those written; nothing when the street cannot be meant. */
std::optional<Departures> Matcher::CompareType(const Place& place, const StreetEnding& ending, const Street& street,
                                               IndexRange sameName) const
{
  Departures departures;
  if (ending.isGuess) {
    const Likeness likeness = WrittenName(ending.type).Compare(street.type);
    if (likeness != Likeness::OneTypo && likeness != Likeness::OneTypoShort) return std::nullopt;
    departures.Add(Departure::StreetTypeTypo);
  } else if (street.type != ending.type) {
    departures.Add(ending.type.empty() ? Departure::StreetTypeMissing : Departure::StreetTypeDiffers);
  }
  if (street.suffix == ending.suffix) return departures;
  if (!street.suffix.empty() && !ending.suffix.empty()) return std::nullopt;
  const bool isOfStreet = !ending.isApart && !place.ownsDirection;
  if (street.suffix.empty() && (!isOfStreet || HasSuffixed(street, sameName))) return std::nullopt;
  departures.Add(ending.suffix.empty() ? Departure::SuffixMissing : Departure::SuffixAdded);
  return departures;
}

/** Whether the street has a namesake with a suffix, so that a suffix tells the two apart. */
bool Matcher::HasSuffixed(const Street& street, IndexRange sameName) const
{
  for (std::uint32_t i = sameName.first; i < sameName.first + sameName.count; ++i) {
    const Street other = data_.StreetAt(i);
    if (other.type == street.type && !other.suffix.empty()) return true;
  }
  return false;
}

bool Matcher::IsConvincing(const Departures& departures) const
{
  if (departures.Sum() >= kPenaltyLimit) return false;
  if (departures.Has(Departure::Neighbour) && !departures.ChangesOnly(Departure::Neighbour)) return false;
  if (departures.Has(Departure::StateTypo) && GuessesLocality(departures)) return false;
  if (departures.Has(Departure::LookAlike) && departures.Has(Departure::InsideRange)) return false;
  // "12AKing" may have been 12A King: letters at the place where words were taken apart must be right.
  const bool isMistyped = departures.Has(Departure::StreetTypo) || departures.Has(Departure::StreetTypoShort) ||
                          departures.Has(Departure::StreetTwoTypos) || departures.Has(Departure::StreetSound);
  if (isMistyped && departures.Has(Departure::RunTogether)) return false;
  return departures.Sum() < kConvincing || !departures.Has(Departure::LocalityMissing);
}

/**
 * Once more without what is no part of an address, and with words taken apart that were run together.
 *
 * @param last  Stage::AsWritten leaves typing errors as they are
 */
void Matcher::SearchRepaired(std::string_view text, Stage last)
{
  const bool hasDetour = HasDetour(input_);
  for (const Detour detour : {Detour::ToBreak, Detour::WordOnly, Detour::ToPlace}) {
    SearchRepaired(text, last, detour);
    if (!hasDetour || decision_.HasCandidates()) return;
  }
}

void Matcher::SearchRepaired(std::string_view text, Stage last, Detour detour)
{
  const Seen seen = seen_;
  quiet_ = true;
  for (const StuckLetter letter : {StuckLetter::OfName, StuckLetter::OfNumber}) {
    repaired_ = {};
    const std::string_view repaired = Repair(text, {letter, detour}, input_, repairBuffer_, repaired_);
    if (repaired.empty()) break;
    seen_ = {};
    if (input_.Read(repaired) == InputFault::None) {
      ForEachPlace(&Matcher::SearchStreets);
      SearchOtherWordings();
      if (last == Stage::Alike) SearchLeniently();
    }
    if (decision_.HasCandidates()) return;
    input_.Read(text);  // what was noted of it are views
    if (!repaired_.Has(Departure::RunTogether)) break;
  }
  seen_ = seen;
  quiet_ = false;
  repaired_ = {};
}

/** "Souht Kew VIC", where KEW is a locality of the state too: the name may be a longer one with a typing error. */
void Matcher::SearchLongerNames()
{
  if (!seen_.locality || seen_.street || Exhausted()) return;
  const Tail tail = *Tails(input_).begin();
  if (tail.place.state.empty()) return;
  const std::size_t end = tail.localityEnd;
  stage_ = Stage::Alike;
  for (std::size_t start = end > kLongestLikeName ? end - kLongestLikeName : 1; start + 1 < end; ++start) {
    Place place;
    place.reading.locality = {start, end};
    place.reading.place = tail.place;
    place.body = {0, start};
    if (!MayStartLongerName(input_, place.reading.locality)) continue;
    if (!engine_.LocalityNames().Find(input_, place.reading.locality).Empty()) break;
    const WrittenName name(input_.Text(place.reading.locality));
    if (name.IsComparable()) TryLikeNamesAnywhere(tail.place, place, name);
  }
  stage_ = Stage::AsWritten;
}

/** "12 Smith St, Richmond, Melbourne VIC": a city behind the locality. State or postcode must confirm the locality. */
void Matcher::SearchWithoutCity()
{
  const Tail tail = *Tails(input_).begin();
  const std::size_t end = tail.localityEnd;
  const WordRange city = input_.LastPart(end);
  if (tail.place.Empty() || city.Empty()) return;
  if (!input_.HasDigit(city)) SearchBeforeCity({city.first, tail.place}, Stage::Alike);
  const std::string_view known = CityAtEnd(input_.Text(0, end), tail.place.state);
  if (known.empty() || decision_.HasCandidates()) return;
  const auto words = static_cast<std::size_t>(std::count(known.begin(), known.end(), ' ')) + 1;
  SearchBeforeCity({end - words, tail.place}, Stage::AsWritten);
}

/** @param last  Stage::AsWritten leaves typing errors as they are */
void Matcher::SearchBeforeCity(const Tail& tail, Stage last)
{
  const std::size_t end = tail.localityEnd;
  const std::size_t first = end > kLongestLikeName ? end - kLongestLikeName : 0;
  const Seen seen = seen_;
  quiet_ = true;
  repaired_ = Departure::SurplusPlace;
  seen_ = {};
  for (std::size_t start = first; start < end; ++start) ReadLocality(tail, start, &Matcher::SearchStreets);
  stage_ = last;
  if (last == Stage::Alike && seen_.locality && !decision_.HasCandidates())
    for (std::size_t start = first; start < end; ++start) ReadLocalityLeniently(tail, start);
  stage_ = Stage::AsWritten;
  seen_ = seen;
}

/** "Dubbo NSW 2830, 112 Smiths Road", where nothing is wrong but the order. */
void Matcher::SearchLocalityFirst(std::string_view text)
{
  const Seen seen = seen_;
  if (seen.number || PutLocalityLast(input_, repairBuffer_.repaired).empty()) return;
  SearchMeant(repairBuffer_.repaired.View(), Departure::LocalityFirst, Stage::AsWritten);
  if (!decision_.HasCandidates()) EndMeant(text, seen);
}

/** Guesses at what the text was before signs were mistaken or something was put in brackets, each by itself. */
void Matcher::SearchMisread(std::string_view text)
{
  const Seen seen = seen_;
  if (seen.number) return;
  RepairedText& meant = repairBuffer_.repaired;
  RepairedText& other = repairBuffer_.withoutLinks;
  Departures departures;
  if (!PutRight(input_, 'I', meant, departures).empty()) {
    PutRight(input_, 'L', other, departures);
    const Stage last = departures.Has(Departure::LookAlike) ? Stage::AsWritten : Stage::Alike;
    SearchMeant(meant.View(), departures, last);
    // The digit 1 may have been either letter, so one of them alone proves nothing.
    const bool isFirst = decision_.HasCandidates();
    if (other.View() != meant.View()) SearchMeant(other.View(), departures, last);
    if (decision_.HasCandidates()) {
      if (isFirst) input_.Read(meant.View());
      return;
    }
    EndMeant(text, seen);
  }
  std::string_view inner;
  if (LeaveBracketsOut(text, meant, inner).empty()) return;
  if (IsLeftOut(inner)) SearchMeant(meant.View(), Departure::Noise, Stage::AsWritten);
  if (!decision_.HasCandidates()) EndMeant(text, seen);
}

void Matcher::EndMeant(std::string_view text, const Seen& seen)
{
  input_.Read(text);  // what was noted of it are views
  seen_ = seen;
  quiet_ = false;
  repaired_ = {};
}

void Matcher::SearchMeant(std::string_view meant, const Departures& departures, Stage last)
{
  quiet_ = true;
  repaired_ = departures;
  seen_ = {};
  if (input_.Read(meant) != InputFault::None) return;
  ForEachPlace(&Matcher::SearchStreets);
  if (last == Stage::Alike) SearchLeniently();
}

/** Whether what was in brackets is no part of the address: neither unit nor level, state, postcode or locality. */
bool Matcher::IsLeftOut(std::string_view inner)
{
  if (input_.Read(inner) != InputFault::None || input_.Count() == 0) return false;
  const WordRange words{0, input_.Count()};
  const auto isUnit = [&](Preference preference) {
    for (std::size_t end = 1; end <= words.last; ++end) {
      if (ReadOccupancyBefore(input_, 0, end, preference).count > 0) return true;
      if (ReadDesignator(input_, 0, end, preference).count == end) return true;  // "Unit Two"
      if (input_[end - 1].text.size() == 1) return true;
    }
    return false;
  };
  return !isUnit(Preference::Units) && !isUnit(Preference::Levels) &&
         ReadPlaceBefore(input_, 0, words.last, {}).count == 0 && engine_.LocalityNames().Find(input_, words).Empty();
}

}  // namespace arf
