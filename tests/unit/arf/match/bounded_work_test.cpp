// Whatever the text, a search ends soon.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <random>
#include <string>

#include "arf/match/last_line_fixer.h"
#include "arf/match/matcher.h"
#include "unit/arf/match/engine_fixture.h"
#include "unit/arf/match/random_addresses.h"

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double kSlack = 20;
#else
constexpr double kSlack = 1;
#endif

std::string Repeated(const std::string& text, std::size_t times)
{
  std::string out;
  for (std::size_t i = 0; i < times; ++i) out += text;
  return out;
}

/** Processor time of this thread, which other programs on the machine do not lengthen. */
double Seconds()
{
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/** The least time of some runs. */
template <class Operation>
double MillisecondsOf(Operation operation)
{
  double least = 1e9;
  for (int i = 0; i < 3; ++i) {
    const double start = Seconds();
    operation();
    least = std::min(least, (Seconds() - start) * 1000);
  }
  return least;
}

class BoundedWork : public testing::Test
{
 protected:
  void SetUp() override
  {
    std::mt19937 random(1);
    const auto addresses = arf_test::RandomAddresses(random, 20'000);
    engine_ = arf_test::OpenEngine(
        arf_test::BuildDatabaseFrom(dir_, dir_.Write("addresses.csv", arf_test::ToCsv(addresses))));
  }

  test_support::TempDir dir_;
  std::unique_ptr<const arf::Engine> engine_;
};

TEST_F(BoundedWork, PathologicalTexts)
{
  const std::string texts[] = {
      std::string(10'000, 'a'),
      std::string(4096, '1'),
      std::string(2000, ','),
      std::string(4096, '/'),
      std::string(4096, '-'),
      std::string(4096, '.'),
      std::string(4096, '\''),
      std::string(4096, '\xE9'),
      Repeated("ST ", 500),
      Repeated("ST ", 96),
      Repeated("1 ", 96),
      Repeated("1/", 96),
      Repeated("1-", 96),
      Repeated("1,", 96),
      Repeated("UNIT 1 ", 48),
      Repeated("LEVEL 1 ", 40) + "KING ST RICHMOND",
      Repeated("THE ", 90) + "GAP",
      Repeated("1 KING ST ", 30) + "RICHMOND",
      Repeated("RICHMOND ", 96),
      Repeated("EAST MELBOURNE ", 48),
      Repeated("1 EAST MELBOURNE ", 32),
      Repeated("VICTORIA POINT ", 48),
      Repeated("1, THE PARK, ", 24) + "PARK ORCHARDS VIC 2000",
      Repeated("NSW ", 96),
      Repeated("2000 ", 96),
      Repeated("PO BOX ", 48),
      Repeated("PO BOX 1 ", 30) + "RICHMOND",
      Repeated("A. ", 96),
      Repeated("A.", 96),
      "OPERA COURT MELBOURNE",
      "NO SUCH BUILDING MELBOURNE",
      "NO SUCH BUILDING 2000",
      "1 KING ST 2000",
      Repeated("CNR KING ST & ", 32) + "RICHMOND",
      Repeated("KING & ", 90) + "RICHMOND",
      Repeated("KING ST / BRIDGE RD / ", 15) + "RICHMOND",
      "CNR KING & BRIDGE, RICHMOND",
      "CNR KINGG & BRIDGEE 2000",
      "1 KING ST (CNR BRIDGE) RICHMOND",
  };
  const auto matcher = std::make_unique<arf::Matcher>(*engine_);
  const auto fixer = std::make_unique<arf::LastLineFixer>(*engine_);
  for (const std::string& text : texts) {
    const std::string shown = text.substr(0, 40);
    for (const arf::Rules rules : {arf::Rules::Strict, arf::Rules::Lenient})
      EXPECT_LT(MillisecondsOf([&] { matcher->Lookup(text, rules); }), 10 * kSlack) << shown;
    EXPECT_LT(MillisecondsOf([&] { fixer->Fix(text); }), 10 * kSlack) << shown;
  }
}

TEST_F(BoundedWork, LongTextsAreRefusedAtOnce)
{
  const auto matcher = std::make_unique<arf::Matcher>(*engine_);
  const std::string text = Repeated("1 King St Richmond ", 1'000);
  EXPECT_EQ(matcher->Lookup(text, arf::Rules::Lenient).verdict, arf::Verdict::TooLong);
  EXPECT_LT(MillisecondsOf([&] { matcher->Lookup(text, arf::Rules::Lenient); }), 0.5 * kSlack);
}

}  // namespace
