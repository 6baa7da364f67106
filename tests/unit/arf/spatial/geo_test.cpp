#include "arf/spatial/geo.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "support/random_seed.h"
#include "unit/arf/spatial/plain_geometry.h"

namespace {

using arf::DistanceKey;
using arf::GeoBox;
using arf::GeoPoint;

GeoPoint RandomPoint(std::mt19937& random)
{
  const auto latitude = static_cast<std::int32_t>(random() % 180'000'001) - 90'000'000;
  const auto longitude = static_cast<std::int32_t>(random() % 360'000'001) - 180'000'000;
  return {latitude, longitude};
}

GeoPoint PointNear(std::mt19937& random, GeoPoint centre, std::int32_t reach)
{
  const auto offset = [&] {
    return static_cast<std::int32_t>(random() % (2U * static_cast<unsigned>(reach) + 1)) - reach;
  };
  return {std::clamp(centre.latitude + offset(), -90'000'000, 90'000'000),
          std::clamp(centre.longitude + offset(), -180'000'000, 180'000'000)};
}

TEST(ToGeoPoint, RoundsToMillionths)
{
  GeoPoint point;
  ASSERT_TRUE(arf::ToGeoPoint(-33.8600004, 151.2080006, point));
  EXPECT_EQ(point, (GeoPoint{-33'860'000, 151'208'001}));
  ASSERT_TRUE(arf::ToGeoPoint(90, -180, point));
  EXPECT_EQ(point, (GeoPoint{90'000'000, -180'000'000}));
}

TEST(ToGeoPoint, RefusesWhatIsOffTheGlobe)
{
  GeoPoint point;
  EXPECT_FALSE(arf::ToGeoPoint(90.1, 0, point));
  EXPECT_FALSE(arf::ToGeoPoint(0, -180.1, point));
  EXPECT_FALSE(arf::ToGeoPoint(std::numeric_limits<double>::quiet_NaN(), 0, point));
  EXPECT_FALSE(arf::ToGeoPoint(0, std::numeric_limits<double>::infinity(), point));
}

TEST(DistanceKey, IsTheGreatCircle)
{
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 20'000; ++i) {
    const GeoPoint a = RandomPoint(random);
    const GeoPoint b = i % 2 == 0 ? RandomPoint(random) : PointNear(random, a, 1 << (i % 24));
    const double metres = DistanceKey::ToMetres(DistanceKey(a).Of(b));
    const double expected = arf_test::PlainMetres(a, b);
    // Near the other side of the globe the haversine is flat.
    ASSERT_NEAR(metres, expected, expected > 19e6 ? 1.0 : 1e-6 + expected * 1e-9)
        << a.latitude << ' ' << a.longitude << ' ' << b.latitude << ' ' << b.longitude;
  }
}

TEST(DistanceKey, OfMetresIsTheInverse)
{
  for (const double metres : {0.0, 0.5, 100.0, 12'345.0, 5e6, 19e6})
    EXPECT_NEAR(DistanceKey::ToMetres(DistanceKey::OfMetres(metres)), metres, 1e-6 + metres * 1e-9);
  EXPECT_GT(DistanceKey::OfMetres(21e6), 1.0);
}

TEST(DistanceKey, BoundsOfBoxesHold)
{
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 20'000; ++i) {
    const DistanceKey key(RandomPoint(random));
    const std::int32_t reach = 1 << (i % 27);
    const GeoPoint middle = i % 2 == 0 ? RandomPoint(random) : PointNear(random, key.Centre(), reach);
    const GeoPoint a = PointNear(random, middle, reach), b = PointNear(random, middle, reach);
    const GeoBox box{std::min(a.latitude, b.latitude), std::min(a.longitude, b.longitude),
                     std::max(a.latitude, b.latitude), std::max(a.longitude, b.longitude)};
    const double low = key.LowerBound(box), high = key.UpperBound(box);
    const arf::LeafDistance leaf(key, box);
    for (int j = 0; j < 10; ++j) {
      const GeoPoint inside{std::uniform_int_distribution(box.south, box.north)(random),
                            std::uniform_int_distribution(box.west, box.east)(random)};
      const double exact = key.Of(inside);
      ASSERT_LE(low, exact);
      ASSERT_GE(high, exact);
      ASSERT_LE(leaf.LowerBound(inside), exact);
    }
  }
}

TEST(DistanceKey, BoundsAreTightForSmallBoxes)
{
  const DistanceKey key({-12'460'000, 130'840'000});
  const GeoBox box{-12'450'000, 130'850'000, -12'449'000, 130'851'000};
  const GeoPoint corner{-12'450'000, 130'850'000};
  EXPECT_NEAR(key.LowerBound(box) / key.Of(corner), 1, 1e-3);
  EXPECT_NEAR(arf::LeafDistance(key, box).LowerBound(corner) / key.Of(corner), 1, 1e-3);
}

}  // namespace
