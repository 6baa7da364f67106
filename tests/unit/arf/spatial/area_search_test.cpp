// Searches in an area against a look at every point.
#include "arf/spatial/area_search.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/random_seed.h"
#include "unit/arf/spatial/place_fixture.h"
#include "unit/arf/spatial/plain_geometry.h"

namespace arf {
namespace {

using arf_test::PlaceDatabase;
using arf_test::Ring;

const PlaceDatabase& Places()
{
  static const std::unique_ptr<PlaceDatabase> places = [] {
    arf_test::Random random(test_support::RandomSeed());
    return arf_test::OpenPlaces(arf_test::RandomPlaces(random, 9'000));
  }();
  return *places;
}

/** Every second ordinal. */
class EvenOrdinals final : public PointFilter
{
 public:
  bool Takes(std::uint32_t ordinal) override { return ordinal % 2 == 0; }
};

std::vector<std::uint32_t> AllOf(AreaSearch& search)
{
  std::vector<std::uint32_t> ordinals;
  for (; search.Current() != nullptr; search.Advance()) ordinals.push_back(search.Current()->ordinal);
  return ordinals;
}

/** The located points that `isInside` takes, nearest first. */
template <class IsInside>
std::vector<std::uint32_t> Expected(GeoPoint centre, IsInside isInside)
{
  const DistanceKey key(centre);
  std::vector<FoundPoint> found;
  for (std::uint32_t i = 0; i < Places().places.size(); ++i) {
    const GeoPoint place = Places().places[i];
    if (arf_test::IsLocated(place) && isInside(place, i)) found.push_back({key.Of(place), i});
  }
  std::sort(found.begin(), found.end());
  std::vector<std::uint32_t> ordinals;
  for (const FoundPoint& point : found) ordinals.push_back(point.ordinal);
  return ordinals;
}

std::vector<std::uint32_t> ExpectedNear(GeoPoint centre, double metres)
{
  return Expected(centre,
                  [&](GeoPoint place, std::uint32_t) { return arf_test::PlainMetres(centre, place) <= metres; });
}

GeoPoint RandomCentre(arf_test::Random& random)
{
  const GeoPoint place = Places().places[random() % Places().places.size()];
  if (random() % 4 == 0 || !arf_test::IsLocated(place))
    return {arf_test::Between(random, -44'000'000, -9'000'000), arf_test::Between(random, -180'000'000, 180'000'000)};
  const std::int32_t reach = 1 << random() % 20;
  return {place.latitude + arf_test::Between(random, -reach, reach),
          place.longitude + arf_test::Between(random, -reach, reach)};
}

TEST(AreaSearch, TreeHasEveryLocatedPoint)
{
  const auto located = std::count_if(Places().places.begin(), Places().places.end(), arf_test::IsLocated);
  EXPECT_EQ(Places().tree.PointCount(), static_cast<std::uint32_t>(located));
  EXPECT_LT(Places().tree.PointCount(), Places().database->PointCount()) << "some must lack a place";
  EXPECT_GT(Places().tree.LevelCount(), 2U);
}

TEST(AreaSearch, NearestFirstWithinARange)
{
  arf_test::Random random(test_support::RandomSeed());
  AreaSearch search(Places().tree);
  std::size_t longest = 0;
  for (int i = 0; i < 60; ++i) {
    const GeoPoint centre = RandomCentre(random);
    const double metres = std::pow(10.0, arf_test::Between(random, 0, 7)) * 1.23;
    search.StartNear(centre, metres, nullptr);
    const std::vector<std::uint32_t> found = AllOf(search);
    ASSERT_EQ(found, ExpectedNear(centre, metres)) << centre.latitude << ' ' << centre.longitude << ' ' << metres;
    longest = std::max(longest, found.size());
  }
  EXPECT_GT(longest, 8'000U) << "several batches must be needed";
}

TEST(AreaSearch, RangeOfZeroFindsThePlaceItself)
{
  const auto place = std::find_if(Places().places.begin(), Places().places.end(), arf_test::IsLocated);
  AreaSearch search(Places().tree);
  search.StartNear(*place, 0, nullptr);
  EXPECT_EQ(AllOf(search), ExpectedNear(*place, 0.01));
}

TEST(AreaSearch, FilterTakesPart)
{
  arf_test::Random random(test_support::RandomSeed());
  EvenOrdinals filter;
  AreaSearch search(Places().tree);
  for (int i = 0; i < 30; ++i) {
    const GeoPoint centre = RandomCentre(random);
    search.StartNear(centre, 100'000, &filter);
    const auto isWanted = [&](GeoPoint place, std::uint32_t ordinal) {
      return ordinal % 2 == 0 && arf_test::PlainMetres(centre, place) <= 100'000;
    };
    ASSERT_EQ(AllOf(search), Expected(centre, isWanted));
  }
}

TEST(AreaSearch, OtherSideOfTheDateLine)
{
  AreaSearch search(Places().tree);
  const GeoPoint centre{-20'000'000, -179'000'000};
  search.StartNear(centre, 30e6, nullptr);
  EXPECT_EQ(AllOf(search), ExpectedNear(centre, 30e6));
}

/** A ring around a place, crossing itself as it likes. */
Ring RandomRing(arf_test::Random& random, GeoPoint centre, std::int32_t reach, std::size_t vertices)
{
  Ring ring;
  for (std::size_t i = 0; i < vertices; ++i) {
    // Some vertices lie on points, so that points lie on lines.
    const GeoPoint place = Places().places[random() % Places().places.size()];
    if (random() % 8 == 0 && arf_test::IsLocated(place)) ring.push_back(place);
    const GeoPoint before = ring.empty() ? centre : ring.back();
    GeoPoint next{centre.latitude + arf_test::Between(random, -reach, reach),
                  centre.longitude + arf_test::Between(random, -reach, reach)};
    if (random() % 4 == 0) next.latitude = before.latitude;
    if (random() % 4 == 0) next.longitude = before.longitude;
    ring.push_back(next);
  }
  return ring;
}

void Fill(Polygon& polygon, const std::vector<Ring>& rings)
{
  polygon.Clear();
  for (const Ring& ring : rings)
    for (std::size_t i = 0; i < ring.size(); ++i) ASSERT_TRUE(polygon.AddEdge(ring[i], ring[(i + 1) % ring.size()]));
}

std::vector<std::uint32_t> ExpectedIn(const std::vector<Ring>& rings, GeoPoint centre)
{
  return Expected(centre, [&](GeoPoint place, std::uint32_t) { return arf_test::PlainHolds(rings, place); });
}

TEST(AreaSearch, Polygons)
{
  arf_test::Random random(test_support::RandomSeed());
  AreaSearch search(Places().tree);
  std::size_t found = 0;
  for (int i = 0; i < 120; ++i) {
    const GeoPoint centre = RandomCentre(random);
    std::vector<Ring> rings;
    for (std::size_t count = 1 + random() % 3; count > 0; --count) {
      const std::int32_t reach = 1 << (10 + random() % 15);
      rings.push_back(RandomRing(random, centre, reach, 3 + random() % 40));
    }
    Fill(search.Area(), rings);
    search.StartPolygon(centre, nullptr);
    const std::vector<std::uint32_t> ordinals = AllOf(search);
    ASSERT_EQ(ordinals, ExpectedIn(rings, centre)) << "polygon " << i;
    std::vector<std::uint32_t> visited;
    search.VisitPolygon(nullptr, [&](std::uint32_t ordinal) { visited.push_back(ordinal); });
    ASSERT_TRUE(std::is_permutation(visited.begin(), visited.end(), ordinals.begin(), ordinals.end()));
    found += ordinals.size();
  }
  EXPECT_GT(found, 1'000U);
}

TEST(AreaSearch, PolygonOfTenThousandVertices)
{
  arf_test::Random random(test_support::RandomSeed());
  AreaSearch search(Places().tree);
  Ring star;
  for (int i = 0; i < 10'000; ++i) {
    const double angle = i * 2 * std::numbers::pi / 10'000;
    const double radius = i % 2 == 0 ? 20e6 : 4e6;
    star.push_back({static_cast<std::int32_t>(-26e6 + radius * std::sin(angle)),
                    static_cast<std::int32_t>(140e6 + radius * std::cos(angle))});
  }
  const std::vector<Ring> rings = {star};
  Fill(search.Area(), rings);
  search.StartPolygon({-26'000'000, 140'000'000}, nullptr);
  const std::vector<std::uint32_t> ordinals = AllOf(search);
  EXPECT_GT(ordinals.size(), 100U);
  EXPECT_EQ(ordinals, ExpectedIn(rings, {-26'000'000, 140'000'000}));
}

TEST(AreaSearch, VisitsACircle)
{
  const GeoPoint centre = Places().places[4'000];
  AreaSearch search(Places().tree);
  std::vector<std::uint32_t> visited;
  search.VisitNear(centre, 1'000, nullptr, [&](std::uint32_t ordinal) { visited.push_back(ordinal); });
  std::vector<std::uint32_t> expected = ExpectedNear(centre, 1'000);
  EXPECT_TRUE(std::is_permutation(visited.begin(), visited.end(), expected.begin(), expected.end()));
  EXPECT_FALSE(visited.empty());
}

TEST(AreaSearch, WithoutPoints)
{
  const SpatialTree none;
  AreaSearch search(none);
  search.StartNear({0, 0}, 1e9, nullptr);
  EXPECT_EQ(search.Current(), nullptr);
  search.Advance();
  EXPECT_EQ(search.Current(), nullptr);
}

TEST(AreaSearch, OneAddress)
{
  const auto place = arf_test::OpenPlaces(
      "dpid,number_first,street_name,locality,state,postcode,latitude,longitude\n"
      "30000000,1,A,TOWN,NSW,2000,-33.5,151.25\n");
  AreaSearch search(place->tree);
  search.StartNear({0, 0}, 1e9, nullptr);
  ASSERT_NE(search.Current(), nullptr);
  EXPECT_EQ(search.Current()->ordinal, 0U);
  search.StartNear({0, 0}, 1e3, nullptr);
  EXPECT_EQ(search.Current(), nullptr);
}

}  // namespace
}  // namespace arf
