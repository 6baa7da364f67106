/** The tables of types and states: each row, each written form. */
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>

#include "arf/format/fold.h"
#include "arf/tables/cities.h"
#include "arf/tables/level_types.h"
#include "arf/tables/postal_types.h"
#include "arf/tables/states.h"
#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"
#include "arf/tables/unit_types.h"

namespace {

using arf::WordRow;

std::vector<std::string> FormsOf(const WordRow& row)
{
  std::vector<std::string> forms = {std::string(row.abbreviation)};
  std::string others(row.others);
  while (!others.empty()) {
    const std::size_t end = std::min(others.find('|'), others.size());
    forms.push_back(others.substr(0, end));
    others.erase(0, end + 1);
  }
  return forms;
}

struct Table
{
  const char* name;
  std::span<const WordRow> rows;
  std::string_view (*expand)(std::string_view);
  std::size_t rowCount;
};

const Table kTables[] = {
    {"street types", arf::StreetTypeRows(), arf::ExpandStreetType, 293},
    {"unit types", arf::UnitTypeRows(), arf::ExpandUnitType, 53},
    {"level types", arf::LevelTypeRows(), arf::ExpandLevelType, 17},
    {"street suffixes", arf::StreetSuffixRows(), arf::ExpandStreetSuffix, 19},
    {"postal types", arf::PostalTypeRows(), arf::ExpandPostalType, 12},
    {"states", arf::StateRows(), arf::StateName, 9},
};

TEST(Tables, AreSortedAndSayNothingTwice)
{
  for (const Table& table : kTables) {
    SCOPED_TRACE(table.name);
    EXPECT_EQ(table.rows.size(), table.rowCount);
    std::map<std::string, std::string> fullOf;
    std::string_view before;
    for (const WordRow& row : table.rows) {
      EXPECT_LT(before, row.full);
      before = row.full;
      std::set<std::string> forms = {std::string(row.full)};
      for (const std::string& form : FormsOf(row)) {
        const bool isNew = forms.insert(form).second;
        EXPECT_TRUE(isNew || (form == row.full && form == row.abbreviation)) << form << " twice in " << row.full;
      }
      for (const std::string& form : forms) {
        const auto [place, isNew] = fullOf.emplace(form, row.full);
        EXPECT_TRUE(isNew) << form << " is " << place->second << " and " << row.full;
      }
    }
  }
}

TEST(Tables, ExpandEveryForm)
{
  for (const Table& table : kTables) {
    SCOPED_TRACE(table.name);
    for (const WordRow& row : table.rows) {
      EXPECT_EQ(table.expand(row.full), row.full);
      // What people write arrives as a match key, so the key of every form must be a form.
      EXPECT_EQ(table.expand(arf::MatchKey(row.full)), row.full) << row.full;
      for (const std::string& form : FormsOf(row)) {
        EXPECT_EQ(arf::MatchKey(form) == form || form == row.full, true) << form;
        EXPECT_EQ(table.expand(form), row.full) << form;
      }
    }
    for (const char* unknown : {"", "XYZZY", "street", "ST.", " ST"}) EXPECT_EQ(table.expand(unknown), "") << unknown;
  }
}

TEST(Tables, AbbreviateForPrint)
{
  EXPECT_EQ(arf::AbbreviateStreetType("STREET"), "ST");
  EXPECT_EQ(arf::AbbreviateStreetType("AVENUE"), "AVE");
  EXPECT_EQ(arf::AbbreviateStreetType("AV"), "AVE");
  EXPECT_EQ(arf::AbbreviateStreetType("UNHEARD"), "UNHEARD");
  EXPECT_EQ(arf::AbbreviateUnitType("APARTMENT"), "APT");
  EXPECT_EQ(arf::AbbreviateLevelType("LEVEL"), "L");
  EXPECT_EQ(arf::AbbreviateStreetSuffix("NORTH WEST"), "NW");
}

struct Written
{
  const char* text;
  const char* full;
};

TEST(Tables, KnowTheUsualStreetTypes)
{
  const Written rows[] = {{"ST", "STREET"},
                          {"STR", "STREET"},
                          {"RD", "ROAD"},
                          {"AV", "AVENUE"},
                          {"AVE", "AVENUE"},
                          {"CR", "CRESCENT"},
                          {"CRES", "CRESCENT"},
                          {"CRS", "CRESCENT"},
                          {"TCE", "TERRACE"},
                          {"TER", "TERRACE"},
                          {"PDE", "PARADE"},
                          {"HWY", "HIGHWAY"},
                          {"HWAY", "HIGHWAY"},
                          {"BVD", "BOULEVARD"},
                          {"BLVD", "BOULEVARD"},
                          {"CCT", "CIRCUIT"},
                          {"CT", "COURT"},
                          {"CRT", "COURT"},
                          {"DR", "DRIVE"},
                          {"DRV", "DRIVE"},
                          {"PL", "PLACE"},
                          {"LA", "LANE"},
                          {"LN", "LANE"},
                          {"CL", "CLOSE"},
                          {"GR", "GROVE"},
                          {"GRV", "GROVE"},
                          {"GDNS", "GARDENS"},
                          {"SQ", "SQUARE"},
                          {"ESP", "ESPLANADE"},
                          {"FWY", "FREEWAY"},
                          {"MTWY", "MOTORWAY"},
                          {"MWY", "MOTORWAY"},
                          {"PWY", "PARKWAY"},
                          {"PKWY", "PARKWAY"},
                          {"CL", "CLOSE"},
                          {"WY", "WAY"},
                          {"CUL DE SAC", "CUL-DE-SAC"}};
  for (const Written& row : rows) EXPECT_EQ(arf::ExpandStreetType(row.text), row.full) << row.text;
}

TEST(Tables, KnowTheUsualPartsAndDeliveries)
{
  for (const char* text : {"U", "UN", "UNT", "UNIT"}) EXPECT_EQ(arf::ExpandUnitType(text), "UNIT") << text;
  EXPECT_EQ(arf::ExpandUnitType("APPT"), "APARTMENT");
  EXPECT_EQ(arf::ExpandUnitType("FY"), "FACTORY");
  EXPECT_EQ(arf::ExpandLevelType("LVL"), "LEVEL");
  EXPECT_EQ(arf::ExpandLevelType("GROUND FLOOR"), "GROUND");
  EXPECT_EQ(arf::ExpandLevelType("LGF"), "LOWER GROUND FLOOR");
  EXPECT_EQ(arf::ExpandStreetSuffix("STH"), "SOUTH");
  for (const char* text : {"PO BOX", "P O BOX", "POBOX", "POST OFFICE BOX"}) {
    EXPECT_EQ(arf::ExpandPostalType(text), "PO BOX") << text;
  }
  EXPECT_EQ(arf::ExpandPostalType("POSTE RESTANTE"), "CARE PO");
  EXPECT_EQ(arf::ExpandPostalType("C POST OFFICE"), "CARE PO");
}

TEST(Tables, KnowWhichDeliveriesHaveNumbers)
{
  for (const WordRow& row : arf::PostalTypeRows()) {
    EXPECT_EQ(arf::PostalTypeTakesNumber(row.full), row.full != "CARE PO" && row.full != "CPA") << row.full;
  }
}

TEST(Tables, KnowHowDeliveriesBegin)
{
  std::set<char> letters;
  for (const WordRow& row : arf::PostalTypeRows()) {
    std::istringstream forms(std::string(row.full) + '|' + std::string(row.others));
    for (std::string form; std::getline(forms, form, '|');) letters.insert(form.front());
  }
  for (int c = -128; c < 128; ++c) {
    const char letter = static_cast<char>(c);
    EXPECT_EQ(arf::MayBeginPostalType(letter), letters.count(letter) > 0) << c;
  }
}

TEST(Tables, KnowTheStates)
{
  for (const WordRow& row : arf::StateRows()) {
    EXPECT_EQ(arf::StateCode(row.full), row.abbreviation);
    EXPECT_EQ(arf::StateCode(row.abbreviation), row.abbreviation);
    EXPECT_EQ(arf::StateName(row.abbreviation), row.full);
  }
  EXPECT_EQ(arf::StateCode("N S W"), "NSW");
  EXPECT_EQ(arf::StateCode("NEW ZEALAND"), "");
}

TEST(Tables, KnowTheCities)
{
  EXPECT_EQ(arf::CityAtEnd("ROBINA GOLD COAST", "QLD"), "GOLD COAST");
  EXPECT_EQ(arf::CityAtEnd("GOLD COAST", ""), "GOLD COAST");
  EXPECT_EQ(arf::CityAtEnd("PERTH", "TAS"), "");
  EXPECT_EQ(arf::CityAtEnd("NEWPERTH", "WA"), "");
  EXPECT_EQ(arf::CityAtEnd("PERTH ROAD", "WA"), "");
  EXPECT_EQ(arf::CityAtEnd("", ""), "");
}

}  // namespace
