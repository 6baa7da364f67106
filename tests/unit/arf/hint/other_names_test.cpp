/** Hints by other names: second names of streets and localities, buildings, initials, boxes, numbers behind the street.
 */
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "support/random_seed.h"
#include "unit/arf/build/test_database.h"
#include "unit/arf/hint/hint_list.h"
#include "unit/arf/hint/spoilt_file.h"
#include "unit/arf/match/other_names_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

/** "12 HIGH STREET, ALDERTON NSW 2991|1": text and spelling. */
Strings Texts(const std::vector<arf_test::Shown>& hints)
{
  Strings texts;
  for (const arf_test::Shown& shown : hints)
    texts.push_back(shown.text + '|' + std::to_string(static_cast<int>(shown.hint.spelling)));
  return texts;
}

class RegisterHintsTest : public testing::Test
{
 protected:
  Strings Of(const char* text, std::size_t most = 10, const char* place = "")
  {
    return Texts(hints_.Of(text, place, most));
  }

  test_support::TempDir dir_;
  std::unique_ptr<arf::Database> data_ = arf_test::OpenOrFail(arf_test::BuildRegister(dir_), arf::OpenMode::Memory);
  arf_test::Hints hints_{*data_};
};

TEST_F(RegisterHintsTest, SecondNamesOfStreetsGiveTheRealOnes)
{
  EXPECT_THAT(Of("9 main"), ElementsAre("9 RIVER ROAD, CRANFORD NSW 2993|1"));
  EXPECT_THAT(Of("9 main st cran"), ElementsAre("9 RIVER ROAD, CRANFORD NSW 2993|1"));
  EXPECT_THAT(Of("7 old r"), ElementsAre("7 GREEN ROAD, BRAMLEY NSW 2992|1"));
  EXPECT_THAT(Of("main st", 4), ElementsAre("1 MAIN STREET, CRANFORD NSW 2993|0", "HIGH STREET, ALDERTON NSW 2991|1",
                                            "GREEN ROAD, BRAMLEY NSW 2992|1", "RIVER ROAD, CRANFORD NSW 2993|1"));
}

TEST_F(RegisterHintsTest, SecondNamesHaveTypesAndPlacesOfTheirOwn)
{
  EXPECT_THAT(Of("12 main lane"), IsEmpty());
  EXPECT_THAT(Of("12 main st bramley"), IsEmpty());
  EXPECT_THAT(Of("5 main", 10, "bramley"), ElementsAre("5 GREEN ROAD, BRAMLEY NSW 2992|1"));
  EXPECT_THAT(Of("33 main"), IsEmpty()) << "there is no such number";
}

TEST_F(RegisterHintsTest, SecondNamesOfLocalitiesGiveTheRealOnes)
{
  EXPECT_THAT(Of("alder t", 1), ElementsAre("ALDERTON NSW 2991|1"));
  EXPECT_THAT(Of("the fo", 1), ElementsAre("CRANFORD NSW 2993|1"));
  EXPECT_THAT(Of("12 high st alder town"), ElementsAre("12 HIGH STREET, ALDERTON NSW 2991|1"));
  EXPECT_THAT(Of("12 main st new ald"), ElementsAre("12 HIGH STREET, ALDERTON NSW 2991|1"));
  EXPECT_THAT(Of("9 river", 10, "the ford"), ElementsAre("9 RIVER ROAD, CRANFORD NSW 2993|0"));
}

constexpr const char* kAddresses =
    "dpid,building,unit_type,unit_number,number_first,street_name,street_type,postal_type,postal_number,locality,state,"
    "postcode\n"
    "30000001,Harbour View Tower,,,6,QUAY,STREET,,,NORTHPORT,NSW,2993\n"
    "30000002,Harbour View Tower,UNIT,1,6,QUAY,STREET,,,NORTHPORT,NSW,2993\n"
    "30000003,Harbour Hall,,,9,MILL,ROAD,,,SOUTHPORT,VIC,3993\n"
    "30000004,,,,48,MILL,ROAD,,,SOUTHPORT,VIC,3993\n"
    "30000005,,UNIT,3,48,MILL,ROAD,,,SOUTHPORT,VIC,3993\n"
    "30000006,,,,12,VRD,DRIVE,,,SOUTHPORT,VIC,3993\n"
    "30000007,,,,12,J E,STREET,,,SOUTHPORT,VIC,3993\n"
    "30000008,,,,12,O'BRIEN,STREET,,,ST MARY'S,VIC,3994\n"
    "30000009,,,,12,MC DONALD,STREET,,,SOUTHPORT,VIC,3993\n"
    "30000010,,,,14,MCINTYRE,STREET,,,SOUTHPORT,VIC,3993\n"
    "30000011,,,,,,,PO BOX,43,SOUTHPORT,VIC,3993\n"
    "30000012,,,,,,,PO BOX,44,SOUTHPORT,VIC,3993\n"
    "30000013,,,,,,,PO BOX,43,NORTHPORT,NSW,2993\n"
    "30000014,,,,,,,LOCKED BAG,43,NORTHPORT,NSW,2993\n";

