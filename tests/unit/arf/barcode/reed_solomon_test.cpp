// Check symbols: long division by hand, and the property that makes them a code.
#include "arf/barcode/reed_solomon.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "support/random_seed.h"
#include "unit/arf/barcode/plain_four_state.h"

namespace {

std::vector<unsigned> Checks(const std::vector<unsigned>& data)
{
  const std::vector<std::uint8_t> symbols(data.begin(), data.end());
  const auto checks = arf::CheckSymbols(symbols);
  return {checks.begin(), checks.end()};
}

TEST(ReedSolomon, KnownRemainders)
{
  const std::vector<unsigned> generator = {30, 29, 17, 48};
  EXPECT_EQ(Checks({}), (std::vector<unsigned>{0, 0, 0, 0}));
  EXPECT_EQ(Checks({0, 0, 0}), (std::vector<unsigned>{0, 0, 0, 0}));
  EXPECT_EQ(Checks({1}), generator);
  EXPECT_EQ(Checks({0, 0, 1}), generator);
}

TEST(ReedSolomon, EverySymbolAlone)
{
  for (unsigned symbol = 0; symbol < 64; ++symbol)
    for (const std::size_t length : {1U, 7U, 12U, 17U})
      for (std::size_t place = 0; place < length; ++place) {
        std::vector<unsigned> data(length);
        data[place] = symbol;
        ASSERT_EQ(Checks(data), arf_test::PlainRemainder(data)) << symbol << " at " << place << " of " << length;
      }
}

TEST(ReedSolomon, RandomData)
{
  std::mt19937 random(test_support::RandomSeed());
  std::uniform_int_distribution<unsigned> symbol(0, 63);
  std::uniform_int_distribution<std::size_t> length(0, 59);
  for (int i = 0; i < 20'000; ++i) {
    std::vector<unsigned> data(length(random));
    for (unsigned& value : data) value = symbol(random);
    const std::vector<unsigned> checks = Checks(data);
    ASSERT_EQ(checks, arf_test::PlainRemainder(data));
    data.insert(data.end(), checks.begin(), checks.end());
    unsigned root = 1;
    for (int k = 0; k < 4; ++k) {
      root = arf_test::PlainMultiply(root, 2);
      ASSERT_EQ(arf_test::PlainValueAt(data, root), 0U) << "a word of the code has the generator's roots";
    }
  }
}

}  // namespace
