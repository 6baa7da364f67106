// Streets without a locality, as they are written.
#include "arf/match/street_query.h"

#include <gtest/gtest.h>

#include "unit/arf/match/engine_fixture.h"

namespace {

bool NamesStreet(const std::string& written)
{
  arf::InputText text;
  EXPECT_EQ(text.Read(written), arf::InputFault::None) << written;
  return arf::NamesStreet(arf_test::SmallEngine(), text);
}

TEST(StreetQuery, StreetsOfTheData)
{
  for (const char* written :
       {"George Street", "george st", "king st w", "King Street East", "third ave", "3rd Avenue", "bulbul ct",
        "The Parade", "broadway", "GEORGE ST 2000", "george st nsw", "george st, australia", "st kilda rd vic 3000"})
    EXPECT_TRUE(NamesStreet(written)) << written;
}

TEST(StreetQuery, NumbersThatAStreetHas)
{
  for (const char* written :
       {"1 George St", "12-14 george st", "3/12-14 George St", "Unit 7, 40 George St", "30 george st", "lot 5 smith rd",
        "10 king st w", "12 king st e", "Level 5, 12-14 George St NSW"})
    EXPECT_TRUE(NamesStreet(written)) << written;
}

TEST(StreetQuery, NothingIsCorrected)
{
  for (const char* written : {"",
                              ",",
                              "st",
                              "george",
                              "gorge st",
                              "george ave",
                              "george st w",
                              "esplanade",
                              "900 George St",
                              "12 George St",
                              "99/12-14 George St",
                              "lot 6 george st",
                              "10 king st e",
                              "george st vic",
                              "george st 3000",
                              "george st sydney",
                              "Sydney",
                              "po box 123",
                              "foo george st",
                              "123"})
    EXPECT_FALSE(NamesStreet(written)) << written;
}

}  // namespace
