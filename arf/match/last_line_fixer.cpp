#include "arf/match/last_line_fixer.h"

#include <algorithm>

#include "arf/match/canonical_words.h"
#include "arf/match/locality_wordings.h"
#include "arf/match/one_typo.h"
#include "arf/match/penalties.h"

namespace arf {
namespace {

constexpr std::size_t kLongestName = 8;  // words
constexpr std::size_t kPostcodeDigits = 4;
constexpr std::size_t kShortestMistyped = 4;  // letters; shorter names are too close to each other

/** A name with a typing error is preferred to a name with another state or postcode. */
constexpr Departures kMistyped = Departure::LocalityTypo;
constexpr Departures kWrongPlace = Departure::PostcodeDiffers;
static_assert(kMistyped.Sum() < kWrongPlace.Sum());

/** What replaces something that was written. */
constexpr Departure kReplacing[] = {Departure::LocalityTypo, Departure::PostcodeDiffers, Departure::LocalityOrder,
                                    Departure::LocalityPart};

}  // namespace

LastLineAnswer LastLineFixer::Fix(std::string_view text)
{
  candidates_ = {};
  failure_ = {};
  reading_ = {};
  if (input_.Read(text) != InputFault::None)
    failure_.fault = Fault::TooLong;
  else
    Collect();
  return Answer();
}

/** Every way to cut place words off both ends; those that cut most first. */
void LastLineFixer::Collect()
{
  const Tails tails(input_);
  Line barest{{0, tails.begin()->localityEnd}, tails.begin()->place};
  for (const Tail& tail : tails) {
    Line line{{0, tail.localityEnd}, tail.place};
    for (;;) {
      CollectFrom(line);
      const PlaceWords words = ReadPlaceAfter(input_, line.name.first, line.name.last, line.place);
      if (words.count == 0) break;
      line.name.first += words.count;
      line.place.Merge(words.place);
      if (&tail == tails.begin()) barest = line;
    }
  }
  reading_.place = barest.place;
  if (reading_.locality.Empty()) reading_.locality = barest.name;
  if (candidates_.Empty()) CollectOtherWordings(barest);
  if (candidates_.Empty()) CollectTypos(barest);
  if (!candidates_.Empty() || failure_.fault != Fault::None) return;
  const bool something = !barest.place.Empty();
  failure_.fault = something ? Fault::LocalityUnknown : Fault::NothingRecognised;
  // Digits in front that are no postcode as they stand are more likely a house's number.
  const bool isNumbered = input_.Count() > 0 && input_[0].isNumber && input_[0].text.size() < kPostcodeDigits;
  const Tail& tail = *tails.begin();
  failure_.written.Append(isNumbered ? input_.Text(0, tail.localityEnd) : input_.Text(barest.name));
  failure_.writtenPlace = isNumbered ? tail.place.Text() : barest.place.Text();
}

void LastLineFixer::CollectFrom(const Line& line)
{
  if (line.name.Empty())
    CollectPostcode(line);
  else if (line.name.last - line.name.first <= kLongestName)
    CollectName(line);
}

void LastLineFixer::CollectName(const Line& line)
{
  CollectHits(line, engine_.LocalityNames().Find(input_, line.name), {});
}

/** "East Kew" for "KEW EAST". */
void LastLineFixer::CollectOtherWordings(const Line& line)
{
  for (const LocalityWording& wording : LocalityWordings(input_, line.name)) {
    CollectHits(line, engine_.LocalityNames().Find(wording.name.View()), wording.departure);
    if (wording.departure == Departure::LocalityPart && !candidates_.Empty()) return;  // the likeliest is the first
  }
}

void LastLineFixer::CollectHits(const Line& line, const NameHits& hits, const Departures& departures)
{
  for (const NameHit& hit : hits)
    for (const std::uint32_t locality : data_.LocalitiesNamed(hit.name))
      Add(line, locality, departures + LocalityDepartures(hit.fit));
}

/** Nothing but a postcode, or a postcode and a state. */
void LastLineFixer::CollectPostcode(const Line& line)
{
  if (line.place.postcode.Empty()) return;
  for (const std::uint32_t locality : data_.LocalitiesOfPostcode(line.place.postcode.View()))
    if (line.place.StateFits(data_.LocalityAt(locality))) Add(line, locality, {});
}

/** A locality whose name fits. Name and one of state and postcode outvote the other. */
void LastLineFixer::Add(const Line& line, std::uint32_t index, const Departures& departures)
{
  const Locality locality = data_.LocalityAt(index);
  const bool stateFits = line.place.StateFits(locality);
  const bool postcodeFits = line.place.PostcodeFits(locality);
  const bool outvoted = (stateFits && !line.place.state.empty()) || (postcodeFits && !line.place.postcode.Empty());
  if ((stateFits && postcodeFits) || (outvoted && !departures.Has(Departure::LocalityTypo))) {
    candidates_.Add(index, stateFits && postcodeFits ? departures : departures + kWrongPlace);
    reading_.locality = line.name;
    return;
  }
  if (failure_.fault == Fault::PlaceContradicts) return;
  failure_.fault = Fault::PlaceContradicts;
  failure_.locality = index;
  failure_.writtenPlace = line.place.Text();
}

void LastLineFixer::CollectTypos(const Line& line)
{
  if (line.name.Empty()) return;
  const CanonicalName written(input_.Text(line.name));
  if (written.View().size() < kShortestMistyped || input_.HasDigit(line.name)) return;
  if (!line.place.postcode.Empty()) {
    for (const std::uint32_t locality : data_.LocalitiesOfPostcode(line.place.postcode.View()))
      CollectTypo(line, written.View(), data_.LocalityNameIndex(locality));
    return;
  }
  for (std::uint32_t name = 0; name < data_.LocalityNameCount(); ++name) CollectTypo(line, written.View(), name);
}

void LastLineFixer::CollectTypo(const Line& line, std::string_view written, std::uint32_t name)
{
  constexpr std::size_t kMostSpaces = kLongestName;
  const std::string_view key = data_.LocalityName(name);
  if (key.size() + 1 < written.size() || key.size() > written.size() + 1 + kMostSpaces) return;
  if (!IsOneTypoApart(CanonicalName(key).View(), written)) return;
  for (const std::uint32_t locality : data_.LocalitiesNamed(name)) Add(line, locality, kMistyped);
}

LastLineAnswer LastLineFixer::Answer()
{
  if (candidates_.count == 1) {
    failure_ = {};
    const bool changed = std::any_of(std::begin(kReplacing), std::end(kReplacing),
                                     [&](Departure kind) { return candidates_.departures.Has(kind); });
    return {Verdict::Found, candidates_.ordinals[0], changed};
  }
  if (candidates_.count > 1) {
    failure_ = {};
    failure_.fault = Fault::SeveralLocalities;
    failure_.points = candidates_;
  }
  return {VerdictOf(failure_.fault), 0, false};
}

}  // namespace arf
