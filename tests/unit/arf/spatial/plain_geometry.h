/** The slow and obvious twins of distances and polygons. */
#ifndef QXPAF_TESTS_UNIT_ARF_SPATIAL_PLAIN_GEOMETRY_H
#define QXPAF_TESTS_UNIT_ARF_SPATIAL_PLAIN_GEOMETRY_H

#include <cmath>
#include <cstdint>
#include <numbers>
#include <utility>
#include <vector>

#include "arf/spatial/geo.h"

namespace arf_test {

/** Metres along the great circle, from the angle between the two places' unit vectors. */
inline double PlainMetres(arf::GeoPoint a, arf::GeoPoint b)
{
  const auto vector = [](arf::GeoPoint p, long double out[3]) {
    const long double radians = std::numbers::pi_v<long double> / 180 / 1'000'000;
    const long double latitude = p.latitude * radians, longitude = p.longitude * radians;
    out[0] = std::cos(latitude) * std::cos(longitude);
    out[1] = std::cos(latitude) * std::sin(longitude);
    out[2] = std::sin(latitude);
  };
  long double u[3], v[3];
  vector(a, u);
  vector(b, v);
  const long double cross[3] = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
  const long double sine = std::sqrt(cross[0] * cross[0] + cross[1] * cross[1] + cross[2] * cross[2]);
  const long double cosine = u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
  return static_cast<double>(std::atan2(sine, cosine) * 6'371'000.0L);
}

using Ring = std::vector<arf::GeoPoint>;

/** Whether a place is on a line of the rings, or has an odd number of their lines to the west of it. */
inline bool PlainHolds(const std::vector<Ring>& rings, arf::GeoPoint place)
{
  const std::int64_t x = place.longitude, y = place.latitude;
  bool isInside = false;
  for (const Ring& ring : rings) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const arf::GeoPoint& from = ring[i];
      const arf::GeoPoint& to = ring[(i + 1) % ring.size()];
      const std::int64_t x1 = from.longitude, y1 = from.latitude, x2 = to.longitude, y2 = to.latitude;
      const std::int64_t turn = (x2 - x1) * (y - y1) - (x - x1) * (y2 - y1);
      const bool isBetween = (x - x1) * (x - x2) <= 0 && (y - y1) * (y - y2) <= 0;
      if (turn == 0 && isBetween) return true;
      if ((y1 > y) == (y2 > y)) continue;
      // West of the place is what turns the one way going up, the other way going down.
      if ((y2 > y1) == (turn < 0)) isInside = !isInside;
    }
  }
  return isInside;
}

}  // namespace arf_test

#endif
