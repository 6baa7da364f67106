/**
 * Which points lie inside a polygon of any number of rings. A point is inside when a ray from it crosses the rings an
 * odd number of times: a ring in another is a hole, and a ring that crosses itself encloses what its line turns round
 * an odd number of times. Points on a line are inside. All of it is exact: vertices are rounded to millionths of a
 * degree, as points are. Straight lines are straight in latitude and longitude, and do not cross the 180th meridian.
 */
#ifndef QXPAF_ARF_SPATIAL_POLYGON_H
#define QXPAF_ARF_SPATIAL_POLYGON_H

#include <cstdint>
#include <span>
#include <vector>

#include "arf/spatial/geo.h"
#include "arf/spatial/tree_layout.h"

namespace arf {

/** A line of a ring, from its southern end to its northern one. */
struct PolygonEdge
{
  GeoPoint low;
  GeoPoint high;
};

/** How a box lies to a polygon. */
enum class Cover
{
  Outside,
  Inside,
  Partial
};

class Polygon
{
 public:
  static constexpr std::size_t kMaxEdges = 32768;

  /** Takes all rings off. Memory is kept; the first call makes room for kMaxEdges. */
  void Clear();
  /** Adds a line of a ring. @return false when there are kMaxEdges already */
  bool AddEdge(GeoPoint from, GeoPoint to);
  std::span<const PolygonEdge> Edges() const { return edges_; }
  /** The box around all rings; of no rings, nothing meaningful. */
  const GeoBox& Bounds() const { return bounds_; }

 private:
  std::vector<PolygonEdge> edges_;
  GeoBox bounds_;
};

/**
 * Walks down boxes in boxes, keeping at each step only the lines that still matter, so that points are compared with a
 * few lines however many there are.
 */
class PolygonCover
{
 public:
  static constexpr std::size_t kMaxDepth = tree_layout::kMaxLevels + 1;

  /** @param polygon  must outlive the cover, and stay as it is until the next Start */
  void Start(const Polygon& polygon);
  /** Looks at a box inside the current one and makes it the current one. Leave must follow, whatever the result. */
  Cover Enter(const GeoBox& box);
  void Leave() { --depth_; }
  /** Whether a point of the current box is inside. */
  bool Holds(GeoPoint point) const;

 private:
  /** The lines that matter in a box, and whether those left out are crossed an odd number of times. */
  struct Step
  {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool isOdd = false;
  };

  std::span<const PolygonEdge> edges_;
  GeoBox bounds_;
  std::vector<std::uint16_t> lines_;  ///< of all steps, one after the other
  Step steps_[kMaxDepth + 1];
  std::size_t depth_ = 0;
};

}  // namespace arf

#endif
