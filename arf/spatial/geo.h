/** Places on the globe in millionths of a degree, and distances between them. */
#ifndef QXPAF_ARF_SPATIAL_GEO_H
#define QXPAF_ARF_SPATIAL_GEO_H

#include <cstdint>

namespace arf {

struct GeoPoint
{
  std::int32_t latitude = 0;
  std::int32_t longitude = 0;
  bool operator==(const GeoPoint&) const = default;
};

/** A box in latitude and longitude; its edges belong to it. */
struct GeoBox
{
  std::int32_t south = 0, west = 0, north = 0, east = 0;
};

inline constexpr double kEarthRadiusMetres = 6'371'000.0;

/**
 * Degrees as millionths; false where they are not finite, or off the globe (latitudes beyond 90, longitudes beyond
 * 180).
 */
bool ToGeoPoint(double latitude, double longitude, GeoPoint& point);

/**
 * Distances from one place. They are compared by a key that grows with the distance along the great circle: the
 * haversine, the square of half the chord of a globe with radius 1. Keys are 0 to 1.
 */
class DistanceKey
{
 public:
  explicit DistanceKey(GeoPoint centre);

  double Of(GeoPoint point) const;
  /** No point of the box is nearer. */
  double LowerBound(const GeoBox& box) const;
  /** No point of the box is farther. */
  double UpperBound(const GeoBox& box) const;

  static constexpr double kEverywhere = 2;  ///< above every key

  /** The key of a distance; kEverywhere where it is half way round the globe or more. */
  static double OfMetres(double metres);
  static double ToMetres(double key);

  GeoPoint Centre() const { return centre_; }

 private:
  friend class LeafDistance;
  double Exact(double latitudeTurn, double longitudeTurn) const;
  /** The farthest that a latitude of the box is from the centre's, in radians. */
  double Reach(const GeoBox& box) const;

  GeoPoint centre_;
  double sin_;
  double cos_;
};

/** A lower bound of the key that is quick to get for many points of one box, and close where the box is small. */
class LeafDistance
{
 public:
  LeafDistance(const DistanceKey& key, const GeoBox& box);
  double LowerBound(GeoPoint point) const
  {
    const double north = static_cast<double>(point.latitude) - latitude_;
    const double east = static_cast<double>(point.longitude) - longitude_;
    return north * north * northScale_ + east * east * eastScale_;
  }

 private:
  double latitude_, longitude_;
  double northScale_ = 0, eastScale_ = 0;
};

}  // namespace arf

#endif
