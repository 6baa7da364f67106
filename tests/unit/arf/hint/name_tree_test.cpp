/** The tree over names beside plain transcriptions that look at every name. */
#include "arf/hint/name_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <set>

#include "arf/hint/hint_enumeration.h"
#include "arf/hint/hint_layout.h"
#include "support/random_seed.h"
#include "unit/arf/build/test_database.h"
#include "unit/arf/hint/spoilt_file.h"

namespace {

using arf::NameSpan;
using arf::NameTree;

/** Names over few letters, so that many begin alike, and some with so many streets that they are listed. */
std::string RandomName(std::mt19937& random)
{
  std::string name;
  const std::size_t length = 1 + random() % 7;
  while (name.size() < length) name += "ABC"[random() % 3];
  if (random() % 4 == 0) name += " A";
  return name;
}

std::string RandomCsv(std::mt19937& random, std::size_t count)
{
  std::string csv = "dpid,street_name,street_type,number_first,locality,state,postcode\n";
  for (std::size_t i = 0; i < count; ++i) {
    csv += std::to_string(30000001 + i) + ',' + RandomName(random) + ",STREET," + std::to_string(1 + random() % 9) +
           ",LOC" + std::to_string(random() % 40) + ",NSW,2000\n";
  }
  return csv;
}

/** Names from the positions of a span. */
std::set<std::string> NamesOf(const arf::Database& data, const NameSpan& span)
{
  std::set<std::string> names;
  for (std::uint32_t i = 0; i < span.count; ++i) names.emplace(data.StreetName(span.first + i));
  return names;
}

std::set<std::string> NamesOf(const arf::Database& data, const std::optional<NameSpan>& span)
{
  return span ? NamesOf(data, *span) : std::set<std::string>();
}

/** Changes of `name` by one error. */
std::set<std::string> WithOneError(const std::string& name)
{
  std::set<std::string> all;
  for (std::size_t i = 0; i <= name.size(); ++i) {
    for (const char c : std::string("ABC Z")) {
      std::string inserted = name;
      all.insert(inserted.insert(i, 1, c));
      std::string replaced = name;
      if (i < name.size()) all.insert(replaced.replace(i, 1, 1, c));
    }
    std::string dropped = name;
    if (i < name.size()) all.insert(dropped.erase(i, 1));
    std::string swapped = name;
    if (i + 1 < name.size()) {
      std::swap(swapped[i], swapped[i + 1]);
      all.insert(swapped);
    }
  }
  return all;
}

arf::TypedName NameOf(const std::string& text, bool open)
{
  arf::TypedName name;
  name.Add(text);
  name.open = open;
  return name;
}

class NameTreeTest : public testing::Test
{
 protected:
  void Build(std::size_t count)
  {
    data_ = arf_test::OpenOrFail(arf_test::BuiltDirectory(dir_, RandomCsv(random_, count)), arf::OpenMode::Memory);
    ASSERT_NE(data_, nullptr);
    for (std::uint32_t i = 0; i < data_->StreetNameCount(); ++i) names_.emplace_back(data_->StreetName(i));
  }

  std::set<std::string> NamesWhere(const std::function<bool(const std::string&)>& holds) const
  {
    std::set<std::string> found;
    std::copy_if(names_.begin(), names_.end(), std::inserter(found, found.end()), holds);
    return found;
  }

  std::string RandomText()
  {
    std::string text = random_() % 2 == 0 ? RandomName(random_) : names_[random_() % names_.size()];
    if (random_() % 3 == 0) text.resize(1 + random_() % text.size());
    return text;
  }

