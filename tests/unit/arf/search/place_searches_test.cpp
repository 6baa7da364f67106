// Geocode and polygon searches and statistics, as an application asks them.
#include <gtest/gtest.h>

#include "unit/arf/search/town_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::Towns;

TEST_F(Towns, NearestWithinTheRange)
{
  EXPECT_EQ(searcher->Property("LatLongSearchRange"), (Answer{0, "100"}));
  EXPECT_EQ(Near("-33.5", "151"), "01 02 03 04");
  EXPECT_EQ((*searcher)->GetFindStatus(), PAF_AU_FIND_MATCHED);
  EXPECT_EQ(searcher->SetProperty("LatLongSearchRange", "50").status, 0);
  EXPECT_EQ(Near("-33.5", "151"), "01 02");
  EXPECT_EQ(searcher->SetProperty("LatLongSearchRange", "120.5").status, 0);
  EXPECT_EQ(Near("-33.5", "151.0"), "01 02 03 04 05 06");
}

TEST_F(Towns, WholeRecordOfTheNearest)
{
  EXPECT_EQ(searcher->SetProperty("OutputFields", "AddressLine1;Locality;Latitude;Longitude").status, 0);
  const std::string query = std::string(42, '\t') + "-33.5001\t151.0001";
  EXPECT_EQ(searcher->Get(query), (Answer{0, "1 HIGH STREET\tALDERTON\t-33.500000\t151.000000"}));
}

TEST_F(Towns, NothingNear)
{
  EXPECT_EQ(Near("-30", "140"), "status 63");
  EXPECT_EQ(
      searcher->Description(PAF_AU_ERR_NOTHING_NEAR),
      "There is no address within 100 metres. Raise \"LatLongSearchRange\", or look at the filters that are set.");
  EXPECT_EQ(searcher->Next().status, PAF_AU_ERR_NO_ENUMERATION);
}

TEST_F(Towns, BadGeocodes)
{
  EXPECT_EQ(Near("nan", "151"), "status 61");
  EXPECT_EQ(Near("151", "-33.5"), "status 61");
  EXPECT_EQ(Near("-33.5", ""), "status 61");
  EXPECT_EQ(Near("", "151"), "status 61");
  EXPECT_EQ(Near(std::string(500, '1'), "1"), "status 61");
  EXPECT_EQ(Near("x", "y"), "status 61");
}

TEST_F(Towns, RangeIsANumberOfMetres)
{
  for (const char* value : {"", "x", "-1", "nan", "1e999", "10 m"})
    EXPECT_EQ(searcher->SetProperty("LatLongSearchRange", value).status, PAF_AU_ERR_PROPERTY_VALUE) << value;
  EXPECT_EQ(searcher->Property("LatLongSearchRange").text, "100");
}

TEST_F(Towns, PolygonNearestToThePlaceFirst)
{
  const std::string square = "-33.5015,150.9995;-33.4995,150.9995;-33.4995,151.0015;-33.5015,151.0015";
  EXPECT_EQ(Polygon(square, "-33.501,151.0"), "06 05 01 02 03 04");
  EXPECT_EQ(Polygon(square, "-33.5,151.001"), "03 04 02 05 01 06");
  EXPECT_EQ(NextInPolygon(), (Answer{0, ""})) << "the end stays";
  EXPECT_EQ(
      Polygon("POLYGON((150.9995 -33.5015,150.9995 -33.4995,151.0015 -33.4995,151.0015 -33.5015))", "-33.501 151.0"),
      "06 05 01 02 03 04");
}

TEST_F(Towns, PolygonWithAHole)
{
  const std::string hole = "|-33.5001,151.0004;-33.4999,151.0004;-33.4999,151.0011;-33.5001,151.0011";
  EXPECT_EQ(Polygon("-33.5015,150.9995;-33.4995,150.9995;-33.4995,151.0015;-33.5015,151.0015" + hole, "-33.5,151"),
            "01 05 06");
}

TEST_F(Towns, PolygonWithoutAPlaceBeginsAtItsMiddle)
{
  EXPECT_EQ(Polygon("-33.4999,151.0007;-33.5001,151.0007;-33.5001,151.0011;-33.4999,151.0011"), "03 04");
  EXPECT_EQ(Polygon("-10,100;-11,100;-11,101"), "");
  EXPECT_EQ((*searcher)->GetFindStatus(), PAF_AU_FIND_NOTHING);
  EXPECT_EQ(Polygon("POLYGON EMPTY"), "");
}

TEST_F(Towns, BadPolygons)
{
  EXPECT_EQ(NextInPolygon().status, PAF_AU_ERR_NO_ENUMERATION);
  EXPECT_EQ(Polygon("-33.5,nan;-33.4,151;-33,150"), "status 60");
  EXPECT_EQ(searcher->Description(PAF_AU_ERR_BAD_POLYGON),
            "A coordinate is not a finite number. Write latitude,longitude;latitude,longitude;… or "
            "POLYGON((longitude latitude, …)).");
  EXPECT_EQ(Polygon("-33.5,151;-33.4,151;-33,150", "north"), "status 61");
  EXPECT_EQ(Polygon("", ""), "status 60");
  EXPECT_EQ((*searcher)->BeginPolygonSearch(nullptr, nullptr), PAF_AU_ERR_BAD_POLYGON);
  EXPECT_EQ(NextInPolygon().status, PAF_AU_ERR_NO_ENUMERATION) << "a search that failed leaves none";
}

