// Every address of a random database is found by the text that it is written with. The same text may be the written
// form of several addresses; only then may the answer be open, and even then it may not be another address.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <string>

#include "arf/match/failure_text.h"
#include "arf/match/matcher.h"
#include "support/random_seed.h"
#include "unit/arf/match/engine_fixture.h"
#include "unit/arf/match/random_addresses.h"

namespace {

using arf_test::RandomAddress;

struct Tally
{
  std::size_t texts = 0;
  std::size_t ambiguous = 0;
  std::size_t failures = 0;
};

class RoundTrip : public testing::Test
{
 protected:
#ifdef __SANITIZE_ADDRESS__  // each test builds its own database, slowly then
  static constexpr std::size_t kAddresses = 10'000;
#else
  static constexpr std::size_t kAddresses = 40'000;
#endif
  static constexpr std::size_t kMostMessages = 20;

  void SetUp() override
  {
    std::mt19937 random(test_support::RandomSeed());
    addresses_ = arf_test::RandomAddresses(random, kAddresses);
    engine_ = arf_test::OpenEngine(
        arf_test::BuildDatabaseFrom(dir_, dir_.Write("addresses.csv", arf_test::ToCsv(addresses_))));
    matcher_ = std::make_unique<arf::Matcher>(*engine_);
  }

  Tally Check(std::string (*form)(const RandomAddress&), arf::Rules rules)
  {
    std::map<std::string, std::set<std::uint32_t>> texts;
    for (const RandomAddress& address : addresses_) texts[form(address)].insert(address.dpid);
    for (const RandomAddress& address : addresses_) {
      const auto slashed = address.unitNumber.empty() ? texts.end() : texts.find(arf_test::SlashedForm(address));
      if (slashed != texts.end()) slashed->second.insert(address.dpid);
    }
    Tally tally;
    for (const auto& [text, dpids] : texts) {
      ++tally.texts;
      tally.ambiguous += dpids.size() > 1;
      if (IsRight(matcher_->Lookup(text, rules), dpids)) continue;
      if (++tally.failures <= kMostMessages) ADD_FAILURE() << text << "\n" << Reason();
    }
    return tally;
  }

  bool IsRight(const arf::LookupAnswer& answer, const std::set<std::uint32_t>& dpids) const
  {
    if (answer.verdict == arf::Verdict::Found)
      return !answer.changed && dpids.count(engine_->Data().DpidOf(answer.ordinal)) > 0;
    return dpids.size() > 1 && answer.verdict == arf::Verdict::Several;
  }

  std::string Reason() const
  {
    char buffer[512];
    arf::BoundedText text(buffer, sizeof buffer);
    arf::AppendFailure(text, engine_->Data(), matcher_->LastFailure());
    return buffer;
  }

  test_support::TempDir dir_;
  std::vector<RandomAddress> addresses_;
  std::unique_ptr<const arf::Engine> engine_;
  std::unique_ptr<arf::Matcher> matcher_;
};

TEST_F(RoundTrip, WrittenForms)
{
  for (const arf::Rules rules : {arf::Rules::Strict, arf::Rules::Lenient}) {
    const Tally tally = Check(arf_test::WrittenForm, rules);
    EXPECT_EQ(tally.failures, 0U) << "of " << tally.texts;
    EXPECT_LT(tally.ambiguous * 5, tally.texts) << "too little is left to be found";
  }
}

TEST_F(RoundTrip, AbbreviatedForms)
{
  for (const arf::Rules rules : {arf::Rules::Strict, arf::Rules::Lenient}) {
    const Tally tally = Check(arf_test::AbbreviatedForm, rules);
    EXPECT_EQ(tally.failures, 0U) << "of " << tally.texts;
    EXPECT_LT(tally.ambiguous * 5, tally.texts) << "too little is left to be found";
  }
}

}  // namespace
