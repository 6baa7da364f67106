#include "arf/build/spatial_writer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <numbers>
#include <span>
#include <tuple>
#include <vector>

#include "arf/build/build_error.h"
#include "arf/spatial/geo.h"
#include "arf/spatial/tree_layout.h"

namespace arf {
namespace {

namespace tree = tree_layout;

struct Place
{
  GeoPoint point;
  std::uint32_t ordinal = 0;
};

/** The places of all addresses that have one; other ways to say an address are left out. */
std::vector<Place> LocatedPlaces(const std::vector<AddressRow>& rows, const std::vector<AddressAlias>& aliases)
{
  std::vector<Place> places;
  places.reserve(rows.size());
  std::uint32_t ordinal = 0;
  auto alias = aliases.begin();
  for (const AddressRow& row : rows) {
    const bool isAlias = alias != aliases.end() && alias->alias == ordinal;
    if (isAlias) ++alias;
    if (row.latitude != kNoCoordinate && !isAlias) places.push_back({{row.latitude, row.longitude}, ordinal});
    ++ordinal;
  }
  return places;
}

GeoBox BoxOf(std::span<const Place> places)
{
  const GeoPoint first = places.front().point;
  GeoBox box{first.latitude, first.longitude, first.latitude, first.longitude};
  for (const Place& place : places) {
    box.south = std::min(box.south, place.point.latitude);
    box.west = std::min(box.west, place.point.longitude);
    box.north = std::max(box.north, place.point.latitude);
    box.east = std::max(box.east, place.point.longitude);
  }
  return box;
}

bool IsTallerThanWide(const GeoBox& box)
{
  const double middle = (static_cast<double>(box.south) + box.north) / 2e6;
  const double height = static_cast<double>(box.north) - box.south;
  const double width = (static_cast<double>(box.east) - box.west) * std::cos(middle * std::numbers::pi / 180);
  return height > width;
}

bool IsSouthOf(const Place& a, const Place& b)
{
  return std::tie(a.point.latitude, a.point.longitude, a.ordinal) <
         std::tie(b.point.latitude, b.point.longitude, b.ordinal);
}

bool IsWestOf(const Place& a, const Place& b)
{
  return std::tie(a.point.longitude, a.point.latitude, a.ordinal) <
         std::tie(b.point.longitude, b.point.latitude, b.ordinal);
}

/**
 * Cuts the places across their longer side again and again until each part is a leaf. The first part of a cut has a
 * power of two of full leaves, so that the children of every node are neighbours in the list.
 */
void Arrange(std::span<Place> places)
{
  while (places.size() > tree::kLeafPoints) {
    const std::size_t leaves = (places.size() + tree::kLeafPoints - 1) / tree::kLeafPoints;
    const std::size_t cut = std::bit_floor(leaves - 1) * tree::kLeafPoints;
    const auto middle = places.begin() + static_cast<std::ptrdiff_t>(cut);
    std::nth_element(places.begin(), middle, places.end(), IsTallerThanWide(BoxOf(places)) ? IsSouthOf : IsWestOf);
    Arrange(places.first(cut));
    places = places.subspan(cut);
  }
  std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.ordinal < b.ordinal; });
}

void AppendVarint(std::vector<std::uint8_t>& bytes, std::uint32_t number)
{
  for (; number >= 0x80; number >>= 7) bytes.push_back(static_cast<std::uint8_t>(number | 0x80));
  bytes.push_back(static_cast<std::uint8_t>(number));
}

