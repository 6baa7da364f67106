// Distances and intersections.
#include "qxpaf/text/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "reference/geometry_reference.h"
#include "support/guarded_buffer.h"
#include "support/random_seed.h"
#include "unit/text/encoding_text.h"

namespace {

using encoding_test::ExactText;
using test_support::GuardedBuffer;

constexpr int kCases = 100000;
constexpr double kHalfCircumference = 20015.086796020572;

class Random
{
 public:
  double Between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }
  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

  // Whole numbers, halves and anything, so that special positions come up.
  double Coordinate(double limit)
  {
    if (Below(2) == 0) return std::floor(Between(-3, 4));
    return Below(4) == 0 ? std::floor(Between(-2 * limit, 2 * limit)) / 2 : Between(-limit, limit);
  }

 private:
  std::mt19937_64 random_{test_support::RandomSeed()};
};

std::string Bits(double value)
{
  char text[64];
  std::snprintf(text, sizeof text, "%a", value);
  return text;
}

TEST(Distance, Rows)
{
  EXPECT_NEAR(LatLongDist(0, 0, 0, 1), 111.195, 0.0005);
  EXPECT_NEAR(LatLongDist(0, 0, 1, 0), 111.195, 0.0005);
  EXPECT_EQ(LatLongDist(-33.86, 151.21, -33.86, 151.21), 0.0);
  EXPECT_EQ(LatLongDist(90, 0, 90, 120), 0.0);            // the pole under two names
  EXPECT_EQ(LatLongDist(HUGE_VAL, 1, HUGE_VAL, 1), 0.0);  // infinite, and the same
  EXPECT_TRUE(std::isnan(LatLongDist(HUGE_VAL, 1, HUGE_VAL, 2)));
  EXPECT_NEAR(LatLongDist(0, 0, 0, 180), kHalfCircumference, 0.001);
  EXPECT_LE(LatLongDist(0, 0, 0, 180), kHalfCircumference);
  EXPECT_NEAR(LatLongDist(90, 0, -90, 0), kHalfCircumference, 0.001);
  EXPECT_NEAR(LatLongDist(-33.8688, 151.2093, -37.8136, 144.9631), 713.4, 0.5);
  EXPECT_NEAR(LatLongDist(0, 179.5, 0, -179.5), 111.195, 0.0005);
  EXPECT_TRUE(std::isnan(LatLongDist(std::nan(""), 0, 0, 0)));
}

// Where rounding takes the cosine out of its range, the distance stays in its own.
TEST(Distance, StaysInRange)
{
  Random random;
  for (int i = 0; i < kCases; ++i) {
    const double lat = random.Between(-90, 90);
    const double lon = random.Between(-180, 180);
    const double antipodal = LatLongDist(lat, lon, -lat, lon + 180);
    ASSERT_LE(antipodal, kHalfCircumference);
    ASSERT_GE(antipodal, kHalfCircumference - 0.01);
    ASSERT_GE(LatLongDist(lat, lon, std::nextafter(lat, 100), lon), 0.0);
  }
}

TEST(Distance, LikeReference)
{
  Random random;
  for (int i = 0; i < kCases; ++i) {
    const double lat1 = random.Coordinate(90);
    const double lon1 = random.Coordinate(180);
    const bool close = random.Below(3) == 0;
    const double lat2 = close ? lat1 + random.Between(-1e-4, 1e-4) : random.Coordinate(90);
    const double lon2 = close ? lon1 + random.Between(-1e-4, 1e-4) : random.Coordinate(180);
    ASSERT_EQ(Bits(LatLongDist(lat1, lon1, lat2, lon2)), Bits(reference::LatLongDist(lat1, lon1, lat2, lon2)))
        << lat1 << ' ' << lon1 << ' ' << lat2 << ' ' << lon2;
  }
}

// The formula with each function called by itself, whatever the compiler makes of it elsewhere.
TEST(Distance, ExactBitsOfTheFormula)
{
  double (*volatile sine)(double) = std::sin;
  double (*volatile cosine)(double) = std::cos;
  double (*volatile arcCosine)(double) = std::acos;
  Random random;
  for (int i = 0; i < kCases; ++i) {
    const double degrees[4] = {random.Between(-90, 90), random.Between(-180, 180), random.Between(-90, 90),
                               random.Between(-180, 180)};
    volatile double r[4];
    for (int k = 0; k < 4; ++k) r[k] = degrees[k] * 0.017453292519943295;
    volatile const double sines = sine(r[0]) * sine(r[2]);
    volatile const double cosines = cosine(r[0]) * cosine(r[2]);
    volatile const double product = cosines * cosine(r[3] - r[1]);
    volatile const double x = sines + product;
    volatile const double expected = x >= 1.0 ? 0.0 : x < -1.0 ? kHalfCircumference : arcCosine(x) * 6371.0;
    ASSERT_EQ(Bits(LatLongDist(degrees[0], degrees[1], degrees[2], degrees[3])), Bits(expected));
  }
}