class OtherNamesHintsTest : public testing::Test
{
 protected:
  Strings Of(const char* text, std::size_t most = 10, const char* place = "")
  {
    return Texts(hints_.Of(text, place, most));
  }

  test_support::TempDir dir_;
  std::unique_ptr<arf::Database> data_ =
      arf_test::OpenOrFail(arf_test::BuiltDirectory(dir_, kAddresses), arf::OpenMode::Memory);
  arf_test::Hints hints_{*data_};
};

TEST_F(OtherNamesHintsTest, BuildingsGiveTheirAddresses)
{
  EXPECT_THAT(Of("harbour v", 2), ElementsAre("HARBOUR VIEW TOWER, 6 QUAY STREET, NORTHPORT NSW 2993|0",
                                              "HARBOUR VIEW TOWER, UNIT 1 6 QUAY STREET, NORTHPORT NSW 2993|0"));
  EXPECT_THAT(Of("harbour hall"), ElementsAre("HARBOUR HALL, 9 MILL ROAD, SOUTHPORT VIC 3993|0"));
  EXPECT_THAT(Of("harbour hall south"), ElementsAre("HARBOUR HALL, 9 MILL ROAD, SOUTHPORT VIC 3993|0"));
  EXPECT_THAT(Of("harbour south"), ElementsAre("HARBOUR HALL, 9 MILL ROAD, SOUTHPORT VIC 3993|1"));
  EXPECT_THAT(Of("harbour", 10, "VIC"), ElementsAre("HARBOUR HALL, 9 MILL ROAD, SOUTHPORT VIC 3993|0"));
  EXPECT_THAT(Of("harbour view tower, 6 qu", 1),
              ElementsAre("HARBOUR VIEW TOWER, 6 QUAY STREET, NORTHPORT NSW 2993|0"));
  EXPECT_THAT(Of("harb "), IsEmpty()) << "a word that is finished is no beginning of a longer one";
}

TEST_F(OtherNamesHintsTest, InitialsClansAndApostrophes)
{
  for (const char* typed : {"12 v.r.d. dr", "12 v.r.d", "12 v.r."})
    EXPECT_THAT(Of(typed), ElementsAre("12 VRD DRIVE, SOUTHPORT VIC 3993|0")) << typed;
  for (const char* typed : {"12 v r d dr", "12 V R"})
    EXPECT_THAT(Of(typed), ElementsAre("12 VRD DRIVE, SOUTHPORT VIC 3993|1")) << typed;
  for (const char* typed : {"12 je st", "12 je"})
    EXPECT_THAT(Of(typed), ElementsAre("12 J E STREET, SOUTHPORT VIC 3993|1")) << typed;
  for (const char* typed : {"12 obr", "12 o'brien st", "12 O'B"})
    EXPECT_THAT(Of(typed), ElementsAre("12 O'BRIEN STREET, ST MARY'S VIC 3994|0")) << typed;
  EXPECT_THAT(Of("12 o brien st"), ElementsAre("12 O'BRIEN STREET, ST MARY'S VIC 3994|1"));
  EXPECT_THAT(Of("12 mcdon"), ElementsAre("12 MC DONALD STREET, SOUTHPORT VIC 3993|1"));
  EXPECT_THAT(Of("14 mc int"), ElementsAre("14 MCINTYRE STREET, SOUTHPORT VIC 3993|1"));
  EXPECT_THAT(Of("saint marys", 1), ElementsAre("ST MARY'S VIC 3994|1"));
  EXPECT_THAT(Of("st mary's", 1), ElementsAre("ST MARY'S VIC 3994|0"));
}

TEST_F(OtherNamesHintsTest, BoxesWithoutAPlaceAreThoseOfTheLargestFirst)
{
  EXPECT_THAT(Of("po box 43"), ElementsAre("PO BOX 43, SOUTHPORT VIC 3993|0", "PO BOX 43, NORTHPORT NSW 2993|0"));
  EXPECT_THAT(Of("po box 43", 1), ElementsAre("PO BOX 43, SOUTHPORT VIC 3993|0"));
  EXPECT_THAT(Of("p.o. box 44"), ElementsAre("PO BOX 44, SOUTHPORT VIC 3993|0"));
  EXPECT_THAT(Of("locked bag 43"), ElementsAre("LOCKED BAG 43, NORTHPORT NSW 2993|0"));
  EXPECT_THAT(Of("po box 43", 10, "NSW"), ElementsAre("PO BOX 43, NORTHPORT NSW 2993|0"));
  EXPECT_THAT(Of("po box 43 vic"), ElementsAre("PO BOX 43, SOUTHPORT VIC 3993|0"));
  EXPECT_THAT(Of("po box 45"), IsEmpty());
}

