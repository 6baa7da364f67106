#include "paf/place.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"
#include "unit/tools/failure_of.h"

namespace tool {
namespace {

using tool_test::FailureOf;
using Texts = std::vector<std::string>;

struct PlaceRow
{
  Texts texts;
  double latitude;
  double longitude;
  const char* latitudeText;
  const char* longitudeText;
};

const PlaceRow kPlaces[] = {{{"-33.8568,151.2153"}, -33.8568, 151.2153, "-33.8568", "151.2153"},
                            {{"-33.8568", "151.2153"}, -33.8568, 151.2153, "-33.8568", "151.2153"},
                            {{" -33.5 , 151\t"}, -33.5, 151, "-33.5", "151"},
                            {{"-33.5,", "151"}, -33.5, 151, "-33.5", "151"},
                            {{"+1.5;"}, 0, 0, nullptr, nullptr},
                            {{"+90,-180"}, 90, -180, "+90", "-180"},
                            {{"-90,180"}, -90, 180, "-90", "180"},
                            {{"0,0"}, 0, 0, "0", "0"},
                            {{".5,1e1"}, 0.5, 10, ".5", "1e1"}};

TEST(Place, IsReadHoweverItIsSeparated)
{
  for (const PlaceRow& row : kPlaces) {
    SCOPED_TRACE(testing::PrintToString(row.texts));
    if (row.latitudeText == nullptr) {
      EXPECT_THROW(ParsePlace(row.texts), Failure);
      continue;
    }
    const GeoPlace place = ParsePlace(row.texts);
    EXPECT_EQ(place.latitude, row.latitude);
    EXPECT_EQ(place.longitude, row.longitude);
    EXPECT_EQ(place.latitudeText, row.latitudeText);
    EXPECT_EQ(place.longitudeText, row.longitudeText);
  }
}

constexpr const char* kNoPlaces[] = {"",     ",",        "1",     "1,",    ",1",       "1,2,3", "1 2 3",      "a,b",
                                     "1,b",  "90.001,0", "-91,0", "0,181", "0,-180.1", "nan,0", "inf,0",      "0,1e400",
                                     "1,2x", "0x1,2",    "+-1,2", "++1,2", "+,1",      "1;2",   "1,\xC3\xA9", "--1,2"};

TEST(Place, IsTwoNumbersInRange)
{
  for (const char* text : kNoPlaces) {
    EXPECT_EQ(
        FailureOf([text] { ParsePlace({text}); }),
        "\"" + std::string(text) + "\" is no place: write latitude and longitude in degrees, as in -33.8568,151.2153");
  }
  EXPECT_NE(FailureOf([] { ParsePlace({}); }), "none");
}

TEST(Place, MeasuresOnTheSphere)
{
  const GeoPlace place = ParsePlace({"0,0"});
  EXPECT_EQ(place.MetresTo(0, 0), 0);
  EXPECT_NEAR(place.MetresTo(0, 1), 111'200, 200);
  EXPECT_NEAR(place.MetresTo(90, 0), 10'007'500, 20'000);
}

TEST(ReadFile, GivesAllBytes)
{
  const test_support::TempDir dir;
  const std::string bytes("a\r\n\0\xFF", 5);
  EXPECT_EQ(ReadFile(dir.Write("file", bytes)), bytes);
  EXPECT_EQ(ReadFile(dir.Write("empty", "")), "");
  const std::string large(1 << 20, 'x');
  EXPECT_EQ(ReadFile(dir.Write("large", large)), large);
}

TEST(ReadFile, LeavesOutAByteOrderMark)
{
  const test_support::TempDir dir;
  EXPECT_EQ(ReadFile(dir.Write("marked", "\xEF\xBB\xBF-37,144")), "-37,144");
  EXPECT_EQ(ReadFile(dir.Write("mark", "\xEF\xBB\xBF")), "");
  EXPECT_EQ(ReadFile(dir.Write("half", "\xEF\xBB")), "\xEF\xBB");
  EXPECT_EQ(ReadFile(dir.Write("behind", "1\xEF\xBB\xBF")), "1\xEF\xBB\xBF");
}

TEST(ReadFile, SaysWhyItCannot)
{
  const test_support::TempDir dir;
  EXPECT_EQ(FailureOf([&] { ReadFile(dir.Path("none")); }), dir.Path("none") + ": No such file or directory");
  EXPECT_EQ(FailureOf([&] { ReadFile(dir.Path()); }), dir.Path() + ": Is a directory");
}

}  // namespace
}  // namespace tool
