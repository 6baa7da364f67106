#include "arf/spatial/area_search.h"

#include <algorithm>
#include <array>

#include "arf/format/point_cursor.h"

namespace arf {
namespace {

/** The sizes of batches: one answer is often all that is wanted. */
constexpr std::size_t kFirstBatch = 1;
constexpr std::size_t kSecondBatch = 64;
constexpr std::size_t kBatch = 4096;

/** Keeps the nearest so many that come behind a point already given out. */
class NearestKeeper
{
 public:
  NearestKeeper(std::vector<FoundPoint>& found, std::size_t limit, FoundPoint after, double maxKey)
      : found_(found), limit_(limit), after_(after), maxKey_(maxKey)
  {
  }

  double MaxKey() const { return maxKey_; }
  double MinKey() const { return after_.key; }

  void Take(FoundPoint point)
  {
    if (!(after_ < point)) return;
    if (found_.size() < limit_) {
      found_.push_back(point);
      if (found_.size() == limit_) std::make_heap(found_.begin(), found_.end());
    } else if (point < found_.front()) {
      std::pop_heap(found_.begin(), found_.end());
      found_.back() = point;
      std::push_heap(found_.begin(), found_.end());
    }
    if (found_.size() == limit_) maxKey_ = found_.front().key;
  }

 private:
  std::vector<FoundPoint>& found_;
  std::size_t limit_;
  FoundPoint after_;
  double maxKey_;
};

/**
 * Sorts points that lie about evenly over an area, whose keys are then spread evenly too: each goes to the bucket where
 * its key belongs, and buckets are sorted by themselves.
 */
void SortByKey(std::vector<FoundPoint>& points, std::vector<FoundPoint>& scratch)
{
  constexpr std::size_t kBuckets = 1024;
  constexpr std::size_t kFew = 64;
  if (points.size() <= kFew) return std::sort(points.begin(), points.end());
  const auto byKey = [](const FoundPoint& a, const FoundPoint& b) { return a.key < b.key; };
  const auto [low, high] = std::minmax_element(points.begin(), points.end(), byKey);
  const double lowest = low->key;
  const double scale = high->key > lowest ? (kBuckets - 1) / (high->key - lowest) : 0;
  const auto bucketOf = [&](const FoundPoint& point) { return static_cast<std::size_t>((point.key - lowest) * scale); };
  std::array<std::uint32_t, kBuckets + 1> ends{};
  for (const FoundPoint& point : points) ++ends[bucketOf(point) + 1];
  for (std::size_t i = 1; i <= kBuckets; ++i) ends[i] += ends[i - 1];
  scratch.resize(points.size());
  for (const FoundPoint& point : points) scratch[ends[bucketOf(point)]++] = point;
  auto begin = scratch.begin();
  for (std::size_t i = 0; i < kBuckets; ++i) {
    const auto end = scratch.begin() + ends[i];
    if (end - begin > 1) std::sort(begin, end);
    begin = end;
  }
  points.swap(scratch);
}

/** Takes every point. */
class Visitor
{
 public:
  Visitor(const std::function<void(std::uint32_t)>& visit, double maxKey) : visit_(visit), maxKey_(maxKey) {}
  double MaxKey() const { return maxKey_; }
  double MinKey() const { return -1; }
  void Take(FoundPoint point) { visit_(point.ordinal); }

 private:
  const std::function<void(std::uint32_t)>& visit_;
  double maxKey_;
};

/** Walks the tree from the nearest to the farthest node, leaving out what the taker or the polygon does not want. */
template <class Taker>
class Walker
{
 public:
  /** @param cover  null where the area has no polygon */
  Walker(const SpatialTree& tree, const DistanceKey& key, PolygonCover* cover, PointFilter* filter, Taker& taker)
      : tree_(tree), key_(key), cover_(cover), filter_(filter), taker_(taker)
  {
  }

  void Run()
  {
    if (tree_.LevelCount() == 0) return;
    const std::uint32_t top = tree_.LevelCount() - 1;
    const GeoBox box = tree_.Box(top, 0);
    if (IsWanted(key_.LowerBound(box), box)) EnterNode(top, 0, box, cover_ != nullptr);
  }

 private:
  struct Child
  {
    double bound;
    std::uint32_t node;
    GeoBox box;
  };

  bool IsWanted(double lowerBound, const GeoBox& box) const
  {
    return lowerBound <= taker_.MaxKey() && (taker_.MinKey() < 0 || key_.UpperBound(box) >= taker_.MinKey());
  }

