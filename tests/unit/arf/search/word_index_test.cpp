// The index of words: against a plain look at all names, and over any bytes.
#include "arf/format/word_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "arf/format/fold.h"
#include "arf/match/one_typo.h"
#include "arf/search/free_text_search.h"
#include "support/random_seed.h"
#include "unit/arf/build/test_database.h"

namespace arf {
namespace {

struct WordIndexes : testing::Test
{
  WordIndexes()
  {
    arf_test::Random random(test_support::RandomSeed());
    const arf_test::Model model = arf_test::RandomModel(random, 2'000);
    database = arf_test::OpenOrFail(arf_test::BuiltDirectory(dir, arf_test::ToCsv(model, random)), OpenMode::Memory);
    section = database->Section(layout::SectionId::BuildingNames);
  }
  test_support::TempDir dir;
  std::unique_ptr<Database> database;
  ByteReader section;
};

using Names = std::map<std::string, std::set<std::uint32_t>, std::less<>>;

void AddWords(Names& names, std::string_view key, std::uint32_t id)
{
  std::string word;
  for (const char c : std::string(key) + ' ') {
    if (c != ' ') {
      word += c;
      continue;
    }
    if (!word.empty()) names[word].insert(id);
    word.clear();
  }
}

TEST_F(WordIndexes, EqualPlainLists)
{
  const WordIndex index(section);
  std::map<Named, Names> expected;
  for (std::uint32_t i = 0; i < database->StreetNameCount(); ++i)
    AddWords(expected[Named::Street], database->StreetName(i), i);
  for (std::uint32_t i = 0; i < database->LocalityNameCount(); ++i)
    AddWords(expected[Named::Locality], database->LocalityName(i), i);
  for (std::uint32_t i = 0; i < index.BuildingCount(); ++i) AddWords(expected[Named::Building], index.Building(i), i);
  std::set<std::string> words;
  for (const auto& [kind, names] : expected) {
    for (const auto& [word, ids] : names) {
      words.insert(word);
      const auto found = index.Find(word);
      ASSERT_TRUE(found) << word;
      const auto list = index.NamesWith(kind, *found);
      ASSERT_TRUE(std::equal(list.begin(), list.end(), ids.begin(), ids.end())) << word;
    }
  }
  EXPECT_EQ(index.WordCount(), words.size());
  EXPECT_TRUE(std::is_sorted(words.begin(), words.end()));
  EXPECT_FALSE(index.Find("NO SUCH WORD"));
}

/** Against a plain comparison with every word. */
TEST_F(WordIndexes, MistypedWords)
{
  const WordIndex index(section);
  arf_test::Random random(test_support::RandomSeed());
  const auto letter = [&] { return static_cast<char>('A' + random() % 26); };
  std::size_t pairs = 0;
  for (int i = 0; i < 2'000; ++i) {
    std::string text(index.Word(static_cast<std::uint32_t>(random() % index.WordCount())));
    for (std::size_t edits = random() % 3; edits > 0 && !text.empty(); --edits) {
      const std::size_t at = random() % text.size();
      if (random() % 3 == 0)
        text[at] = letter();
      else if (random() % 2 == 0)
        text.insert(at, 1, letter());
      else
        text.erase(at, 1);
    }
    std::set<std::uint32_t> expected;
    for (std::uint32_t word = 0; word < index.WordCount(); ++word)
      if (IsOneTypoApart(text, index.Word(word))) expected.insert(word);
    // Letters that are missing or wrong are those of the alphabet: digits of names are left alone.
    std::erase_if(expected, [&](std::uint32_t word) {
      const std::string_view other = index.Word(word);
      return std::any_of(other.begin(), other.end(), [](char c) { return c < 'A' || c > 'Z'; });
    });
    std::array<std::uint32_t, 512> found{};
    const std::size_t count = index.Mistyped(text, found);
    std::set<std::uint32_t> actual(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(count));
    EXPECT_EQ(actual.size(), count) << text;
    std::erase_if(actual, [&](std::uint32_t word) {
      const std::string_view other = index.Word(word);
      return std::any_of(other.begin(), other.end(), [](char c) { return c < 'A' || c > 'Z'; });
    });
    EXPECT_EQ(actual, expected) << text;
    pairs += count;
  }
  EXPECT_GT(pairs, 500U);
  std::array<std::uint32_t, 1> one{};
  EXPECT_LE(index.Mistyped("A", one), 1U);
  EXPECT_EQ(index.Mistyped(std::string(100, 'A'), one), 0U);
}

TEST_F(WordIndexes, BuildingsLeadToTheirPoints)
{
  const WordIndex index(section);
  Names expected;
  for (std::uint32_t i = 0; i < database->PointCount(); ++i) {
    const std::string key = MatchKey(database->PointAt(i).building);
    if (!key.empty()) expected[key].insert(i);
  }
  ASSERT_GT(expected.size(), 0U);
  ASSERT_EQ(index.BuildingCount(), expected.size());
  std::uint32_t building = 0;
  for (const auto& [key, points] : expected) {
    EXPECT_EQ(index.Building(building), key);
    const auto list = index.PointsOf(building++);
    EXPECT_TRUE(std::equal(list.begin(), list.end(), points.begin(), points.end())) << key;
  }
}

TEST_F(WordIndexes, Prefixes)
{
  const WordIndex index(section);
  for (const char* prefix : {"", "A", "TO", "ZZZ", "~"}) {
    const IndexRange range = index.WithPrefix(prefix);
    for (std::uint32_t i = 0; i < index.WordCount(); ++i) {
      const bool isIn = i >= range.first && i - range.first < range.count;
      EXPECT_EQ(isIn, index.Word(i).starts_with(prefix)) << prefix << ' ' << index.Word(i);
    }
  }
}

/** Searches over a whole file whose section is damaged (and its checksums with it) end and stay inside the file. */
TEST_F(WordIndexes, AnyBytes)
{
  arf_test::Random random(test_support::RandomSeed());
  const std::vector<std::uint8_t> whole(section.Data(), section.Data() + section.Size());
  for (int i = 0; i < 300; ++i) {
    // In memory of exactly the length, aligned as sections are.
    std::vector<std::uint8_t> bytes = whole;
    if (i % 2 == 0) bytes.resize(random() % whole.size());
    bytes.shrink_to_fit();
    for (std::size_t flips = random() % 20; flips > 0 && !bytes.empty(); --flips)
      bytes[random() % (i % 3 == 0 ? std::min<std::size_t>(bytes.size(), 64) : bytes.size())] =
          static_cast<std::uint8_t>(random());
    const WordIndex index(ByteReader(bytes.data(), bytes.size()));
    std::size_t sum = 0;
    for (std::uint32_t word = 0; word < std::min(index.WordCount(), 500U); ++word) {
      sum += index.Word(word).size() + index.Find(index.Word(word)).has_value();
      for (const Named kind : {Named::Street, Named::Locality, Named::Building})
        for (const std::uint32_t id : index.NamesWith(kind, word)) sum += id & 1U;
    }
    for (std::uint32_t building = 0; building < std::min(index.BuildingCount(), 500U); ++building)
      for (const std::uint32_t point : index.PointsOf(building)) sum += point & 1U;
    EXPECT_LT(sum, std::size_t{1} << 32);
  }
}

TEST(WordIndex, OfNothing)
{
  const WordIndex index((ByteReader()));
  EXPECT_EQ(index.WordCount(), 0U);
  EXPECT_EQ(index.BuildingCount(), 0U);
  EXPECT_FALSE(index.Find("A"));
  EXPECT_EQ(index.WithPrefix("A").count, 0U);
  EXPECT_TRUE(index.NamesWith(Named::Street, 0).empty());
  EXPECT_TRUE(index.PointsOf(0).empty());
}

}  // namespace
}  // namespace arf
