#include "arf/build/string_pool.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "arf/build/address_order.h"
#include "support/random_seed.h"
#include "unit/arf/build/address_model.h"

namespace {

using arf::StringPool;

TEST(StringPool, HasTheEmptyTextFromTheStart)
{
  StringPool pool;
  EXPECT_EQ(pool.Count(), 1U);
  EXPECT_EQ(pool.At(0), "");
  EXPECT_EQ(pool.Intern(""), 0U);
}

TEST(StringPool, NumbersTextsAsAMapDoes)
{
  std::mt19937 random(test_support::RandomSeed());
  StringPool pool;
  std::map<std::string, std::uint32_t> numbers = {{"", 0}};
  for (int i = 0; i < 50000; ++i) {
    std::string text = std::to_string(random() % 20000);
    if (i % 1000 == 0) text += std::string(100000, 'x');  // larger than a chunk
    const auto [place, isNew] = numbers.try_emplace(text, static_cast<std::uint32_t>(numbers.size()));
    ASSERT_EQ(pool.Intern(text), place->second);
  }
  ASSERT_EQ(pool.Count(), numbers.size());
  const std::vector<std::uint32_t> order = pool.SortedNumbers(), ranks = pool.Ranks();
  std::uint32_t rank = 0;
  for (const auto& [text, number] : numbers) {
    EXPECT_EQ(pool.At(number), text);
    EXPECT_EQ(order[rank], number);
    EXPECT_EQ(ranks[number], rank++);
  }
}

TEST(NaturalOrder, CountsDigitsByValue)
{
  const std::pair<const char*, const char*> ascending[] = {
      {"", "1"},      {"1", "2"},      {"2", "10"},    {"9", "10"},   {"007", "7"},
      {"7", "008"},   {"12", "12A"},   {"12A", "12B"}, {"2B", "12A"}, {"A2", "A10"},
      {"G7", "G07A"}, {"1-3", "1-12"}, {"9", "A"},     {"-1", "1"},   {"99999999999999999998", "99999999999999999999"},
      {"A", "\u00C9"}};
  for (const auto& [a, b] : ascending) {
    EXPECT_TRUE(arf::NaturallyBefore(a, b)) << a << " " << b;
    EXPECT_FALSE(arf::NaturallyBefore(b, a)) << a << " " << b;
    EXPECT_FALSE(arf::NaturallyBefore(a, a)) << a;
  }
}

TEST(NaturalOrder, AgreesWithItsDefinition)
{
  std::mt19937 random(test_support::RandomSeed());
  const std::string alphabet = "0019AB-";
  const auto text = [&] {
    std::string result;
    for (std::size_t n = random() % 6; n > 0; --n) result += alphabet[random() % alphabet.size()];
    return result;
  };
  for (int i = 0; i < 50000; ++i) {
    const std::string a = text(), b = text();
    ASSERT_EQ(arf::NaturallyBefore(a, b), arf_test::ComesNaturallyBefore(a, b)) << a << " " << b;
  }
}

}  // namespace
