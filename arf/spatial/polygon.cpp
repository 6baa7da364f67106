#include "arf/spatial/polygon.h"

#include <algorithm>
#include <utility>

namespace arf {
namespace {

static_assert(Polygon::kMaxEdges <= UINT16_MAX + 1);

/** Above 0 where the point lies east of the line (extended without end), 0 where it lies on it. */
std::int64_t EastOf(const PolygonEdge& edge, std::int32_t latitude, std::int32_t longitude)
{
  const std::int64_t rise = std::int64_t{edge.high.latitude} - edge.low.latitude;
  const std::int64_t run = std::int64_t{edge.high.longitude} - edge.low.longitude;
  return (std::int64_t{longitude} - edge.low.longitude) * rise - (std::int64_t{latitude} - edge.low.latitude) * run;
}

/** What a line has to do with a box. */
enum class Matter
{
  None,    ///< no ray from a point of the box to the west crosses it
  Always,  ///< every such ray crosses it
  Some     ///< it depends on the point
};

Matter MatterOf(const PolygonEdge& edge, const GeoBox& box)
{
  const std::int32_t west = std::min(edge.low.longitude, edge.high.longitude);
  const std::int32_t east = std::max(edge.low.longitude, edge.high.longitude);
  if (edge.high.latitude < box.south || edge.low.latitude > box.north || west > box.east) return Matter::None;
  // A line is crossed at its southern end, but not at its northern one.
  const bool spans = edge.low.latitude <= box.south && edge.high.latitude > box.north;
  if (spans) {
    if (EastOf(edge, box.south, box.west) > 0 && EastOf(edge, box.north, box.west) > 0) return Matter::Always;
    if (EastOf(edge, box.south, box.east) < 0 && EastOf(edge, box.north, box.east) < 0) return Matter::None;
    return Matter::Some;
  }
  const bool isCrossed = edge.low.latitude < edge.high.latitude && edge.high.latitude > box.south;
  return east < box.west && !isCrossed ? Matter::None : Matter::Some;
}

bool IsBetween(const PolygonEdge& edge, std::int32_t longitude)
{
  const auto [west, east] = std::minmax(edge.low.longitude, edge.high.longitude);
  return longitude >= west && longitude <= east;
}

bool IsApart(const GeoBox& a, const GeoBox& b)
{
  return a.north < b.south || a.south > b.north || a.east < b.west || a.west > b.east;
}

}  // namespace

void Polygon::Clear()
{
  edges_.reserve(kMaxEdges);
  edges_.clear();
  bounds_ = {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
}

bool Polygon::AddEdge(GeoPoint from, GeoPoint to)
{
  if (edges_.size() == kMaxEdges) return false;
  if (to.latitude < from.latitude) std::swap(from, to);
  edges_.push_back({from, to});
  for (const GeoPoint end : {from, to}) {
    bounds_ = {std::min(bounds_.south, end.latitude), std::min(bounds_.west, end.longitude),
               std::max(bounds_.north, end.latitude), std::max(bounds_.east, end.longitude)};
  }
  return true;
}

void PolygonCover::Start(const Polygon& polygon)
{
  edges_ = polygon.Edges();
  bounds_ = polygon.Bounds();
  constexpr std::size_t kSteps = kMaxDepth + 1;
  lines_.reserve(Polygon::kMaxEdges * kSteps);
  lines_.resize(std::max(lines_.size(), edges_.size() * kSteps));
  for (std::size_t i = 0; i < edges_.size(); ++i) lines_[i] = static_cast<std::uint16_t>(i);
  depth_ = 0;
  steps_[0] = {0, edges_.size(), false};
}

Cover PolygonCover::Enter(const GeoBox& box)
{
  const Step& from = steps_[depth_];
  Step& to = steps_[depth_ + 1];
  to = {from.end, from.end, from.isOdd};
  ++depth_;
  if (IsApart(box, bounds_)) {
    to.isOdd = false;
    return Cover::Outside;
  }
  for (std::size_t i = from.begin; i < from.end; ++i) {
    const Matter matter = MatterOf(edges_[lines_[i]], box);
    if (matter == Matter::Some) lines_[to.end++] = lines_[i];
    if (matter == Matter::Always) to.isOdd = !to.isOdd;
  }
  if (to.begin != to.end) return Cover::Partial;
  return to.isOdd ? Cover::Inside : Cover::Outside;
}

bool PolygonCover::Holds(GeoPoint point) const
{
  const Step& step = steps_[depth_];
  bool isOdd = step.isOdd;
  for (std::size_t i = step.begin; i < step.end; ++i) {
    const PolygonEdge& edge = edges_[lines_[i]];
    if (point.latitude < edge.low.latitude || point.latitude > edge.high.latitude) continue;
    const std::int64_t east = EastOf(edge, point.latitude, point.longitude);
    if (east > 0 && point.latitude < edge.high.latitude) isOdd = !isOdd;
    if (east == 0 && IsBetween(edge, point.longitude)) return true;
  }
  return isOdd;
}

}  // namespace arf
