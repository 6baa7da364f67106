#include "arf/spatial/polygon_text.h"

#include <gtest/gtest.h>

#include <string>

#include "support/random_seed.h"

namespace arf {
namespace {

std::size_t EdgesOf(const std::string& text)
{
  Polygon polygon;
  const std::string_view fault = ReadPolygon(text, polygon);
  EXPECT_EQ(fault, "") << text;
  return polygon.Edges().size();
}

std::string FaultOf(const std::string& text)
{
  Polygon polygon;
  const std::string_view fault = ReadPolygon(text, polygon);
  EXPECT_FALSE(fault.empty()) << text.substr(0, 80);
  EXPECT_TRUE(polygon.Edges().empty()) << text;
  return std::string(fault);
}

TEST(PolygonText, Lists)
{
  EXPECT_EQ(EdgesOf("-33.86,151.20;-33.87,151.22;-33.88,151.21"), 3U);
  EXPECT_EQ(EdgesOf("  -33.86 151.20\n-33.87 151.22\r\n-33.88\t151.21 ;"), 3U);
  EXPECT_EQ(EdgesOf("-33.86,151.20,-33.87,151.22,-33.88,151.21,-33.86,151.20"), 3U) << "the first vertex again";
  EXPECT_EQ(EdgesOf("+1,2;3,4;5,2|2,2.5;3,3;4,2.5;3,2.5"), 7U) << "a hole";
}

TEST(PolygonText, ListsAreLatitudeFirst)
{
  Polygon polygon;
  ASSERT_EQ(ReadPolygon("-33.5,151.25;-34,151.25;-34,150", polygon), "");
  EXPECT_EQ(polygon.Bounds().south, -34'000'000);
  EXPECT_EQ(polygon.Bounds().east, 151'250'000);
}

TEST(PolygonText, WellKnownText)
{
  EXPECT_EQ(EdgesOf("POLYGON((151.2 -33.86,151.22 -33.87,151.21 -33.88,151.2 -33.86))"), 3U);
  EXPECT_EQ(EdgesOf(" polygon ( ( 1 2 , 3 4 , 5 2 , 1 2 ) , ( 2 2.5 , 3 3 , 4 2.5 , 2 2.5 ) ) "), 6U);
  EXPECT_EQ(EdgesOf("MULTIPOLYGON(((1 2,3 4,5 2,1 2)),((11 2,13 4,15 2,11 2),(12 2.5,13 3,14 2.5,12 2.5)))"), 9U);
  EXPECT_EQ(EdgesOf("SRID=4326;POLYGON Z((1 2 9,3 4 9,5 2 9,1 2 9))"), 3U);
  for (const char* name : {"POLYGONZ", "polygon m", "PolygonM", "POLYGON ZM", "POLYGONZM "})
    EXPECT_EQ(EdgesOf(std::string(name) + "((1 2 9,3 4 9,5 2 9,1 2 9))"), 3U) << name;
  for (const char* name : {"MULTIPOLYGON Z", "MULTIPOLYGONZ", "MultiPolygonM", "MULTIPOLYGONZM"})
    EXPECT_EQ(EdgesOf(std::string(name) + "(((1 2 9,3 4 9,5 2 9,1 2 9)))"), 3U) << name;
  EXPECT_EQ(EdgesOf("POLYGON EMPTY"), 0U);
  EXPECT_EQ(EdgesOf("POLYGONZ EMPTY"), 0U);
}

TEST(PolygonText, WellKnownTextIsLongitudeFirst)
{
  Polygon polygon;
  ASSERT_EQ(ReadPolygon("POLYGON((151.25 -33.5,151.25 -34,150 -34,151.25 -33.5))", polygon), "");
  EXPECT_EQ(polygon.Bounds().south, -34'000'000);
  EXPECT_EQ(polygon.Bounds().east, 151'250'000);
}

TEST(PolygonText, FaultsAreNamed)
{
  EXPECT_EQ(FaultOf("nan,1;2,3;4,5"), "A coordinate is not a finite number.");
  EXPECT_EQ(FaultOf("POLYGON((1 nan,2 3,4 5))"), "A coordinate is not a finite number.");
  EXPECT_EQ(FaultOf("1,inf;2,3;4,5"), "A coordinate is not a finite number.");
  EXPECT_EQ(FaultOf("1e999,1;2,3;4,5"), "A coordinate is not a finite number.");
  EXPECT_EQ(FaultOf("151.2,-33.86;151.3,-33.87;151.25,-34"),
            "A latitude is beyond 90 degrees, or a longitude beyond 180.");
  EXPECT_EQ(FaultOf("1,2;3,4;5"), "A latitude has no longitude.");
  EXPECT_EQ(FaultOf("POLYGON((1,2 3,4 5))"), "A latitude has no longitude.");
  EXPECT_EQ(FaultOf("1,2;3,4"), "A ring has fewer than three vertices.");
  EXPECT_EQ(FaultOf(""), "A ring has fewer than three vertices.");
  EXPECT_EQ(FaultOf("1,2;3,4;5,6|"), "A ring has fewer than three vertices.");
  EXPECT_EQ(FaultOf("1,2;3,x;5,6"), "A number is expected where there is none.");
  EXPECT_EQ(FaultOf("LINESTRING(1 2,3 4)"), "Only POLYGON and MULTIPOLYGON are areas.");
  for (const char* name : {"POLYGONS", "POLYGONZZ", "POLYGONMZ", "MULTIPOLYGONX"})
    EXPECT_EQ(FaultOf(std::string(name) + "((1 2,3 4,5 6))"), "Only POLYGON and MULTIPOLYGON are areas.") << name;
  EXPECT_EQ(FaultOf("SRID=3857;POLYGON((1 2,3 4,5 6))"), "Only SRID 4326, degrees of latitude and longitude, is read.");
  for (const char* text : {"POLYGON(1 2,3 4,5 6)", "POLYGON((1 2,3 4,5 6)", "POLYGON((1 2,3 4,5 6)))", "POLYGON"})
    EXPECT_EQ(FaultOf(text), "The brackets do not fit.") << text;
}

TEST(PolygonText, HasAGreatestNumberOfVertices)
{
  std::string text;
  for (std::size_t i = 0; i < Polygon::kMaxEdges + 2; ++i) text += i % 2 == 0 ? "1 2 " : "3 4 ";
  EXPECT_EQ(FaultOf(text), "The polygon has more than 32,768 vertices.");
}

TEST(PolygonText, AnyText)
{
  std::mt19937 random(test_support::RandomSeed());
  const std::string signs = "0123456789.-+e ,;|()\nPOLYGONMUTIZSRDnaif=";
  Polygon polygon;
  std::size_t read = 0;
  for (int i = 0; i < 20'000; ++i) {
    std::string text = random() % 2 == 0 ? "POLYGON((1 2,3 4,5 2" : "1,2;3,4;5,2";
    for (std::size_t length = random() % 12; length > 0; --length)
      text.insert(text.begin() + static_cast<std::ptrdiff_t>(random() % text.size()), signs[random() % signs.size()]);
    const bool isRead = ReadPolygon(text, polygon).empty();
    EXPECT_TRUE(isRead || polygon.Edges().empty());
    read += isRead;
  }
  EXPECT_GT(read, 0U);
}

TEST(PlaceText, LatitudeThenLongitude)
{
  GeoPoint place;
  EXPECT_EQ(ReadPlace("-33.5,151.25", place), "");
  EXPECT_EQ(place, (GeoPoint{-33'500'000, 151'250'000}));
  EXPECT_EQ(ReadPlace(" -33.5  151.25 ", place), "");
  EXPECT_EQ(ReadPlace("151.25,-33.5", place), "A latitude is beyond 90 degrees, or a longitude beyond 180.");
  EXPECT_EQ(ReadPlace("-33.5", place), "A latitude has no longitude.");
  EXPECT_EQ(ReadPlace("-33.5,151.25,7", place), "A number is expected where there is none.");
  EXPECT_EQ(ReadPlace("", place), "A number is expected where there is none.");
  EXPECT_EQ(ReadPlace("nan,1", place), "A coordinate is not a finite number.");
}

}  // namespace
}  // namespace arf
