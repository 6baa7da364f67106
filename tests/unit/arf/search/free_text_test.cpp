// The ranked search, over the small towns and over random words.
#include <gtest/gtest.h>

#include <set>

#include "arf/search/free_text_search.h"
#include "support/random_seed.h"
#include "unit/arf/search/town_fixture.h"
#include "unit/arf/spatial/place_fixture.h"

namespace {

using arf_test::Towns;

TEST_F(Towns, FreeTextBestFirst)
{
  EXPECT_EQ(Search("12 green valley road bramley").substr(0, 5), "10 11");
  EXPECT_EQ(Search("bramley vic green valley rd 12").substr(0, 5), "10 11") << "in any order";
  EXPECT_EQ(Search("high st alderton").substr(0, 14), "01 02 03 04 05") << "the street of the locality first";
  EXPECT_EQ(Search("15 valley"), "11") << "a range holds the number";
  EXPECT_EQ(Search("cranford"), "12");
}

TEST_F(Towns, FreeTextUnits)
{
  EXPECT_EQ(Search("2/5 high street alderton").substr(0, 8), "04 03 01");
  EXPECT_EQ(Search("unit 1 5 high street alderton").substr(0, 8), "03 04 01");
}

TEST_F(Towns, FreeTextBuildings)
{
  EXPECT_EQ(Search("old mill").substr(0, 2), "05");
  EXPECT_EQ(Search("mill alderton").substr(0, 5), "06 05") << "mill lane has more of its name written";
}

TEST_F(Towns, FreeTextBeginningsOfWords)
{
  EXPECT_EQ(Search("cranf"), "12");
  EXPECT_EQ(Search("gre val").substr(0, 5), "10 11");
}

TEST_F(Towns, FreeTextPutsOneTypingErrorRight)
{
  for (const char* text :
       {"cramford", "cranfrod", "crnford", "crannford", "kranford", "cranfordd", "saint mary rd cramford"})
    EXPECT_EQ(Search(text), "12") << text;
  EXPECT_EQ(Search("12 gren valey road bramely").substr(0, 2), "10");
  EXPECT_EQ(Search("hihg street aldreton").substr(0, 14), "01 02 03 04 05");
  for (const char* text : {"crnfrod", "mri", "cran4ord"}) EXPECT_EQ(Search(text), "") << text;
}

/** MILLS is no word of the data, MILL is one: both ways to put it right count, but less than the word itself. */
TEST(FreeTextSearch, MistypedWordsCountLess)
{
  const test_support::TempDir dir;
  const auto database = arf_test::OpenOrFail(
      arf_test::BuiltDirectory(dir,
                               "dpid,number_first,street_name,street_type,locality,state,postcode\n"
                               "30000001,1,HARPER,STREET,ALDERTON,NSW,2991\n"
                               "30000002,1,HARPERS,STREET,ALDERTON,NSW,2991\n"
                               "30000003,1,HARPERVILLE,STREET,ALDERTON,NSW,2991\n"
                               "30000004,1,CARPER,STREET,ALDERTON,NSW,2991\n"),
      arf::OpenMode::Memory);
  const auto found = [&](const char* text) {
    arf::FreeTextSearch search(*database);
    EXPECT_EQ(search.Start(text, nullptr), arf::InputFault::None);
    std::string all;
    for (; search.Current(); search.Advance()) all += std::to_string(search.Current()->dpid % 10);
    return all;
  };
  EXPECT_EQ(found("harper"), "1") << "a word that is there is never put right";
  EXPECT_EQ(found("harpe"), "123") << "beginnings before errors, and only once";
  EXPECT_EQ(found("xarper"), "41") << "alike, so in stored order";
  EXPECT_EQ(found("harpr"), "1");
  EXPECT_EQ(found("streett"), "");
  EXPECT_EQ(found(std::string(60, 'H').c_str()), "");
}

TEST_F(Towns, FreeTextWrittenInOtherWays)
{
  EXPECT_EQ(Search("saint mary rd"), "12");
  EXPECT_EQ(Search("St. Mary Road"), "12");
}

TEST_F(Towns, FreeTextStateLeavesOutOthers)
{
  EXPECT_EQ(Search("high street VIC"), "09");
  EXPECT_EQ(Search("high street NT"), "");
}

TEST_F(Towns, FreeTextPostcode)
{
  EXPECT_EQ(Search("3991 high").substr(0, 2), "09");
}

TEST_F(Towns, FreeTextNothing)
{
  for (const char* text : {"", "zzzz", "?!", "99999 qqq"}) {
    EXPECT_EQ(Search(text), "") << text;
    EXPECT_EQ((*searcher)->GetFindStatus(), PAF_AU_FIND_NOTHING);
  }
  EXPECT_EQ((*searcher)->BeginAddressSearch(nullptr), 0);
  EXPECT_EQ(Search(std::string(10'000, 'a')), "status 6");
  char out[64];
  EXPECT_EQ((*searcher)->GetNextAddressSearch(out, sizeof out), PAF_AU_ERR_NO_ENUMERATION);
}

TEST_F(Towns, FreeTextGivesNoAddressTwice)
{
  for (const char* text :
       {"high street alderton 5", "mill lane old mill alderton 2991", "2991", "nsw alderton cranford",
        "high st mill green valley bramley alderton", "1/5 high alderton 7 mill"}) {
    const std::string all = Search(text);
    std::set<std::string> seen;
    for (std::size_t i = 0; i + 1 < all.size(); i += 3)
      EXPECT_TRUE(seen.insert(all.substr(i, 2)).second) << text << ": " << all;
    EXPECT_FALSE(seen.empty()) << text;
  }
}

/** Any words, over names that share many: an enumeration ends and gives no address twice. */
TEST(FreeTextSearch, RandomWords)
{
  arf_test::Random random(test_support::RandomSeed());
  const char* const words[] = {"RED", "HILL", "PARK", "ST",   "STREET", "ROAD", "GEORGE", "MOUNT", "MT",    "1",
                               "5",   "12A",  "3/7",  "2000", "2001",   "NSW",  "VIC",    "TOWER", "HOUSE", "EAST"};
  const auto word = [&] { return std::string(words[random() % std::size(words)]); };
  const auto name = [&] { return std::string(words[random() % 3]) + (random() % 2 == 0 ? "" : " GEORGE"); };
  std::string csv = "dpid,building,unit_number,number_first,street_name,street_type,locality,state,postcode\n";
  for (int i = 0; i < 3'000; ++i) {
    csv += std::to_string(30'000'000 + i) + ',' + (random() % 8 == 0 ? name() + " HOUSE" : "") + ',';
    csv += (random() % 4 == 0 ? std::to_string(random() % 9) : "") + ',' + std::to_string(random() % 20 + 1) + ',';
    csv += name() + ',' + (random() % 2 == 0 ? "STREET" : "ROAD") + ',' + name() + (random() % 2 == 0 ? " EAST" : "");
    csv += random() % 2 == 0 ? ",NSW,2000\n" : ",VIC,2001\n";
  }
  const test_support::TempDir dir;
  const auto database = arf_test::OpenOrFail(arf_test::BuiltDirectory(dir, csv), arf::OpenMode::Memory);
  arf::FreeTextSearch search(*database);
  std::size_t found = 0;
  for (int i = 0; i < 300; ++i) {
    std::string text;
    for (std::size_t count = 1 + random() % 8; count > 0; --count) text += word() + ' ';
    ASSERT_EQ(search.Start(text, nullptr), arf::InputFault::None);
    std::set<std::uint32_t> seen;
    for (; search.Current(); search.Advance()) ASSERT_TRUE(seen.insert(search.Current()->ordinal).second) << text;
    found += seen.size();
  }
  EXPECT_GT(found, 10'000U);
}

/** Boxes of the kind that was written: those of the locality, or of the largest ones; the number first. */
TEST(FreeTextOfBoxes, KindsNumbersAndPlaces)
{
  constexpr const char* kBoxes =
      "dpid,building,number_first,street_name,street_type,postal_type,postal_number,locality,state,postcode\n"
      "30000001,,,,,PO BOX,12,ALDERTON,NSW,2991\n"
      "30000002,,,,,PO BOX,13,ALDERTON,NSW,2991\n"
      "30000003,,,,,PO BOX,C12,ALDERTON,NSW,2991\n"
      "30000004,,,,,GPO BOX,12,ALDERTON,NSW,2991\n"
      "30000005,Alderton Mill,,,,PO BOX,14,ALDERTON,NSW,2991\n"
      "30000006,,,,,PO BOX,12,BRAMLEY,VIC,3991\n"
      "30000007,,,,,CARE PO,,BRAMLEY,VIC,3991\n"
      "30000008,,12,ALDERTON,ROAD,,,BRAMLEY,VIC,3991\n"
      "30000009,Alderton Hall,12,MILL,LANE,,,ALDERTON,NSW,2991\n"
      "30000010,,5,BOX,LANE,,,BOX HILL,VIC,3992\n";
  const test_support::TempDir dir;
  const arf_test::DatabasePointer database(GetDb());
  char error[255] = "";
  ASSERT_EQ(database->Open(arf_test::BuiltDirectory(dir, kBoxes).c_str(), 2, error, sizeof error), 0) << error;
  arf_test::Searcher searcher(*database);
  EXPECT_EQ(searcher.SetProperty("OutputFields", "DPID").status, 0);
  const auto found = [&](const char* text) {
    char out[64];
    std::string all;
    EXPECT_EQ(searcher->BeginAddressSearch(text), 0) << text;
    while (searcher->GetNextAddressSearch(out, sizeof out) == 0 && out[0] != '\0')
      all += (all.empty() ? "" : " ") + std::string(out).substr(6);
    return all;
  };
  EXPECT_EQ(found("po box 13"), "02 01 03 05 06");
  EXPECT_EQ(found("po box 12").substr(0, 5), "01 06");
  EXPECT_EQ(found("p.o. box 12 bramley").substr(0, 2), "06");
  EXPECT_EQ(found("bramley box 12").substr(0, 2), "06");
  EXPECT_EQ(found("po box 12 nsw").substr(0, 2), "01");
  EXPECT_EQ(found("po box 12 3991").substr(0, 2), "06");
  EXPECT_EQ(found("po box c12 alderton").substr(0, 2), "03");
  EXPECT_EQ(found("po box 14 alderton").substr(0, 2), "05") << "a box with a building's name";
  EXPECT_EQ(found("gpo box 12"), "04");
  EXPECT_EQ(found("gpo 12"), "04");
  EXPECT_EQ(found("care po"), "07");
  EXPECT_NE(found("locked bag 12 bramley").substr(0, 2), "06") << "another kind";
  EXPECT_EQ(found("12 alderton road bramley").substr(0, 2), "08");
  EXPECT_EQ(found("box hill"), "10") << "a single word that is short for a kind is a name without a number";
}

}  // namespace
