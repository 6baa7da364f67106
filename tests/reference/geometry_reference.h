// Distance and intersection as plain formulas, to compare the library with. It shares no code with the library.
#ifndef QXPAF_TESTS_REFERENCE_GEOMETRY_REFERENCE_H
#define QXPAF_TESTS_REFERENCE_GEOMETRY_REFERENCE_H

#include <cmath>

namespace reference {

inline double LatLongDist(double lat1, double lon1, double lat2, double lon2)
{
  if (lat1 == lat2 && lon1 == lon2) return 0.0;
  const double f = 0.017453292519943295;
  const double a1 = lat1 * f;
  const double o1 = lon1 * f;
  const double a2 = lat2 * f;
  const double o2 = lon2 * f;
  const double x = std::sin(a1) * std::sin(a2) + std::cos(a1) * std::cos(a2) * std::cos(o2 - o1);
  if (x >= 1.0) return 0.0;
  if (x < -1.0) return 20015.086796020572;
  return std::acos(x) * 6371.0;
}

struct Crossing
{
  bool found;
  double x, y;
  bool onFirst;
};

// What is not found leaves x, y and onFirst as given.
inline Crossing IntersectionOfLines(const double (&p)[8], double tolerance, double minAngle, Crossing crossing)
{
  const double x1 = p[0], y1 = p[1], x2 = p[2], y2 = p[3], x3 = p[4], y3 = p[5], x4 = p[6], y4 = p[7];
  crossing.found = false;
  const bool vertical1 = std::abs(x2 - x1) <= tolerance;
  const bool vertical2 = std::abs(x4 - x3) <= tolerance;
  if (minAngle != 0) {
    const double a1 = std::atan2(y2 - y1, x2 - x1);
    const double a2 = std::atan2(y4 - y3, x4 - x3);
    double d = std::abs(a1 - a2) / 0.017453292519943295;
    if (d > 180) d = 360 - d;
    if (d > 90) d = 180 - d;
    if (d < minAngle) return crossing;
  }
  double m1 = 0, c1 = 0, m2 = 0, c2 = 0;
  if (!vertical1) {
    m1 = (y2 - y1) / (x2 - x1);
    c1 = y1 - m1 * x1;
  }
  if (!vertical2) {
    m2 = (y4 - y3) / (x4 - x3);
    c2 = y3 - m2 * x3;
  }
  if (vertical1) {
    if (vertical2 || std::abs(y2 - y1) <= tolerance) return crossing;
    crossing.x = x1;
    crossing.y = x1 * m2 + c2;
  } else if (vertical2) {
    if (std::abs(y4 - y3) <= tolerance) return crossing;
    crossing.x = x3;
    crossing.y = x3 * m1 + c1;
  } else {
    if (m1 == m2) return crossing;
    crossing.x = (c2 - c1) / (m1 - m2);
    crossing.y = crossing.x * m1 + c1;
  }
  const double v = x1 == x2 ? crossing.y : crossing.x;
  const double a = x1 == x2 ? y1 : x1;
  const double b = x1 == x2 ? y2 : x2;
  crossing.onFirst = (a <= v && v <= b) || (b <= v && v <= a);
  crossing.found = true;
  return crossing;
}

}  // namespace reference

#endif