TEST_F(OtherNamesHintsTest, BoxesWhileTheyAreTyped)
{
  const Strings all = {"PO BOX, SOUTHPORT VIC 3993|0", "PO BOX 43, NORTHPORT NSW 2993|0"};
  for (const char* typed : {"po", "PO ", "po b", "po bo", "po box", "po box ", "p.o. b", "post office b"})
    EXPECT_EQ(Of(typed), all) << typed;
  const Strings both = {"PO BOX 43, SOUTHPORT VIC 3993|0", "PO BOX 44, SOUTHPORT VIC 3993|0",
                        "PO BOX 43, NORTHPORT NSW 2993|0"};
  EXPECT_EQ(Of("po box 4"), both);
  EXPECT_THAT(Of("po box 4", 10, "VIC"), ElementsAre(both[0], both[1]));
  EXPECT_THAT(Of("po box 4", 2), ElementsAre(both[0], both[1]));
  for (const char* typed : {"lo", "locked", "locked b", "locked bag", "locked bag 4"})
    EXPECT_THAT(Of(typed), ElementsAre("LOCKED BAG 43, NORTHPORT NSW 2993|0")) << typed;
  for (const char* typed : {"po box 4 ", "po box 4 vic", "po box 4, south", "po box 3", "po box 0", "po box 4a",
                            "po box 5", "p", "rmb", "gpo box", "locked x", "po vic", "box south"})
    EXPECT_THAT(Of(typed), IsEmpty()) << typed;
}

TEST_F(OtherNamesHintsTest, ChoosingAKindOfBoxesOpensIt)
{
  const Strings opened = {"PO BOX, SOUTHPORT VIC 3993|0", "PO BOX 43, SOUTHPORT VIC 3993|0",
                          "PO BOX 44, SOUTHPORT VIC 3993|0"};
  EXPECT_EQ(Of("PO BOX, SOUTHPORT VIC 3993"), opened);
  EXPECT_EQ(Of("po box south"), opened);
  EXPECT_EQ(Of("po box", 10, "VIC"), opened);
  EXPECT_THAT(Of("SOUTHPORT VIC 3993"), testing::Contains(opened[0]));
  EXPECT_THAT(Of("NORTHPORT NSW 2993"), testing::Contains("PO BOX 43, NORTHPORT NSW 2993|0"));
}

TEST_F(OtherNamesHintsTest, NumbersBehindTheStreet)
{
  EXPECT_THAT(Of("mill rd 9"), ElementsAre("HARBOUR HALL, 9 MILL ROAD, SOUTHPORT VIC 3993|1"));
  EXPECT_THAT(Of("mill rd 3/48"), ElementsAre("UNIT 3 48 MILL ROAD, SOUTHPORT VIC 3993|1"));
  EXPECT_THAT(Of("mill rd 9 south"), ElementsAre("HARBOUR HALL, 9 MILL ROAD, SOUTHPORT VIC 3993|1"));
  EXPECT_THAT(Of("mill rd 10"), IsEmpty());
  EXPECT_THAT(Of("mill rd 3993", 1), ElementsAre("MILL ROAD, SOUTHPORT VIC 3993|0")) << "a postcode stays one";
  EXPECT_THAT(Of("mill rd 2993"), IsEmpty());
}

/** A file without postal lists and building names is searched as before. */
TEST_F(OtherNamesHintsTest, SectionsMayBeMissing)
{
  const std::vector<std::uint8_t> whole = arf_test::ReadFile(dir_.Path("db/address.arf"));
  arf_test::SpoiltFile file(whole);
  file.Rename(arf::layout::SectionId::PostalLists, 900);
  file.Rename(arf::layout::SectionId::BuildingNames, 901);
  const std::unique_ptr<arf::Database> data = file.Open();
  ASSERT_NE(data, nullptr);
  arf_test::Hints hints(*data);
  EXPECT_THAT(Texts(hints.Of("po box 43")), IsEmpty());
  EXPECT_THAT(Texts(hints.Of("harbour h")), IsEmpty());
  EXPECT_THAT(Texts(hints.Of("po box 43 sou")), ElementsAre("PO BOX 43, SOUTHPORT VIC 3993|0"));
}

/** Sections full of anything: other hints or none, and nothing read outside the file. */
TEST_F(OtherNamesHintsTest, SpoiltSections)
{
  std::mt19937 random{test_support::RandomSeed()};
  const std::vector<std::uint8_t> whole = arf_test::ReadFile(dir_.Path("db/address.arf"));
  for (int round = 0; round < 200; ++round) {
    arf_test::SpoiltFile file(whole);
    file.Spoil(round % 2 == 0 ? arf::layout::SectionId::PostalLists : arf::layout::SectionId::BuildingNames, random);
    const std::unique_ptr<arf::Database> data = file.Open();
    ASSERT_NE(data, nullptr);
    arf_test::Hints hints(*data);
    for (const char* text : {"po box 43", "locked bag 43", "harbour", "harbour v", "harbour hall south"})
      EXPECT_LE(hints.Of(text).size(), 10U) << text;
  }
}

}  // namespace
