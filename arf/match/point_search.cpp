#include "arf/match/point_search.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "arf/match/canonical_words.h"
#include "arf/match/occupancy_words.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::string_view kDefaultUnit = "UNIT";
constexpr std::string_view kLot = "LOT";

/** How an address fits: not at all, as a unit of what was asked for, as the building of the unit that was, or itself.
 */
struct Fit
{
  enum class Kind
  {
    None,
    Unit,
    Building,
    Match
  };
  Kind kind = Kind::None;
  Departures departures;
};
constexpr Fit kNoFit{};

std::string_view WithoutZeros(std::string_view text)
{
  while (text.size() > 1 && text.front() == '0' && IsDigit(text[1])) text.remove_prefix(1);
  return text;
}

std::string_view TakeWord(std::string_view& text)
{
  const std::string_view word = text.substr(0, text.find(' '));
  text.remove_prefix(std::min(word.size() + 1, text.size()));
  return word;
}

/** Whether two names are the same word for word, short forms of street types written out: "Flinders St Station". */
bool SameSpelledOut(std::string_view stored, std::string_view written)
{
  if (written.empty() || stored.front() != written.front()) return false;
  while (!stored.empty() && !written.empty()) {
    const std::string_view a = TakeWord(stored), b = TakeWord(written);
    if (CanonicalWord(a) != CanonicalWord(b) && a != SpelledOutType(b)) return false;
  }
  return stored.empty() && written.empty();
}

/** Compares one premise with address after address. */
class PremiseComparison
{
 public:
  PremiseComparison(const InputText& input, const Premise& premise, Rules rules)
      : premise_(premise),
        lenient_(rules == Rules::Lenient),
        buildingWords_(input.Text(premise.building)),
        building_(buildingWords_)
  {
  }

  bool HasNumber(const Point& point) const
  {
    return point.numberFirst == premise_.numberFirst && point.numberPrefix == premise_.numberPrefix &&
           point.numberFirstSuffix == premise_.numberFirstSuffix && point.numberLast == premise_.numberLast &&
           point.numberLastSuffix == premise_.numberLastSuffix;
  }

  /** How an address's number and lot depart from those written; nothing when they are others. */
  std::optional<Departures> CompareNumber(const Point& point) const
  {
    if (HasNumber(point)) return CompareLot(point);
    if (!lenient_ || !IsInside(point) || !premise_.lot.Empty()) return std::nullopt;
    Departures inside = Departure::InsideRange;
    const bool isEnd = premise_.numberFirst == point.numberFirst || premise_.numberFirst == point.numberLast;
    if (!isEnd) inside.Add(Departure::RangeMiddle);
    return inside;
  }

  Fit Compare(const Point& point, const std::optional<Departures>& number) const
  {
    if (!number) return kNoFit;
    Fit fit = CompareOccupancy(point);
    if (fit.kind == Fit::Kind::None) return fit;
    fit.departures.Add(*number);
    if (buildingWords_.empty() && !point.building.empty()) fit.departures.Add(Departure::UnwrittenBuilding);
    if (buildingWords_.empty() || HasBuilding(point)) return fit;
    const bool isOnlyEvidence = !premise_.HasNumber() && premise_.lot.Empty();
    if (isOnlyEvidence || premise_.buildingIsBinding) return kNoFit;
    fit.departures.Add(Departure::OtherBuilding);
    return fit;
  }

  bool HasBuilding(const Point& point) const
  {
    if (point.building.empty()) return false;
    const KeyBuffer stored(point.building);
    return CanonicalName(stored.View()).View() == building_.View() || SameSpelledOut(stored.View(), buildingWords_);
  }

 private:
  bool IsInside(const Point& point) const
  {
    const bool mayBe = premise_.HasNumber() && premise_.numberLast == 0 && premise_.numberPrefix.empty() &&
                       point.numberLast != 0 && point.numberFirst <= premise_.numberFirst &&
                       premise_.numberFirst <= point.numberLast;
    return mayBe && (premise_.numberFirstSuffix.empty() || HasSuffixInside(point));
  }

  /** Whether a number with a suffix is an end of the range, or between the ends of one like "19A-19C". */
  bool HasSuffixInside(const Point& point) const
  {
    const std::string_view suffix = premise_.numberFirstSuffix;
    const bool isFirst = premise_.numberFirst == point.numberFirst;
    const bool isLast = premise_.numberFirst == point.numberLast;
    if (isFirst && isLast) return point.numberFirstSuffix <= suffix && suffix <= point.numberLastSuffix;
    return (isFirst && suffix == point.numberFirstSuffix) || (isLast && suffix == point.numberLastSuffix);
  }

