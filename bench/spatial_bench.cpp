/**
 * Searches by place: the nearest address, and polygons.
 *
 * Over the database directory in QXPAF_BENCH_DATABASE; says that it was skipped without one. Figures are of one thread,
 * with the file in memory.
 */
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "arf/format/database.h"
#include "arf/search/free_text_search.h"
#include "arf/spatial/area_search.h"

namespace {

std::unique_ptr<arf::Database> database;
arf::SpatialTree tree;

constexpr std::size_t kQueries = 4096;

/** Places of random addresses, up to `reach` millionths of a degree away. */
std::vector<arf::GeoPoint> PlacesNearAddresses(std::int32_t reach)
{
  std::mt19937 random(1);
  std::uniform_int_distribution<std::int32_t> offset(-reach, reach);
  std::vector<arf::GeoPoint> places;
  while (places.size() < kQueries) {
    const arf::Point point = database->PointAt(static_cast<std::uint32_t>(random() % database->PointCount()));
    if (point.latitude == arf::kNoCoordinate) continue;
    places.push_back({point.latitude + offset(random), point.longitude + offset(random)});
  }
  return places;
}

void Nearest(benchmark::State& state)
{
  const std::vector<arf::GeoPoint> places = PlacesNearAddresses(static_cast<std::int32_t>(state.range(0)));
  arf::AreaSearch search(tree);
  std::size_t i = 0, found = 0;
  for (auto _ : state) {
    search.StartNear(places[i++ % kQueries], 1e6, nullptr);
    found += search.Current() != nullptr;
  }
  state.counters["found"] = static_cast<double>(found) / static_cast<double>(state.iterations());
}
BENCHMARK(Nearest)->Arg(500)->Arg(20'000)->Arg(1'000'000);

/** The radius in metres within which a place has so many addresses. */
double RadiusOf(arf::AreaSearch& search, arf::GeoPoint centre, std::size_t count)
{
  search.StartNear(centre, 1e6, nullptr);
  double key = 0;
  for (std::size_t i = 0; i < count && search.Current(); ++i, search.Advance()) key = search.Current()->key;
  return arf::DistanceKey::ToMetres(key);
}

void SetCircle(arf::Polygon& polygon, arf::GeoPoint centre, double metres, int vertices)
{
  const double degree = metres / 111'195.0 * 1e6;
  const double stretch = 1 / std::cos(centre.latitude / 1e6 * std::numbers::pi / 180);
  const auto at = [&](int i) {
    const double angle = 2 * std::numbers::pi * (i % vertices) / vertices;
    return arf::GeoPoint{centre.latitude + static_cast<std::int32_t>(degree * std::sin(angle)),
                         centre.longitude + static_cast<std::int32_t>(degree * stretch * std::cos(angle))};
  };
  polygon.Clear();
  for (int i = 0; i < vertices; ++i) polygon.AddEdge(at(i), at(i + 1));
}

/** All addresses of a polygon of so many vertices that holds about 1,000, nearest to its middle first. */
void PolygonOfAThousand(benchmark::State& state)
{
  constexpr std::size_t kPolygons = 64;
  const int vertices = static_cast<int>(state.range(0));
  const std::vector<arf::GeoPoint> places = PlacesNearAddresses(500);
  std::vector<double> radius;
  arf::AreaSearch search(tree);
  for (std::size_t i = 0; i < kPolygons; ++i) radius.push_back(RadiusOf(search, places[i], 1'000));
  std::size_t i = 0, found = 0;
  for (auto _ : state) {
    const std::size_t polygon = i++ % kPolygons;
    SetCircle(search.Area(), places[polygon], radius[polygon], vertices);
    search.StartPolygon(places[polygon], nullptr);
    for (; search.Current(); search.Advance()) ++found;
  }
  state.counters["results"] = static_cast<double>(found) / static_cast<double>(state.iterations());
}
BENCHMARK(PolygonOfAThousand)->Arg(5)->Arg(32)->Arg(10'000);

void FreeText(benchmark::State& state)
{
  std::mt19937 random(1);
  std::vector<std::string> texts;
  while (texts.size() < kQueries) {
    const arf::Point point = database->PointAt(static_cast<std::uint32_t>(random() % database->PointCount()));
    const arf::Street street = database->StreetAt(point.street);
    texts.push_back(std::to_string(point.numberFirst) + ' ' + std::string(street.name) + ' ' +
                    std::string(street.type) + ' ' + std::string(database->LocalityAt(street.locality).name));
  }
  arf::FreeTextSearch search(*database);
  std::size_t i = 0, found = 0;
  for (auto _ : state) {
    search.Start(texts[i++ % kQueries], nullptr);
    found += search.Current() != nullptr;
  }
  state.counters["found"] = static_cast<double>(found) / static_cast<double>(state.iterations());
}
BENCHMARK(FreeText);

bool Open()
{
  const char* directory = std::getenv("QXPAF_BENCH_DATABASE");
  if (!directory) return false;
  arf::OpenResult result;
  database = arf::Database::Open(directory, arf::OpenMode::Mapped, result);
  if (!database) {
    std::fprintf(stderr, "%s\n", result.message.c_str());
    return false;
  }
  const arf::ByteReader section = database->Section(arf::layout::SectionId::SpatialTree);
  tree = arf::SpatialTree(section, database->PointCount());
  const double points = tree.PointCount();
  std::printf("%u addresses, %u with a place; the tree has %.2f bytes an address, names and words %.2f\n",
              database->PointCount(), tree.PointCount(), static_cast<double>(section.Size()) / points,
              static_cast<double>(database->Section(arf::layout::SectionId::BuildingNames).Size()) / points);
  return true;
}

}  // namespace

int main(int argc, char** argv)
{
  benchmark::Initialize(&argc, argv);
  if (!Open()) {
    std::puts("skipped: QXPAF_BENCH_DATABASE names no database");
    return 0;
  }
  benchmark::RunSpecifiedBenchmarks();
  database.reset();
  return 0;
}
