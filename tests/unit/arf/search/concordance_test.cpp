// Concordances as an application asks them, and against a plain count.
#include "arf/search/concordance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "support/random_seed.h"
#include "unit/arf/search/town_fixture.h"

namespace {

using arf_test::Towns;

std::intptr_t Text(const char* text)
{
  return reinterpret_cast<std::intptr_t>(text);
}

struct Concordances : Towns
{
  /** "from>to n/total", separated by commas; or the status. */
  std::string List(const char* from, const char* code, const char* to, int percent = 0)
  {
    IArfSearcher& s = **searcher;
    if (const int status = s.BeginGifConcordance(Text(from), Text(code), Text(to), 0, 0, percent); status != 0)
      return "status " + std::to_string(status);
    std::string all;
    for (int i = 0; i < 100; ++i) {
      char first[64], second[64];
      PafAuConcordance weight = {9, 9, 9};
      const int status = s.GetNextGifConcordance(first, sizeof first, second, sizeof second, &weight);
      if (status != 0) return "status " + std::to_string(status);
      if (first[0] == '\0') {
        EXPECT_STREQ(second, "");
        EXPECT_EQ(weight.addresses + weight.total, 0U);
        return all;
      }
      EXPECT_DOUBLE_EQ(weight.percent, 100.0 * weight.addresses / weight.total);
      if (!all.empty()) all += ", ";
      all += std::string(first) + '>' + second + ' ' + std::to_string(weight.addresses) + '/' +
             std::to_string(weight.total);
    }
    return "no end";
  }
};

TEST_F(Concordances, PairsWithTheirWeights)
{
  EXPECT_EQ(List("Postcode", "", "LocalGovernmentArea"), "2991>L1 7/8, 2991>L2 1/8, 3991>L2 3/3");
  EXPECT_EQ(List("LocalGovernmentArea", nullptr, "Postcode"), "L1>2991 7/7, L2>3991 3/4, L2>2991 1/4");
  EXPECT_EQ(List("Postcode", "2991", "Locality"), "2991>ALDERTON NSW 2991 8/9, 2991>CRANFORD NSW 2991 1/9");
  EXPECT_EQ(List("MeshBlock", "m2", "locality"), "M2>ALDERTON NSW 2991 3/3");
  EXPECT_EQ(List("Locality", "Bramley", "mesh_block"), "BRAMLEY VIC 3991>M4 2/3, BRAMLEY VIC 3991>M5 1/3");
  EXPECT_EQ(List("Locality", "Nowhere", "mesh_block"), "");
}

TEST_F(Concordances, ArgumentsThatAreRefused)
{
  const std::string refused = "status " + std::to_string(PAF_AU_ERR_BAD_CONCORDANCE);
  for (const int percent : {-5, -1, 101, 1000000}) EXPECT_EQ(List("Postcode", "", "Locality", percent), refused);
  EXPECT_EQ(searcher->Description(PAF_AU_ERR_BAD_CONCORDANCE).substr(0, 53),
            "The least percentage is a whole number from 0 to 100.");
  EXPECT_NE(List("Postcode", "", "Locality", 100), refused);
  IArfSearcher& s = **searcher;
  EXPECT_EQ(s.BeginGifConcordance(Text("Postcode"), 0, Text("Locality"), 1, 0, 0), PAF_AU_ERR_BAD_CONCORDANCE);
  EXPECT_EQ(s.BeginGifConcordance(Text("Postcode"), 0, Text("Locality"), 0, Text("x"), 0), PAF_AU_ERR_BAD_CONCORDANCE);
  EXPECT_EQ(searcher->Description(PAF_AU_ERR_BAD_CONCORDANCE).substr(0, 61),
            "The fourth and fifth argument are reserved and must be 0. Use");
  EXPECT_EQ(s.GetFindStatus(), PAF_AU_FIND_NOT_SEARCHED);
}

TEST_F(Concordances, LeastPercent)
{
  EXPECT_EQ(List("Postcode", "", "LocalGovernmentArea", 50), "2991>L1 7/8, 3991>L2 3/3");
  EXPECT_EQ(searcher->SetProperty("GifCommonMinimumPercent", "13").status, 0);
  EXPECT_EQ(List("Postcode", "", "LocalGovernmentArea"), "2991>L1 7/8, 3991>L2 3/3");
  EXPECT_EQ(List("Postcode", "", "LocalGovernmentArea", 1), "2991>L1 7/8, 2991>L2 1/8, 3991>L2 3/3");
}

TEST_F(Concordances, Faults)
{
  char first[64], second[64];
  IArfSearcher& s = **searcher;
  EXPECT_EQ(s.GetNextGifConcordance(first, 64, second, 64, nullptr), PAF_AU_ERR_NO_ENUMERATION);
  EXPECT_EQ(List("Ward", "", "Postcode"), "status 65");
  EXPECT_EQ(List("Postcode", "", "StatisticalArea"), "status 65") << "the data has none";
  EXPECT_EQ(List(nullptr, nullptr, nullptr), "status 65");
  for (const std::intptr_t number : {std::intptr_t{1}, std::intptr_t{0xFFFF}, std::intptr_t{-1}}) {
    EXPECT_EQ(s.BeginGifConcordance(number, 0, Text("Locality"), 0, 0, 0), PAF_AU_ERR_BAD_CONCORDANCE) << number;
    EXPECT_EQ(s.BeginGifConcordance(Text("Postcode"), number, Text("Locality"), 0, 0, 0), PAF_AU_ERR_BAD_CONCORDANCE);
    EXPECT_EQ(s.BeginGifConcordance(Text("Postcode"), 0, number, 0, 0, 0), PAF_AU_ERR_BAD_CONCORDANCE) << number;
  }
  ASSERT_EQ(s.BeginGifConcordance(Text("Postcode"), 0, Text("Locality"), 0, 0, 0), 0);
  EXPECT_EQ(s.GetNextGifConcordance(first, 64, second, 4, nullptr), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_STREQ(first, "");
  EXPECT_STREQ(second, "");
  EXPECT_EQ(s.GetNextGifConcordance(first, 64, second, 64, nullptr), 0);
  EXPECT_STREQ(second, "ALDERTON NSW 2991");
}

TEST(Concordance, EqualsAPlainCount)
{
  arf_test::Random random(test_support::RandomSeed());
  std::string csv = "dpid,number_first,street_name,locality,state,postcode,x,y\n";
  std::map<std::pair<std::string, std::string>, std::uint32_t> expected;
  std::map<std::string, std::uint32_t> totals;
  for (int i = 0; i < 6'000; ++i) {
    const std::string locality = "TOWN " + std::to_string(random() % 20);
    const std::string x = random() % 10 == 0 ? "" : "X" + std::to_string(random() % 60);
    const std::string y = random() % 10 == 0 ? "" : "Y" + std::to_string(random() % 60);
    csv +=
        std::to_string(30'000'000 + i) + ',' + std::to_string(i) + ",A," + locality + ",NSW,2000," + x + ',' + y + '\n';
    if (x.empty() || y.empty()) continue;
    ++expected[{x, y}];
    ++totals[x];
  }
  const test_support::TempDir dir;
  const auto database = arf_test::OpenOrFail(arf_test::BuiltDirectory(dir, csv), arf::OpenMode::Memory);
  arf::Concordance concordance(*database);
  concordance.Start(*arf::FindCodeKind(*database, "x"), "", *arf::FindCodeKind(*database, "Y"), 0);
  std::size_t count = 0;
  std::string before;
  std::uint32_t addressesBefore = 0;
  for (; concordance.Current(); concordance.Advance(), ++count) {
    const arf::Correspondence& found = *concordance.Current();
    arf::CodeText fromText, toText;
    const std::string from(concordance.FromCode(found, fromText)), to(concordance.ToCode(found, toText));
    ASSERT_EQ(found.addresses, (expected[{from, to}])) << from << ' ' << to;
    ASSERT_EQ(found.total, totals[from]) << from;
    ASSERT_TRUE(before < from || (before == from && found.addresses <= addressesBefore));
    before = from;
    addressesBefore = found.addresses;
  }
  EXPECT_EQ(count, expected.size());
}

}  // namespace