  std::optional<Departures> CompareLot(const Point& point) const
  {
    const std::string_view written = premise_.lot.View();
    if (written.empty() && point.lot.empty()) return Departures();
    if (written.empty() && premise_.HasNumber()) return Departure::UnwrittenLot;
    if (written.empty()) return std::nullopt;
    if (SameIdentifier(written, point.lot)) return Departures();
    if (point.unitType == kLot && SameIdentifier(written, point.unitNumber)) return Departures();
    if (lenient_ && premise_.HasNumber() && point.lot.empty()) return Departure::UnknownLot;
    return std::nullopt;
  }

  Fit CompareOccupancy(const Point& point) const
  {
    const bool isLot = point.unitType == kLot && !premise_.lot.Empty();
    const bool isUnit = !isLot && !(point.unitNumber.empty() && point.unitType.empty());
    const bool isLevel = !point.levelNumber.empty() || !point.levelType.empty();
    const Fit level = premise_.level.Written() ? CompareLevel(point, isLevel) : Fit{Fit::Kind::Match, {}};
    if (!isUnit && !isLevel && MayBeBuildingOnly()) return {Fit::Kind::Building, Departure::UnknownUnit};
    if (level.kind == Fit::Kind::None) return kNoFit;
    if (premise_.unit.Written()) return isUnit ? CompareUnit(point, level.departures) : kNoFit;
    if (isUnit || (isLevel && !premise_.level.Written())) return {Fit::Kind::Unit, {}};
    return {Fit::Kind::Match, level.departures};
  }

  /** Whether the building may be the answer for a unit or level that is not there. */
  bool MayBeBuildingOnly() const
  {
    return lenient_ && premise_.HasNumber() && !premise_.lenientOnly &&
           (premise_.unit.Written() || premise_.level.Written());
  }

  Fit CompareLevel(const Point& point, bool isLevel) const
  {
    const bool sameNumber = SameIdentifier(premise_.level.number.View(), point.levelNumber);
    const bool sameType = SameLevelType(premise_.level.type, point.levelType) ||
                          (point.levelType.empty() && !premise_.level.number.Empty());
    if (isLevel) return sameNumber && sameType ? Fit{Fit::Kind::Match, {}} : kNoFit;
    return lenient_ && premise_.unit.Written() ? Fit{Fit::Kind::Match, Departure::UnknownLevel} : kNoFit;
  }

  Fit CompareUnit(const Point& point, const Departures& departures) const
  {
    if (!SameIdentifier(premise_.unit.number.View(), point.unitNumber)) return kNoFit;
    Fit fit{Fit::Kind::Match, departures};
    const std::string_view written = premise_.unit.type;
    if (written.empty()) {
      const bool isUsual = Interchangeable(kDefaultUnit, point.unitType);
      if (!isUsual && !lenient_) return kNoFit;
      if (!isUsual) fit.departures.Add(Departure::UnusualUnit);
      if (isUsual && lenient_ && point.unitType != kDefaultUnit) fit.departures.Add(Departure::PreferredUnit);
    } else if (written != point.unitType) {
      if (premise_.unit.number.Empty() || !Interchangeable(written, point.unitType)) return kNoFit;
      fit.departures.Add(Departure::OtherUnitType);
    }
    const bool levelUnwritten = !premise_.level.Written() && !(point.levelNumber.empty() && point.levelType.empty());
    if (levelUnwritten) fit.departures.Add(Departure::UnwrittenLevel);
    return fit;
  }

  const Premise& premise_;
  bool lenient_;
  std::string_view buildingWords_;
  CanonicalName building_;
};

/** Whether two points have the same number and unit. */
bool SaySamePremise(const Point& a, const Point& b)
{
  const auto parts = [](const Point& p) {
    return std::tie(p.numberPrefix, p.numberFirst, p.numberFirstSuffix, p.numberLast, p.numberLastSuffix, p.unitType,
                    p.unitNumber, p.levelType, p.levelNumber);
  };
  return parts(a) == parts(b);
}

/** What one search collects, besides what it answers. */
struct Collection
{
  Collection(const Database& data, Rules searchRules) : database(data), rules(searchRules) {}

  const Database& database;
  Rules rules;
  PointSearch search;
  PointSet buildings;  ///< of a unit that is not there
  PointSet inside;     ///< found or units, their ranges hold the number
  PointSet insideUnits;

