#include "arf/au/enumeration.h"

namespace arf {

void Enumeration::Reset()
{
  localities_.clear();
  nextLocality_ = 0;
  streets_ = {};
  cursor_ = {};
  filter_ = nullptr;
  area_ = nullptr;
  atPoint_ = false;
  started_ = false;
}

void Enumeration::StartWith(std::uint32_t ordinal)
{
  Reset();
  point_ = database_.PointAt(ordinal);
  atPoint_ = true;
  started_ = true;
}

void Enumeration::StartLocalities(PointFilter* filter)
{
  nextLocality_ = 0;
  streets_ = {};
  cursor_ = {};
  filter_ = filter;
  started_ = true;
  Advance();
}

void Enumeration::StartArea(AreaSearch& area)
{
  Reset();
  area_ = &area;
  started_ = true;
  AdvanceArea();
}

void Enumeration::Advance()
{
  if (area_) return AdvanceArea();
  do {
    atPoint_ = FindNext();
  } while (atPoint_ && !Takes(point_.ordinal));
}

/** Other ways to say an address are passed over. */
bool Enumeration::Takes(std::uint32_t ordinal) const
{
  return !database_.IsAddressAlias(ordinal) && (!filter_ || filter_->Takes(ordinal));
}

/** The search is always one ahead of the point that is shown. */
void Enumeration::AdvanceArea()
{
  const FoundPoint* found = area_->Current();
  atPoint_ = found != nullptr;
  if (!found) return;
  point_ = database_.PointAt(found->ordinal);
  area_->Advance();
}

bool Enumeration::FindNext()
{
  while (!cursor_.Next(point_)) {
    while (streets_.count == 0) {
      if (nextLocality_ == localities_.size()) return false;
      streets_ = database_.LocalityStreets(localities_[nextLocality_++]);
    }
    cursor_ = database_.Points(database_.StreetAt(streets_.first++));
    --streets_.count;
  }
  return true;
}

}  // namespace arf
