// Queries allocate nothing once a searcher has warmed up.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/allocations.h"
#include "unit/arf/au/searcher_fixture.h"
#include "unit/arf/match/tsv.h"

namespace {

/** A whole concordance. */
void Concord(IArfSearcher& s, const char* from, const char* code, const char* to)
{
  const auto argument = [](const char* text) { return reinterpret_cast<std::intptr_t>(text); };
  char first[256], second[256];
  EXPECT_EQ(s.BeginGifConcordance(argument(from), argument(code), argument(to), 0, 0, 0), 0);
  do EXPECT_EQ(s.GetNextGifConcordance(first, sizeof first, second, sizeof second, nullptr), 0);
  while (first[0] != '\0');
}

/** All operations of a query's path, over every written address of the table. */
void QueryAll(IArfSearcher& s, const std::vector<arf_test::TsvRow>& rows)
{
  char out[4096];
  for (const arf_test::TsvRow& row : rows) {
    const char* text = row.fields[0].c_str();
    for (const int amas : {0, 1}) {
      const int status = s.LookupAddress(text, out, sizeof out, amas);
      s.GetErrorDescription(out, status, sizeof out);
      s.GetParsedInput(out, sizeof out);
    }
    s.FixLastLine(text, out, sizeof out);
    s.ValidatePartialAddress(text, out, sizeof out);
    s.FormatAddress(text, out, PAF_AU_FORMAT_UPPER, sizeof out);
    for (int status = s.GetPopupHint(text, "", 20, out, sizeof out), i = 0; status == 0 && i < 20; ++i)
      status = s.GetNextPopupHint(out, sizeof out);
    for (int status = s.GetAddressHint(text, "", out, sizeof out), i = 0; status == 0 && i < 20; ++i)
      status = s.GetNextAddressHint(out, sizeof out);
    for (int status = s.GetAddress(text, out, sizeof out), i = 0; status == 0 && i < 100; ++i)
      status = s.GetNextAddress(out, sizeof out);
  }
  s.GetAddress("\t\t\t\t\t\t\t30000013", out, sizeof out);
  s.GetAddress("\t\t\tRichmond\tVIC", out, sizeof out);
  s.GetAddress("\t\t\t\tVIC", out, sizeof out);
  s.SetProperties("LatLongSearchRange", "5000", out, sizeof out);
  s.GetAddress("\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t-33.86\t151.208",
               out, sizeof out);
  s.GetNextAddress(out, sizeof out);
  s.BeginPolygonSearch("-33.85,151.20;-33.85,151.22;-33.88,151.22;-33.88,151.20", "-33.86 151.2");
  for (int i = 0; i < 4; ++i) s.GetNextAddressInPolygon(out, sizeof out);
  s.GetSearchStatistics("Radius", "-33.86,151.208", "5000", "", out, sizeof out);
  s.GetSearchStatistics("State", "NSW", "", "", out, sizeof out);
  Concord(s, "Postcode", "2000", "Locality");
  Concord(s, "Locality", "", "Postcode");
  Concord(s, "MeshBlock", "", "Locality");
  Concord(s, "zone", "", "MeshBlock");
  for (const char* text : {"george street sydney 12", "parliament house canberra", "pi", "2000", "goerge parliment"}) {
    s.BeginAddressSearch(text);
    for (int i = 0; i < 100; ++i) s.GetNextAddressSearch(out, sizeof out);
  }
  s.GetAddress("\t\t\t\t\t\t\t30000013", out, sizeof out);
  s.GetProperties("OutputFields", out, sizeof out);
  for (const char* request :
       {"Barcode:30000001", "Barcode:x", "Barcode2:3000000162CHello 12#", "Barcode3:300000015912345", "BSP:2000",
        "NPSP:x", "SortPlanDate", "Properties", "PropertyName3", "Nonsense"}) {
    s.GetProperties(request, out, sizeof out);
    GetOtherProperties(request, out, sizeof out);
  }
  s.SetProperties("OutputFields", "DPID;zone", out, sizeof out);
  s.SetProperties("OutputFields", "nonsense", out, sizeof out);
  EXPECT_EQ(s.GetFindStatus(), PAF_AU_FIND_MATCHED);
}

TEST(Allocation, NoneOnQueryPaths)
{
  const arf_test::DatabasePointer database = arf_test::OpenSmall();
  arf_test::Searcher searcher(*database);
  const auto rows = arf_test::ReadTsv(arf_test::TestDataFile("lookup_cases.tsv"), 3);
  EXPECT_GT(test_support::Allocations(), static_cast<long>(rows.size())) << "nothing is counted";
  QueryAll(*searcher, rows);
  EXPECT_EQ(test_support::AllocationsOf([&] { QueryAll(*searcher, rows); }), 0);
}

/** The first one takes memory for all that localities and postcodes can have with each other. */
TEST(Allocation, NoneInLargerConcordancesOfLocalities)
{
  const arf_test::DatabasePointer database = arf_test::OpenSmall();
  arf_test::Searcher searcher(*database);
  Concord(*searcher, "Postcode", "0870", "Locality");
  EXPECT_EQ(test_support::AllocationsOf([&] {
              Concord(*searcher, "Locality", "", "Postcode");
              Concord(*searcher, "Postcode", "", "Locality");
            }),
            0);
}

}  // namespace