  /** @param isPartial  whether the node above lies only partly in the polygon */
  void EnterNode(std::uint32_t level, std::uint32_t node, const GeoBox& box, bool isPartial)
  {
    const Cover cover = isPartial ? cover_->Enter(box) : Cover::Inside;
    if (cover != Cover::Outside) {
      if (level == 0)
        VisitLeaf(tree_.Leaf(node), cover == Cover::Partial);
      else
        VisitChildren(level - 1, node, cover == Cover::Partial);
    }
    if (isPartial) cover_->Leave();
  }

  void VisitChildren(std::uint32_t level, std::uint32_t parent, bool isPartial)
  {
    std::array<Child, tree_layout::kFanOut> children;
    std::size_t count = 0;
    const std::uint32_t first = parent * tree_layout::kFanOut;
    const std::uint32_t end = std::min(first + tree_layout::kFanOut, tree_.NodeCount(level));
    for (std::uint32_t node = first; node < end; ++node) {
      Child child{0, node, tree_.Box(level, node)};
      child.bound = key_.LowerBound(child.box);
      if (!IsWanted(child.bound, child.box)) continue;
      std::size_t place = count++;
      for (; place > 0 && children[place - 1].bound > child.bound; --place) children[place] = children[place - 1];
      children[place] = child;
    }
    for (std::size_t i = 0; i < count && children[i].bound <= taker_.MaxKey(); ++i)
      EnterNode(level, children[i].node, children[i].box, isPartial);
  }

  /** Units of a building are neighbours in a leaf, at one place. */
  void VisitLeaf(const SpatialLeaf& leaf, bool isPartial)
  {
    const LeafDistance distance(key_, leaf.Box());
    SpatialLeaf::Ordinals ordinals;
    bool hasOrdinals = false;
    GeoPoint place;
    double key = kUnwanted;
    for (std::uint32_t i = 0; i < leaf.Count(); ++i) {
      const GeoPoint point = leaf[i];
      if (i == 0 || !(point == place)) key = KeyOf(point, distance, isPartial);
      place = point;
      if (key > taker_.MaxKey() || key < taker_.MinKey()) continue;
      if (!hasOrdinals) leaf.Read(ordinals);
      hasOrdinals = true;
      if (ordinals[i] == kNoIndex || (filter_ && !filter_->Takes(ordinals[i]))) continue;
      taker_.Take({key, ordinals[i]});
    }
  }

  double KeyOf(GeoPoint point, const LeafDistance& distance, bool isPartial) const
  {
    const bool isWanted = distance.LowerBound(point) <= taker_.MaxKey() && (!isPartial || cover_->Holds(point));
    return isWanted ? key_.Of(point) : kUnwanted;
  }

  static constexpr double kUnwanted = 2 * DistanceKey::kEverywhere;

  const SpatialTree& tree_;
  const DistanceKey& key_;
  PolygonCover* cover_;
  PointFilter* filter_;
  Taker& taker_;
};

}  // namespace

void AreaSearch::Start(GeoPoint centre, double maxKey, bool inPolygon, PointFilter* filter)
{
  key_ = DistanceKey(centre);
  maxKey_ = maxKey;
  inPolygon_ = inPolygon;
  filter_ = filter;
  batch_.clear();
  next_ = 0;
  isStarted_ = true;
}

void AreaSearch::StartNear(GeoPoint centre, double metres, PointFilter* filter)
{
  Start(centre, DistanceKey::OfMetres(metres), false, filter);
  Fill(kFirstBatch);
}

void AreaSearch::StartPolygon(GeoPoint centre, PointFilter* filter)
{
  Start(centre, DistanceKey::kEverywhere, true, filter);
  Fill(kBatch);
}

void AreaSearch::Advance()
{
  if (next_ == batch_.size()) return;
  ++next_;
  if (next_ == batch_.size() && next_ == limit_) Fill(limit_ == kFirstBatch ? kSecondBatch : kBatch);
}

/** The next batch, behind the last point of this one. */
void AreaSearch::Fill(std::size_t limit)
{
  const FoundPoint last = batch_.empty() ? FoundPoint() : batch_.back();
  batch_.reserve(kBatch);
  scratch_.reserve(kBatch);
  batch_.clear();
  next_ = 0;
  limit_ = limit;
  NearestKeeper keeper(batch_, limit, last, maxKey_);
  if (inPolygon_) cover_.Start(polygon_);
  Walker(tree_, key_, inPolygon_ ? &cover_ : nullptr, filter_, keeper).Run();
  SortByKey(batch_, scratch_);
}

void AreaSearch::Walk(const std::function<void(std::uint32_t)>& visit)
{
  Visitor visitor(visit, maxKey_);
  if (inPolygon_) cover_.Start(polygon_);
  Walker(tree_, key_, inPolygon_ ? &cover_ : nullptr, filter_, visitor).Run();
}

}  // namespace arf
