/** Hints over random addresses, beside a plain look at every address, and over files that hold anything. */
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "arf/format/fold.h"
#include "arf/match/address_text.h"
#include "support/random_seed.h"
#include "unit/arf/build/test_database.h"
#include "unit/arf/hint/hint_list.h"
#include "unit/arf/match/random_addresses.h"

namespace {

using arf_test::Hints;
using arf_test::Shown;

std::string AddressText(const arf::Database& data, std::uint32_t ordinal)
{
  char buffer[1024];
  arf::BoundedText text(buffer, sizeof buffer);
  arf::AppendAddress(text, data, ordinal);
  return buffer;
}

class HintSearchTest : public testing::Test
{
 protected:
  explicit HintSearchTest(std::size_t count = 2000)
  {
    const auto addresses = arf_test::RandomAddresses(random_, count);
    data_ = arf_test::OpenOrFail(arf_test::BuiltDirectory(dir_, arf_test::ToCsv(addresses)), arf::OpenMode::Memory);
    hints_ = std::make_unique<Hints>(*data_);
  }

  std::uint32_t AnyPoint() { return static_cast<std::uint32_t>(random_() % data_->PointCount()); }

  std::mt19937 random_{test_support::RandomSeed()};
  test_support::TempDir dir_;
  std::unique_ptr<arf::Database> data_;
  std::unique_ptr<Hints> hints_;
};

/** Number and beginning of a street's name: the streets are those that a walk over all addresses finds. */
TEST_F(HintSearchTest, NumbersInStreetsThatBeginSoEqualAPlainWalk)
{
  std::size_t compared = 0;
  for (int i = 0; i < 300; ++i) {
    const arf::Point point = data_->PointAt(AnyPoint());
    const arf::Street street = data_->StreetAt(point.street);
    if (point.numberFirst == 0 || street.nameIndex == arf::kNoIndex || !point.numberFirstSuffix.empty()) continue;
    std::string name(data_->StreetName(street.nameIndex));
    name.resize(1 + random_() % name.size());
    if (name.back() == ' ') continue;
    std::set<std::uint32_t> expected;
    for (std::uint32_t ordinal = 0; ordinal < data_->PointCount(); ++ordinal) {
      const arf::Point other = data_->PointAt(ordinal);
      const arf::Street its = data_->StreetAt(other.street);
      const bool reaches = other.numberFirst == point.numberFirst ||
                           (other.numberFirst < point.numberFirst && point.numberFirst <= other.numberLast);
      if (reaches && its.nameIndex != arf::kNoIndex && data_->StreetName(its.nameIndex).starts_with(name))
        expected.insert(other.street);
    }
    std::set<std::uint32_t> found;
    for (const Shown& shown : hints_->Of(std::to_string(point.numberFirst) + ' ' + name, "", 50))
      if (shown.hint.spelling == arf::Spelling::AsTyped && shown.hint.street != arf::kNoIndex &&
          data_->StreetName(data_->StreetAt(shown.hint.street).nameIndex).starts_with(name))
        found.insert(shown.hint.street);
    if (expected.size() > 12) continue;  // a street can have several hints, so that there may be no room for all
    ++compared;
    EXPECT_EQ(found, expected) << point.numberFirst << ' ' << name;
  }
  EXPECT_GT(compared, 50U);
}

/** Whatever was chosen, its text finds it again, as the first or behind what reads the same but for more words. */
TEST_F(HintSearchTest, TextsFindTheirHintsAgain)
{
  std::size_t asked = 0;
  for (int i = 0; i < 400; ++i) {
    std::string typed = AddressText(*data_, AnyPoint());
    typed.resize(1 + random_() % typed.size());
    for (const Shown& shown : hints_->Of(typed)) {
      const std::vector<Shown> again = hints_->Of(shown.text);
      const bool isThere =
          std::any_of(again.begin(), again.end(), [&](const Shown& other) { return other.text == shown.text; });
      EXPECT_TRUE(isThere) << typed << ": " << shown.text;
      ++asked;
    }
  }
  EXPECT_GT(asked, 300U);
}

TEST_F(HintSearchTest, EveryTypedAddressIsFound)
{
  for (int i = 0; i < 500; ++i) {
    const std::string text = AddressText(*data_, AnyPoint());
    if (text.starts_with(',') || std::count(text.begin(), text.end(), ',') == 0) continue;
    const std::vector<Shown> shown = hints_->Of(text, "", 50);
    const bool isThere = std::any_of(shown.begin(), shown.end(), [&](const Shown& s) { return s.text == text; });
    EXPECT_TRUE(isThere) << text << " gives " << (shown.empty() ? "nothing" : shown[0].text);
  }
}

/** No text twice, never more than asked for, ranks ascending among the hints that the search itself gives. */
TEST_F(HintSearchTest, ListsHaveNoRepetitions)
{
  for (int i = 0; i < 600; ++i) {
    std::string typed = AddressText(*data_, AnyPoint());
    typed.resize(1 + random_() % typed.size());
    if (random_() % 3 == 0) typed[random_() % typed.size()] = static_cast<char>('A' + random_() % 26);
    const std::size_t most = 1 + random_() % 60;
    const std::vector<Shown> shown = hints_->Of(typed, "", most);
    EXPECT_LE(shown.size(), most);
    std::set<std::string> texts;
    for (const Shown& s : shown) EXPECT_TRUE(texts.insert(s.text).second) << typed << ": " << s.text;
    texts.clear();
    for (const Shown& s : hints_->AddressesOf(typed)) {
      EXPECT_TRUE(texts.insert(s.text).second) << typed << ": " << s.text;
      EXPECT_EQ(s.hint.kind, arf::HintKind::Address);
      EXPECT_NE(s.hint.own, arf::kNoIndex);
    }
  }
}

/** Numbers and units are never altered: what has an identifier has the number that was typed. */
TEST_F(HintSearchTest, NumbersAreNeverAltered)
{
  for (int i = 0; i < 400; ++i) {
    const arf::Point point = data_->PointAt(AnyPoint());
    const arf::Street street = data_->StreetAt(point.street);
    if (street.nameIndex == arf::kNoIndex) continue;
    const auto number = static_cast<std::uint32_t>(1 + random_() % 300);
    const std::string unit = std::to_string(1 + random_() % 9);
    std::string name(street.name);
    if (name.size() > 4) std::swap(name[name.size() - 2], name[name.size() - 3]);
    for (const Shown& shown : hints_->AddressesOf(unit + '/' + std::to_string(number) + ' ' + name)) {
      const arf::Point found = data_->PointAt(shown.hint.own);
      const bool holds = found.numberFirst == number || (found.numberFirst < number && number <= found.numberLast);
      EXPECT_TRUE(holds) << shown.text << " for " << number;
      EXPECT_EQ(found.unitNumber, unit) << shown.text;
    }
  }
}

TEST_F(HintSearchTest, APlaceBindsAllHints)
{
  for (int i = 0; i < 300; ++i) {
    const arf::Point point = data_->PointAt(AnyPoint());
    const arf::Street street = data_->StreetAt(point.street);
    const arf::Locality locality = data_->LocalityAt(street.locality);
    if (street.nameIndex == arf::kNoIndex) continue;
    const std::string name(street.name.substr(0, 2));
    for (const Shown& shown : hints_->Of(name, std::string(locality.state)))
      EXPECT_EQ(data_->LocalityAt(shown.hint.locality).state, locality.state) << name;
    for (const Shown& shown : hints_->Of(name, std::string(locality.postcode)))
      EXPECT_EQ(data_->LocalityAt(shown.hint.locality).postcode, locality.postcode) << name;
  }
  EXPECT_TRUE(hints_->Of("A", "No Such Place").empty());
}

TEST_F(HintSearchTest, AnyTextEndsSoon)
{
  for (int i = 0; i < 3000; ++i) {
    std::string typed;
    for (std::size_t length = random_() % 60; length > 0; --length)
      typed += random_() % 3 == 0 ? static_cast<char>(random_()) : "ABE 1/2-,"[random_() % 9];
    std::erase(typed, '\0');
    EXPECT_LE(hints_->Of(typed, random_() % 4 == 0 ? typed : "", 20).size(), 20U);
  }
  EXPECT_TRUE(hints_->Of(std::string(4096, 'A')).empty());
  EXPECT_TRUE(hints_->Of(std::string(4097, 'A')).empty());
}

}  // namespace