struct TextRow
{
  const char* point1;
  const char* point2;
  int decimals;
  unsigned long size;
  const char* result;
};

TEST(Distance, OnText)
{
  const TextRow rows[] = {
      {"0,0", "0,1", 3, 20, "111.195"},
      {"0,0", "0,1", 0, 20, "111"},
      {"0,0", "0,1", 9, 20, "111.194927"},
      {"0,0", "0,1", 6, 20, "111.194927"},
      {"0,0", "0,1", 7, 20, "111.194927"},
      {"0,0", "0,1", -1, 20, "111.194927"},
      {"0 0", "0;1", 1, 20, "111.2"},
      {"0x", "0,1", 1, 20, ""},
      {"0/ 0 and more", "0\t1e0,", 1, 20, "111.2"},
      {"1,1", "1,1", 2, 20, "0.00"},
      {"0", "0,1", 3, 20, ""},
      {"0,1", "0", 3, 20, ""},
      {"0,", "0,1", 3, 20, ""},
      {"0,x", "0,1", 3, 20, ""},
      {"x,0", "0,1", 3, 20, ""},
      {"", "0,1", 3, 20, ""},
      {"0,1", "", 3, 20, ""},
      {"0,0", "0,1", 3, 7, "111.195"},
      {"0,0", "0,1", 3, 6, "111.19"},
      {"0,0", "0,1", 3, 1, "1"},
      {"0,0", "0,1", 3, 0, ""},
      {"0,0", "0,180", 6, 20, "20015.086796"},
  };
  for (const TextRow& row : rows) {
    GuardedBuffer out(row.size + 1);
    const ExactText<char> point1(row.point1);
    const ExactText<char> point2(row.point2);
    LatLongDist(out.Data(), point1.Get(), point2.Get(), row.decimals, row.size);
    EXPECT_STREQ(out.Data(), row.result) << row.point1 << " to " << row.point2;
    EXPECT_TRUE(out.Intact());
    if (*row.result != '\0') {
      EXPECT_EQ(out.Data()[row.size], '\0');
    }
  }
}

TEST(Distance, TextAndNumbersAgree)
{
  Random random;
  for (int i = 0; i < kCases; ++i) {
    const double p[4] = {random.Coordinate(90), random.Coordinate(180), random.Coordinate(90), random.Coordinate(180)};
    char point1[100];
    char point2[100];
    std::snprintf(point1, sizeof point1, "%.17g,%.17g", p[0], p[1]);
    std::snprintf(point2, sizeof point2, "%.17g %.17g", p[2], p[3]);
    const int decimals = random.Below(8);
    char expected[100];
    std::snprintf(expected, sizeof expected, "%.*f", decimals > 6 ? 6 : decimals,
                  reference::LatLongDist(p[0], p[1], p[2], p[3]));
    GuardedBuffer out(static_cast<std::size_t>(1 + random.Below(20)));
    LatLongDist(out.Data(), point1, point2, decimals, out.Size() - 1);
    ASSERT_EQ(std::string(out.Data()), std::string(expected).substr(0, out.Size() - 1)) << point1 << " to " << point2;
    ASSERT_TRUE(out.Intact());
  }
}

TEST(Distance, ResultsThatAreNoNumbersFit)
{
  GuardedBuffer out(40);
  LatLongDist(out.Data(), "inf,0", "0,0", 6, 39);
  EXPECT_NE(std::strstr(out.Data(), "nan"), nullptr) << out.Data();
}

constexpr double kBefore = -12345.0;

reference::Crossing Intersecting(const double (&p)[8], double tolerance, double minAngle)
{
  reference::Crossing out = {false, kBefore, kBefore, false};
  out.found = IntersectionOfLines(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], tolerance, minAngle, out.x, out.y,
                                  &out.onFirst);
  return out;
}

struct CrossingRow
{
  double points[8];
  double tolerance;
  double minAngle;
  reference::Crossing result;
};

constexpr double kTolerance = 1e-9;
constexpr reference::Crossing kNone = {false, kBefore, kBefore, false};

