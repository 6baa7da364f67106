// Intersection of straight lines.
#include <algorithm>
#include <cmath>

#include "qxpaf/text/geometry.h"

namespace qxpaf {
namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;

// The line through two points.
struct Line
{
  double x1;
  double y1;
  double x2;
  double y2;

  bool IsVertical(double tolerance) const { return std::fabs(x2 - x1) <= tolerance; }

  // Of a vertical line: whether its points are one.
  bool IsPoint(double tolerance) const { return std::fabs(y2 - y1) <= tolerance; }

  // The rest is for lines that are not vertical.
  double Slope() const { return (y2 - y1) / (x2 - x1); }
  double Intercept() const { return y1 - Slope() * x1; }
  double YAt(double x) const { return x * Slope() + Intercept(); }

  double Direction() const { return std::atan2(y2 - y1, x2 - x1); }
};

// In degrees, at most 90.
double AngleBetween(const Line& a, const Line& b)
{
  double angle = std::fabs(a.Direction() - b.Direction()) / kRadiansPerDegree;
  if (angle > 180.0) angle = 360.0 - angle;
  if (angle > 90.0) angle = 180.0 - angle;
  return angle;
}

bool IntersectVertical(const Line& vertical, const Line& other, double tolerance, double& x, double& y)
{
  if (vertical.IsPoint(tolerance)) return false;
  x = vertical.x1;
  y = other.YAt(x);
  return true;
}

bool Intersect(const Line& first, const Line& second, double tolerance, double& x, double& y)
{
  const bool firstVertical = first.IsVertical(tolerance);
  const bool secondVertical = second.IsVertical(tolerance);
  if (firstVertical && secondVertical) return false;
  if (firstVertical) return IntersectVertical(first, second, tolerance, x, y);
  if (secondVertical) return IntersectVertical(second, first, tolerance, x, y);
  if (first.Slope() == second.Slope()) return false;
  x = (second.Intercept() - first.Intercept()) / (first.Slope() - second.Slope());
  y = first.YAt(x);
  return true;
}

// Inclusive, a and b in either order.
bool IsBetween(double value, double a, double b)
{
  return (value >= a && value <= b) || (value >= b && value <= a);
}

}  // namespace
}  // namespace qxpaf

bool IntersectionOfLines(double x1, double y1, double x2, double y2, double x3, double y3, double x4, double y4,
                         double tolerance, double minAngle, double& x, double& y, bool* onFirstSegment)
{
  const qxpaf::Line first{x1, y1, x2, y2};
  const qxpaf::Line second{x3, y3, x4, y4};
  if (minAngle != 0.0 && qxpaf::AngleBetween(first, second) < minAngle) return false;
  if (!qxpaf::Intersect(first, second, tolerance, x, y)) return false;
  if (onFirstSegment != nullptr) *onFirstSegment = x1 == x2 ? qxpaf::IsBetween(y, y1, y2) : qxpaf::IsBetween(x, x1, x2);
  return true;
}
