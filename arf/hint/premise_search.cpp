#include "arf/hint/premise_search.h"

#include "arf/match/occupancy_words.h"
#include "arf/match/point_search.h"

namespace arf {
namespace {

constexpr std::string_view kUsualUnit = "UNIT";

NumberFit FitOf(const Premise& premise, const Point& point)
{
  const bool isSame = point.numberFirst == premise.numberFirst;
  const bool sameSuffix = point.numberFirstSuffix == premise.numberFirstSuffix;
  if (premise.numberLast != 0) {
    const bool sameEnd = point.numberLast == premise.numberLast && point.numberLastSuffix == premise.numberLastSuffix;
    return isSame && sameSuffix && sameEnd ? NumberFit::Same : NumberFit::None;
  }
  if (isSame && sameSuffix) return point.numberLast == 0 ? NumberFit::Same : NumberFit::RangeStart;
  if (!premise.numberFirstSuffix.empty()) return NumberFit::None;
  if (isSame) return NumberFit::Suffix;
  return point.numberFirst < premise.numberFirst && premise.numberFirst <= point.numberLast ? NumberFit::InRange
                                                                                            : NumberFit::None;
}

std::string_view ShownUnitType(const Point& point)
{
  return point.unitType.empty() && !point.unitNumber.empty() ? kUsualUnit : point.unitType;
}

class PremiseComparison
{
 public:
  PremiseComparison(const TypedText& typed, const Premise& premise)
      : premise_(premise), building_(KeyBuffer(typed.Text(premise.building)))
  {
  }

  /** Whether some addresses of a number may fit and others not. */
  bool Divides() const { return premise_.unit.Written() || premise_.level.Written() || !premise_.building.Empty(); }

  bool Fits(const Point& point) const
  {
    return FitsUnit(point) && FitsLevel(point) && FitsLot(point) && FitsBuilding(point);
  }

 private:
  bool FitsUnit(const Point& point) const
  {
    const Occupancy& unit = premise_.unit;
    if (!unit.Written()) return true;
    if (!SameIdentifier(unit.number.View(), point.unitNumber)) return false;
    if (unit.number.Empty()) return unit.type == point.unitType;
    return unit.type == point.unitType || Interchangeable(unit.type.empty() ? kUsualUnit : unit.type, point.unitType);
  }

  bool FitsLevel(const Point& point) const
  {
    const Occupancy& level = premise_.level;
    if (!level.Written()) return true;
    return SameIdentifier(level.number.View(), point.levelNumber) &&
           (level.type == point.levelType || SameLevelType(level.type, point.levelType));
  }

  bool FitsLot(const Point& point) const
  {
    const bool mayLack = premise_.HasNumber() && point.lot.empty();
    return premise_.lot.Empty() || mayLack || SameIdentifier(premise_.lot.View(), point.lot);
  }

  bool FitsBuilding(const Point& point) const
  {
    return premise_.building.Empty() || KeyBuffer(point.building).View().starts_with(building_.View());
  }

  const Premise& premise_;
  KeyBuffer building_;
};

}  // namespace

bool SameNumber(const Point& a, const Point& b)
{
  return a.numberFirst != 0 && a.numberFirst == b.numberFirst && a.numberPrefix == b.numberPrefix &&
         a.numberFirstSuffix == b.numberFirstSuffix && a.numberLast == b.numberLast &&
         a.numberLastSuffix == b.numberLastSuffix;
}

bool ReadsTheSame(const Point& a, const Point& b)
{
  const bool sameNumber = SameNumber(a, b) || (a.numberFirst == 0 && b.numberFirst == 0 && a.lot == b.lot);
  return sameNumber && a.unitNumber == b.unitNumber && ShownUnitType(a) == ShownUnitType(b) &&
         a.levelNumber == b.levelNumber && a.levelType == b.levelType && a.building == b.building;
}

bool BelongsTo(const Point& point, const Point& before)
{
  return SameNumber(point, before) || ReadsTheSame(point, before);
}

void AddPoint(PremiseHit& hit, const Point& point, const Point* before)
{
  if (!before) hit.first = point.ordinal;
  hit.points = point.ordinal - hit.first + 1;
  if (before && ReadsTheSame(point, *before)) return;
  ++hit.count;
  if (IsInside(point)) return;
  ++hit.wholes;
  hit.lastWhole = point.ordinal;
}

PremiseHits SearchPremise(const Database& database, const TypedText& typed, const Street& street,
                          const Premise& premise, std::uint32_t most)
{
  PremiseHits found;
  const PremiseComparison comparison(typed, premise);
  PointCursor cursor = database.PointsNumbered(street, premise.numberFirst);
  Point before;
  bool continues = false;  // the last hit took `before`
  for (Point point; found.visited < most && cursor.Next(point); ++found.visited) {
    const NumberFit fit = premise.HasNumber() ? FitOf(premise, point) : NumberFit::Same;
    if (fit > found.fit || fit == NumberFit::None || !comparison.Fits(point)) continue;
    if (fit < found.fit) {
      found.fit = fit;
      found.count = 0;
      continues = false;
    }
    const bool isSame = continues && (comparison.Divides() ? ReadsTheSame(point, before) : BelongsTo(point, before));
    if (!isSame && found.count == PremiseHits::kMax) break;
    if (!isSame) found.hits[found.count++] = {};
    AddPoint(found.hits[found.count - 1], point, isSame ? &before : nullptr);
    before = point;
    continues = true;
  }
  return found;
}

}  // namespace arf
