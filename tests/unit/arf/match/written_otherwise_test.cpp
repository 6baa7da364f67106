// Ways of writing that are tried when nothing was found as it stands: short forms within names, and noise in a line.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "arf/match/matcher.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

using arf::Rules;

constexpr const char* kAddresses =
    "dpid,building,number_first,number_last,street_name,street_type,postal_type,postal_number,locality,state,postcode\n"
    "50000001,,100,,THE PARADE,,,,ALDERTON,SA,5960\n"
    "50000002,,600,,HIGH STREET,ROAD,,,ALDERTON,SA,5960\n"
    "50000003,,5,,NORTH SHORE,ROAD,,,ALDERTON,SA,5960\n"
    "50000004,,8,,AVENUE OF HEROES,,,,ALDERTON,SA,5960\n"
    "50000005,,600,,HIGH,STREET,,,ALDERTON,SA,5960\n"
    "50000006,HARBOUR STREET STATION,,,HARBOUR,STREET,,,ALDERTON,SA,5960\n"
    "50000007,,3,,HARBOUR,STREET,,,ALDERTON,SA,5960\n"
    "50000008,,7,,SAINT MARK,ROAD,,,ALDERTON,SA,5960\n"
    "50000009,,6,8,BOX,STREET,,,ALDERTON,SA,5960\n"
    "50000010,,4,18,LONG,STREET,,,ALDERTON,SA,5960\n"
    "50000012,,9,,LIAM,STREET,,,ALDERTON,SA,5960\n"
    "50000013,,9,,IIAM,STREET,,,ALDERTON,SA,5960\n"
    "50000014,,9,,SMITHS,STREET,,,ALDERTON,SA,5960\n"
    "50000015,,5,,MITHS,STREET,,,ALDERTON,SA,5960\n"
    "50000011,,,,,,RMB,12,ALDERTON,SA,5960\n";

/** One database for the whole test program. */
const arf::Engine& TownEngine()
{
  static const test_support::TempDir dir;
  static const std::unique_ptr<const arf::Engine> engine = [] {
    dir.Write("town.csv", kAddresses);
    return arf_test::OpenEngine(arf_test::BuildDatabaseFrom(dir, dir.Path("town.csv")));
  }();
  return *engine;
}

struct LookupRow
{
  const char* written;
  std::uint32_t strict;   ///< identifier; 0: nothing found
  std::uint32_t lenient;  ///< likewise
  const char* departures;
};

void ExpectLookups(std::span<const LookupRow> rows)
{
  const auto matcher = std::make_unique<arf::Matcher>(TownEngine());
  const auto find = [&](const char* written, Rules rules, std::string& departures) -> std::uint32_t {
    const arf::LookupAnswer answer = matcher->Lookup(written, rules);
    if (answer.verdict != arf::Verdict::Found) return 0;
    char buffer[512];
    arf::BoundedText text(buffer, sizeof buffer);
    arf::AppendDepartures(text, answer.departures);
    departures = buffer;
    return TownEngine().Data().DpidOf(answer.ordinal);
  };
  for (const LookupRow& row : rows) {
    std::string departures;
    EXPECT_EQ(find(row.written, Rules::Strict, departures), row.strict) << row.written;
    departures.clear();
    EXPECT_EQ(find(row.written, Rules::Lenient, departures), row.lenient) << row.written;
    EXPECT_EQ(departures, row.departures) << row.written;
  }
}

TEST(WrittenOtherwise, ShortFormsWithinNames)
{
  const LookupRow rows[] = {
      {"100 The Pde, Alderton SA 5960", 50000001, 50000001, "street_variant=1"},
      {"100 The Pd Alderton", 50000001, 50000001, "street_variant=1"},
      {"100 Pde, Alderton", 0, 50000001, "street_article=8"},
      {"100 The Ave, Alderton", 0, 0, ""},
      {"600 High St Rd, Alderton", 50000002, 50000002, "street_variant=1"},
      {"600 High Str Road, Alderton", 50000002, 50000002, "street_variant=1"},
      {"600 High St, Alderton", 50000005, 50000005, ""},
      {"5 N Shore Rd, Alderton", 50000003, 50000003, "street_variant=1"},
      {"8 Ave of Heroes, Alderton", 50000004, 50000004, "street_variant=1"},
      {"Harbour St Station, Harbour St, Alderton", 50000006, 50000006, ""},
      {"Harbour St Stadium, Harbour St, Alderton", 0, 0, ""},
      {"7 St Mark Rd, Alderton", 50000008, 50000008, "street_variant=1"},
  };
  ExpectLookups(rows);
}

TEST(WrittenOtherwise, ViaTheLocalityOrAnotherPlace)
{
  const LookupRow rows[] = {
      {"3 Harbour St via Alderton", 0, 50000007, "noise=4"},
      {"3 Harbour St via Alderton SA 5960", 0, 50000007, "noise=4"},
      {"3 Harbur St via Alderton SA 5960", 0, 50000007, "street_typo=12;noise=4"},
      {"3 Harbour St, Alderton via Beech", 0, 50000007, "noise=4"},
      {"3 Harbour St, via Beech, Alderton", 0, 50000007, "noise=4"},
      {"3 Harbour St, via Beech, Alderton SA 5960", 0, 50000007, "noise=4"},
      {"3 Harbour St, via Beech", 0, 0, ""},
      {"RMB 12 via Alderton", 0, 50000011, "noise=4"},
      {"600 Via High, Alderton", 0, 0, ""},
  };
  ExpectLookups(rows);
}

