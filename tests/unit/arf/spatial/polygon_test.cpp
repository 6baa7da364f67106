#include "arf/spatial/polygon.h"

#include <gtest/gtest.h>

namespace arf {
namespace {

void AddRing(Polygon& polygon, const std::vector<GeoPoint>& ring)
{
  for (std::size_t i = 0; i < ring.size(); ++i) ASSERT_TRUE(polygon.AddEdge(ring[i], ring[(i + 1) % ring.size()]));
}

const std::vector<GeoPoint> kSquare = {{0, 0}, {0, 100}, {100, 100}, {100, 0}};
const std::vector<GeoPoint> kHole = {{40, 40}, {60, 40}, {60, 60}, {40, 60}};

struct SquareWithHole : testing::Test
{
  SquareWithHole()
  {
    polygon.Clear();
    AddRing(polygon, kSquare);
    AddRing(polygon, kHole);
    cover.Start(polygon);
  }
  bool Holds(GeoPoint point)
  {
    const Cover all = cover.Enter({-1000, -1000, 1000, 1000});
    const bool holds = cover.Holds(point);
    cover.Leave();
    EXPECT_EQ(all, Cover::Partial);
    return holds;
  }
  Cover CoverOf(const GeoBox& box)
  {
    const Cover found = cover.Enter(box);
    cover.Leave();
    return found;
  }
  Polygon polygon;
  PolygonCover cover;
};

TEST_F(SquareWithHole, Points)
{
  EXPECT_TRUE(Holds({10, 10}));
  EXPECT_FALSE(Holds({50, 50})) << "in the hole";
  EXPECT_FALSE(Holds({-1, 50}));
  EXPECT_FALSE(Holds({50, 101}));
  EXPECT_TRUE(Holds({50, 70}));
}

TEST_F(SquareWithHole, LinesAreInside)
{
  for (const GeoPoint point : {GeoPoint{0, 0}, GeoPoint{100, 100}, GeoPoint{0, 50}, GeoPoint{100, 50}, GeoPoint{50, 0},
                               GeoPoint{50, 100}, GeoPoint{40, 50}, GeoPoint{60, 60}})
    EXPECT_TRUE(Holds(point)) << point.latitude << ' ' << point.longitude;
}

TEST_F(SquareWithHole, Boxes)
{
  EXPECT_EQ(CoverOf({5, 5, 35, 35}), Cover::Inside);
  EXPECT_EQ(CoverOf({41, 41, 59, 59}), Cover::Outside);
  EXPECT_EQ(CoverOf({200, 200, 300, 300}), Cover::Outside);
  EXPECT_EQ(CoverOf({5, 200, 35, 300}), Cover::Outside) << "east of it";
  EXPECT_EQ(CoverOf({5, -300, 35, -200}), Cover::Outside) << "west of it";
  EXPECT_EQ(CoverOf({90, 90, 110, 110}), Cover::Partial);
  EXPECT_EQ(CoverOf({100, 10, 110, 20}), Cover::Partial) << "touches a line";
}

TEST(Polygon, BowTieHasTwoInsides)
{
  Polygon polygon;
  polygon.Clear();
  AddRing(polygon, {{0, 0}, {100, 100}, {100, 0}, {0, 100}});
  PolygonCover cover;
  cover.Start(polygon);
  cover.Enter({-10, -10, 110, 110});
  EXPECT_TRUE(cover.Holds({90, 50}));
  EXPECT_TRUE(cover.Holds({10, 50}));
  EXPECT_FALSE(cover.Holds({50, 10}));
  EXPECT_FALSE(cover.Holds({50, 90}));
  EXPECT_TRUE(cover.Holds({50, 50})) << "where the lines cross";
}

TEST(Polygon, Bounds)
{
  Polygon polygon;
  polygon.Clear();
  AddRing(polygon, {{-5, 7}, {10, 20}, {3, -4}});
  EXPECT_EQ(polygon.Bounds().south, -5);
  EXPECT_EQ(polygon.Bounds().north, 10);
  EXPECT_EQ(polygon.Bounds().west, -4);
  EXPECT_EQ(polygon.Bounds().east, 20);
}

TEST(Polygon, HasAGreatestNumberOfEdges)
{
  Polygon polygon;
  polygon.Clear();
  for (std::size_t i = 0; i < Polygon::kMaxEdges; ++i) ASSERT_TRUE(polygon.AddEdge({0, 0}, {1, 1}));
  EXPECT_FALSE(polygon.AddEdge({0, 0}, {1, 1}));
  PolygonCover cover;
  cover.Start(polygon);
  EXPECT_EQ(cover.Enter({0, 0, 1, 1}), Cover::Partial);
}

}  // namespace
}  // namespace arf
