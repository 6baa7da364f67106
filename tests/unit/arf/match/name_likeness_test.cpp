// Names with typing errors, and the signatures that spare most comparisons.
#include "arf/match/name_likeness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "arf/match/engine.h"
#include "qxpaf/text/fuzzy.h"
#include "support/random_seed.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

using arf::Likeness;

struct LikenessRow
{
  const char* written;
  const char* stored;
  Likeness likeness;
};

TEST(NameLikeness, Rows)
{
  const LikenessRow rows[] = {
      {"GEORGE", "GEORGE", Likeness::None},  // equal names are no matter of likeness
      {"GORGE", "GEORGE", Likeness::OneTypo},
      {"GOERGE", "GEORGE", Likeness::OneTypo},
      {"GEORGEE", "GEORGE", Likeness::OneTypo},
      {"MILL", "HILL", Likeness::OneTypoShort},
      {"ELM", "ELMM", Likeness::OneTypoShort},
      {"ELM", "ELK", Likeness::None},
      {"DAI", "DAY", Likeness::Sound},
      {"WUDS", "WOODS", Likeness::Sound},
      {"KURPAJONK", "KURRAJONG", Likeness::TwoTypos},
      {"SHEPARD", "SHEPHERD", Likeness::TwoTypos},
      {"SHEPRD", "SHEPHERD", Likeness::None},
      {"SMOTE", "SMITH", Likeness::None},
      {"FILLIP", "PHILLIP", Likeness::Sound},
      {"MT ISSA", "MOUNT ISA", Likeness::OneTypo},
      {"1STOCKYARD", "STOCKYARD", Likeness::None},
      {"2ND", "3RD", Likeness::None},
      {"21ST", "1ST", Likeness::None},
      {"", "GEORGE", Likeness::None},
      {"GEORGE", "", Likeness::None},
  };
  for (const LikenessRow& row : rows) {
    const arf::WrittenName written(row.written);
    EXPECT_EQ(written.Compare(row.stored), row.likeness) << row.written << " " << row.stored;
  }
}

TEST(NameLikeness, LongNamesAreNotCompared)
{
  const std::string name(300, 'A');
  const arf::WrittenName written(name);
  EXPECT_FALSE(written.IsComparable());
  EXPECT_EQ(written.Compare(name + "B"), Likeness::None);
  EXPECT_FALSE(arf::WrittenName("AB").IsComparable());
  EXPECT_TRUE(arf::WrittenName("ABC").IsComparable());
}

/** A signature may let a name pass for nothing, but never keeps one back that is near enough. */
TEST(NameSignature, KeepsNoNearNameBack)
{
  std::mt19937 random(test_support::RandomSeed());
  const auto name = [&] {
    std::string text;
    for (std::size_t i = 0; i < 3 + random() % 8; ++i) text += static_cast<char>('A' + random() % 6);
    return text;
  };
  std::size_t near = 0;
  std::size_t keptBack = 0;
  for (int i = 0; i < 20'000; ++i) {
    const std::string a = name();
    const std::string b = name();
    for (unsigned errors = 1; errors <= 2; ++errors) {
      const bool may = arf::NameSignature(a).MayBeWithin(errors, arf::NameSignature(b));
      const int distance = CompareStrings2(a.c_str(), b.c_str(), static_cast<int>(errors), false);
      if (distance <= static_cast<int>(errors)) {
        ++near;
        EXPECT_TRUE(may) << a << " " << b;
      }
      keptBack += !may;
    }
  }
  EXPECT_GT(near, 20U);
  EXPECT_GT(keptBack, 10'000U);
}

TEST(NamesByLength, AreThoseThatTheirSignaturesLetPass)
{
  std::mt19937 random(test_support::RandomSeed());
  const auto name = [&](std::size_t longest) {
    std::string text;
    for (std::size_t i = random() % (longest + 1); i > 0; --i) text += static_cast<char>('A' + random() % 7);
    return arf::NameSignature(text);
  };
  std::vector<std::uint32_t> signatures;
  for (int i = 0; i < 3'000; ++i) signatures.push_back(name(i % 10 == 0 ? 70 : 12).Bits());
  const arf::NamesByLength names(signatures);
  EXPECT_EQ(names.Count(), 3'000U);
  std::size_t passed = 0;
  for (int i = 0; i < 300; ++i) {
    const arf::NameSignature written = name(i % 10 == 0 ? 70 : 12);
    std::vector<std::uint32_t> expected;
    for (std::uint32_t n = 0; n < signatures.size(); ++n)
      if (written.MayBeWithin(2, arf::NameSignature::FromBits(signatures[n]))) expected.push_back(n);
    std::vector<std::uint32_t> taken;
    names.ForEachLike(written, [&](std::uint32_t n) { taken.push_back(n); });
    std::sort(taken.begin(), taken.end());
    ASSERT_EQ(taken, expected);
    passed += taken.size();
  }
  EXPECT_GT(passed, 1'000U);
  EXPECT_LT(passed, 300U * 1'500U);
}

TEST(NamesByLength, OfNoNamesAreNone)
{
  const arf::NamesByLength none({});
  EXPECT_EQ(none.Count(), 0U);
  none.ForEachLike(arf::NameSignature("GEORGE"), [](std::uint32_t) { FAIL(); });
}

/** Input texts that are names of the data lead to them through the tables of the file. */
TEST(NameIndex, FindsEveryName)
{
  const arf::Engine& engine = arf_test::SmallEngine();
  const arf::Database& data = engine.Data();
  const auto expectFound = [](const arf::NameIndex& index, std::string_view name, std::uint32_t number) {
    arf::InputText input;
    ASSERT_EQ(input.Read(name), arf::InputFault::None);
    bool found = false;
    for (const arf::NameHit& hit : index.Find(input, {0, input.Count()}))
      found = found || (hit.name == number && hit.fit == arf::NameFit::Exact);
    EXPECT_TRUE(found) << name;
  };
  ASSERT_EQ(engine.LocalityNames().Signatures().size(), data.LocalityNameCount());
  ASSERT_EQ(engine.StreetNames().Signatures().size(), data.StreetNameCount());
  for (std::uint32_t i = 0; i < data.LocalityNameCount(); ++i)
    expectFound(engine.LocalityNames(), data.LocalityName(i), i);
  for (std::uint32_t i = 0; i < data.StreetNameCount(); ++i) expectFound(engine.StreetNames(), data.StreetName(i), i);
}

}  // namespace
