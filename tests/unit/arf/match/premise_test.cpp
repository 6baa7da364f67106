// What may stand before a street, in every reading.
#include "arf/match/premise.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "arf/match/occupancy_words.h"
#include "arf/match/postal_words.h"
#include "arf/match/street_reading.h"

namespace {

using arf::InputText;
using arf::Premise;

std::string Part(const char* name, const arf::Occupancy& part)
{
  if (!part.Written()) return {};
  return std::string(name) + "(" + std::string(part.type) + ":" + std::string(part.number.View()) + ") ";
}

/** "unit(UNIT:3) level(LEVEL:2) 12A-14 [BUILDING]"; "?" behind a reading for lenient rules only, "!" binding words. */
std::string Describe(const InputText& input, const Premise& p)
{
  std::string out = Part("unit", p.unit) + Part("level", p.level);
  if (!p.lot.Empty()) out += "lot(" + std::string(p.lot.View()) + ") ";
  if (p.HasNumber()) out += std::to_string(p.numberFirst) + std::string(p.numberFirstSuffix);
  if (p.numberLast != 0) out += "-" + std::to_string(p.numberLast) + std::string(p.numberLastSuffix);
  if (!p.building.Empty()) out += "[" + std::string(input.Text(p.building)) + "]";
  if (p.buildingIsBinding) out += "!";
  if (p.lenientOnly) out += "?";
  while (!out.empty() && out.back() == ' ') out.pop_back();
  return out;
}

struct PremiseRow
{
  const char* written;
  std::multiset<std::string> readings;
};

TEST(Premise, AllReadings)
{
  const PremiseRow rows[] = {
      {"12", {"12"}},
      {"12A", {"12A"}},
      {"12AB", {"12AB"}},
      {"012", {"12"}},
      {"12 A", {"12A"}},
      {"12-14", {"12-14", "unit(:12) 14?"}},
      {"12A-14B", {"12A-14B", "unit(:12A) 14B?"}},
      {"14-12", {"unit(:14) 12?"}},
      {"12 to 14", {"12-14", "14[12 TO]!"}},
      {"Unit 3, 12A to 14B", {"unit(UNIT:3) 12A-14B", "14B[UNIT 3 12A TO]!"}},
      {"14 to 12", {"12[14 TO]!"}},
      {"12 & 14", {"12-14?", "14[12]!"}},
      {"12A and 14B", {"12A-14B?", "14B[12A AND]!"}},
      {"14 & 12", {"12[14]!"}},
      {"3/12 + 14", {"unit(:3) 12-14?", "14[3 12]!"}},
      {"Unit 2 & 4", {"unit(UNIT:2) 4"}},
      {"& 12", {"12"}},
      {"and 12", {"12[AND]"}},
      {"to 14", {"14[TO]"}},
      {"12-12", {"unit(:12) 12?"}},
      {"35D-35F", {"35D-35F", "unit(:35D) 35F?"}},
      {"3/12", {"unit(:3) 12"}},
      {"3/12-14", {"unit(:3) 12-14", "unit(:12) 14[3]!?"}},
      {"Unit 3 12", {"unit(UNIT:3) 12"}},
      {"U3 12", {"unit(UNIT:3) 12", "unit(:U3) 12?"}},
      {"APTG1, 12", {"unit(APARTMENT:G1) 12", "unit(:APTG1) 12?"}},
      {"UG1, 12", {"level(UPPER GROUND FLOOR:1) 12", "unit(:G1) 12", "unit(:UG1) 12?"}},
      {"XG1, 12", {"12[XG1]!", "unit(:XG1) 12?"}},
      {"U3/12", {"unit(UNIT:3) 12", "unit(:U3) 12"}},
      {"Unit 3/12", {"unit(UNIT:3) 12"}},
      {"Unit 3, No. 12", {"unit(UNIT:3) 12"}},
      {"4-6/35", {"unit(:4-6) 35"}},
      {"A7/6A", {"unit(:A7) 6A"}},
      {"Unit A, 12", {"unit(UNIT:A) 12"}},
      {"Level 2/12", {"level(LEVEL:2) 12"}},
      {"L2 U3 12", {"unit(UNIT:3) level(LEVEL:2) 12", "unit(:U3) level(LEVEL:2) 12?"}},
      {"Shop 3 Level 2, 12", {"unit(SHOP:3) level(LEVEL:2) 12"}},
      {"Shop 4 Ground Floor, 12", {"unit(SHOP:4) level(GROUND:) 12"}},
      {"2nd Floor 12", {"level(FLOOR:2) 12"}},
      {"Third Floor, 12", {"level(FLOOR:3) 12"}},
      {"FL 2, 12", {"unit(FLAT:2) 12", "level(FLOOR:2) 12"}},
      {"Rear 12", {"unit(REAR:) 12"}},
      {"Lot 5", {"lot(5)"}},
      {"Lot 5, 12", {"lot(5) 12"}},
      {"Lot 5/12", {"lot(5) 12"}},
      {"Unit 12", {"unit(UNIT:12)"}},
      {"Unit 3 Level 12", {"unit(UNIT:3) level(LEVEL:12)"}},
      {"Unit 12-14", {"unit(UNIT:12) 14?"}},
      {"Town Hall 12", {"12[TOWN HALL]"}},
      {"Town Hall, 12", {"12[TOWN HALL]"}},
      {"Town Hall, 1/12", {"unit(:1) 12[TOWN HALL]"}},
      {"Town Hall 1/12", {"unit(HALL:1) 12[TOWN]", "unit(:1) 12[TOWN HALL]"}},
      {"Hall 1/12", {"unit(HALL:1) 12"}},
      {"J Smith, 12", {"12[J SMITH]"}},
      {"Unit 3, Foo House, 12", {"unit(UNIT:3) 12[FOO HOUSE]"}},
      {"Foo 3 House, 12", {"12[FOO 3 HOUSE]!", "unit(HOUSE:12) 3[FOO]"}},
      {"Studio 54, 12", {"unit(STUDIO:54) 12"}},
      {"Pier 54, 12", {"12[PIER 54]!", "unit(:54) 12[PIER]?"}},
      {"Cricket Ground", {"level(GROUND:) [CRICKET]"}},
      {"Cricket Ground, 12", {"level(GROUND:) 12[CRICKET]"}},
      {"F1 12", {"unit(:F1) 12", "unit(FLAT:1) 12", "level(FLOOR:1) 12"}},
      {"Flat F1, 12", {"unit(FLAT:F1) 12"}},
      {"A 12", {"unit(:A) 12"}},
      {"J Smith B 12", {"12[J SMITH B]"}},
      {"A, 12", {"12[A]"}},
      {"3 of 12", {"unit(:3) 12", "12[3]!"}},
      {"#3 12", {"unit(:3) 12", "12[3]!"}},
      {"Unit No 3, No 12", {"unit(UNIT:3) 12"}},
      {"12-14 Unit 3", {"unit(UNIT:3) 12-14"}},
      {"14-12 Unit 3", {"unit(UNIT:3) [14 12]!"}},
      {"Rear of 12", {"unit(REAR:) 12"}},
      {"Isle of 12", {"12[ISLE OF]"}},
      {"opposite 12", {"12[OPPOSITE]!"}},
      {"next door to 12", {"12[NEXT DOOR TO]!"}},
      {"Opposite House, 12", {"12[OPPOSITE HOUSE]"}},
      {"PO Box 12", {}},
      {"PO Box No 12", {}},
      {"Juke Box 12", {"12[JUKE BOX]"}},
      {"12 Rear", {"unit(REAR:) 12"}},
      {"12 (Lot 5)", {"lot(5) 12", "lot(5) [12]!"}},
      {"12/Lot 5", {"lot(5) [12]!"}},
      {"Lot No 5", {"lot(5)"}},
      {"12-A", {"12A"}},
      {"Unit 3, 3/12", {"unit(UNIT:3) 12"}},
      {"Unit 4, 3/12", {"unit(:3) 12[UNIT 4]!"}},
      {"2nd Floor 3/12", {"unit(:3) level(FLOOR:2) 12"}},
      {"3 12-14", {"12-14[3]!", "unit(:3) 12-14?", "unit(:12) 14[3]!?"}},
      {"12\xC2\xBD", {"[12\xC2\xBD]!"}},
      {"8 & 13/308", {"unit(:13) 308[8]!"}},
      {"3 12", {"12[3]!", "unit(:3) 12?"}},
      {"Foo House", {"[FOO HOUSE]"}},
      {"House 12", {"12", "unit(HOUSE:12)"}},
      {"House 3/12", {"unit(HOUSE:3) 12"}},
      {"House 3, 12", {"unit(HOUSE:3) 12"}},
      {"Foo House 12", {"12[FOO HOUSE]"}},
      {"House, 12", {"12[HOUSE]"}},
      {"Unit 3, Foo House", {"unit(UNIT:3) [FOO HOUSE]"}},
      {"1ST", {"[1ST]!"}},
      {"0", {"[0]!"}},
      {"1234567890", {"[1234567890]!"}},
      {"", {""}},
      {"Unit 12345678901234567, 12", {"12[UNIT 12345678901234567]!"}},
      {"12345678901234567/12", {}},
  };
  for (const PremiseRow& row : rows) {
    const auto input = std::make_unique<InputText>();
    ASSERT_EQ(input->Read(row.written), arf::InputFault::None);
    std::multiset<std::string> readings;
    for (const Premise& premise : arf::Premises(*input, {0, input->Count()}))
      if (!premise.isLastResort) readings.insert(Describe(*input, premise));
    EXPECT_EQ(readings, row.readings) << row.written;
  }
}

/** What is tried where nothing else leads anywhere. */
TEST(Premise, LastResorts)
{
  const PremiseRow rows[] = {
      {"12", {}},
      {"Unit 3, 12", {}},
      {"Level 2 Flat 3/12", {}},
      {"Foo House", {}},
      {"Foo House, 12", {"[FOO HOUSE 12]!"}},
      {"Cricket Ground", {"[CRICKET GROUND]!"}},
      {"Cricket Ground, 12", {"12[CRICKET GROUND]!", "[CRICKET GROUND 12]!"}},
      {"Pier 54, Unit 3, 12", {"12[PIER 54 UNIT 3]!", "[PIER 54 UNIT 3 12]!"}},
      {"Studio 54, 12", {"12[STUDIO 54]!", "[STUDIO 54 12]!"}},
      {"Rear of 12", {"12[REAR OF]", "[REAR OF 12]!"}},
  };
  for (const PremiseRow& row : rows) {
    const auto input = std::make_unique<InputText>();
    ASSERT_EQ(input->Read(row.written), arf::InputFault::None);
    std::multiset<std::string> readings;
    for (const Premise& premise : arf::Premises(*input, {0, input->Count()}))
      if (premise.isLastResort) readings.insert(Describe(*input, premise));
    EXPECT_EQ(readings, row.readings) << row.written;
  }
}

TEST(HouseNumber, Limits)
{
  arf::HouseNumber number;
  EXPECT_TRUE(arf::ReadHouseNumber("999999999", number));
  EXPECT_EQ(number.number, 999999999U);
  for (const char* word : {"", "A", "A1", "1ST", "2ND", "3RD", "4TH", "1ABC", "0", "000", "1234567890", "1A2"})
    EXPECT_FALSE(arf::ReadHouseNumber(word, number)) << word;
}

TEST(Occupancy, Interchangeable)
{
  EXPECT_TRUE(arf::Interchangeable("UNIT", "FLAT"));
  EXPECT_TRUE(arf::Interchangeable("CARSPACE", "CARSPACE"));
  EXPECT_FALSE(arf::Interchangeable("UNIT", "CARSPACE"));
  EXPECT_FALSE(arf::Interchangeable("GARAGE", "CARSPACE"));
  EXPECT_TRUE(arf::SameLevelType("LEVEL", "FLOOR"));
  EXPECT_FALSE(arf::SameLevelType("LEVEL", "BASEMENT"));
}

struct EndingRow
{
  const char* written;
  std::multiset<std::string> endings;  ///< "NAME|TYPE|SUFFIX"; "?" behind guesses
};

TEST(StreetEndings, AllReadings)
{
  const EndingRow rows[] = {
      {"King St West", {"KING|STREET|WEST", "KING ST||WEST", "KING ST WEST||"}},
      {"King St NE", {"KING|STREET|NORTH EAST", "KING ST||NORTH EAST", "KING ST NE||"}},
      {"King St North East",
       {"KING|STREET|NORTH EAST", "KING ST||NORTH EAST", "KING ST NORTH||EAST", "KING ST NORTH EAST||"}},
      {"King St", {"KING|STREET|", "KING ST||"}},
      {"The Esplanade", {"THE|ESPLANADE|", "THE ESPLANADE||"}},
      {"Broadway", {"BROADWAY||"}},
      {"Fern Foo", {"FERN FOO||", "FERN|FOO|?"}},
      {"Foo Cul-de-Sac", {"FOO|CUL-DE-SAC|", "FOO CUL DE SAC||"}},
      {"Foo Right of Way", {"FOO|RIGHT OF WAY|", "FOO RIGHT OF|WAY|", "FOO RIGHT OF WAY||"}},
      {"Highway 1", {"HIGHWAY 1||"}},
      {"St", {"ST||"}},
      {"", {}},
  };
  for (const EndingRow& row : rows) {
    InputText input;
    ASSERT_EQ(input.Read(row.written), arf::InputFault::None);
    std::multiset<std::string> endings;
    for (const arf::StreetEnding& e : arf::StreetEndings(input, {0, input.Count()}))
      endings.insert(std::string(input.Text(0, e.nameEnd)) + "|" + std::string(e.type) + "|" + std::string(e.suffix) +
                     (e.isGuess ? "?" : ""));
    EXPECT_EQ(endings, row.endings) << row.written;
  }
}

TEST(PostalWords, Rows)
{
  struct Row
  {
    const char* written;
    const char* type;
    const char* number;
  };
  const Row rows[] = {
      {"PO Box 123", "PO BOX", "123"},
      {"GPO Box C96", "GPO BOX", "C96"},
      {"GPO Box C 96", "GPO BOX", "C 96"},
      {"J Smith, Locked Bag 7", "LOCKED BAG", "7"},
      {"Care PO", "CARE PO", ""},
      {"PO Box", "", ""},
      {"12 Smith St", "", ""},
      {"MS 12 Foo", "", ""},
      {"", "", ""},
      {"PO Box 12345678901", "", ""},
  };
  for (const Row& row : rows) {
    InputText input;
    ASSERT_EQ(input.Read(row.written), arf::InputFault::None);
    const arf::PostalWords words = arf::ReadPostalAtEnd(input, {0, input.Count()});
    EXPECT_EQ(words.type, row.type) << row.written;
    EXPECT_EQ(input.Text(words.number), row.number) << row.written;
  }
}

}  // namespace
