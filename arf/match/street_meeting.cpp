#include "arf/match/street_meeting.h"

#include <algorithm>
#include <cmath>

namespace arf {
namespace {

constexpr double kMetresPerMillionth = 0.111195;  // of a degree of latitude

/** Numbered addresses of a street with their places; neighbours at one place, as units are, count once. */
class LocatedPoints
{
 public:
  LocatedPoints(const Database& data, const Street& street, std::uint32_t& visited)
      : cursor_(data.Points(street)), visited_(visited)
  {
  }

  bool Next(Point& point)
  {
    while (cursor_.Next(point)) {
      ++visited_;
      const bool isSame = point.latitude == latitude_ && point.longitude == longitude_;
      if (point.numberFirst == 0 || point.latitude == kNoCoordinate || isSame) continue;
      latitude_ = point.latitude;
      longitude_ = point.longitude;
      return true;
    }
    return false;
  }

 private:
  PointCursor cursor_;
  std::uint32_t& visited_;
  std::int32_t latitude_ = kNoCoordinate, longitude_ = kNoCoordinate;
};

double RadiansOf(std::int32_t millionths)
{
  constexpr double kPi = 3.14159265358979323846;
  return millionths * (kPi / 180e6);
}

}  // namespace

Meeting StreetMeetings::Find(const Database& data, const Street& first, const Street& second, std::uint32_t& visited)
{
  const bool isFirstKept = first.points.count < second.points.count;
  Collect(data, isFirstKept ? first : second, visited);
  Meeting meeting;
  double least = kNear * kNear;
  LocatedPoints points(data, isFirstKept ? second : first, visited);
  for (Point point; count_ > 0 && points.Next(point);) {
    meeting.isLocated = isWhole_;
    const double eastScale = kMetresPerMillionth * std::cos(RadiansOf(point.latitude));
    const double alongScale = isAlongLongitude_ ? eastScale : kMetresPerMillionth;
    const double acrossScale = isAlongLongitude_ ? kMetresPerMillionth : eastScale;
    const std::int32_t along = isAlongLongitude_ ? point.longitude : point.latitude;
    const std::int32_t across = isAlongLongitude_ ? point.latitude : point.longitude;
    const double reach = std::sqrt(least) / std::max(alongScale, 1e-9);
    const auto end = places_.begin() + static_cast<std::ptrdiff_t>(count_);
    auto place = std::lower_bound(places_.begin(), end, along - reach,
                                  [](const Place& p, double from) { return static_cast<double>(p.along) < from; });
    for (; place != end && place->along <= along + reach; ++place) {
      const double x = alongScale * (static_cast<double>(place->along) - along);
      const double y = acrossScale * (static_cast<double>(place->across) - across);
      if (x * x + y * y >= least) continue;
      least = x * x + y * y;
      meeting.first = isFirstKept ? place->ordinal : point.ordinal;
      meeting.second = isFirstKept ? point.ordinal : place->ordinal;
    }
  }
  meeting.metres = std::sqrt(least);
  return meeting;
}

/** Sorted along the coordinate in which the street reaches farther, so that few places are near any one. */
void StreetMeetings::Collect(const Database& data, const Street& street, std::uint32_t& visited)
{
  count_ = 0;
  std::int32_t south = INT32_MAX, west = INT32_MAX, north = INT32_MIN, east = INT32_MIN;
  LocatedPoints points(data, street, visited);
  isWhole_ = true;
  for (Point point; points.Next(point);) {
    isWhole_ = count_ < kMaxPlaces;
    if (!isWhole_) break;
    places_[count_++] = {point.latitude, point.longitude, point.ordinal};
    south = std::min(south, point.latitude);
    north = std::max(north, point.latitude);
    west = std::min(west, point.longitude);
    east = std::max(east, point.longitude);
  }
  isAlongLongitude_ = std::int64_t{east} - west > std::int64_t{north} - south;
  const auto end = places_.begin() + static_cast<std::ptrdiff_t>(count_);
  if (isAlongLongitude_)
    std::for_each(places_.begin(), end, [](Place& place) { std::swap(place.along, place.across); });
  std::sort(places_.begin(), end, [](const Place& a, const Place& b) {
    return a.along < b.along || (a.along == b.along && a.ordinal < b.ordinal);
  });
}

}  // namespace arf
