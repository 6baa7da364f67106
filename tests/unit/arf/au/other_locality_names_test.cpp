// The field with another name of the locality.
#include "arf/au/other_locality_names.h"

#include <gtest/gtest.h>

#include "unit/arf/au/searcher_fixture.h"
#include "unit/arf/match/other_names_fixture.h"

namespace {

const std::string& Directory()
{
  static const test_support::TempDir dir;
  static const std::string path = arf_test::BuildRegister(dir);
  return path;
}

TEST(OtherLocalityNames, FirstByMatchKey)
{
  arf::OpenResult result;
  const auto database = arf::Database::Open(Directory(), arf::OpenMode::Memory, result);
  ASSERT_NE(database, nullptr) << result.message;
  const arf::OtherLocalityNames names(*database);
  ASSERT_EQ(database->LocalityAt(0).name, "ALDERTON");
  EXPECT_EQ(names.First(0), "ALDER TOWN");
  EXPECT_EQ(names.First(1), "");
  EXPECT_EQ(names.First(2), "THE FORD");
  EXPECT_EQ(names.First(3), "");
  EXPECT_EQ(names.First(arf::kNoIndex), "");
}

TEST(OtherLocalityNames, AreInTheRecord)
{
  arf_test::DatabasePointer database(GetDb());
  char error[255] = "";
  ASSERT_EQ(database->Open(Directory().c_str(), 3, error, sizeof error), 0) << error;
  arf_test::Searcher searcher(*database);
  ASSERT_EQ(searcher.SetProperty("OutputFields", "Locality;AlternativeLocality;Postcode").status, 0);
  ASSERT_EQ(searcher.SetProperty("Delimiter", "|").status, 0);
  EXPECT_EQ(searcher.Get("Alderton NSW"), (arf_test::Answer{0, "ALDERTON|ALDER TOWN|2991"}));
  EXPECT_EQ(searcher.Get("Bramley"), (arf_test::Answer{0, "BRAMLEY||2992"}));
  EXPECT_EQ(searcher.Get("2993"), (arf_test::Answer{0, "CRANFORD|THE FORD|2993"}));
}

}  // namespace
