/** Every accessor of a database against the plain list of the addresses that it was built from. */
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "arf/format/fold.h"
#include "support/random_seed.h"
#include "unit/arf/build/address_model.h"
#include "unit/arf/build/test_database.h"

namespace arf_test {
namespace {

using arf::Database;
using arf::IndexRange;
using arf::OpenMode;
using arf::Point;
using arf::Street;

#ifdef __SANITIZE_ADDRESS__  // each test builds its own database, slowly then
constexpr std::size_t kAddresses = 30'000;
#else
constexpr std::size_t kAddresses = 120'000;
#endif

void ExpectPoint(const Database& database, const ModelAddress& expected, const Point& point)
{
  ASSERT_EQ(point.dpid, expected.dpid);
  ASSERT_EQ(point.numberFirst, expected.numberFirst);
  ASSERT_EQ(point.numberLast, expected.numberLast);
  ASSERT_EQ(point.numberPrefix, expected.numberPrefix);
  ASSERT_EQ(point.numberFirstSuffix, expected.numberFirstSuffix);
  ASSERT_EQ(point.numberLastSuffix, expected.numberLastSuffix);
  ASSERT_EQ(point.unitType, expected.unitType);
  ASSERT_EQ(point.unitNumber, expected.unitNumber);
  ASSERT_EQ(point.levelType, expected.levelType);
  ASSERT_EQ(point.levelNumber, expected.levelNumber);
  ASSERT_EQ(point.lot, expected.lot);
  ASSERT_EQ(point.building, expected.building);
  ASSERT_EQ(point.latitude, expected.latitude.value_or(arf::kNoCoordinate));
  ASSERT_EQ(point.longitude, expected.longitude.value_or(arf::kNoCoordinate));
  const Street street = database.StreetAt(point.street);
  ASSERT_GE(point.ordinal, street.points.first);
  ASSERT_LT(point.ordinal - street.points.first, street.points.count);
}

void ExpectStreet(const Database& database, const ModelAddress& expected, const Street& street)
{
  ASSERT_EQ(street.name, expected.streetName);
  ASSERT_EQ(street.type, expected.streetType);
  ASSERT_EQ(street.suffix, expected.streetSuffix);
  ASSERT_EQ(street.isPostal, expected.isPostal);
  ASSERT_EQ(street.nameIndex == arf::kNoIndex, expected.streetName.empty());
  if (!expected.streetName.empty()) {
    ASSERT_EQ(database.StreetName(street.nameIndex), arf::MatchKey(expected.streetName));
  }
}

class RoundTrip : public testing::Test
{
 protected:
  static void SetUpTestSuite()
  {
    dir_ = new test_support::TempDir;
    model_ = new Model;
    Random random(test_support::RandomSeed());
    *model_ = RandomModel(random, kAddresses);
    BuiltDirectory(*dir_, ToCsv(*model_, random));
    SortAsDatabase(*model_);
  }
  static void TearDownTestSuite()
  {
    delete model_;
    delete dir_;
  }

  void SetUp() override
  {
    database_ = OpenOrFail(dir_->Path("db"), OpenMode::Memory);
    ASSERT_NE(database_, nullptr);
    ASSERT_EQ(database_->PointCount(), model_->addresses.size());
  }

  static const std::vector<ModelAddress>& Addresses() { return model_->addresses; }