TEST_F(Towns, AddressThatDoesNotFitIsGivenAgain)
{
  ASSERT_EQ(
      (*searcher)->BeginPolygonSearch("-33.4999,151.0007;-33.5001,151.0007;-33.5001,151.0011;-33.4999,151.0011", ""),
      0);
  char small[4];
  EXPECT_EQ((*searcher)->GetNextAddressInPolygon(small, sizeof small), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_STREQ(small, "");
  EXPECT_EQ(NextInPolygon(), (Answer{0, "30000003"}));
}

TEST_F(Towns, Statistics)
{
  EXPECT_EQ(Statistics("Locality", "Alderton"), (Answer{0, "8\t2\t1"}));
  EXPECT_EQ(Statistics("postcode", "2991"), (Answer{0, "9\t3\t2"}));
  EXPECT_EQ(Statistics("State", "VIC"), (Answer{0, "3\t2\t1"}));
  EXPECT_EQ(Statistics("Radius", "-33.5,151", "50"), (Answer{0, "2\t1\t1"}));
  EXPECT_EQ(Statistics("Radius", "-33.5,151"), (Answer{0, "4\t1\t1"})) << "the range of the property";
  EXPECT_EQ(Statistics("Polygon", "-40,140;-40,155;-30,155;-30,140"), (Answer{0, "11\t5\t3"}));
  EXPECT_EQ(Statistics("Radius", "-10,100", "10"), (Answer{0, "0\t0\t0"}));
  EXPECT_EQ((*searcher)->GetFindStatus(), PAF_AU_FIND_NOTHING);
}

TEST_F(Towns, BadStatistics)
{
  EXPECT_EQ(Statistics("Planet", "Earth").status, PAF_AU_ERR_BAD_STATISTICS);
  EXPECT_EQ(Statistics("", "").status, PAF_AU_ERR_BAD_STATISTICS);
  EXPECT_EQ(Statistics("State", "VIC", "5").status, PAF_AU_ERR_BAD_STATISTICS);
  EXPECT_EQ(Statistics("Polygon", "x").status, PAF_AU_ERR_BAD_POLYGON);
  EXPECT_EQ(Statistics("Radius", "-33.5").status, PAF_AU_ERR_BAD_PLACE);
  EXPECT_EQ(Statistics("Radius", "-33.5,151", "-5").status, PAF_AU_ERR_BAD_PLACE);
}

TEST_F(Towns, StatisticsOfLocalitiesPostcodesAndStates)
{
  for (const char* name : {"Alderton", "alderton nsw", "Alderton 2991", "2991 Alderton", "ALDERTON NSW 2991 AUSTRALIA"})
    EXPECT_EQ(Statistics("Locality", name), (Answer{0, "8\t2\t1"})) << name;
  for (const char* state : {"VIC", "vic.", "Victoria", "VIC, Australia"})
    EXPECT_EQ(Statistics("State", state), (Answer{0, "3\t2\t1"})) << state;
  EXPECT_EQ(Statistics("Postcode", " 2991 "), (Answer{0, "9\t3\t2"}));
  EXPECT_EQ((*searcher)->GetFindStatus(), PAF_AU_FIND_MATCHED);
  struct Row
  {
    const char* kind;
    const char* value;
  };
  const Row unknown[] = {{"Locality", "Nowhere"},
                         {"Locality", "Alderton VIC"},
                         {"Locality", "Alderton 2000"},
                         {"Postcode", "9999"},
                         {"Postcode", "0800"},
                         {"Postcode", "800"},
                         {"State", "TAS"},
                         {"State", "Tasmania"},
                         {"Locality", "Mount Isa QLD 4825"},
                         {"Locality", "Richmnd 2753"},
                         {"Locality", "12345"}};
  for (const Row& row : unknown) {
    EXPECT_EQ(Statistics(row.kind, row.value), (Answer{0, "0\t0\t0"})) << row.kind << ' ' << row.value;
    EXPECT_EQ((*searcher)->GetFindStatus(), PAF_AU_FIND_NOTHING);
  }
  const Row others[] = {{"Postcode", "Alderton"}, {"Postcode", "2991 NSW"}, {"Postcode", "NSW"},
                        {"Postcode", "29910"},    {"Postcode", ""},         {"State", "VIC 3991"},
                        {"State", "2991"},        {"State", "Alderton"},    {"State", ""},
                        {"State", "XYZ"},         {"Locality", "NSW"},      {"Locality", "2991"},
                        {"Locality", "NSW 2991"}, {"Locality", ""},         {"Locality", "Victoria"}};
  for (const Row& row : others) {
    EXPECT_EQ(Statistics(row.kind, row.value), (Answer{PAF_AU_ERR_BAD_STATISTICS, ""})) << row.kind << ' ' << row.value;
    EXPECT_EQ((*searcher)->GetFindStatus(), PAF_AU_FIND_NOT_SEARCHED);
  }
  Statistics("State", "Alderton");
  EXPECT_EQ(searcher->Description(PAF_AU_ERR_BAD_STATISTICS),
            "The second text is no state, such as VIC. Ask for Polygon, Radius, Postcode, Locality or State.");
  EXPECT_EQ(Statistics("Locality", std::string(5000, 'a').c_str()).status, PAF_AU_ERR_INPUT_TOO_LONG);
}

/** A name that reads as a state's is a locality too. */
TEST(StatesAsNames, AreToldApartByTheKind)
{
  const test_support::TempDir dir;
  const std::string directory =
      arf_test::BuiltDirectory(dir,
                               "dpid,number_first,street_name,locality,state,postcode\n30000000,1,A,VICTORIA,NSW,2000\n"
                               "30000001,1,A,TOWN,VIC,3000\n30000002,2,A,TOWN,VIC,3000\n");
  const arf_test::DatabasePointer database(GetDb());
  char out[256] = "";
  ASSERT_EQ(database->Open(directory.c_str(), 2, out, sizeof out), 0) << out;
  arf_test::Searcher searcher(*database);
  EXPECT_EQ(searcher->GetSearchStatistics("State", "Victoria", "", "", out, sizeof out), 0);
  EXPECT_STREQ(out, "2\t1\t1");
  EXPECT_EQ(searcher->GetSearchStatistics("Locality", "Victoria", "", "", out, sizeof out), 0);
  EXPECT_STREQ(out, "1\t1\t1");
}

TEST(WithoutPlaces, SearchesByPlaceSaySo)
{
  const test_support::TempDir dir;
  const std::string directory = arf_test::BuiltDirectory(
      dir, "dpid,number_first,street_name,locality,state,postcode\n30000000,1,A,TOWN,NSW,2000\n");
  const arf_test::DatabasePointer database(GetDb());
  char out[256] = "";
  ASSERT_EQ(database->Open(directory.c_str(), 2, out, sizeof out), 0) << out;
  arf_test::Searcher searcher(*database);
  EXPECT_EQ(searcher->BeginPolygonSearch("0,0;0,1;1,1", ""), PAF_AU_ERR_NO_PLACES);
  EXPECT_EQ(searcher.Get(std::string(42, '\t') + "-33\t151").status, PAF_AU_ERR_NO_PLACES);
  EXPECT_EQ(searcher->GetSearchStatistics("Radius", "-33,151", "", "", out, sizeof out), PAF_AU_ERR_NO_PLACES);
  EXPECT_STREQ(out, "");
}

/** The examples of docs/au-plugin.md. */
TEST(DocumentedExamples, SearchesByPlaceAndByWords)
{
  const arf_test::DatabasePointer database = arf_test::OpenSmall();
  arf_test::Searcher searcher(*database);
  char out[256], other[256];
  EXPECT_EQ(searcher.SetProperty("OutputFields", "DPID").status, 0);
  const char* const square = "-33.85,151.20;-33.85,151.22;-33.88,151.22;-33.88,151.20";
  ASSERT_EQ(searcher->BeginPolygonSearch(square, "-33.8732,151.2065"), 0);
  for (const char* expected : {"30000002", "30000001", "", ""}) {
    EXPECT_EQ(searcher->GetNextAddressInPolygon(out, sizeof out), 0);
    EXPECT_STREQ(out, expected);
  }
  EXPECT_EQ(searcher.Get(std::string(42, '\t') + "-33.8601\t151.2081"), (Answer{0, "30000001"}));
  EXPECT_EQ(searcher->GetSearchStatistics("Locality", "St Kilda VIC", "", "", out, sizeof out), 0);
  EXPECT_STREQ(out, "3\t3\t1");
  EXPECT_EQ(searcher->GetSearchStatistics("Radius", "-33.86,151.208", "50", "", out, sizeof out), 0);
  EXPECT_STREQ(out, "1\t1\t1");
  PafAuConcordance weight = {0, 0, 0};
  const auto text = [](const char* t) { return reinterpret_cast<std::intptr_t>(t); };
  ASSERT_EQ(searcher->BeginGifConcordance(text("Locality"), text("Victoria Point"), text("Postcode"), 0, 0, 0), 0);
  EXPECT_EQ(searcher->GetFindStatus(), PAF_AU_FIND_MATCHED);
  EXPECT_EQ(searcher->GetNextGifConcordance(out, sizeof out, other, sizeof other, &weight), 0);
  EXPECT_STREQ(out, "VICTORIA POINT QLD 4165");
  EXPECT_STREQ(other, "4165");
  EXPECT_EQ(weight.addresses, 1U);
  EXPECT_EQ(weight.total, 1U);
  EXPECT_EQ(weight.percent, 100);
  ASSERT_EQ(searcher->BeginAddressSearch("library parkes place"), 0);
  EXPECT_EQ(searcher->GetNextAddressSearch(out, sizeof out), 0);
  EXPECT_STREQ(out, "30000141");
}

}  // namespace