void AppendPacked(std::vector<std::uint8_t>& bytes, std::span<const Place> places, const GeoBox& box)
{
  const std::uint32_t latitudeBits = tree::BitsFor(box.south, box.north);
  const std::uint32_t bits = latitudeBits + tree::BitsFor(box.west, box.east);
  if (bits > tree::kMaxPointBits) throw BuildError("an address lies off the globe");
  const std::size_t begin = bytes.size();
  const std::uint32_t length = tree::PackedBytes(static_cast<std::uint32_t>(places.size()), bits);
  bytes.resize(begin + length + sizeof(std::uint64_t));
  std::uint32_t at = 0;
  for (const Place& place : places) {
    const auto north = static_cast<std::uint64_t>(std::int64_t{place.point.latitude} - box.south);
    const auto east = static_cast<std::uint64_t>(std::int64_t{place.point.longitude} - box.west);
    std::uint64_t word;
    std::memcpy(&word, &bytes[begin + at / 8], sizeof word);
    word |= (north | east << latitudeBits) << at % 8;
    std::memcpy(&bytes[begin + at / 8], &word, sizeof word);
    at += bits;
  }
  bytes.resize(begin + length);
}

void AppendLeaf(std::vector<std::uint8_t>& bytes, std::span<const Place> places, const GeoBox& box)
{
  AppendPacked(bytes, places, box);
  std::uint32_t before = 0;
  for (const Place& place : places) {
    AppendVarint(bytes, place.ordinal - before);
    before = place.ordinal;
  }
}

GeoBox Union(std::span<const GeoBox> boxes)
{
  GeoBox all = boxes.front();
  for (const GeoBox& box : boxes) {
    all = {std::min(all.south, box.south), std::min(all.west, box.west), std::max(all.north, box.north),
           std::max(all.east, box.east)};
  }
  return all;
}

template <class Item, class Visit>
void ForEachGroup(std::span<Item> items, std::size_t size, Visit visit)
{
  for (std::size_t i = 0; i < items.size(); i += size) visit(items.subspan(i, std::min(size, items.size() - i)));
}

void AppendLevels(SectionWriter& writer, std::vector<GeoBox> boxes)
{
  for (;;) {
    writer.Append(boxes.data(), boxes.size() * sizeof(GeoBox));
    if (boxes.size() == 1) return;
    std::vector<GeoBox> parents;
    ForEachGroup(std::span<const GeoBox>(boxes), tree::kFanOut,
                 [&](std::span<const GeoBox> children) { parents.push_back(Union(children)); });
    boxes = std::move(parents);
  }
}

}  // namespace

void WriteSpatial(SectionWriter& writer, const AddressTable& table, const OrderedAddresses& ordered)
{
  std::vector<Place> places = LocatedPlaces(table.rows, ordered.aliases);
  if (places.empty()) return;
  Arrange(places);
  constexpr std::size_t kUsualBytes = 5;  // of a place in a leaf; what is reserved and never used takes no memory
  const std::size_t leaves = places.size() / tree::kLeafPoints + 1;
  std::vector<GeoBox> boxes;
  std::vector<std::uint32_t> offsets = {0};
  std::vector<std::uint8_t> data;
  boxes.reserve(leaves);
  offsets.reserve(leaves + 1);
  data.reserve(places.size() * kUsualBytes);
  ForEachGroup(std::span<const Place>(places), tree::kLeafPoints, [&](std::span<const Place> leaf) {
    boxes.push_back(BoxOf(leaf));
    AppendLeaf(data, leaf, boxes.back());
    if (data.size() > UINT32_MAX) throw BuildError("the places of the addresses are longer than 4 GiB");
    offsets.push_back(static_cast<std::uint32_t>(data.size()));
  });
  const auto points = static_cast<std::uint32_t>(places.size());
  std::vector<Place>().swap(places);
  const std::uint64_t dataLength = data.size();
  data.resize(data.size() + tree::kPadding);
  writer.Begin(layout::SectionId::SpatialTree);
  writer.AppendNumbers({points, 0});
  writer.Append(&dataLength, sizeof dataLength);
  AppendLevels(writer, std::move(boxes));
  writer.AppendNumbers(offsets);
  writer.Append(data.data(), data.size());
  writer.End();
}

}  // namespace arf
