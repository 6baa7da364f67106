#include "paf/batch_tally.h"

#include <gtest/gtest.h>

#include "qxpaf/arf_au.h"

namespace tool {
namespace {

struct OutcomeRow
{
  int status;
  int findStatus;
  Outcome outcome;
};

constexpr OutcomeRow kOutcomeRows[] = {
    {0, PAF_AU_FIND_MATCHED, Outcome::Matched},
    {0, PAF_AU_FIND_CHANGED, Outcome::Corrected},
    {0, PAF_AU_FIND_PRIMARY_POINT, Outcome::PrimaryPoint},
    {0, PAF_AU_FIND_NONE, Outcome::Matched},
    {0, -1, Outcome::Matched},
    {PAF_AU_ERR_SEVERAL_FOUND, PAF_AU_FIND_SEVERAL, Outcome::Ambiguous},
    {PAF_AU_ERR_WRONG_NUMBER, PAF_AU_FIND_NO_NUMBER, Outcome::NoNumber},
    {PAF_AU_ERR_WRONG_STREET, PAF_AU_FIND_NO_STREET, Outcome::NoStreet},
    {PAF_AU_ERR_WRONG_LOCALITY, PAF_AU_FIND_NO_LOCALITY, Outcome::NoLocality},
    {PAF_AU_ERR_NOT_FOUND, PAF_AU_FIND_NOTHING, Outcome::NotFound},
    {PAF_AU_ERR_NOT_FOUND, PAF_AU_FIND_NOT_SEARCHED, Outcome::Refused},
    {PAF_AU_ERR_NOT_FOUND, -1, Outcome::NotFound},
    // A failure is one, whatever the search before it was.
    {PAF_AU_ERR_NOT_FOUND, PAF_AU_FIND_MATCHED, Outcome::NotFound},
    {PAF_AU_ERR_NOT_FOUND, PAF_AU_FIND_CHANGED, Outcome::NotFound},
};

TEST(Outcome, ComesFromStatusAndFindStatus)
{
  for (const OutcomeRow& row : kOutcomeRows) {
    EXPECT_EQ(NameOf(OutcomeOf(row.status, row.findStatus)), NameOf(row.outcome))
        << row.status << ' ' << row.findStatus;
  }
}

TEST(Outcome, IsFoundOrNot)
{
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    const auto outcome = static_cast<Outcome>(i);
    const bool found = outcome == Outcome::Matched || outcome == Outcome::Corrected || outcome == Outcome::PrimaryPoint;
    EXPECT_EQ(IsFound(outcome), found) << NameOf(outcome);
    EXPECT_FALSE(NameOf(outcome).empty());
  }
  EXPECT_EQ(NameOf(Outcome::Matched), "matched");
  EXPECT_EQ(NameOf(Outcome::BrokenRow), "broken row");
}

TEST(Tally, CountsAndAdds)
{
  Tally tally;
  EXPECT_EQ(tally.Total(), 0U);
  EXPECT_TRUE(tally.AllFound());
  tally.Count(Outcome::Matched);
  tally.Count(Outcome::PrimaryPoint);
  EXPECT_TRUE(tally.AllFound());
  Tally other;
  other.Count(Outcome::BrokenRow);
  other.Count(Outcome::Matched);
  tally.Add(other);
  EXPECT_FALSE(tally.AllFound());
  EXPECT_EQ(tally.Of(Outcome::Matched), 2U);
  EXPECT_EQ(tally.Of(Outcome::BrokenRow), 1U);
  EXPECT_EQ(tally.Of(Outcome::Ambiguous), 0U);
  EXPECT_EQ(tally.Total(), 4U);
}

TEST(Tally, GoesThroughJsonUnchanged)
{
  Tally tally;
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    for (std::size_t n = 0; n <= i; ++n) {
      tally.Count(static_cast<Outcome>(i));
    }
  }
  const Tally back = Tally::FromJson(Json::parse(ToText(tally.ToJson())));
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    EXPECT_EQ(back.Of(static_cast<Outcome>(i)), i + 1);
  }
}

TEST(Tally, IsNotMadeOfOtherJson)
{
  Json lacking = Tally().ToJson();
  lacking.erase("ambiguous");
  EXPECT_THROW(Tally::FromJson(lacking), Json::exception);
  Json text = Tally().ToJson();
  text["matched"] = "many";
  EXPECT_THROW(Tally::FromJson(text), Json::exception);
  EXPECT_THROW(Tally::FromJson(Json(3)), Json::exception);
}

}  // namespace
}  // namespace tool
