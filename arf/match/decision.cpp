#include "arf/match/decision.h"

#include <algorithm>
#include <utility>

namespace arf {

Verdict VerdictOf(Fault fault)
{
  switch (fault) {
    case Fault::None:
    case Fault::NothingRecognised:
      return Verdict::Nothing;
    case Fault::LocalityUnknown:
    case Fault::PlaceContradicts:
      return Verdict::WrongLocality;
    case Fault::StreetMissing:
    case Fault::StreetUnknown:
    case Fault::StreetTypeDiffers:
    case Fault::CornerStreetUnknown:
      return Verdict::WrongStreet;
    case Fault::NumberMissing:
    case Fault::NumberUnknown:
    case Fault::UnitUnknown:
    case Fault::AliasWritten:
    case Fault::CornerApart:
    case Fault::CornerWritten:
      return Verdict::WrongNumber;
    case Fault::SeveralAddresses:
    case Fault::SeveralLocalities:
      return Verdict::Several;
    case Fault::TooLong:
      return Verdict::TooLong;
  }
  return Verdict::Nothing;
}

namespace {

/** Whether two sets are one and the same address, which can be reached by several of its ways to be written. */
bool IsSameAddress(const PointSet& a, const PointSet& b)
{
  return a.count == 1 && b.count == 1 && a.ordinals[0] == b.ordinals[0];
}

}  // namespace

void Decision::Match(const PointSet& points, const Departures& departures, const Reading& reading, std::uint32_t street)
{
  Take(best_, points, departures, reading, street);
}

void Decision::Units(const PointSet& units, const Departures& departures, const Reading& reading, std::uint32_t street)
{
  Take(units_, units, departures, reading, street);
}

void Decision::Take(PointSet& set, const PointSet& points, const Departures& departures, const Reading& reading,
                    std::uint32_t street)
{
  const unsigned before = Sum();
  const unsigned sum = (points.departures + departures).Sum();
  const bool isRival = street != bestStreet_ && !IsSameAddress(points, Best());
  if (sum < before) {
    if (isRival) rival_ = Best();
    bestStreet_ = street;
    bestReading_ = reading;
  } else if (isRival) {
    rival_.Add(points, departures);
  }
  set.Add(points, departures);
}

void Decision::Fail(const Failure& failure, const Reading& reading)
{
  failure_ = failure;
  failedReading_ = reading;
}

bool Decision::IsDecided() const
{
  if (best_.Empty() || (!units_.Empty() && units_.Sum() <= best_.Sum())) return false;
  return !best_.departures.HasChange() || rival_.Empty() || rival_.Sum() >= best_.Sum() + kMargin;
}

void Decision::Close()
{
  failure_ = {};
  failure_.fault = Fault::SeveralAddresses;
  failure_.points = Best();
  const PointSet& other = &Best() == &best_ ? units_ : best_;
  for (const PointSet* more : {&other, &std::as_const(rival_)}) {
    PointSet alike = *more;  // as if it cost the same, so that it is listed too
    alike.departures = failure_.points.departures;
    const bool isClose = !more->Empty() && more->Sum() < Sum() + kMargin;
    if (isClose && (more->Sum() == Sum() || Best().departures.HasChange())) failure_.points.Add(alike, {});
  }
}

void Decision::DropCandidates()
{
  best_ = {};
  units_ = {};
  rival_ = {};
  bestStreet_ = kNoIndex;
}

}  // namespace arf
