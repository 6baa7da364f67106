// Areas of mesh blocks, from files beside the addresses.
#include <gmock/gmock.h>

#include "unit/arf/build/test_database.h"

namespace {

using arf::BuildOptions;
using arf::BuildOutcome;
using arf::BuildReport;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kAddresses =
    "dpid,number_first,street_name,locality,state,postcode,mesh_block\n"
    "30000001,1,A,B,NSW,2000,10000000001\n"
    "30000002,2,A,B,NSW,2000,10000000002\n"
    "30000003,3,A,B,NSW,2000,10000000009\n"
    "30000004,4,A,B,NSW,2000,\n"
    "30000005,5,A,B,NSW,2000,10000000001\n";

class Areas : public testing::Test
{
 protected:
  BuildReport Build(const std::string& addresses, const std::vector<std::string>& files)
  {
    BuildOptions options;
    options.inputs = {dir_.Write("in.csv", addresses)};
    options.outputDirectory = dir_.Path("db");
    for (const std::string& text : files) {
      options.areaPaths.push_back(dir_.Write("areas" + std::to_string(options.areaPaths.size()) + ".csv", text));
    }
    return arf::BuildDatabase(options);
  }

  /** The values of an attribute, in the order of the addresses. */
  std::vector<std::string> Values(const std::string& attribute)
  {
    const auto database = arf_test::OpenOrFail(dir_.Path("db"), arf::OpenMode::Memory);
    std::vector<std::string> values;
    arf::AttributeText text;
    for (std::uint32_t i = 0; i < database->PointCount(); ++i) {
      values.emplace_back(database->AttributeOf(i, database->FindAttribute(attribute).value(), text));
    }
    return values;
  }

  test_support::TempDir dir_;
};

TEST_F(Areas, ComeFromSeveralFiles)
{
  const BuildReport report = Build(
      kAddresses, {"\xEF\xBB\xBFMB_CODE_2021,MB_CATEGORY_2021,SA1_CODE_2021,SA2_CODE_2021,STATE_CODE_2021\r\n"
                   "10000000001,Residential,10102100701,101021007,1\r\n10000000002,Parkland,10102100702,101021008,1\r\n"
                   "10000000003,Other,10102100703,101021009,1\r\n10000000001,Other,10102100799,101021099,1\r\n",
                   "mb_code_2021,lga_code_2022,LGA_CODE_2023,lga_name_2023\n10000000002,1,17200,\"Sydney, City of\"\n"
                   "10000000001\n"});
  ASSERT_THAT(report.errors, ElementsAre());
  EXPECT_THAT(Values("statistical_area"), ElementsAre("101021007", "101021008", "", "", "101021007"));
  EXPECT_THAT(Values("local_government_area"), ElementsAre("", "17200", "", "", ""));
  ASSERT_EQ(report.areas.size(), 2U);
  EXPECT_THAT(report.areas[0].columns, ElementsAre("MB_CODE_2021", "SA2_CODE_2021"));
  EXPECT_EQ(report.areas[0].meshBlocks, 3U);
  EXPECT_EQ(report.areas[0].addresses, 3U);
  EXPECT_EQ(report.areas[0].unknown, 1U);
  EXPECT_EQ(report.areas[0].without, 1U);
  EXPECT_THAT(report.areas[1].columns, ElementsAre("mb_code_2021", "LGA_CODE_2023"));
}

TEST_F(Areas, OfTheAddressesThemselvesStay)
{
  const BuildReport report = Build(
      "dpid,number_first,street_name,locality,state,postcode,mesh_block,statistical_area\n"
      "30000001,1,A,B,NSW,2000,7,own\n30000002,2,A,B,NSW,2000,7,\n",
      {"mesh_block,SA1_CODE\n7,x1\n"});
  ASSERT_THAT(report.errors, ElementsAre());
  EXPECT_THAT(Values("statistical_area"), ElementsAre("own", "x1"));
}

TEST_F(Areas, SayWhatIsMissing)
{
  EXPECT_THAT(Build(kAddresses, {"SA2_CODE_2021,LGA_CODE_2023\n1,2\n"}).errors,
              ElementsAre(HasSubstr("areas0.csv: has no column of mesh blocks (MB_CODE_2021")));
  EXPECT_THAT(Build(kAddresses, {"MB_CODE_2021,SA3_CODE_2021\n1,2\n"}).errors,
              ElementsAre(HasSubstr("has a column neither of statistical areas")));
  EXPECT_THAT(Build(kAddresses, {"MB_CODE_2021,SA2_CODE_2021\n"}).errors, ElementsAre(HasSubstr("has no mesh blocks")));
  EXPECT_THAT(Build(kAddresses, {""}).errors, ElementsAre(HasSubstr("has no row that names its columns")));
  EXPECT_THAT(Build(kAddresses, {"MB_CODE_2021,SA2_CODE_2021\n77,1\n"}).errors,
              ElementsAre(HasSubstr("has none of the addresses' mesh blocks")));
  EXPECT_THAT(
      Build("dpid,street_name,locality,state,postcode\n30000001,A,B,NSW,2000\n", {"MB_CODE,SA2_CODE\n1,1\n"}).errors,
      ElementsAre(HasSubstr("the addresses have no mesh blocks")));
  BuildOptions options;
  options.inputs = {dir_.Path("in.csv")};
  options.outputDirectory = dir_.Path("other");
  options.areaPaths = {dir_.Path("nowhere.csv")};
  EXPECT_THAT(arf::BuildDatabase(options).errors, ElementsAre(HasSubstr("nowhere.csv: No such file")));
}

}  // namespace
