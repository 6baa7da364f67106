// Great-circle distance.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "qxpaf/text/geometry.h"

namespace qxpaf {
namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kEarthRadius = 6371.0;                    // km
constexpr double kHalfCircumference = 20015.086796020572;  // km
constexpr int kMaxDecimals = 6;

// Equal points have a cosine within some roundings of 1, so that points with a smaller one need not be compared. About
// ten metres.
constexpr double kPossiblyEqual = 1.0 - 1e-12;

struct Point
{
  double latitude;
  double longitude;
};

// False when no number starts at p; otherwise p moves behind it.
bool TakeNumber(const char*& p, double& value)
{
  char* end;
  value = std::strtod(p, &end);
  const bool taken = end != p;
  p = end;
  return taken;
}

// Latitude, one character of any kind, longitude; what follows is ignored.
bool ReadPoint(const char* p, Point& point)
{
  if (!TakeNumber(p, point.latitude) || *p == '\0') return false;
  ++p;
  return TakeNumber(p, point.longitude);
}

}  // namespace
}  // namespace qxpaf

double LatLongDist(double lat1, double lon1, double lat2, double lon2)
{
  const double a = lat1 * qxpaf::kRadiansPerDegree;
  const double b = lat2 * qxpaf::kRadiansPerDegree;
  const double turn = lon2 * qxpaf::kRadiansPerDegree - lon1 * qxpaf::kRadiansPerDegree;
  const double x = std::sin(a) * std::sin(b) + std::cos(a) * std::cos(b) * std::cos(turn);
  if (!(x >= -1.0 && x < qxpaf::kPossiblyEqual)) [[unlikely]] {
    // Infinite points may be equal, too.
    if ((lat1 == lat2 && lon1 == lon2) || x >= 1.0) return 0.0;
    if (x < -1.0) return qxpaf::kHalfCircumference;
  }
  return std::acos(x) * qxpaf::kEarthRadius;
}

void LatLongDist(char* out, const char* point1, const char* point2, int decimals, unsigned long outSize)
{
  out[0] = '\0';
  qxpaf::Point a;
  qxpaf::Point b;
  if (!qxpaf::ReadPoint(point1, a) || !qxpaf::ReadPoint(point2, b)) return;
  const double distance = LatLongDist(a.latitude, a.longitude, b.latitude, b.longitude);
  char text[32];  // five digits at most before the point
  std::snprintf(text, sizeof text, "%.*f", std::min(decimals, qxpaf::kMaxDecimals), distance);
  const std::size_t length = strnlen(text, outSize);
  std::memcpy(out, text, length);
  out[length] = '\0';
  out[outSize] = '\0';
}
