#include "arf/match/decision.h"

#include <algorithm>

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
      return Verdict::WrongStreet;
    case Fault::NumberMissing:
    case Fault::NumberUnknown:
    case Fault::UnitUnknown:
      return Verdict::WrongNumber;
    case Fault::SeveralAddresses:
    case Fault::SeveralLocalities:
      return Verdict::Several;
    case Fault::TooLong:
      return Verdict::TooLong;
  }
  return Verdict::Nothing;
}

void Decision::Match(const PointSet& points, std::uint8_t penalty, const Reading& reading)
{
  const std::uint8_t before = std::min(best_.penalty, units_.penalty);
  best_.Add(points, penalty);
  if (best_.penalty < before) bestReading_ = reading;
}

void Decision::Units(const PointSet& units, std::uint8_t penalty, const Reading& reading)
{
  const std::uint8_t before = std::min(best_.penalty, units_.penalty);
  units_.Add(units, penalty);
  if (units_.penalty < before) bestReading_ = reading;
}

void Decision::Fail(const Failure& failure, const Reading& reading)
{
  failure_ = failure;
  failedReading_ = reading;
}

void Decision::Close(bool all)
{
  if (!HasCandidates() || (IsFound() && !all)) return;
  failure_ = {};
  failure_.fault = Fault::SeveralAddresses;
  failure_.points = best_.penalty <= units_.penalty ? best_ : units_;
  if (best_.penalty == units_.penalty) failure_.points.Add(units_, 0);
}

}  // namespace arf
