// The filters, over all that they apply to.
#include <gtest/gtest.h>

#include "unit/arf/search/town_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::Towns;

constexpr const char* kEverywhere = "-40,140;-40,155;-30,155;-30,140";

struct Filters : Towns
{
  void Set(const std::string& name, const std::string& value)
  {
    EXPECT_EQ(searcher->SetProperty(name, value).status, 0) << name << ' ' << value;
  }
  std::string Polygon() { return Towns::Polygon(kEverywhere, "-33.5,151"); }
};

TEST_F(Filters, StatesInEverySearch)
{
  Set("StateFilter", "Victoria");
  EXPECT_EQ(searcher->Property("StateFilter"), (Answer{0, "VIC"}));
  EXPECT_EQ(Polygon(), "11 09 10");
  EXPECT_EQ(Near("-33.5", "151"), "status 63");
  EXPECT_EQ(Get("\t\t\tAlderton"), "");
  EXPECT_EQ(Get("\t\t\tBramley").size(), 8U);
  EXPECT_EQ(Search("high street"), "09");
  EXPECT_EQ(Statistics("Polygon", kEverywhere).text, "3\t2\t1");
  EXPECT_EQ(Statistics("Postcode", "2991").text, "0\t0\t0");
  Set("StateFilter", "nsw; VIC");
  EXPECT_EQ(searcher->Property("StateFilter"), (Answer{0, "NSW;VIC"}));
  EXPECT_EQ(Polygon().size(), 11 * 3 - 1U);
  Set("StateFilter", "");
  EXPECT_EQ(Get("\t\t\tAlderton").size(), 8 * 3 - 1U);
}

TEST_F(Filters, IdentifiersAreFoundWhateverIsFiltered)
{
  Set("StateFilter", "VIC");
  EXPECT_EQ(Get("\t\t\t\t\t\t\t30000001"), "01");
}

TEST_F(Filters, KindsOfAddresses)
{
  Set("AddressFilter", "postal");
  EXPECT_EQ(searcher->Property("AddressFilter"), (Answer{0, "Postal"}));
  EXPECT_EQ(Get("Alderton"), "07");
  Set("AddressFilter", "Place");
  EXPECT_EQ(Get("Alderton"), "08");
  Set("AddressFilter", "Unit");
  EXPECT_EQ(Get("Alderton"), "03 04");
  Set("AddressFilter", "Street;Unit");
  EXPECT_EQ(searcher->Property("AddressFilter"), (Answer{0, "Street;Unit"}));
  EXPECT_EQ(Get("Alderton"), "01 02 03 04 05 06");
  Set("AddressFilter", "Street");
  EXPECT_EQ(Get("Alderton"), "01 02 05 06");
  Set("AddressFilter", "");
  EXPECT_EQ(searcher->Property("AddressFilter"), (Answer{0, ""}));
}

TEST_F(Filters, PointsOfInterestHaveABuildingsName)
{
  Set("PointsOfInterest", "true");
  EXPECT_EQ(searcher->Property("PointsOfInterest"), (Answer{0, "True"}));
  EXPECT_EQ(Polygon(), "05");
  EXPECT_EQ(Get("2991"), "05");
}

TEST_F(Filters, GeographicalCodes)
{
  char error[256] = "";
  EXPECT_EQ((*searcher)->SetGeographicalCodes("MeshBlock=m1;mesh_block=M4", error, sizeof error), 0) << error;
  EXPECT_EQ(Polygon(), "01 02 06 09 10");
  EXPECT_EQ((*searcher)->SetGeographicalCodes("MeshBlock=M1,MeshBlock=M4; LocalGovernmentArea=L2", error, 256), 0);
  EXPECT_EQ(Polygon(), "09 10") << "one of each kind must fit";
  Set("GeographicalCodesFilter", "False");
  EXPECT_EQ(Polygon().size(), 11 * 3 - 1U);
  Set("GeographicalCodesFilter", "True");
  EXPECT_EQ(searcher->Property("GeographicalCodes"), (Answer{0, "MeshBlock=M1,MeshBlock=M4; LocalGovernmentArea=L2"}));
  Set("GeographicalCodes", "Locality=Cranford");
  EXPECT_EQ(Polygon(), "12");
  Set("GeographicalCodes", "Locality=Alderton NSW 2991;Postcode=3991");
  EXPECT_EQ(Polygon(), "");
  Set("GeographicalCodes", "");
  EXPECT_EQ(Polygon().size(), 11 * 3 - 1U);
}

