#include "arf/au/enumeration.h"

namespace arf {

void Enumeration::Reset()
{
  localities_.clear();
  nextLocality_ = 0;
  streets_ = {};
  cursor_ = {};
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

void Enumeration::StartLocalities()
{
  nextLocality_ = 0;
  streets_ = {};
  cursor_ = {};
  started_ = true;
  Advance();
}

void Enumeration::Advance()
{
  for (;;) {
    atPoint_ = cursor_.Next(point_);
    if (atPoint_) return;
    while (streets_.count == 0) {
      if (nextLocality_ == localities_.size()) return;
      streets_ = database_.LocalityAt(localities_[nextLocality_++]).streets;
    }
    cursor_ = database_.Points(database_.StreetAt(streets_.first++));
    --streets_.count;
  }
}

}  // namespace arf
