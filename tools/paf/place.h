/** Places as users write them. */
#ifndef PAF_TOOL_PLACE_H
#define PAF_TOOL_PLACE_H

#include <string>
#include <vector>

namespace tool {

/** Latitude and longitude in degrees, and as they were written. */
struct GeoPlace
{
  double latitude = 0;
  double longitude = 0;
  std::string latitudeText;
  std::string longitudeText;

  double MetresTo(double otherLatitude, double otherLongitude) const;
};

/** Reads "LAT,LON", or the two in two texts; throws Failure when that is not what stands there. */
GeoPlace ParsePlace(const std::vector<std::string>& texts);

/** All of a file, or of standard input when the path is "-"; throws Failure when it cannot be read. A UTF-8
    byte-order mark at the beginning is left out. */
std::string ReadFile(const std::string& path);

}  // namespace tool

#endif