TEST(Intersection, Rows)
{
  const double tan5 = 0.08748866352592401;
  const CrossingRow rows[] = {
      // The axes, in both roles.
      {{0, 0, 1, 0, 0, -1, 0, 1}, kTolerance, 0, {true, 0, 0, true}},
      {{0, -1, 0, 1, 0, 0, 1, 0}, kTolerance, 0, {true, 0, 0, true}},
      // Off the first segment; the second is not looked at.
      {{1, 0, 2, 0, 0, -1, 0, 1}, kTolerance, 0, {true, 0, 0, false}},
      {{0, 1, 0, 2, -1, 0, 1, 0}, kTolerance, 0, {true, 0, 0, false}},
      {{-1, 0, 1, 0, 0, 5, 0, 6}, kTolerance, 0, {true, 0, 0, true}},
      // At its ends, and with its points the other way round.
      {{0, 0, 2, 2, 0, 4, 4, 0}, kTolerance, 0, {true, 2, 2, true}},
      {{2, 2, 0, 0, 0, 4, 4, 0}, kTolerance, 0, {true, 2, 2, true}},
      {{0, 2, 0, -2, -1, 2, 1, 2}, kTolerance, 0, {true, 0, 2, true}},
      {{3, 3, 1, 1, 0, 4, 4, 0}, kTolerance, 0, {true, 2, 2, true}},
      // Parallel.
      {{0, 0, 1, 1, 0, 1, 1, 2}, kTolerance, 0, kNone},
      {{0, 0, 1, 1, 0, 0, 2, 2}, kTolerance, 0, kNone},
      {{0, 0, 0, 1, 1, 0, 1, 1}, kTolerance, 0, kNone},
      // Points instead of lines.
      {{0, 0, 1, 0, 5, 5, 5, 5}, kTolerance, 0, kNone},
      {{5, 5, 5, 5, 0, 0, 1, 0}, kTolerance, 0, kNone},
      {{5, 5, 5, 5, 5, 5, 5, 5}, kTolerance, 0, kNone},
      // Vertical by tolerance: x of the first point counts, and the segment test goes by x.
      {{0, 0, 4, 0, 1, 0, 1.5, 4}, 0.5, 0, {true, 1, 0, true}},
      {{1, 0, 1.5, 4, 0, 2, 4, 2}, 0.5, 0, {true, 1, 2, true}},
      {{1, 0, 1.5, 0.5, 0, 2, 4, 2}, 0.5, 0, kNone},
      // Angles of 5 and 45 degrees and of 90, in all directions.
      {{0, 0, 1, 0, 0, 0, 1, tan5}, kTolerance, 10, kNone},
      {{0, 0, 1, 0, 0, 0, -1, -tan5}, kTolerance, 10, kNone},
      {{0, 0, -1, tan5, 0, 0, -1, -tan5}, kTolerance, 11, kNone},
      {{0, 0, 1, 0, 0, 0, 1, tan5}, kTolerance, 4.9, {true, 0, 0, true}},
      {{0, 0, 1, 0, 0, 0, 1, 1}, kTolerance, 44, {true, 0, 0, true}},
      {{0, 0, 1, 0, 0, 0, 1, 1}, kTolerance, 46, kNone},
      {{0, 0, 1, 0, 0, 0, 0, 1}, kTolerance, 89.9, {true, 0, 0, true}},
      {{0, 0, 1, 0, 0, 0, 0, 1}, kTolerance, 90.1, kNone},
  };
  for (const CrossingRow& row : rows) {
    const reference::Crossing out = Intersecting(row.points, row.tolerance, row.minAngle);
    const auto line = &row - rows;
    EXPECT_EQ(out.found, row.result.found) << "row " << line;
    EXPECT_EQ(out.x, row.result.x) << "row " << line;
    EXPECT_EQ(out.y, row.result.y) << "row " << line;
    EXPECT_EQ(out.onFirst, row.result.onFirst) << "row " << line;
  }
}

TEST(Intersection, WithoutSegmentTest)
{
  double x = 0;
  double y = 0;
  EXPECT_TRUE(IntersectionOfLines(0, 0, 2, 2, 0, 2, 2, 0, kTolerance, 0, x, y, nullptr));
  EXPECT_EQ(x, 1);
  EXPECT_EQ(y, 1);
}

TEST(Intersection, LikeReference)
{
  Random random;
  int found = 0;
  for (int i = 0; i < 2 * kCases; ++i) {
    double p[8];
    for (double& coordinate : p) coordinate = random.Coordinate(100);
    if (random.Below(3) == 0) p[2] = p[0];
    if (random.Below(3) == 0) p[6] = p[4];
    if (random.Below(8) == 0) p[7] = p[5];
    const double tolerance = random.Below(3) == 0 ? 0.5 : random.Below(2) == 0 ? 0.0 : kTolerance;
    const double minAngle = random.Below(2) == 0 ? 0.0 : random.Between(0, 95);
    const reference::Crossing expected =
        reference::IntersectionOfLines(p, tolerance, minAngle, {false, kBefore, kBefore, false});
    const reference::Crossing out = Intersecting(p, tolerance, minAngle);
    ASSERT_EQ(out.found, expected.found) << i;
    ASSERT_EQ(Bits(out.x), Bits(expected.x)) << i;
    ASSERT_EQ(Bits(out.y), Bits(expected.y)) << i;
    ASSERT_EQ(out.onFirst, expected.onFirst) << i;
    found += out.found;
  }
  EXPECT_GT(found, kCases / 2);
}

}  // namespace
