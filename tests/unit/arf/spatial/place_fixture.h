/** Databases of random places, and the places as a plain list. */
#ifndef QXPAF_TESTS_UNIT_ARF_SPATIAL_PLACE_FIXTURE_H
#define QXPAF_TESTS_UNIT_ARF_SPATIAL_PLACE_FIXTURE_H

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "arf/spatial/spatial_tree.h"
#include "unit/arf/build/test_database.h"

namespace arf_test {

/** A database, its tree, and every point's place by ordinal (kNoCoordinate where it has none). */
struct PlaceDatabase
{
  test_support::TempDir dir;
  std::unique_ptr<arf::Database> database;
  arf::SpatialTree tree;
  std::vector<arf::GeoPoint> places;
};

inline std::int32_t Between(Random& random, std::int32_t low, std::int32_t high)
{
  return std::uniform_int_distribution<std::int32_t>(low, high)(random);
}

/** Towns far from each other with houses close together, many of them at one place, and some without a place. */
inline std::string RandomPlaces(Random& random, std::size_t count)
{
  std::string csv = "dpid,number_first,street_name,street_type,locality,state,postcode,latitude,longitude\n";
  arf::GeoPoint town, house;
  for (std::size_t i = 0; i < count; ++i) {
    if (i % 200 == 0) town = {Between(random, -43'000'000, -10'000'000), Between(random, 113'000'000, 168'000'000)};
    const bool isSamePlace = random() % 4 == 0;
    if (!isSamePlace || i == 0) {
      house = {town.latitude + Between(random, -30'000, 30'000), town.longitude + Between(random, -30'000, 30'000)};
    }
    char line[160];
    const auto number = static_cast<unsigned>(i % 50 + 1);
    const auto street = static_cast<unsigned>(i / 50 % 7);
    const auto locality = static_cast<unsigned>(i / 400);
    const auto dpid = static_cast<unsigned>(30'000'000 + i);
    std::snprintf(line, sizeof line, "%u,%u,%c ROW,STREET,TOWN %u,NSW,2000,", dpid, number,
                  static_cast<char>('A' + street), locality);
    csv += line;
    if (random() % 20 != 0) {
      std::snprintf(line, sizeof line, "%.6f,%.6f", house.latitude / 1e6, house.longitude / 1e6);
      csv += line;
    } else {
      csv += ',';
    }
    csv += '\n';
  }
  return csv;
}

inline std::unique_ptr<PlaceDatabase> OpenPlaces(const std::string& csv)
{
  auto result = std::make_unique<PlaceDatabase>();
  result->database = OpenOrFail(BuiltDirectory(result->dir, csv), arf::OpenMode::Memory);
  const arf::Database& database = *result->database;
  result->tree = arf::SpatialTree(database.Section(arf::layout::SectionId::SpatialTree), database.PointCount());
  for (std::uint32_t i = 0; i < database.PointCount(); ++i) {
    const arf::Point point = database.PointAt(i);
    result->places.push_back({point.latitude, point.longitude});
  }
  return result;
}

inline bool IsLocated(arf::GeoPoint place)
{
  return place.latitude != arf::kNoCoordinate;
}

}  // namespace arf_test

#endif
