#include "paf/country.h"

#include <gtest/gtest.h>

namespace tool {
namespace {

struct NameRow
{
  const char* name;
  const char* country;
  const char* rest;
};

constexpr NameRow kNames[] = {
    {"AU", "AU", ""},      {"au.Main", "AU", "Main"},   {"AUS.main", "AU", "main"}, {"au.x.y", "AU", "x.y"},
    {"NZL", "NZ", ""},     {"usa", "US", ""},           {"GB.a", "UK", "a"},        {"GBR", "UK", ""},
    {"int.x", "INT", "x"}, {"Main", "", "Main"},        {"XX.Main", "", "XX.Main"}, {"abcd.x", "", "abcd.x"},
    {"", "", ""},          {"/data/au", "", "/data/au"}};

TEST(DatabaseNames, SplitAtTheCountry)
{
  for (const NameRow& row : kNames) {
    SCOPED_TRACE(row.name);
    const DatabaseName name = SplitDatabaseName(row.name);
    EXPECT_EQ(name.country, row.country);
    EXPECT_EQ(name.rest, row.rest);
  }
}

struct TitleRow
{
  const char* title;
  const char* country;
};

constexpr TitleRow kTitles[] = {
    {"", "AU"},   {"Sample", "AU"}, {"nz 2024", "NZ"}, {"NewZealand", "NZ"}, {"New Zealand", "NZ"}, {"UKX", "UK"},
    {"gb", "UK"}, {"USA", "US"},    {"US mail", "US"}, {"USX", "AU"},        {"US", "AU"}};

TEST(DatabaseTitles, DecideTheCountry)
{
  for (const TitleRow& row : kTitles) {
    EXPECT_EQ(CountryOfDatabaseTitle(row.title), row.country) << row.title;
  }
}

TEST(DllNames, NameALibraryAndAPath)
{
  const auto name = SplitDllName("dll:MyArf;/data/x;y");
  ASSERT_TRUE(name);
  EXPECT_EQ(name->library, "libmyarf.so");
  EXPECT_EQ(name->path, "/data/x;y");
  ASSERT_TRUE(SplitDllName("DLL:MyArf"));
  EXPECT_EQ(SplitDllName("DLL:MyArf")->library, "libmyarf.so");
  EXPECT_EQ(SplitDllName("DLL:MyArf")->path, "");
}

TEST(DllNames, AreOnlyThoseWithThePrefix)
{
  EXPECT_FALSE(SplitDllName("AU"));
  EXPECT_FALSE(SplitDllName(""));
  EXPECT_FALSE(SplitDllName("xDLL:a"));
}

TEST(Case, ChangesAsciiLettersOnly)
{
  EXPECT_EQ(UpperCase("aZ0\xc3\xa9{"), "AZ0\xc3\xa9{");
  EXPECT_EQ(LowerCase("aZ0\xc3\x89["), "az0\xc3\x89[");
}

}  // namespace
}  // namespace tool
