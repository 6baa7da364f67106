// Every row of lookup_cases.tsv, by strict and by lenient rules.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "arf/match/failure_text.h"
#include "arf/match/matcher.h"
#include "unit/arf/match/engine_fixture.h"
#include "unit/arf/match/tsv.h"

namespace {

using arf::Matcher;
using arf::Rules;
using arf::Verdict;

std::string OutcomeOf(Matcher& matcher, const std::string& written, Rules rules)
{
  static const std::map<Verdict, std::string> kNames = {
      {Verdict::Nothing, "nothing"},    {Verdict::TooLong, "long"},       {Verdict::WrongLocality, "locality"},
      {Verdict::WrongStreet, "street"}, {Verdict::WrongNumber, "number"}, {Verdict::Several, "several"}};
  const arf::LookupAnswer answer = matcher.Lookup(written, rules);
  if (answer.verdict != Verdict::Found) return kNames.at(answer.verdict);
  return std::to_string(arf_test::SmallEngine().Data().DpidOf(answer.ordinal));
}

std::string ReasonOf(const Matcher& matcher)
{
  char buffer[512];
  arf::BoundedText text(buffer, sizeof buffer);
  arf::AppendFailure(text, arf_test::SmallEngine().Data(), matcher.LastFailure());
  return buffer;
}

TEST(LookupCases, AllRows)
{
  const auto matcher = std::make_unique<Matcher>(arf_test::SmallEngine());
  const auto rows = arf_test::ReadTsv(arf_test::TestDataFile("lookup_cases.tsv"), 3);
  EXPECT_GT(rows.size(), 150U);
  for (const arf_test::TsvRow& row : rows) {
    EXPECT_EQ(OutcomeOf(*matcher, row.fields[0], Rules::Strict), row.fields[1])
        << row.place << " strict: " << row.fields[0] << "\n"
        << ReasonOf(*matcher);
    EXPECT_EQ(OutcomeOf(*matcher, row.fields[0], Rules::Lenient), row.fields[2])
        << row.place << " lenient: " << row.fields[0] << "\n"
        << ReasonOf(*matcher);
  }
}

TEST(LookupCases, StrictRulesNeverFindMoreThanLenientOnes)
{
  const auto matcher = std::make_unique<Matcher>(arf_test::SmallEngine());
  for (const arf_test::TsvRow& row : arf_test::ReadTsv(arf_test::TestDataFile("lookup_cases.tsv"), 3)) {
    const bool strictFinds = row.fields[1].find_first_not_of("0123456789") == std::string::npos;
    if (strictFinds) {
      EXPECT_EQ(row.fields[1], row.fields[2]) << row.place;
    }
  }
}

TEST(LookupCases, ChangesAreReported)
{
  const auto matcher = std::make_unique<Matcher>(arf_test::SmallEngine());
  for (const arf_test::TsvRow& row : arf_test::ReadTsv(arf_test::TestDataFile("lookup_cases.tsv"), 3)) {
    const arf::LookupAnswer lenient = matcher->Lookup(row.fields[0], Rules::Lenient);
    if (lenient.verdict != Verdict::Found) continue;
    // "1/30" is the one kind of answer for which lenient rules prefer without changing anything.
    const bool preferred = row.fields[1] == "several" && !lenient.changed;
    EXPECT_EQ(lenient.changed, row.fields[1] != row.fields[2] && !preferred) << row.place << ": " << row.fields[0];
  }
}

/** Where nothing was found, the words are still told apart. */
TEST(LookupReading, OfWhatIsNotInTheData)
{
  const auto matcher = std::make_unique<Matcher>(arf_test::SmallEngine());
  for (const Rules rules : {Rules::Strict, Rules::Lenient}) {
    for (const char* place : {"Welcome Creek, Qld 4670", "Sydney NSW 2000"}) {
      const std::string text = std::string("3/366-370 Old Tolls Road West, ") + place;
      ASSERT_NE(matcher->Lookup(text, rules).verdict, Verdict::Found);
      const arf::Reading& reading = matcher->LastReading();
      EXPECT_EQ(matcher->Input().Text(reading.streetName), "OLD TOLLS");
      EXPECT_EQ(reading.streetType, "ROAD");
      EXPECT_EQ(reading.streetSuffix, "WEST");
      EXPECT_EQ(reading.premise.numberFirst, 366U);
      EXPECT_EQ(reading.premise.numberLast, 370U);
      EXPECT_EQ(reading.premise.unit.number.View(), "3");
      EXPECT_FALSE(reading.locality.Empty());
    }
  }
}

}  // namespace
