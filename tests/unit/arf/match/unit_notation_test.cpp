// Ways to write units, numbers, lots, boxes and buildings, over addresses that differ in them only.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "arf/match/failure_text.h"
#include "arf/match/matcher.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

using arf::Rules;
using arf::Verdict;

constexpr const char* kAddresses =
    "dpid,building,unit_type,unit_number,level_type,level_number,lot,number_first,number_first_suffix,number_last,"
    "number_last_suffix,street_name,street_type,postal_type,postal_number,locality,state,postcode\n"
    "31000001,,,,,,,90,,106,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000002,,UNIT,F1,,,,90,,106,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000003,,SHOP,1,,,,90,,106,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000004,,UNIT,M06,,,,90,,106,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000005,,UNIT,4,,,,90,,106,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000010,,,,,,,72,,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000011,,UNIT,A,,,,72,,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000012,,REAR,,,,,72,,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000013,,,,GROUND,,,72,,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000014,,CARSPACE,5,,,,72,,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000015,,UNIT,3,FLOOR,2,,72,,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000020,,,,,,,19,A,19,C,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000021,,,,,,,26,,30,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000022,,,,,,,29,,41,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000023,,,,,,,118,B,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000024,,,,,,9,5,,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000025,,,,,,3,,,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000030,,,,,,,123,,,,QUARRY,ROAD,,,FERNBANK,NSW,2991\n"
    "31000031,,,,,,,,,,,,,PO BOX,123,FERNBANK,NSW,2991\n"
    "31000040,GRAND CENTRAL,,,,,,,,,,HARBOUR,AVENUE,,,FERNBANK,NSW,2991\n"
    "31000041,CRICKET GROUND,,,,,,,,,,HARBOUR,AVENUE,,,FERNBANK,NSW,2991\n"
    "31000042,STUDIO 54,,,,,,,,,,HARBOUR,AVENUE,,,FERNBANK,NSW,2991\n"
    "31000043,SHED 14,,,,,,10,,,,HARBOUR,AVENUE,,,FERNBANK,NSW,2991\n"
    "31000044,SHOW GROUND,,,,,,12,,,,HARBOUR,AVENUE,,,FERNBANK,NSW,2991\n"
    "31000045,,,,,,,14,,,,HARBOUR,AVENUE,,,FERNBANK,NSW,2991\n"
    "31000046,HARBOUR STREET STATION,,,,,,,,,,HARBOUR,AVENUE,,,FERNBANK,NSW,2991\n";

const arf::Engine& Addresses()
{
  static const test_support::TempDir dir;
  static const std::unique_ptr<const arf::Engine> engine =
      arf_test::OpenEngine(arf_test::BuildDatabaseFrom(dir, dir.Write("addresses.csv", kAddresses)));
  return *engine;
}

/** The identifier, 0 for none; "#" behind it: the building stands for a unit that is not there. */
std::string Answer(arf::Matcher& matcher, const std::string& written, Rules rules)
{
  const arf::LookupAnswer answer = matcher.Lookup(written + ", Fernbank NSW 2991", rules);
  if (answer.verdict != Verdict::Found) return "0";
  return std::to_string(Addresses().Data().DpidOf(answer.ordinal) - 31000000) + (answer.primaryPoint ? "#" : "");
}

struct NotationRow
{
  const char* written;
  const char* strict;
  const char* lenient;
};

