// Other names of streets and localities, which both rules take as names, and neighbours, which only lenient ones try.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "arf/match/matcher.h"
#include "unit/arf/match/engine_fixture.h"
#include "unit/arf/match/other_names_fixture.h"

namespace {

using arf::Rules;
using arf::Verdict;

const arf::Engine& Engine()
{
  static const test_support::TempDir dir;
  static const std::unique_ptr<const arf::Engine> engine = arf_test::OpenEngine(arf_test::BuildRegister(dir));
  return *engine;
}

/** "S1_12 street_alias=2": what the source calls the address, and the departures; or the kind of failure. */
std::string Find(const char* text, Rules rules)
{
  const auto matcher = std::make_unique<arf::Matcher>(Engine());
  const arf::LookupAnswer answer = matcher->Lookup(text, rules);
  if (answer.verdict == Verdict::WrongStreet) return "street";
  if (answer.verdict == Verdict::WrongNumber) return "number";
  if (answer.verdict == Verdict::WrongLocality) return "locality";
  if (answer.verdict == Verdict::Several) return "several";
  if (answer.verdict != Verdict::Found) return "nothing";
  arf::AttributeText value;
  const arf::Database& data = Engine().Data();
  std::string found(data.AttributeOf(answer.ordinal, data.FindAttribute("source_identifier").value(), value));
  char buffer[256];
  arf::BoundedText departures(buffer, sizeof buffer);
  arf::AppendDepartures(departures, answer.departures);
  if (departures.Length() > 0) found.append(" ").append(departures.View());
  EXPECT_EQ(answer.changed, answer.departures.HasChange()) << text;
  return found.substr(2);
}

struct Row
{
  const char* written;
  const char* strict;
  const char* lenient;
};

void ExpectAll(std::initializer_list<Row> rows)
{
  for (const Row& row : rows) {
    EXPECT_EQ(Find(row.written, Rules::Strict), row.strict) << row.written;
    EXPECT_EQ(Find(row.written, Rules::Lenient), row.lenient) << row.written;
  }
}

TEST(OtherNames, OfStreets)
{
  ExpectAll({
      {"12 Main Street, Alderton NSW 2991", "S1_12 street_alias=2", "S1_12 street_alias=2"},
      {"12 main st alderton", "S1_12 street_alias=2", "S1_12 street_alias=2"},
      {"7 Main St, Bramley", "S3_7 street_alias=2", "S3_7 street_alias=2"},
      {"12 Main St NSW 2991", "locality", "locality"},
      {"99 Main St, Alderton", "number", "number"},
      {"Main St, Alderton", "number", "number"},
      {"12 Main Rd, Alderton", "street", "street"},  // the name with another type
      {"12 Mian St, Alderton", "street", "street"},  // other names are not guessed
      {"12 Main St West, Alderton", "street", "street"},
  });
}

/** A street's own name goes before another street's other name, where it has the number. */
TEST(OtherNames, OwnNamesGoBefore)
{
  ExpectAll({
      {"1 Main St, Cranford", "S5_1", "S5_1"},
      {"9 Main St, Cranford", "S6_9 street_alias=2", "S6_9 street_alias=2"},
      {"9 River Rd, Cranford", "S6_9", "S6_9"},
  });
}

TEST(OtherNames, OfTwoStreetsLeaveTheQuestionOpen)
{
  ExpectAll({
      {"5 Old Rd, Bramley", "several", "several"},
      {"7 Old Rd, Bramley", "S3_7 street_alias=2", "S3_7 street_alias=2"},
  });
}

TEST(OtherNames, OfLocalities)
{
  ExpectAll({
      {"12 High St, Alder Town", "S1_12 locality_alias=2", "S1_12 locality_alias=2"},
      {"12 High St New Alderton NSW 2991", "S1_12 locality_alias=2", "S1_12 locality_alias=2"},
      {"9 River Rd, The Ford NSW", "S6_9 locality_alias=2", "S6_9 locality_alias=2"},
      {"12 Main St, Alder Town", "S1_12 street_alias=2;locality_alias=2", "S1_12 street_alias=2;locality_alias=2"},
      {"12 High St, Alder Town VIC", "locality", "locality"},
      {"99 High St, Alder Town", "number", "number"},
      {"12 Nowhere St, Alder Town", "street", "street"},
  });
}

TEST(Neighbours, LenientlyWhereEverythingElseIsRight)
{
  ExpectAll({
      {"7 Green Rd, Alderton", "street", "S3_7 neighbour=14"},
      {"9 River Rd, Bramley NSW 2992", "street", "S6_9 neighbour=14"},
      {"9 River Rd, Alderton", "street", "street"},  // too far away
      {"12 High St, Cranford", "street", "street"},  // it is no neighbour that way
      {"7 Gren Rd, Alderton", "street", "street"},   // one guess is enough
      {"7 Green St, Alderton", "street", "street"},
      {"99 Green Rd, Alderton", "street", "street"},
      {"7 Green Rd, Alderton VIC", "locality", "locality"},
      {"12 Mill Lane, Bramley", "street", "S2_12 neighbour=14"},
  });
}

/** Only what is written in the locality itself counts as written; a neighbour's street never takes its number. */
TEST(Neighbours, NeverInsteadOfAStreetThatIsThere)
{
  ExpectAll({
      {"12 Main St, Bramley", "number", "number"},  // 12 is in Alderton's
      {"1 High St, Alderton", "S1_1", "S1_1"},
  });
}

}  // namespace