  void Take(const Point& point, Fit fit)
  {
    if (fit.kind == Fit::Kind::None) return;
    const std::uint32_t principal = database.PrincipalOf(point.ordinal);
    if (principal != kNoIndex && !TakeAlias(point, principal, fit)) return;
    const std::uint32_t ordinal = principal == kNoIndex ? point.ordinal : principal;
    const bool isInside = fit.departures.Has(Departure::InsideRange);
    if (fit.kind == Fit::Kind::Match) (isInside ? inside : search.found).Add(ordinal, fit.departures);
    if (fit.kind == Fit::Kind::Unit) (isInside ? insideUnits : search.units).Add(ordinal, fit.departures);
    if (fit.kind == Fit::Kind::Building && !isInside) buildings.Add(ordinal, fit.departures);
  }

  /** Whether another way to say an address may stand for it. */
  bool TakeAlias(const Point& alias, std::uint32_t principal, Fit& fit)
  {
    const bool isSame = SaySamePremise(alias, database.PointAt(principal));
    if (isSame || rules == Rules::Lenient) {
      fit.departures.Add(isSame ? Departure::AddressAlias : Departure::RenumberedAlias);
      return true;
    }
    if (fit.kind == Fit::Kind::Match) search.alias = alias.ordinal;
    return false;
  }
};

void Collect(PointCursor cursor, const PremiseComparison& comparison, Collection& collection)
{
  for (Point point; cursor.Next(point);) {
    ++collection.search.visited;
    const std::optional<Departures> number = comparison.CompareNumber(point);
    if (comparison.HasNumber(point) && (number || point.numberFirst != 0)) collection.search.numberExists = true;
    collection.Take(point, comparison.Compare(point, number));
  }
}

/** Without a number, a lot or a building's name can still say which address is meant. */
void CollectByLotOrBuilding(const Street& street, const PremiseComparison& comparison, const Premise& premise,
                            Collection& collection)
{
  collection.search.visited += street.points.count;
  PointCursor cursor = collection.database.PointsNamed(street);
  for (Point point; cursor.Next(point);) {
    const bool sameLot = !premise.lot.Empty() && SameIdentifier(premise.lot.View(), point.lot);
    if (!sameLot && !(premise.lot.Empty() && comparison.HasBuilding(point))) continue;
    collection.Take(point, comparison.Compare(point, Departures()));
  }
}

}  // namespace

void PointSet::Add(std::uint32_t ordinal, const Departures& withDepartures)
{
  if (withDepartures.Sum() > Sum()) return;
  if (withDepartures.Sum() < Sum()) {
    departures = withDepartures;
    count = 0;
  }
  const auto keptEnd = ordinals.begin() + std::min<std::ptrdiff_t>(count, kKept);
  if (std::find(ordinals.begin(), keptEnd, ordinal) != keptEnd) return;
  if (count < kKept) ordinals[count] = ordinal;
  ++count;
}

void PointSet::Add(const PointSet& other, const Departures& more)
{
  const Departures sum = other.departures + more;
  const std::size_t kept = std::min<std::size_t>(other.count, kKept);
  for (std::size_t i = 0; i < kept; ++i) Add(other.ordinals[i], sum);
  // What was not kept cannot be compared; it only makes the answer "several", which it is already.
  if (other.count > kept && sum.Sum() == Sum()) count = std::max(count, other.count);
}

PointSearch SearchPoints(const Database& database, const InputText& input, const Street& street, const Premise& premise,
                         Rules rules)
{
  Collection collection(database, rules);
  PointSearch& search = collection.search;
  const PremiseComparison comparison(input, premise, rules);
  Collect(database.PointsNumbered(street, premise.numberFirst), comparison, collection);
  if (!search.numberExists) {  // otherwise a range that holds the number too is another address
    search.found.Add(collection.inside, {});
    search.units.Add(collection.insideUnits, {});
  }
  const bool hasOtherEvidence = !premise.lot.Empty() || !premise.building.Empty();
  if (!premise.HasNumber() && search.found.Empty() && search.units.Empty() && hasOtherEvidence)
    CollectByLotOrBuilding(street, comparison, premise, collection);
  // Two guesses at once, that a number inside a range means it and that its only unit is meant, are one too many.
  const bool isOnlyUnit = search.units.count == 1 && !search.units.departures.Has(Departure::InsideRange);
  if (search.found.Empty() && isOnlyUnit && rules == Rules::Lenient)
    search.found.Add(search.units, Departure::SingleUnit);
  if (search.found.Empty() && search.units.Empty()) search.found.Add(collection.buildings, {});
  return search;
}

bool SameIdentifier(std::string_view a, std::string_view b)
{
  return WithoutZeros(a) == WithoutZeros(b);
}

}  // namespace arf