TEST(UnitNotation, AllRows)
{
  const NotationRow rows[] = {
      // A name of a letter and a number is taken whole where the data has it so.
      {"F1 90-106 Quarry Rd", "2", "2"},
      {"F1/90-106 Quarry Rd", "2", "2"},
      {"Shop 1, 90-106 Quarry Rd", "3", "3"},
      {"F4 90-106 Quarry Rd", "5", "5"},
      {"90-106 Quarry Rd M06", "4", "4"},
      {"90-106 Quarry Rd #M06", "4", "4"},
      {"90-106 Quarry Rd #4", "5", "5"},
      {"4 90-106 Quarry Rd", "0", "5"},
      {"#4 90-106 Quarry Rd", "5", "5"},
      {"UF1, 90-106 Quarry Rd", "2", "2"},
      {"Unit No 4, No 90-106 Quarry Rd", "5", "5"},
      {"90-106 Unit 4 Quarry Rd", "5", "5"},
      {"4 - 90-106 Quarry Rd", "0", "5"},
      {"4 of 90-106 Quarry Rd", "5", "5"},
      {"Unit 4 of 90-106 Quarry Rd", "5", "5"},
      {"Unit 4, 4/90-106 Quarry Rd", "5", "5"},
      {"Unit 1, 4/90-106 Quarry Rd", "0", "0"},
      // A letter alone is a unit, the last of several words an initial.
      {"A 72 Quarry Rd", "11", "11"},
      {"H 72 Quarry Rd", "0", "10#"},
      {"John B 72 Quarry Rd", "10", "10"},
      {"Rear 72 Quarry Rd", "12", "12"},
      {"Rear of 72 Quarry Rd", "12", "12"},
      {"72 Rear Quarry Rd", "12", "12"},
      {"Rear of 123 Quarry Rd", "30", "30#"},
      {"Gnd Flr 72 Quarry Rd", "13", "13"},
      {"Grd Floor, 72 Quarry Rd", "13", "13"},
      {"72 Ground Floor Quarry Rd", "13", "13"},
      {"2nd Floor 3/72 Quarry Rd", "15", "15"},
      {"Level 2 3/72 Quarry Rd", "15", "15"},
      {"Carspace 5, 72 Quarry Rd", "14", "14"},
      {"5/72 Quarry Rd", "0", "14"},
      {"Unit 5, 72 Quarry Rd", "0", "10#"},
      // Words that say that the number is a neighbour's, and what is another number.
      {"opp 72 Quarry Rd", "0", "0"},
      {"opposite 72 Quarry Rd", "0", "0"},
      {"next door to 72 Quarry Rd", "0", "0"},
      {"behind 72 Quarry Rd", "0", "0"},
      {"72\xC2\xBD Quarry Rd", "0", "0"},
      {"118-B Quarry Rd", "23", "23"},
      {"19A Quarry Rd", "0", "20"},
      {"19B Quarry Rd", "0", "20"},
      {"19C Quarry Rd", "0", "20"},
      {"19D Quarry Rd", "0", "0"},
      {"29 Quarry Rd", "0", "22"},
      {"30 Quarry Rd", "0", "21"},
      {"35 Quarry Rd", "0", "22"},
      // Lots
      {"Lot 3 Quarry Rd", "25", "25"},
      {"Lot No 3 Quarry Rd", "25", "25"},
      {"Lot 9, 5 Quarry Rd", "24", "24"},
      {"5 (Lot 9) Quarry Rd", "24", "24"},
      {"Lot 8, 5 Quarry Rd", "0", "0"},
      {"Lot 8, 123 Quarry Rd", "0", "30"},
      // The number of a box is no house's.
      {"PO Box 123", "31", "31"},
      {"PO Box No. 123", "31", "31"},
      {"POBox123", "0", "31"},
      {"PO Box 123, Quarry Rd", "0", "31"},
      {"P.O. Box 123 Quarry Rd", "0", "31"},
      {"Locked Bag 123, Quarry Rd", "0", "0"},
      {"Juke Box 123 Quarry Rd", "30", "30"},
      // Buildings whose names look like something else, and streets without a number behind them
      {"Grand Central, Harbour Ave", "40", "40"},
      {"Grand Central Harbour Ave", "40", "40"},
      {"Little Central Harbour Ave", "0", "0"},
      {"Cricket Ground, Harbour Ave", "41", "41"},
      {"Cricket Ground Harbour Ave", "41", "41"},
      {"Cricket Ground", "41", "41"},
      {"Studio 54, Harbour Ave", "42", "42"},
      {"Studio 54", "42", "42"},
      {"Studio 55, Harbour Ave", "0", "0"},
      {"Shed 14, 10 Harbour Ave", "43", "43"},
      {"Show Ground, 12 Harbour Ave", "44", "44"},
      {"Shed 14, 14 Harbour Ave", "0", "45#"},
      {"Harbour Street Station", "46", "46"},
      {"Harbour St Station", "46", "46"},
      {"Harbour St Station, Harbour Ave", "46", "46"},
      {"Harbour St Station Harbour Ave", "46", "46"},
      {"Harbour St Station 3 Harbour Ave", "0", "0"},
  };
  const auto matcher = std::make_unique<arf::Matcher>(Addresses());
  for (const NotationRow& row : rows) {
    EXPECT_EQ(Answer(*matcher, row.written, Rules::Strict), row.strict) << "strict: " << row.written;
    EXPECT_EQ(Answer(*matcher, row.written, Rules::Lenient), row.lenient) << "lenient: " << row.written;
  }
}

TEST(UnitNotation, AWrongLotIsNotCalledAWrongNumber)
{
  const auto matcher = std::make_unique<arf::Matcher>(Addresses());
  ASSERT_NE(matcher->Lookup("Lot 8, 5 Quarry Rd, Fernbank", Rules::Strict).verdict, Verdict::Found);
  char buffer[512];
  arf::BoundedText text(buffer, sizeof buffer);
  arf::AppendFailure(text, Addresses().Data(), matcher->LastFailure());
  EXPECT_STREQ(buffer, "No LOT 8 at 5 QUARRY ROAD, FERNBANK NSW 2991; there is LOT 9.");
}

}  // namespace