  std::mt19937 random_{test_support::RandomSeed()};
  test_support::TempDir dir_;
  std::unique_ptr<arf::Database> data_;
  std::vector<std::string> names_;
};

TEST_F(NameTreeTest, FindsBeginningsAndWholeNames)
{
  Build(3000);
  const NameTree tree = NameTree::OfStreets(*data_);
  for (int i = 0; i < 3000; ++i) {
    const std::string text = RandomText();
    EXPECT_EQ(NamesOf(*data_, tree.Beginning(text)),
              NamesWhere([&](const auto& name) { return name.starts_with(text); }))
        << text;
    EXPECT_EQ(NamesOf(*data_, tree.Named(text)), NamesWhere([&](const auto& name) { return name == text; })) << text;
  }
  EXPECT_EQ(NamesOf(*data_, tree.All()), std::set<std::string>(names_.begin(), names_.end()));
  EXPECT_EQ(NamesOf(*data_, tree.Beginning("")), NamesOf(*data_, tree.All()));
}

/** A span without a list is borne by few; a list has the largest of all streets of the span, descending. */
TEST_F(NameTreeTest, ListsTheLargest)
{
  Build(6000);
  const NameTree tree = NameTree::OfStreets(*data_);
  std::size_t lists = 0;
  for (int i = 0; i < 500; ++i) {
    const std::string text = RandomText();
    for (const std::optional<NameSpan>& span : {tree.Beginning(text), tree.Named(text)}) {
      if (!span) continue;
      std::vector<std::uint32_t> streets;
      for (std::uint32_t n = 0; n < span->count; ++n)
        for (const std::uint32_t street : data_->StreetsNamed(span->first + n)) streets.push_back(street);
      if (span->largest.empty()) {
        EXPECT_LE(streets.size(), arf::hint_layout::kMaxListed) << text;
        continue;
      }
      ++lists;
      std::sort(streets.begin(), streets.end(), [&](std::uint32_t a, std::uint32_t b) {
        const auto size = [&](std::uint32_t street) { return data_->StreetAt(street).points.count; };
        return size(a) != size(b) ? size(a) > size(b) : a < b;
      });
      streets.resize(arf::hint_layout::kMaxListed);
      EXPECT_EQ(std::vector(span->largest.begin(), span->largest.end()), streets) << text;
    }
  }
  EXPECT_GT(lists, 10U);
}

TEST_F(NameTreeTest, FindsEveryWholeNameWithOneError)
{
  Build(400);
  const NameTree tree = NameTree::OfStreets(*data_);
  for (int i = 0; i < 400; ++i) {
    const std::string text = RandomText();
    NameTree::FoundList spans;
    const std::size_t count = tree.Mistyped(NameOf(text, false), spans);
    std::set<std::string> found;
    for (std::size_t s = 0; s < count; ++s) found.merge(NamesOf(*data_, spans[s].names));
    found.erase(text);
    const std::set<std::string> ways = WithOneError(text);
    std::set<std::string> expected = NamesWhere([&](const auto& name) { return ways.contains(name); });
    expected.erase(text);
    if (count == NameTree::kMaxSpans)
      EXPECT_TRUE(std::includes(expected.begin(), expected.end(), found.begin(), found.end())) << text;
    else
      EXPECT_EQ(found, expected) << text;
  }
}

/** What an open text finds is what IsMistyped says of every name, less what begins with the text itself. */
TEST_F(NameTreeTest, FindsEveryBeginningWithOneError)
{
  Build(400);
  const NameTree tree = NameTree::OfStreets(*data_);
  std::size_t compared = 0;
  for (int i = 0; i < 1500; ++i) {
    const std::string text = RandomText();
    NameTree::FoundList spans;
    const std::size_t count = tree.Mistyped(NameOf(text, true), spans);
    if (count == NameTree::kMaxSpans) continue;
    ++compared;
    std::set<std::string> found;
    for (std::size_t s = 0; s < count; ++s) found.merge(NamesOf(*data_, spans[s].names));
    const auto isExpected = [&](const std::string& name) {
      return !name.starts_with(text) && arf::IsMistyped(name, text, true);
    };
    std::erase_if(found, [&](const std::string& name) { return name.starts_with(text); });
    EXPECT_EQ(found, NamesWhere(isExpected)) << text;
  }
  EXPECT_GT(compared, 100U);
}

/** One walk for several lengths finds what one walk for each of them finds. */
TEST_F(NameTreeTest, FindsSeveralLengthsAtOnce)
{
  Build(400);
  const NameTree tree = NameTree::OfStreets(*data_);
  std::size_t compared = 0;
  for (int i = 0; i < 1500; ++i) {
    const std::string text = RandomText() + ' ' + RandomText();
    arf::TypedName name;
    std::map<std::size_t, std::set<std::string>> expected;
    std::map<std::size_t, std::set<std::string>> found;
    bool isWhole = true;
    for (std::size_t length = 1; length <= text.size(); ++length) {
      if (length < text.size() && text[length] != ' ') continue;
      const bool open = length == text.size() && i % 2 == 0;
      name.Add(text.substr(0, length));
      NameTree::FoundList spans;
      const std::size_t count = tree.Mistyped(NameOf(text.substr(0, length), open), spans);
      isWhole = isWhole && count < NameTree::kMaxSpans;
      for (std::size_t s = 0; s < count; ++s) expected[length].merge(NamesOf(*data_, spans[s].names));
    }
    if (!isWhole) continue;
    name.text = text;
    name.open = i % 2 == 0;
    NameTree::FoundList spans;
    const std::size_t count = tree.Mistyped(name, spans);
    if (count == spans.size()) continue;
    for (std::size_t s = 0; s < count; ++s) found[spans[s].length].merge(NamesOf(*data_, spans[s].names));
    ++compared;
    // Beside names with an error a walk for one length may find some without one.
    for (auto* names : {&found, &expected})
      for (auto& [length, of] : *names) of.erase(text.substr(0, length));
    std::erase_if(found, [](const auto& entry) { return entry.second.empty(); });
    std::erase_if(expected, [](const auto& entry) { return entry.second.empty(); });
    EXPECT_EQ(found, expected) << text;
  }
  EXPECT_GT(compared, 500U);
}

/** With a sure beginning only the names with another first letter are left out. */
TEST_F(NameTreeTest, FindsNothingElseWithASureStart)
{
  Build(400);
  const NameTree tree = NameTree::OfStreets(*data_);
  std::size_t compared = 0;
  for (int i = 0; i < 400; ++i) {
    const std::string text = RandomText();
    arf::TypedName name = NameOf(text, false);
    NameTree::FoundList spans;
    const std::size_t count = tree.Mistyped(name, spans);
    if (count == NameTree::kMaxSpans) continue;
    std::set<std::string> expected;
    for (std::size_t s = 0; s < count; ++s) expected.merge(NamesOf(*data_, spans[s].names));
    std::erase_if(expected, [&](const std::string& other) { return other.front() != text.front(); });
    name.sureStart = true;
    const std::size_t sureCount = tree.Mistyped(name, spans);
    std::set<std::string> found;
    for (std::size_t s = 0; s < sureCount; ++s) found.merge(NamesOf(*data_, spans[s].names));
    EXPECT_EQ(found, expected) << text;
    compared += expected.size();
  }
  EXPECT_GT(compared, 100U);
}

TEST(IsMistyped, OpenTextsAreBeginningsWhoseLastLetterIsRight)
{
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 20'000; ++i) {
    const std::string name = RandomName(random);
    std::string typed = RandomName(random);
    bool expected = name.starts_with(typed);
    for (std::size_t length = 1; length <= name.size() && !expected; ++length) {
      const std::string beginning = name.substr(0, length);
      const std::size_t same = static_cast<std::size_t>(
          std::mismatch(typed.begin(), typed.end(), name.begin(), name.end()).first - typed.begin());
      const bool isAtEnd = same + 1 >= typed.size();
      const bool isLonger = beginning.size() > typed.size();  // a letter is missing, nothing else can be wrong
      expected = WithOneError(beginning).contains(typed) && (isLonger || !isAtEnd);
    }
    EXPECT_EQ(arf::IsMistyped(name, typed, true), expected) << name << " typed as " << typed;
  }
}

