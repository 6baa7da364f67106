/**
 * The addresses in an area, nearest to a place first; those at the same distance in the order of the file. The area is
 * a circle, or a polygon with a place that distances are taken from.
 *
 * Answers are found in batches: a batch is a walk through the tree for the nearest so many that come behind the last
 * one given out. So an enumeration of any length takes a fixed amount of memory, the first answer costs little, and
 * nothing is allocated once a search of the same kind was made.
 */
#ifndef QXPAF_ARF_SPATIAL_AREA_SEARCH_H
#define QXPAF_ARF_SPATIAL_AREA_SEARCH_H

#include <cstdint>
#include <functional>
#include <vector>

#include "arf/spatial/point_filter.h"
#include "arf/spatial/polygon.h"
#include "arf/spatial/spatial_tree.h"

namespace arf {

struct FoundPoint
{
  double key = -1;  ///< DistanceKey
  std::uint32_t ordinal = 0;
  bool operator<(const FoundPoint& other) const
  {
    return key < other.key || (key == other.key && ordinal < other.ordinal);
  }
};

class AreaSearch
{
 public:
  /** @param tree  must outlive the search */
  explicit AreaSearch(const SpatialTree& tree) : tree_(tree), key_(GeoPoint()) {}

  /** Where the caller puts the lines before StartPolygon. */
  Polygon& Area() { return polygon_; }

  /** @param filter  must outlive the enumeration; null takes all. So with the other functions. */
  void StartNear(GeoPoint centre, double metres, PointFilter* filter);
  void StartPolygon(GeoPoint centre, PointFilter* filter);
  void Reset() { isStarted_ = false; }
  bool IsStarted() const { return isStarted_; }

  /** The point whose turn it is; null at the end. It stays the same until Advance. */
  const FoundPoint* Current() const { return next_ < batch_.size() ? &batch_[next_] : nullptr; }
  void Advance();

  /** Calls `visit` with each point of the circle or polygon in no particular order; ends an enumeration. */
  template <class Visit>
  void VisitNear(GeoPoint centre, double metres, PointFilter* filter, Visit visit);
  template <class Visit>
  void VisitPolygon(PointFilter* filter, Visit visit);

 private:
  void Start(GeoPoint centre, double maxKey, bool inPolygon, PointFilter* filter);
  void Fill(std::size_t limit);
  void Walk(const std::function<void(std::uint32_t)>& visit);

  const SpatialTree& tree_;
  Polygon polygon_;
  PolygonCover cover_;
  DistanceKey key_;
  double maxKey_ = 0;
  bool inPolygon_ = false;
  bool isStarted_ = false;
  PointFilter* filter_ = nullptr;
  std::vector<FoundPoint> batch_;  ///< ascending
  std::vector<FoundPoint> scratch_;
  std::size_t next_ = 0;
  std::size_t limit_ = 0;  ///< of the batch: shorter ones are the last
};

template <class Visit>
void AreaSearch::VisitNear(GeoPoint centre, double metres, PointFilter* filter, Visit visit)
{
  Start(centre, DistanceKey::OfMetres(metres), false, filter);
  isStarted_ = false;
  Walk(std::ref(visit));
}

template <class Visit>
void AreaSearch::VisitPolygon(PointFilter* filter, Visit visit)
{
  Start(GeoPoint(), DistanceKey::kEverywhere, true, filter);
  isStarted_ = false;
  Walk(std::ref(visit));
}

}  // namespace arf

#endif