TEST_F(Filters, RefusedValues)
{
  const std::pair<const char*, const char*> values[] = {
      {"StateFilter", "XYZ"},           {"AddressFilter", "Boat"},
      {"PointsOfInterest", "maybe"},    {"GeographicalCodes", "MeshBlock"},
      {"GeographicalCodes", "Ward=3"},  {"GeographicalCodes", "MeshBlock="},
      {"GeographicalCodesFilter", "1"}, {"GifCommonMinimumPercent", "101"},
      {"GifCommonMinimumPercent", "-1"}};
  for (const auto& [name, value] : values) {
    const std::string before = searcher->Property(name).text;
    EXPECT_EQ(searcher->SetProperty(name, value).status, PAF_AU_ERR_PROPERTY_VALUE) << name << ' ' << value;
    EXPECT_EQ(searcher->Property(name).text, before) << name;
  }
  char error[256] = "";
  EXPECT_EQ((*searcher)->SetGeographicalCodes("Ward=3", error, sizeof error), PAF_AU_ERR_PROPERTY_VALUE);
  EXPECT_STREQ(error, "The data has no codes of one of these kinds.");
  std::string many;
  for (int i = 0; i < 65; ++i) many += "Postcode=2991;";
  EXPECT_EQ(searcher->SetProperty("GeographicalCodes", many).status, PAF_AU_ERR_PROPERTY_VALUE);
}

TEST_F(Filters, AreTakenOver)
{
  Set("StateFilter", "VIC");
  Set("LatLongSearchRange", "7");
  arf_test::Searcher next(*database);
  next->TakeOverFrom(&**searcher);
  EXPECT_EQ(next.Property("StateFilter").text, "VIC");
  EXPECT_EQ(next.Property("LatLongSearchRange").text, "7");
}

/** Codes of a kind that newer data lack would leave nothing over: searches say so until they are set anew. */
TEST_F(Filters, CodesThatNewerDataLack)
{
  const test_support::TempDir dir;
  const std::string directory =
      arf_test::BuiltDirectory(dir,
                               "dpid,number_first,street_name,locality,state,postcode,latitude,longitude\n"
                               "30000001,1,HIGH,ALDERTON,NSW,2991,-33.5,151\n");
  const arf_test::DatabasePointer newer(GetDb());
  char error[255] = "";
  ASSERT_EQ(newer->Open(directory.c_str(), 2, error, sizeof error), 0) << error;
  Set("GeographicalCodes", "Postcode=2991;MeshBlock=M1");
  auto next = std::make_unique<arf_test::Searcher>(*newer);
  (*next)->TakeOverFrom(&**searcher);
  searcher = std::move(next);
  EXPECT_EQ(searcher->Property("GeographicalCodes"), (Answer{0, "Postcode=2991;MeshBlock=M1"}));
  Set("OutputFields", "DPID");
  const std::string refused = "status " + std::to_string(PAF_AU_ERR_PROPERTY_VALUE);
  const auto expectAll = [&](const std::string& found, const Answer& count) {
    EXPECT_EQ(Get("\t\t\tAlderton"), found);
    EXPECT_EQ(Near("-33.5", "151"), found);
    EXPECT_EQ(Polygon(), found);
    EXPECT_EQ(Search("high alderton"), found);
    EXPECT_EQ(Statistics("Postcode", "2991"), count);
  };
  expectAll(refused, {PAF_AU_ERR_PROPERTY_VALUE, ""});
  EXPECT_EQ((*searcher)->GetFindStatus(), PAF_AU_FIND_NOT_SEARCHED);
  EXPECT_EQ(searcher->Description(PAF_AU_ERR_PROPERTY_VALUE),
            "The data has no codes of the kind \"MeshBlock\", which \"GeographicalCodes\" asks for. The documentation "
            "says which values it takes.");
  EXPECT_EQ(Get("\t\t\t\t\t\t\t30000001"), "01") << "an identifier is found whatever is filtered";
  Set("GeographicalCodesFilter", "False");
  expectAll("01", {0, "1\t1\t1"});
  Set("GeographicalCodesFilter", "True");
  Set("GeographicalCodes", "Postcode=2991");
  expectAll("01", {0, "1\t1\t1"});
}

}  // namespace
