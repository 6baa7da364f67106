// What is left out of a text, and what is taken apart.
#include "arf/match/repair.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using arf::StuckLetter;

struct RepairRow
{
  const char* written;
  const char* repaired;  ///< empty: nothing to repair
};

std::string Repaired(const std::string& text, arf::RepairChoice choice = {})
{
  const auto words = std::make_unique<arf::InputText>();
  const auto buffer = std::make_unique<arf::RepairBuffer>();
  arf::Departures departures;
  if (words->Read(text) != arf::InputFault::None) return "unreadable";
  const std::string_view repaired = arf::Repair(text, choice, *words, *buffer, departures);
  EXPECT_EQ(repaired.empty(), departures.Empty()) << text;
  return std::string(repaired);
}

TEST(Repair, Rows)
{
  const RepairRow rows[] = {
      {"12 Smith St Sydney", ""},
      {"12A Smith St Sydney", ""},
      {"21st Ave", ""},
      {"1234 Stuart Highway Katherine", ""},
      {"12 Smith St Sydney NSW 2000", ""},
      {"12 Smith St Sydney NSW 2000 near the park", "12 SMITH ST, SYDNEY NSW 2000"},
      {"12 Smith St Sydney 2000 NSW, ring twice", "12 SMITH ST SYDNEY 2000 NSW"},
      {"12 Smith St Sydney NSW 2000 Unit 9", ""},
      {"12 Smith St, a.b@c.example, Sydney", "12 SMITH ST, SYDNEY"},
      {"12 Smith St, www.example.com", "12 SMITH ST"},
      {"12 Smith St Sydney ph 02 9123 4567 Email a.b@c.example", "12 SMITH ST SYDNEY"},
      {"12 Smith St Sydney E-mail: a.b@c.example mob 0412 345 678", "12 SMITH ST SYDNEY"},
      {"Email, a.b@c.example, 12 Smith St Web http://c.example", "12 SMITH ST"},
      {"12 Web St, Sydney", ""},
      {"12 Smith St near High St, Sydney", "12 SMITH ST SYDNEY"},
      {"12 Smith St near High St Sydney", "12 SMITH ST SYDNEY"},
      {"12 Smith St near High St Sydney, NSW 2000", "12 SMITH ST SYDNEY NSW 2000"},
      {"12 Smith St opposite St Mark Church, Sydney", "12 SMITH ST SYDNEY"},
      {"12 Smith St West opp High St Mona Park NSW", "12 SMITH ST WEST MONA PARK NSW"},
      {"12 Smith St near Victoria St, Sydney", "12 SMITH ST SYDNEY"},
      {"12 Smith St near Victoria", ""},
      {"Smith St West 12, Sydney", "12 SMITH ST WEST SYDNEY"},
      {"West 12, Sydney", ""},
      {"6 & 8 Smith St, via Dubbo, Sydney", "6 & 8 SMITH ST SYDNEY"},
      {"12 Smith St near Sydney", ""},
      {"12 Smith near High St, Sydney", ""},
      {"12 St near, Sydney", ""},
      {"Smith St 12-14, Sydney", "12-14 SMITH ST SYDNEY"},
      {"Foo Hall, Smith St 12A-14B Sydney", "FOO HALL 12A-14B SMITH ST SYDNEY"},
      {"Smith St 12-14", ""},
      {"Smith St 12-14 NSW", ""},
      {"Smith St 12-14 Unit 3 Sydney", "12-14 SMITH ST UNIT 3 SYDNEY"},
      {"Smith St 12-14 3 Sydney", ""},
      {"12 Smith St Sydney ph 02 9123 4567", "12 SMITH ST SYDNEY"},
      {"12 Smith St Sydney (02) 9123-4567", "12 SMITH ST SYDNEY"},
      {"0412 345 678, 12 Smith St", "12 SMITH ST"},
      {"+61 2 9123 4567, 12 Smith St", "12 SMITH ST"},
      {"0412345678 12 Smith St", "12 SMITH ST"},
      {"1300 123 456 12 Smith St", "12 SMITH ST"},
      {"Foo ABN 12 345 678 901, 12 Smith St", "FOO 12 SMITH ST"},
      {"Foo ACN 123 456 789, 12 Smith St", "FOO 12 SMITH ST"},
      {"Foo ABN 12 Smith St", ""},
      {"Foo ABN 123 456 7890, 12 Smith St", ""},
      {"12 Smith St Sydney via Bundaberg", "12 SMITH ST SYDNEY"},
      {"12 Smith St Sydney via Bundaberg QLD 4670", "12 SMITH ST SYDNEY QLD 4670"},
      {"12 Smith St Sydney via 2000", ""},
      {"Via Roma 12, Sydney", ""},
      {"12 Smith St (off the Great Highway) Sydney", "12 SMITH ST SYDNEY"},
      {"12 Smith St, near the park, Sydney", "12 SMITH ST SYDNEY"},
      {"12 Smith St, opposite Town Hall NSW 2000", "12 SMITH ST NSW 2000"},
      {"12 Near St, Sydney", ""},
      {"Near the park, 12 Smith St", ""},
      {"12 Smith St, near", ""},
      {"Smith St 12 Sydney", "12 SMITH ST SYDNEY"},
      {"Foo Hall, Smith Street 12A, Sydney", "FOO HALL 12A SMITH STREET SYDNEY"},
      {"Smith St 2000", ""},
      {"Smith St 12", ""},
      {"Smith St 12 NSW", ""},
      {"3 Smith St 12 Sydney", ""},
      {"St 12 Sydney", ""},
      {"Smith St 12 14 Sydney", ""},
      {"12Smith St Sydney", "12 SMITH ST SYDNEY"},
      {"7-Eleven, 12 Smith St", "12 SMITH ST"},
      {"7-Eleven Express, 12 Smith St", "12 SMITH ST"},
      {"7-Eleven 3, 12 Smith St", ""},
      {"7-Eleven, Smith St", ""},
      {"7-Smith St, 12 Jones St", ""},
      {"7 Eleven, 12 Smith St", ""},
      {"7-A, 12 Smith St", ""},
      {"12SmithSt Sydney", "12 SMITH ST SYDNEY"},
      {"12 SmithStreet Sydney", "12 SMITH STREET SYDNEY"},
      {"12 Smith St Sydney2000", "12 SMITH ST SYDNEY 2000"},
      {"3/12Smith St", "3/12 SMITH ST"},
      {"12 Marina Boulevard Sydney", ""},
      {"25 Third St Sydney", ""},
      {"", ""},
  };
  for (const RepairRow& row : rows) {
    std::string expected = row.repaired;
    const std::string repaired = Repaired(row.written);
    // Breaks that the writer made are kept; whether one is shown as a comma is no matter here.
    const auto withoutCommas = [](std::string text) {
      std::erase(text, ',');
      return text;
    };
    EXPECT_EQ(withoutCommas(repaired), withoutCommas(expected)) << row.written;
  }
}

