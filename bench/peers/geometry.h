/** Plain geometry for peers that bring none. */
#ifndef QXPAF_BENCH_PEERS_GEOMETRY_H
#define QXPAF_BENCH_PEERS_GEOMETRY_H

#include <cmath>
#include <numbers>
#include <vector>

#include "peer.h"

namespace peers {

inline double CosineOfDegrees(double degrees)
{
  return std::cos(degrees * std::numbers::pi / 180);
}

/** On a plane that touches the earth at the first place: right for places that are near each other. */
inline double MetresBetween(Place a, Place b)
{
  constexpr double kDegreeMetres = 111'194.93;
  return kDegreeMetres * std::hypot(a.latitude - b.latitude, (a.longitude - b.longitude) * CosineOfDegrees(a.latitude));
}

/** By the even-odd rule; the last corner joins the first. */
inline bool IsWithin(Place place, const std::vector<Place>& corners)
{
  bool isWithin = false;
  for (std::size_t i = 0, before = corners.size() - 1; i < corners.size(); before = i++) {
    const Place a = corners[i];
    const Place b = corners[before];
    if ((a.latitude > place.latitude) == (b.latitude > place.latitude)) continue;
    const double crossing =
        a.longitude + (b.longitude - a.longitude) * (place.latitude - a.latitude) / (b.latitude - a.latitude);
    if (place.longitude < crossing) isWithin = !isWithin;
  }
  return isWithin;
}

}  // namespace peers

#endif