TEST(IsMistyped, NamesTheErrors)
{
  for (const char* typed : {"GEROGE", "GEOGE", "GEORRGE", "GEIRGE", "GEORG", "GEORGES", "GEORGX", "XEORGE"})
    EXPECT_TRUE(arf::IsMistyped("GEORGE", typed, false)) << typed;
  for (const char* typed : {"GEROG", "GEOR", "XGEORGEX", "", "ROGER"})
    EXPECT_FALSE(arf::IsMistyped("GEORGE", typed, false)) << typed;
  EXPECT_TRUE(arf::IsMistyped("GEORGE", "GERO", true));
  EXPECT_FALSE(arf::IsMistyped("GEORGE", "GEX", true));
}

/** Sections full of anything: other hints or none, and nothing read outside the file. */
TEST_F(NameTreeTest, SearchesSurviveSpoiltSections)
{
  Build(3000);
  const std::vector<std::uint8_t> whole = arf_test::ReadFile(dir_.Path("db/address.arf"));
  for (int round = 0; round < 80; ++round) {
    arf_test::SpoiltFile file(whole);
    if (round % 3 != 1) file.Spoil(arf::layout::SectionId::HintTree, random_);
    if (round % 3 != 0) file.Spoil(arf::layout::SectionId::HintWeights, random_);
    const std::unique_ptr<arf::Database> spoilt = file.Open();
    ASSERT_NE(spoilt, nullptr);
    const auto hints = std::make_unique<arf::HintEnumeration>(*spoilt);
    for (int i = 0; i < 40; ++i) {
      const std::string number = i % 2 == 0 ? std::to_string(1 + random_() % 9) + ' ' : "";
      const std::string place = i % 5 == 0 ? ", LOC" + std::to_string(random_() % 9) : "";
      std::size_t count = 0;
      for (hints->StartHints(number + RandomText() + place, "", 10); hints->Current(); hints->Advance()) {
        char buffer[1024];
        arf::BoundedText text(buffer, sizeof buffer);
        arf::AppendHintText(text, *spoilt, *hints->Current());
        ++count;
      }
      EXPECT_LE(count, 10U);
    }
  }
}

}  // namespace
