#include "arf/search/place_statistics.h"

#include <algorithm>

namespace arf {

void PlaceStatistics::Clear()
{
  seenStreets_.resize(database_.StreetCount());
  seenLocalities_.resize(database_.LocalityCount());
  std::fill(seenStreets_.begin(), seenStreets_.end(), false);
  std::fill(seenLocalities_.begin(), seenLocalities_.end(), false);
  street_ = {};
  addresses_ = 0;
  streets_ = 0;
  localities_ = 0;
}

void PlaceStatistics::AddPoint(std::uint32_t ordinal)
{
  ++addresses_;
  const bool isSameStreet = ordinal >= street_.points.first && ordinal - street_.points.first < street_.points.count;
  if (isSameStreet) return;
  street_ = database_.StreetAt(database_.StreetOf(ordinal));
  Enter(street_);
}

void PlaceStatistics::AddStreet(std::uint32_t index)
{
  const Street street = database_.StreetAt(index);
  const std::uint32_t addresses = street.points.count - database_.AddressAliasCount(street.points);
  addresses_ += addresses;
  if (addresses > 0) Enter(street);
}

void PlaceStatistics::Enter(const Street& street)
{
  if (street.index >= seenStreets_.size() || seenStreets_[street.index]) return;
  seenStreets_[street.index] = true;
  streets_ += !street.isPostal && !street.name.empty();
  if (street.locality >= seenLocalities_.size() || seenLocalities_[street.locality]) return;
  seenLocalities_[street.locality] = true;
  ++localities_;
}

}  // namespace arf
