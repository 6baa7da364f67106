#include "api/plugin_version.h"

#include <gtest/gtest.h>

#include "unit/api/stand_in.h"

namespace {

using qxpaf::CompareVersions;
using qxpaf::Feature;
using qxpaf::HasFeature;

struct CompareRow
{
  const char* a;
  const char* b;
  int result;
};

TEST(CompareVersions, ComparesNumberByNumber)
{
  const CompareRow rows[] = {
      {"", "", 0},
      {"5.7", "5.7", 0},
      {"5.7", "5.7.0", 0},
      {"5.7", "5.7.0.0", 0},
      {"5.7.0", "5.7.1", -1},
      {"5.10", "5.9", 1},
      {"5.8.278", "5.8.278", 0},
      {"5.8.279", "5.8.278", 1},
      {"5.8.278.1", "5.8.278", 1},
      {"6", "5.99.99", 1},
      {"", "0", 0},
      {"", "1", -1},
      {"abc", "", 0},
      {"abc", "0.0.0", 0},
      {"1abc", "1", 0},
      {"5,8-278", "5.8.278", 0},
      {"05.008", "5.8", 0},
      {"a5", "5", -1},
      {"-5", "0.5", 0},
      {"99999999999999999999999999", "1", 1},
      {"1", "99999999999999999999999999", -1},
  };
  for (const CompareRow& row : rows) {
    EXPECT_EQ(row.result, CompareVersions(row.a, row.b)) << row.a << " : " << row.b;
    EXPECT_EQ(-row.result, CompareVersions(row.b, row.a)) << row.b << " : " << row.a;
  }
}

struct FeatureRow
{
  const char* country;
  const char* version;
  bool gif;
  bool search;
};

TEST(HasFeature, NeedsAVersionNewerThanTheCountrysLastWithout)
{
  const FeatureRow rows[] = {
      {"AU", "5.7.270", false, false},  {"AU", "5.7.271", true, false},
      {"AU", "5.8.278", true, false},   {"AU", "5.8.279", true, true},
      {"AU", "5.10", true, true},       {"AU", "", false, false},
      {"NZ", "5.7.270", false, false},  {"NZ", "5.7.270.1", true, false},
      {"NZ", "5.8.278.0", true, false}, {"NZ", "5.9", true, true},
      {"UK", "5.7.0.11", false, false}, {"UK", "5.7.0.12", true, false},
      {"UK", "5.10.0.14", true, false}, {"UK", "5.10.0.15", true, true},
      {"US", "5.10.8", false, false},   {"US", "5.10.9", false, true},
      {"US", "99", false, true},        {"INT", "", true, true},
      {"au", "", true, true},           {"", "", true, true},
      {"USA", "1", true, true},
  };
  for (const FeatureRow& row : rows) {
    StandInDb db;
    db.country = row.country;
    StandInSearcher searcher;
    searcher.db = &db;
    searcher.version = row.version;
    EXPECT_EQ(row.gif, HasFeature(searcher, Feature::GifConcordance)) << row.country << ' ' << row.version;
    EXPECT_EQ(row.search, HasFeature(searcher, Feature::AddressSearch)) << row.country << ' ' << row.version;
  }
}

TEST(HasFeature, IsFalseWhenTheVersionCannotBeHad)
{
  StandInDb db;
  db.country = "AU";
  StandInSearcher searcher;
  searcher.db = &db;
  searcher.version = "9";
  searcher.versionStatus = 6408;
  EXPECT_FALSE(HasFeature(searcher, Feature::AddressSearch));
}

TEST(HasFeature, DoesNotAskForTheVersionWhereItDoesNotMatter)
{
  StandInDb db;
  StandInSearcher searcher;
  searcher.db = &db;
  searcher.versionStatus = 1;
  for (const char* const country : {"INT", "DE"}) {
    db.country = country;
    EXPECT_TRUE(HasFeature(searcher, Feature::GifConcordance));
  }
  db.country = "US";
  EXPECT_FALSE(HasFeature(searcher, Feature::GifConcordance));
  EXPECT_FALSE(searcher.versionAsked);
}

}  // namespace
