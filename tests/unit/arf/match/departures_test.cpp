// The names and costs of what an answer may differ in, and the answers that have them.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "arf/match/matcher.h"
#include "arf/match/penalties.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

using arf::Departure;
using arf::Departures;

std::string TextOf(const Departures& departures)
{
  char buffer[2048];
  arf::BoundedText text(buffer, sizeof buffer);
  arf::AppendDepartures(text, departures);
  return buffer;
}

TEST(Departures, AreSets)
{
  Departures departures;
  EXPECT_TRUE(departures.Empty());
  EXPECT_FALSE(departures.HasChange());
  departures.Add(Departure::StreetVariant);
  departures.Add(Departure::StreetVariant);
  EXPECT_EQ(departures.Sum(), 1U);
  EXPECT_FALSE(departures.HasChange());
  const Departures both = departures + (Departures(Departure::StreetTypo) + Departure::StreetVariant);
  EXPECT_EQ(both.Sum(), 1U + 12U);
  EXPECT_TRUE(both.HasChange());
  EXPECT_TRUE(both.ChangesOnly(Departure::StreetTypo));
  EXPECT_FALSE(both.ChangesOnly(Departure::Neighbour));
  EXPECT_EQ(TextOf(both), "street_variant=1;street_typo=12");
  EXPECT_EQ(TextOf({}), "");
}

TEST(Departures, TableHasEveryKindOnce)
{
  char buffer[4096];
  arf::BoundedText text(buffer, sizeof buffer);
  arf::AppendPenaltyTable(text);
  ASSERT_TRUE(text.IsWhole());
  std::set<std::string_view> names;
  unsigned semicolons = 0;
  for (const arf::DepartureRow& row : arf::kDepartureRows) {
    names.insert(row.name);
    EXPECT_GT(row.penalty, 0) << row.name;
    EXPECT_LT(row.penalty, arf::kConvincing) << row.name;
  }
  for (const char c : text.View()) semicolons += c == ';';
  EXPECT_EQ(names.size(), arf::kDepartureCount);
  EXPECT_EQ(semicolons + 1, arf::kDepartureCount);
}

/** Ways of writing, however many there are in one text, stay below what any change costs. */
TEST(Departures, WaysOfWritingCostLessThanChanges)
{
  for (const arf::DepartureRow& row : arf::kDepartureRows) {
    if (row.kind < arf::kFirstChange) {
      EXPECT_LE(row.penalty, 2) << row.name;
    } else if (row.kind > arf::kFirstChange) {
      EXPECT_GE(row.penalty, arf::kMargin) << row.name;
    }
  }
}

struct AnswerRow
{
  const char* written;
  std::uint32_t dpid;
  const char* departures;
  bool primaryPoint;
};

TEST(Departures, OfAnswers)
{
  const AnswerRow rows[] = {
      {"1 George Street, Sydney NSW 2000", 30000001, "", false},
      {"15 West Street, Mt Isa", 30000120, "locality_variant=1", false},
      {"483 Gorge St Sydney", 30000002, "unwritten_building=1;street_typo=12", false},
      {"483 Gorge St Sydny", 30000002, "unwritten_building=1;street_typo=12;locality_typo=12", false},
      {"99/12-14 George St Sydney", 30000010, "unknown_unit=20", true},
      {"1 George St Sydney NSW 2010", 30000001, "postcode_digit=12", false},
      {"138 Pitt St Sydney", 30000050, "inside_range=12", false},
      {"20 March Rd Richmond", 30000131, "street_type_differs=15", false},
      {"3 Station St 0800", 30000154, "locality_missing=30", false},
      {"1 Georgge St Sydney, jo@example.org", 30000001, "street_typo=12;noise=4", false},
  };
  const auto matcher = std::make_unique<arf::Matcher>(arf_test::SmallEngine());
  for (const AnswerRow& row : rows) {
    const arf::LookupAnswer answer = matcher->Lookup(row.written, arf::Rules::Lenient);
    ASSERT_EQ(answer.verdict, arf::Verdict::Found) << row.written;
    EXPECT_EQ(arf_test::SmallEngine().Data().DpidOf(answer.ordinal), row.dpid) << row.written;
    EXPECT_EQ(TextOf(answer.departures), row.departures) << row.written;
    EXPECT_EQ(answer.primaryPoint, row.primaryPoint) << row.written;
    EXPECT_EQ(answer.changed, answer.departures.HasChange()) << row.written;
  }
}

/** A database with two buildings of which only one unit each is known. */
std::unique_ptr<const arf::Engine> LonelyUnits(const test_support::TempDir& dir)
{
  dir.Write("units.csv",
            "dpid,unit_type,unit_number,number_first,number_last,street_name,street_type,locality,state,postcode\n"
            "40000001,UNIT,7,1,79,SMITH,STREET,NOWHERE,NT,0800\n"
            "40000002,UNIT,7,90,,SMITH,STREET,NOWHERE,NT,0800\n");
  return arf_test::OpenEngine(arf_test::BuildDatabaseFrom(dir, dir.Path("units.csv")));
}

TEST(Departures, AnOnlyUnitInsideARangeIsTooFarFromWhatWasWritten)
{
  const test_support::TempDir dir;
  const std::unique_ptr<const arf::Engine> engine = LonelyUnits(dir);
  arf::Matcher matcher(*engine);
  EXPECT_EQ(matcher.Lookup("90 Smith St Nowhere", arf::Rules::Lenient).verdict, arf::Verdict::Found);
  EXPECT_EQ(matcher.Lookup("1 Smith St Nowhere", arf::Rules::Lenient).verdict, arf::Verdict::Several);
  EXPECT_EQ(matcher.Lookup("7/15 Smith St Nowhere", arf::Rules::Lenient).verdict, arf::Verdict::Found);
}

}  // namespace