TEST(Repair, TheLetterBehindDigitsMayBeOfTheNumber)
{
  EXPECT_EQ(Repaired("12ASmith St"), "12 ASMITH ST");
  EXPECT_EQ(Repaired("12ASmith St", {StuckLetter::OfNumber}), "12A SMITH ST");
  EXPECT_EQ(Repaired("12AElm St", {StuckLetter::OfNumber}), "12A ELM ST");
  EXPECT_EQ(Repaired("12Elm St", {StuckLetter::OfNumber}), "12 ELM ST");
}

TEST(Repair, WhatViaSays)
{
  struct ViaRow
  {
    const char* written;
    const char* toBreak;
    const char* wordOnly;
    const char* toPlace;
  };
  const ViaRow rows[] = {
      {"12 Smith St via Dubbo NSW", "12 SMITH ST, NSW", "12 SMITH ST, DUBBO NSW", "12 SMITH ST, NSW"},
      {"12 Smith St, via Dubbo, Sydney", "12 SMITH ST, SYDNEY", "12 SMITH ST, DUBBO, SYDNEY", "12 SMITH ST"},
      {"12 Smith St via Victoria Park", "12 SMITH ST", "12 SMITH ST, VICTORIA PARK", "12 SMITH ST"},
      {"12 Smith St Dubbo via Victoria", "", "", ""},
      {"RMB 1234 via Dubbo", "RMB 1234", "RMB 1234, DUBBO", "RMB 1234"},
      {"12 Via Roma, Sydney", "12, SYDNEY", "", "12"},
      {"Via Roma 12, Sydney", "", "", ""},
      {"12 Smith St via 2000", "", "", ""},
  };
  for (const ViaRow& row : rows) {
    EXPECT_EQ(Repaired(row.written, {StuckLetter::OfName, arf::Detour::ToBreak}), row.toBreak) << row.written;
    EXPECT_EQ(Repaired(row.written, {StuckLetter::OfName, arf::Detour::WordOnly}), row.wordOnly) << row.written;
    EXPECT_EQ(Repaired(row.written, {StuckLetter::OfName, arf::Detour::ToPlace}), row.toPlace) << row.written;
  }
}

TEST(Repair, LongTextsFit)
{
  const std::string stuck = std::string(4, '1') + std::string(4000, 'A');
  EXPECT_EQ(Repaired(stuck), std::string(4, '1') + " " + std::string(4000, 'A'));
  std::string many;
  for (int i = 0; i < 96; ++i) many += "12Smith ";
  EXPECT_LE(Repaired(many).size(), arf::kMaxInputBytes);
}

}  // namespace