  static test_support::TempDir* dir_;
  static Model* model_;
  std::unique_ptr<Database> database_;
};

test_support::TempDir* RoundTrip::dir_ = nullptr;
Model* RoundTrip::model_ = nullptr;

TEST_F(RoundTrip, WalksLocalitiesStreetsAndPointsInOrder)
{
  std::uint32_t ordinal = 0, streetIndex = 0;
  for (std::uint32_t i = 0; i < database_->LocalityCount(); ++i) {
    const arf::Locality locality = database_->LocalityAt(i);
    ASSERT_LT(ordinal, Addresses().size());
    const ModelAddress& first = Addresses()[ordinal];
    ASSERT_EQ(locality.name, first.locality);
    ASSERT_EQ(locality.state, first.state);
    ASSERT_EQ(locality.postcode, first.postcode);
    ASSERT_EQ(database_->LocalityName(locality.nameIndex), arf::MatchKey(first.locality));
    ASSERT_EQ(locality.streets.first, streetIndex);
    for (std::uint32_t s = 0; s < locality.streets.count; ++s, ++streetIndex) {
      const Street street = database_->StreetAt(streetIndex);
      ASSERT_EQ(street.index, streetIndex);
      ASSERT_EQ(street.locality, i);
      ASSERT_EQ(street.points.first, ordinal);
      arf::PointCursor cursor = database_->Points(street);
      const ModelAddress& head = Addresses()[ordinal];
      ASSERT_TRUE(SameLocality(first, head));
      ASSERT_NO_FATAL_FAILURE(ExpectStreet(*database_, head, street));
      Point point;
      while (cursor.Next(point)) {
        ASSERT_EQ(point.ordinal, ordinal);
        ASSERT_EQ(point.street, streetIndex);
        ASSERT_TRUE(SameStreet(head, Addresses()[ordinal]));
        ASSERT_NO_FATAL_FAILURE(ExpectPoint(*database_, Addresses()[ordinal], point));
        ++ordinal;
      }
      ASSERT_FALSE(cursor.Next(point));
      ASSERT_EQ(street.points.first + street.points.count, ordinal);
    }
    const bool isEnd = ordinal == Addresses().size();
    ASSERT_TRUE(isEnd || !SameLocality(first, Addresses()[ordinal]));
  }
  EXPECT_EQ(streetIndex, database_->StreetCount());
  EXPECT_EQ(ordinal, database_->PointCount());
}

TEST_F(RoundTrip, FindsEveryPointByOrdinalAndByIdentifier)
{
  for (std::uint32_t ordinal = 0; ordinal < Addresses().size(); ++ordinal) {
    const ModelAddress& expected = Addresses()[ordinal];
    const Point point = database_->PointAt(ordinal);
    ASSERT_EQ(point.ordinal, ordinal);
    ASSERT_NO_FATAL_FAILURE(ExpectPoint(*database_, expected, point));
    arf::Street street;
    ASSERT_EQ(database_->PointAt(ordinal, street).dpid, point.dpid);
    ASSERT_EQ(street.index, point.street);
    ASSERT_EQ(street.name, database_->StreetAt(point.street).name);
    ASSERT_EQ(database_->DpidOf(ordinal), expected.dpid);
    ASSERT_EQ(database_->FindDpid(expected.dpid), std::optional(ordinal));
  }
}

TEST_F(RoundTrip, DoesNotFindOtherIdentifiers)
{
  std::set<std::uint32_t> used;
  for (const ModelAddress& address : Addresses()) used.insert(address.dpid);
  for (const std::uint32_t dpid : used) {
    for (const std::uint32_t other : {dpid - 1, dpid + 1}) {
      ASSERT_EQ(database_->FindDpid(other).has_value(), used.count(other) == 1);
    }
  }
  for (const std::uint32_t dpid : {0U, 1U, 9'999'999U, 99'999'999U, 100'000'000U, UINT32_MAX}) {
    EXPECT_EQ(database_->FindDpid(dpid).has_value(), used.count(dpid) == 1);
  }
}

TEST_F(RoundTrip, KeepsAttributes)
{
  arf::AttributeText text;
  ASSERT_EQ(database_->AttributeCount(), model_->attributeNames.size());
  for (std::uint32_t column = 0; column < database_->AttributeCount(); ++column) {
    ASSERT_EQ(database_->AttributeName(column), model_->attributeNames[column]);
    ASSERT_EQ(database_->FindAttribute(model_->attributeNames[column]), std::optional(column));
    for (std::uint32_t ordinal = 0; ordinal < Addresses().size(); ++ordinal) {
      ASSERT_EQ(database_->AttributeOf(ordinal, column, text), Addresses()[ordinal].attributes[column]);
    }
  }
  EXPECT_EQ(database_->FindAttribute("nothing"), std::nullopt);
  EXPECT_EQ(database_->AttributeName(3), "");
  EXPECT_EQ(database_->AttributeOf(0, 3, text), "");
  EXPECT_EQ(database_->AttributeOf(database_->PointCount(), 0, text), "");
}

/** The indexes 0 … count − 1 by the text that `textOf` gives for each; those without a text are left out. */
template <class TextOf>
std::map<std::string, std::vector<std::uint32_t>> ByText(std::uint32_t count, TextOf textOf)
{
  std::map<std::string, std::vector<std::uint32_t>> texts;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (const std::string text(textOf(i)); !text.empty()) texts[text].push_back(i);
  }
  return texts;
}

TEST_F(RoundTrip, ListsLocalityNames)
{
  const auto names =
      ByText(database_->LocalityCount(), [&](std::uint32_t i) { return arf::MatchKey(database_->LocalityAt(i).name); });
  ASSERT_EQ(database_->LocalityNameCount(), names.size());
  std::uint32_t n = 0;
  for (const auto& [name, localities] : names) {
    ASSERT_EQ(database_->LocalityName(n), name);
    ASSERT_TRUE(std::ranges::equal(database_->LocalitiesNamed(n), localities));
    ASSERT_EQ(database_->FindLocalityName(name), std::optional(n));
    ASSERT_EQ(database_->FindLocalityName(database_->LocalityAt(localities[0]).name), std::optional(n));
    ASSERT_EQ(database_->FindLocalityName(name + "X").has_value(), names.count(name + "X") == 1);
    ++n;
  }
  EXPECT_EQ(database_->LocalityName(n), "");
  EXPECT_TRUE(database_->LocalitiesNamed(n).empty());
}

TEST_F(RoundTrip, ListsStreetNames)
{
  const auto names =
      ByText(database_->StreetCount(), [&](std::uint32_t i) { return arf::MatchKey(database_->StreetAt(i).name); });
  ASSERT_EQ(database_->StreetNameCount(), names.size());
  std::uint32_t n = 0;
  for (const auto& [name, streets] : names) {
    ASSERT_EQ(database_->StreetName(n), name);
    ASSERT_TRUE(std::ranges::equal(database_->StreetsNamed(n), streets));
    ASSERT_EQ(database_->FindStreetName(database_->StreetAt(streets[0]).name), std::optional(n));
    ++n;
  }
  EXPECT_EQ(database_->FindStreetName(""), std::nullopt);
  EXPECT_EQ(database_->FindStreetName("~"), std::nullopt);
  EXPECT_EQ(database_->FindStreetName("ZZZZZZ"), std::nullopt);
  EXPECT_TRUE(database_->StreetsNamed(n).empty());
}

TEST_F(RoundTrip, ListsPostcodes)
{
  const auto postcodes =
      ByText(database_->LocalityCount(), [&](std::uint32_t i) { return database_->LocalityAt(i).postcode; });
  ASSERT_EQ(database_->PostcodeCount(), postcodes.size());
  std::uint32_t n = 0;
  for (const auto& [postcode, localities] : postcodes) {
    ASSERT_EQ(database_->Postcode(n++), postcode);
    ASSERT_TRUE(std::ranges::equal(database_->LocalitiesOfPostcode(postcode), localities));
  }
  for (const char* absent : {"", "9999", "200", "20000", "ABCD"}) {
    EXPECT_TRUE(database_->LocalitiesOfPostcode(absent).empty()) << absent;
  }
}

TEST_F(RoundTrip, FindsStreetsOfALocalityByName)
{
  for (std::uint32_t i = 0; i < database_->LocalityCount(); ++i) {
    const arf::Locality locality = database_->LocalityAt(i);
    std::map<std::uint32_t, std::uint32_t> counts;  // by name
    std::uint32_t postal = 0;
    for (std::uint32_t s = 0; s < locality.streets.count; ++s) {
      const Street street = database_->StreetAt(locality.streets.first + s);
      ++counts[street.nameIndex];
      postal += street.isPostal;
    }
    const IndexRange boxes = database_->PostalStreetsOf(locality);
    ASSERT_EQ(boxes.count, postal);
    ASSERT_TRUE(postal == 0 || boxes.first == locality.streets.first);
    counts.erase(arf::kNoIndex);
    for (const auto& [name, count] : counts) {
      const IndexRange streets = database_->StreetsOf(locality.streets, name);
      ASSERT_EQ(streets.count, count);
      const IndexRange byText = database_->StreetsOf(locality.streets, database_->StreetAt(streets.first).name);
      ASSERT_EQ(byText.first, streets.first);
      ASSERT_EQ(byText.count, count);
      for (std::uint32_t s = 0; s < count; ++s) ASSERT_EQ(database_->StreetAt(streets.first + s).nameIndex, name);
    }
    ASSERT_EQ(database_->StreetsOf(locality.streets, "NO SUCH STREET").count, 0U);
    ASSERT_EQ(database_->StreetsOf(locality.streets, arf::kNoIndex).count, 0U);
  }
}

TEST_F(RoundTrip, NarrowsToANumber)
{
  for (std::uint32_t i = 0; i < database_->StreetCount(); ++i) {
    const Street street = database_->StreetAt(i);
    const ModelAddress& last = Addresses()[street.points.first + street.points.count - 1];
    for (const std::uint32_t number : {0U, 1U, 2U, 33U, last.numberFirst, last.numberFirst / 2, last.numberFirst + 3,
                                       std::max(last.numberLast, 1U) - 1, UINT32_MAX - 1}) {
      arf::PointCursor cursor = database_->PointsNumbered(street, number);
      Point point;
      for (std::uint32_t p = 0; p < street.points.count; ++p) {
        const ModelAddress& address = Addresses()[street.points.first + p];
        const bool isRange = address.numberFirst < number && number <= address.numberLast;
        if (address.numberFirst != number && !isRange) continue;
        ASSERT_TRUE(cursor.Next(point)) << "number " << number << " of street " << i;
        ASSERT_EQ(point.ordinal, street.points.first + p);
        ASSERT_NO_FATAL_FAILURE(ExpectPoint(*database_, address, point));
      }
      ASSERT_FALSE(cursor.Next(point)) << "number " << number << " of street " << i;
      ASSERT_FALSE(cursor.Next(point));
    }
  }
}

TEST_F(RoundTrip, NarrowsToLotsAndBuildings)
{
  std::uint32_t found = 0;
  for (std::uint32_t i = 0; i < database_->StreetCount(); ++i) {
    const Street street = database_->StreetAt(i);
    arf::PointCursor cursor = database_->PointsNamed(street);
    Point point;
    for (std::uint32_t p = 0; p < street.points.count; ++p) {
      const ModelAddress& address = Addresses()[street.points.first + p];
      if (address.lot.empty() && address.building.empty()) continue;
      ++found;
      ASSERT_TRUE(cursor.Next(point)) << "street " << i;
      ASSERT_EQ(point.ordinal, street.points.first + p);
      ASSERT_NO_FATAL_FAILURE(ExpectPoint(*database_, address, point));
    }
    ASSERT_FALSE(cursor.Next(point)) << "street " << i;
  }
  EXPECT_GT(found, 0U);
  EXPECT_LT(found, Addresses().size());
}

TEST_F(RoundTrip, AnswersAlikeInAllModes)
{
  arf::AttributeText text;
  for (const OpenMode mode : {OpenMode::Disk, OpenMode::Mapped}) {
    const auto other = OpenOrFail(dir_->Path("db"), mode);
    ASSERT_NE(other, nullptr);
    ASSERT_EQ(other->PointCount(), database_->PointCount());
    ASSERT_EQ(other->StreetCount(), database_->StreetCount());
    for (std::uint32_t ordinal = 0; ordinal < Addresses().size(); ++ordinal) {
      const Point point = other->PointAt(ordinal);
      ASSERT_NO_FATAL_FAILURE(ExpectPoint(*other, Addresses()[ordinal], point));
      ASSERT_NO_FATAL_FAILURE(ExpectStreet(*other, Addresses()[ordinal], other->StreetAt(point.street)));
      ASSERT_EQ(other->FindDpid(point.dpid), std::optional(ordinal));
      ASSERT_EQ(other->AttributeOf(ordinal, 2, text), Addresses()[ordinal].attributes[2]);
    }
  }
}

}  // namespace
}  // namespace arf_test