TEST(WrittenOtherwise, NoiseAndNumbersBehindStreets)
{
  const LookupRow rows[] = {
      {"3 Harbour St near High St, Alderton", 0, 50000007, "noise=4"},
      {"3 Harbour St near High St Alderton SA 5960", 0, 50000007, "noise=4"},
      {"3 Harbour St, Alderton Ph 0412 345 678 Email a@b.example", 0, 50000007, "noise=4"},
      {"Box St 6-8, Alderton", 0, 50000009, "number_behind=8"},
      {"Box St 6-10, Alderton", 0, 0, ""},
  };
  ExpectLookups(rows);
}

TEST(WrittenOtherwise, MisreadSigns)
{
  const LookupRow rows[] = {
      {"9 Sm1ths Street, Alderton", 0, 50000014, "look_alike=12"},
      {"9 5miths 5treet, Alderton SA 596O", 0, 50000014, "look_alike=12"},
      {"9 Smiths St A1derton", 0, 50000014, "look_alike=12"},
      {"9 Smiths St Alderton 5A 5960", 0, 50000014, "look_alike=12"},
      {"9 Smiths St, Alderton 596O", 0, 50000014, "look_alike=12"},
      {"9 Smiths St, Alderton 59G1", 0, 0, ""},
      {"8 Sm1ths Street, Alderton", 0, 0, ""},
      {"9 1iam St, Alderton", 0, 0, ""},  // LIAM or IIAM
      {"5miths Street, Alderton", 0, 50000015, "run_together=8"},
      {"9 Sm7ths Street, Alderton", 0, 0, ""},
  };
  ExpectLookups(rows);
}

TEST(WrittenOtherwise, MistypedStatesAndWordsBehindThem)
{
  const LookupRow rows[] = {
      {"9 Smiths St, Alderton South Austrlia", 0, 50000014, "state_typo=8"},
      {"9 Smths St, Alderton South Austrlia 5960", 0, 50000014, "street_typo=12;state_typo=8"},
      {"9 Smiths St, Aldrton South Austrlia", 0, 0, ""},
      {"9 Smiths St, Alderton Victria", 0, 0, ""},
      {"9 Smiths St, Alderton VCI 5960", 0, 0, ""},
      {"9 Smiths St, Alderton SA xyz", 0, 50000014, "noise=4"},
      {"9 Smiths St, Alderton SA please ring", 0, 50000014, "noise=4"},
      {"9 Smiths St, Alderton SA please do ring", 0, 0, ""},
      {"9 Smiths St, Alderton VIC please ring", 0, 0, ""},
  };
  ExpectLookups(rows);
}

TEST(WrittenOtherwise, LocalityFirstAndBrackets)
{
  const LookupRow rows[] = {
      {"Alderton, 9 Smiths St", 0, 50000014, "locality_first=6"},
      {"Alderton SA 5960, 9 Smiths St", 0, 50000014, "locality_first=6"},
      {"5960 Alderton, 9 Smiths St SA", 0, 50000014, "place_order=1;locality_first=6"},
      {"Alderton, 9 Smiths St VIC", 0, 0, ""},
      {"Alderton, 9 Smiths St Harbour", 0, 0, ""},
      {"Alderton, 9 Smths St", 0, 0, ""},
      {"Alderton, 10 Smiths St", 0, 0, ""},
      {"9 Smiths St (Rose Rise), Alderton", 0, 50000014, "noise=4"},
      {"9 Smiths St (Rear), Alderton", 0, 50000014, "unit_behind_street=1;unknown_unit=20"},
      {"9 Smiths St (Unit Two), Alderton", 0, 0, ""},
      {"9 Smiths St (B), Alderton", 0, 0, ""},
      {"9 Smiths St (the front door, 2nd floor), Alderton", 0, 0, ""},
      {"9 Smiths St (leave with the neighbours), Alderton", 0, 50000014, "noise=4"},
      {"9 Smiths St (Alderton), Beech", 0, 0, ""},
      {"9 Smiths St (SA), Alderton VIC", 0, 0, ""},
      {"9 Smiths St (Lot 5), Alderton", 0, 50000014, "unit_behind_street=1;unknown_unit=20"},
      {"9 Smiths St (Shop B), Alderton", 0, 50000014, "unit_behind_street=1;unknown_unit=20"},
  };
  ExpectLookups(rows);
}

TEST(WrittenOtherwise, NumbersOfTwoHouses)
{
  const LookupRow rows[] = {
      {"6 & 8 Box St, Alderton", 0, 50000009, "joined_numbers=8"},
      {"6 and 8 Box St, Alderton SA", 0, 50000009, "joined_numbers=8"},
      {"6 + 8 Boxx St, Alderton SA", 0, 50000009, "street_typo_short=16;joined_numbers=8"},
      {"4 & 18 Long St, Alderton", 0, 50000010, "joined_numbers=8"},
      {"4 & 6 Long St, Alderton", 0, 0, ""},
      {"6 & 18 Long St, Alderton", 0, 0, ""},
      {"8 & 6 Box St, Alderton", 0, 0, ""},
      {"600 & 602 High St, Alderton", 0, 0, ""},
      {"7-Eleven, 3 Harbour St, Alderton", 0, 50000007, "noise=4"},
  };
  ExpectLookups(rows);
}

}  // namespace
