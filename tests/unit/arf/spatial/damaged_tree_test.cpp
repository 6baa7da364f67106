// A tree over any bytes: searches end, stay inside the bytes and answer only ordinals that there are.
#include <gtest/gtest.h>

#include "arf/spatial/area_search.h"
#include "support/random_seed.h"
#include "unit/arf/spatial/place_fixture.h"

namespace arf {
namespace {

/** The bytes of a tree, in memory of exactly their length. */
std::vector<std::uint8_t> TreeBytes(std::uint32_t& pointCount)
{
  arf_test::Random random(test_support::RandomSeed());
  const auto places = arf_test::OpenPlaces(arf_test::RandomPlaces(random, 2'500));
  const ByteReader section = places->database->Section(layout::SectionId::SpatialTree);
  pointCount = places->database->PointCount();
  return {section.Data(), section.Data() + section.Size()};
}

void SearchAll(const std::vector<std::uint8_t>& bytes, std::uint32_t pointCount)
{
  const SpatialTree tree(ByteReader(bytes.data(), bytes.size()), pointCount);
  AreaSearch search(tree);
  std::size_t count = 0;
  const auto take = [&](std::uint32_t ordinal) {
    ASSERT_LT(ordinal, pointCount);
    ++count;
  };
  search.VisitNear({-33'000'000, 151'000'000}, 30e6, nullptr, take);
  EXPECT_LE(count, pointCount);
  search.StartNear({-20'000'000, 130'000'000}, 1e6, nullptr);
  for (int i = 0; i < 100 && search.Current() != nullptr; ++i, search.Advance())
    EXPECT_LT(search.Current()->ordinal, pointCount);
  search.Area().Clear();
  const GeoPoint corners[] = {{-43'000'000, 110'000'000}, {-10'000'000, 160'000'000}, {-10'000'000, 120'000'000}};
  for (std::size_t i = 0; i < 3; ++i) search.Area().AddEdge(corners[i], corners[(i + 1) % 3]);
  search.VisitPolygon(nullptr, take);
}

TEST(DamagedTree, AnyBytes)
{
  std::uint32_t pointCount = 0;
  const std::vector<std::uint8_t> whole = TreeBytes(pointCount);
  arf_test::Random random(test_support::RandomSeed());
  for (int i = 0; i < 300; ++i) {
    std::vector<std::uint8_t> bytes = whole;
    for (std::size_t flips = 1 + random() % 20; flips > 0; --flips) {
      const std::size_t range = i % 3 == 0 ? 32 : bytes.size();
      bytes[random() % range] = static_cast<std::uint8_t>(random());
    }
    SearchAll(bytes, pointCount);
  }
}

TEST(DamagedTree, AnyLength)
{
  std::uint32_t pointCount = 0;
  const std::vector<std::uint8_t> whole = TreeBytes(pointCount);
  arf_test::Random random(test_support::RandomSeed());
  for (int i = 0; i < 200; ++i) {
    std::vector<std::uint8_t> bytes(whole.begin(),
                                    whole.begin() + static_cast<std::ptrdiff_t>(random() % whole.size()));
    bytes.shrink_to_fit();
    SearchAll(bytes, pointCount);
  }
}

TEST(DamagedTree, MorePointsThanTheDatabaseHas)
{
  std::uint32_t pointCount = 0;
  const std::vector<std::uint8_t> whole = TreeBytes(pointCount);
  EXPECT_EQ(SpatialTree(ByteReader(whole.data(), whole.size()), 10).PointCount(), 0U);
  EXPECT_GT(SpatialTree(ByteReader(whole.data(), whole.size()), pointCount).PointCount(), 0U);
}

}  // namespace
}  // namespace arf
