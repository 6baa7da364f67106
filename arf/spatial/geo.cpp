#include "arf/spatial/geo.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace arf {
namespace {

constexpr double kMicro = 1e6;
constexpr double kRadians = std::numbers::pi / 180.0 / kMicro;  ///< of a millionth of a degree
constexpr double kTurn = 360e6;

/** Bounds give way by this much, so that the roundings of keys cannot pass them. */
constexpr double kSlack = 1e-9;

/** Up to this angle a few terms of the series are as good as a double can be; some 120 km. */
constexpr double kSmall = 0.02;

/** sin²(x / 2) for small x. */
double SmallHaversine(double x)
{
  const double z = x * x / 4;
  return z * (1 - z * (1.0 / 3 - z * (2.0 / 45 - z / 315)));
}

double Haversine(double x)
{
  const double s = std::sin(x / 2);
  return s * s;
}

/** The way round from a longitude to the nearest of a box, in millionths of a degree. */
double LongitudeGap(const GeoBox& box, double longitude)
{
  const double toWest = box.west - longitude;
  const double toEast = longitude - box.east;
  if (toWest > 0) return std::max(0.0, std::min(toWest, longitude + kTurn - box.east));
  if (toEast > 0) return std::max(0.0, std::min(toEast, box.west + kTurn - longitude));
  return 0;
}

double Difference(std::int32_t a, std::int32_t b)
{
  return static_cast<double>(a) - static_cast<double>(b);
}

}  // namespace

bool ToGeoPoint(double latitude, double longitude, GeoPoint& point)
{
  if (!(std::abs(latitude) <= 90) || !(std::abs(longitude) <= 180)) return false;
  point.latitude = static_cast<std::int32_t>(std::lround(latitude * kMicro));
  point.longitude = static_cast<std::int32_t>(std::lround(longitude * kMicro));
  return true;
}

DistanceKey::DistanceKey(GeoPoint centre)
    : centre_(centre), sin_(std::sin(centre.latitude * kRadians)), cos_(std::cos(centre.latitude * kRadians))
{
}

double DistanceKey::Of(GeoPoint point) const
{
  const double north = Difference(point.latitude, centre_.latitude) * kRadians;
  const double east = Difference(point.longitude, centre_.longitude) * kRadians;
  if (std::abs(north) > kSmall || std::abs(east) > kSmall) return Exact(north, east);
  const double n = north * north;
  const double cosNorth = 1 - n / 2 * (1 - n / 12 * (1 - n / 30));
  const double sinNorth = north * (1 - n / 6 * (1 - n / 20 * (1 - n / 42)));
  const double cosPoint = cos_ * cosNorth - sin_ * sinNorth;
  return SmallHaversine(north) + cos_ * cosPoint * SmallHaversine(east);
}

double DistanceKey::Exact(double latitudeTurn, double longitudeTurn) const
{
  const double cosPoint = cos_ * std::cos(latitudeTurn) - sin_ * std::sin(latitudeTurn);
  return Haversine(latitudeTurn) + cos_ * cosPoint * Haversine(longitudeTurn);
}

double DistanceKey::Reach(const GeoBox& box) const
{
  const double north = std::abs(Difference(box.north, centre_.latitude));
  const double south = std::abs(Difference(box.south, centre_.latitude));
  return std::max(north, south) * kRadians;
}

double DistanceKey::LowerBound(const GeoBox& box) const
{
  const double outside =
      std::max({0.0, Difference(box.south, centre_.latitude), Difference(centre_.latitude, box.north)});
  const double north = outside * kRadians;
  const double east = LongitudeGap(box, centre_.longitude) * kRadians;
  const double reach = Reach(box);
  // cos(centre ± reach) is not below this; sin²(x / 2) is not below x² / 4 · (1 - x² / 12).
  const double cosBox = std::max(0.0, cos_ * (1 - reach * reach / 2) - std::abs(sin_) * reach);
  const double ofNorth = north * north * (1 - north * north / 12);
  const double ofEast = east * east * (1 - east * east / 12);
  return (ofNorth + cos_ * cosBox * ofEast) * (1 - kSlack) / 4;
}

double DistanceKey::UpperBound(const GeoBox& box) const
{
  const double reach = Reach(box);
  const double toWest = std::abs(Difference(box.west, centre_.longitude));
  const double toEast = std::abs(Difference(box.east, centre_.longitude));
  const double east = std::max(toWest, toEast) * kRadians;
  const double cosBox = std::min(1.0, cos_ + std::abs(sin_) * reach);
  return (reach * reach + cos_ * cosBox * east * east) * (1 + kSlack) / 4;
}

double DistanceKey::OfMetres(double metres)
{
  const double angle = metres / kEarthRadiusMetres;
  if (angle >= std::numbers::pi) return kEverywhere;
  return Haversine(angle) * (1 + 1e-12);
}

double DistanceKey::ToMetres(double key)
{
  return 2 * kEarthRadiusMetres * std::asin(std::sqrt(std::clamp(key, 0.0, 1.0)));
}

LeafDistance::LeafDistance(const DistanceKey& key, const GeoBox& box)
    : latitude_(key.centre_.latitude), longitude_(key.centre_.longitude)
{
  const double reach = key.Reach(box);
  const double toWest = std::abs(Difference(box.west, key.centre_.longitude));
  const double toEast = std::abs(Difference(box.east, key.centre_.longitude));
  const double east = std::max(toWest, toEast) * kRadians;
  // Where the way round the other side may be shorter, or the series is coarse, nothing is ruled out by longitude.
  const double scale = kRadians * kRadians / 4 * (1 - kSlack);
  northScale_ = scale * std::max(0.0, 1 - reach * reach / 12);
  if (east > 1) return;
  const double cosBox = std::max(0.0, key.cos_ * (1 - reach * reach / 2) - std::abs(key.sin_) * reach);
  eastScale_ = scale * key.cos_ * cosBox * (1 - east * east / 12);
}

}  // namespace arf
