#include "arf/match/point_search.h"

#include <algorithm>

#include "arf/match/canonical_words.h"
#include "arf/match/occupancy_words.h"
#include "arf/match/penalties.h"

namespace arf {
namespace {

constexpr std::string_view kDefaultUnit = "UNIT";
constexpr std::string_view kLot = "LOT";

/** How an address fits: not at all, as a unit of what was asked for, or with a penalty. */
struct Fit
{
  enum class Kind
  {
    None,
    Unit,
    Match
  };
  Kind kind = Kind::None;
  std::uint8_t penalty = 0;
};
constexpr Fit kNoFit{};

std::string_view WithoutZeros(std::string_view text)
{
  while (text.size() > 1 && text.front() == '0' && IsDigit(text[1])) text.remove_prefix(1);
  return text;
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

  /** The penalty of an address's number and lot, or PointSet::kNone. */
  std::uint8_t CompareNumber(const Point& point) const
  {
    const bool startsAlike = point.numberFirst == premise_.numberFirst && point.numberPrefix.empty() &&
                             point.numberFirstSuffix == premise_.numberFirstSuffix;
    const bool endsAlike =
        point.numberLast == premise_.numberLast && point.numberLastSuffix == premise_.numberLastSuffix;
    if (startsAlike && endsAlike) return CompareLot(point);
    return lenient_ && IsInside(point) && premise_.lot.Empty() ? kInsideRangePenalty : PointSet::kNone;
  }

  Fit Compare(const Point& point, std::uint8_t numberPenalty) const
  {
    if (numberPenalty == PointSet::kNone) return kNoFit;
    Fit fit = CompareOccupancy(point);
    if (fit.kind == Fit::Kind::None) return fit;
    fit.penalty = static_cast<std::uint8_t>(fit.penalty + numberPenalty);
    if (buildingWords_.empty() && !point.building.empty()) fit.penalty += kUnwrittenBuildingPenalty;
    if (buildingWords_.empty() || HasBuilding(point)) return fit;
    const bool isOnlyEvidence = !premise_.HasNumber() && premise_.lot.Empty();
    if (isOnlyEvidence || premise_.buildingIsBinding) return kNoFit;
    fit.penalty += kOtherBuildingPenalty;
    return fit;
  }

  bool HasBuilding(const Point& point) const
  {
    return !point.building.empty() && CanonicalName(KeyBuffer(point.building).View()).View() == building_.View();
  }

 private:
  bool IsInside(const Point& point) const
  {
    return premise_.HasNumber() && premise_.numberLast == 0 && premise_.numberFirstSuffix.empty() &&
           point.numberLast != 0 && point.numberFirst <= premise_.numberFirst &&
           premise_.numberFirst <= point.numberLast;
  }

  std::uint8_t CompareLot(const Point& point) const
  {
    const std::string_view written = premise_.lot.View();
    if (written.empty()) return point.lot.empty() ? 0 : premise_.HasNumber() ? kUnwrittenLotPenalty : PointSet::kNone;
    if (SameIdentifier(written, point.lot)) return 0;
    if (point.unitType == kLot && SameIdentifier(written, point.unitNumber)) return 0;
    return lenient_ && premise_.HasNumber() && point.lot.empty() ? kUnknownLotPenalty : PointSet::kNone;
  }

  Fit CompareOccupancy(const Point& point) const
  {
    const bool isLot = point.unitType == kLot && !premise_.lot.Empty();
    const bool isUnit = !isLot && !(point.unitNumber.empty() && point.unitType.empty());
    const bool isLevel = !point.levelNumber.empty() || !point.levelType.empty();
    const Fit level = premise_.level.Written() ? CompareLevel(point, isLevel) : Fit{Fit::Kind::Match, 0};
    if (level.kind == Fit::Kind::None) return kNoFit;
    if (premise_.unit.Written()) return isUnit ? CompareUnit(point, level.penalty) : kNoFit;
    if (isUnit || (isLevel && !premise_.level.Written())) return {Fit::Kind::Unit, 0};
    return {Fit::Kind::Match, level.penalty};
  }

  Fit CompareLevel(const Point& point, bool isLevel) const
  {
    const bool sameNumber = SameIdentifier(premise_.level.number.View(), point.levelNumber);
    const bool sameType = SameLevelType(premise_.level.type, point.levelType) ||
                          (point.levelType.empty() && !premise_.level.number.Empty());
    if (isLevel) return sameNumber && sameType ? Fit{Fit::Kind::Match, 0} : kNoFit;
    return lenient_ && premise_.unit.Written() ? Fit{Fit::Kind::Match, kUnknownLevelPenalty} : kNoFit;
  }

  Fit CompareUnit(const Point& point, std::uint8_t penalty) const
  {
    if (!SameIdentifier(premise_.unit.number.View(), point.unitNumber)) return kNoFit;
    Fit fit{Fit::Kind::Match, penalty};
    const std::string_view written = premise_.unit.type;
    if (written.empty()) {
      if (!Interchangeable(kDefaultUnit, point.unitType))
        fit.penalty += kUnusualUnitPenalty;
      else if (lenient_ && point.unitType != kDefaultUnit)
        fit.penalty += kPreferredUnitPenalty;
    } else if (written != point.unitType) {
      if (premise_.unit.number.Empty() || !Interchangeable(written, point.unitType)) return kNoFit;
      fit.penalty += kOtherUnitTypePenalty;
    }
    const bool levelUnwritten = !premise_.level.Written() && !(point.levelNumber.empty() && point.levelType.empty());
    if (levelUnwritten) fit.penalty += kUnwrittenLevelPenalty;
    return fit;
  }

  const Premise& premise_;
  bool lenient_;
  std::string_view buildingWords_;
  CanonicalName building_;
};

void Collect(PointCursor cursor, const PremiseComparison& comparison, PointSearch& search)
{
  for (Point point; cursor.Next(point);) {
    ++search.visited;
    const std::uint8_t number = comparison.CompareNumber(point);
    search.numberExists = search.numberExists || number < kInsideRangePenalty;
    const Fit fit = comparison.Compare(point, number);
    if (fit.kind == Fit::Kind::Match) search.found.Add(point.ordinal, fit.penalty);
    if (fit.kind == Fit::Kind::Unit) search.units.Add(point.ordinal, fit.penalty);
  }
}

/** Without a number, a lot or a building's name can still say which address is meant. */
void CollectByLotOrBuilding(PointCursor cursor, const PremiseComparison& comparison, const Premise& premise,
                            PointSearch& search)
{
  for (Point point; cursor.Next(point);) {
    ++search.visited;
    const bool sameLot = !premise.lot.Empty() && SameIdentifier(premise.lot.View(), point.lot);
    if (!sameLot && !(premise.lot.Empty() && comparison.HasBuilding(point))) continue;
    const Fit fit = comparison.Compare(point, 0);
    if (fit.kind == Fit::Kind::Match) search.found.Add(point.ordinal, fit.penalty);
    if (fit.kind == Fit::Kind::Unit) search.units.Add(point.ordinal, fit.penalty);
  }
}

}  // namespace

void PointSet::Add(std::uint32_t ordinal, std::uint8_t withPenalty)
{
  if (withPenalty > penalty) return;
  if (withPenalty < penalty) {
    penalty = withPenalty;
    count = 0;
  }
  const auto keptEnd = ordinals.begin() + std::min<std::ptrdiff_t>(count, kKept);
  if (std::find(ordinals.begin(), keptEnd, ordinal) != keptEnd) return;
  if (count < kKept) ordinals[count] = ordinal;
  ++count;
}

void PointSet::Add(const PointSet& other, std::uint8_t morePenalty)
{
  const auto sum =
      static_cast<std::uint8_t>(std::min<unsigned>(PointSet::kNone - 1U, other.penalty + 0U + morePenalty));
  const std::size_t kept = std::min<std::size_t>(other.count, kKept);
  for (std::size_t i = 0; i < kept; ++i) Add(other.ordinals[i], sum);
  // What was not kept cannot be compared; it only makes the answer "several", which it is already.
  if (other.count > kept && sum == penalty) count = std::max(count, other.count);
}

void PointSet::DropFrom(std::uint8_t limit)
{
  if (penalty >= limit) *this = {};
}

PointSearch SearchPoints(const Database& database, const InputText& input, const Street& street, const Premise& premise,
                         Rules rules)
{
  PointSearch search;
  const PremiseComparison comparison(input, premise, rules);
  Collect(database.PointsNumbered(street, premise.numberFirst), comparison, search);
  const bool hasOtherEvidence = !premise.lot.Empty() || !premise.building.Empty();
  if (!premise.HasNumber() && search.found.Empty() && search.units.Empty() && hasOtherEvidence)
    CollectByLotOrBuilding(database.Points(street), comparison, premise, search);
  if (search.numberExists) {  // a range that holds the number too is then another address
    search.found.DropFrom(kInsideRangePenalty);
    search.units.DropFrom(kInsideRangePenalty);
  }
  if (search.found.Empty() && search.units.count == 1 && rules == Rules::Lenient)
    search.found.Add(search.units, kSingleUnitPenalty);
  return search;
}

bool SameIdentifier(std::string_view a, std::string_view b)
{
  return WithoutZeros(a) == WithoutZeros(b);
}

}  // namespace arf
