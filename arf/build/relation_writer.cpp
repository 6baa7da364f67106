#include "arf/build/relation_writer.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <utility>

#include "arf/format/fold.h"

namespace arf {
namespace {

using layout::SectionId;
using Lists = std::vector<std::vector<std::uint32_t>>;

/** A cell of a grid, and a locality that has addresses in it. */
struct CellUse
{
  std::uint64_t cell = 0;
  std::uint32_t locality = 0;
  auto operator<=>(const CellUse&) const = default;
};

std::vector<CellUse> UsedCells(const AddressTable& table, std::int32_t cellSize)
{
  const auto cellOf = [cellSize](std::int32_t degrees) {
    return static_cast<std::uint64_t>((degrees + 180'000'000LL) / cellSize);
  };
  std::vector<CellUse> uses;
  for (const AddressRow& row : table.rows) {
    if (row.latitude == kNoCoordinate) continue;
    const CellUse use{cellOf(row.latitude) << 32 | cellOf(row.longitude), table.streets[row.street].locality};
    if (uses.empty() || uses.back() != use) uses.push_back(use);
  }
  std::sort(uses.begin(), uses.end());
  uses.erase(std::unique(uses.begin(), uses.end()), uses.end());
  return uses;
}

/** For each two localities, in both orders, in how many cells both are. */
std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> SharedCells(const std::vector<CellUse>& uses)
{
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> shared;
  for (auto first = uses.begin(); first != uses.end();) {
    const auto end = std::find_if(first, uses.end(), [&](const CellUse& use) { return use.cell != first->cell; });
    for (auto a = first; a != end; ++a) {
      for (auto b = first; b != end; ++b) {
        if (a != b) ++shared[{a->locality, b->locality}];
      }
    }
    first = end;
  }
  return shared;
}

bool Contains(const std::vector<std::uint32_t>& list, std::uint32_t item)
{
  return std::find(list.begin(), list.end(), item) != list.end();
}

/** Adds those that share most cells first to the lists of the localities for which `isWanted` is true. */
void AddSharing(const AddressTable& table, std::int32_t cellSize, const std::vector<bool>& isWanted, Lists& lists)
{
  std::vector<std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>> found;  // locality, less for more cells, other
  for (const auto& [both, cells] : SharedCells(UsedCells(table, cellSize))) {
    if (isWanted[both.first]) found.emplace_back(both.first, UINT32_MAX - cells, both.second);
  }
  std::sort(found.begin(), found.end());
  for (const auto& [locality, order, other] : found) {
    std::vector<std::uint32_t>& list = lists[locality];
    if (list.size() < layout::kMaxNeighbours && !Contains(list, other)) list.push_back(other);
  }
}

class RelationWriter
{
 public:
  RelationWriter(SectionWriter& writer, const AddressTable& table, const OrderedAddresses& ordered,
                 FileStrings& strings)
      : writer_(writer), table_(table), ordered_(ordered), strings_(strings)
  {
    for (std::uint32_t i = 0; i < table.localities.size(); ++i) {
      places_[{table.localities[i].name, table.localities[i].state}].push_back(i);
    }
  }

  void Run()
  {
    WriteStreetAliases();
    WriteLocalityAliases();
    WriteNeighbours();
  }

 private:
  /** The localities of a name, one for each of its postcodes. */
  const std::vector<std::uint32_t>& Places(const LocalityName& name) const
  {
    static const std::vector<std::uint32_t> none;
    const auto places = places_.find(name);
    return places == places_.end() ? none : places->second;
  }

  std::string Key(std::uint32_t name) const { return MatchKey(table_.names.At(name)); }

  void WriteStreetAliases()
  {
    std::vector<std::tuple<std::string, std::uint32_t, std::uint32_t>> found;  // key, street, number of the alias
    for (std::uint32_t i = 0; i < table_.streetAliases.size(); ++i) {
      for (const std::uint32_t locality : Places(table_.streetAliases[i].locality)) {
        const std::uint32_t street = StreetOf(locality, table_.streetAliases[i]);
        if (street != kNoIndex) found.emplace_back(Key(table_.streetAliases[i].aliasName), street, i);
      }
    }
    std::sort(found.begin(), found.end());
    writer_.Begin(SectionId::StreetAliases);
    for (const auto& [key, street, number] : found) {
      const StreetAlias& alias = table_.streetAliases[number];
      for (const std::uint32_t value : {strings_.Add(key), strings_.OfName(alias.aliasName),
                                        strings_.OfName(alias.aliasType), strings_.OfName(alias.aliasSuffix), street}) {
        writer_.AppendNumber(value);
      }
    }
    writer_.End();
  }

  std::uint32_t StreetOf(std::uint32_t locality, const StreetAlias& alias) const
  {
    for (std::uint32_t i = ordered_.firstStreets[locality];
         i < table_.streets.size() && table_.streets[i].locality == locality; ++i) {
      const StreetEntry& street = table_.streets[i];
      if (!street.isPostal && street.name == alias.name && street.type == alias.type && street.suffix == alias.suffix) {
        return i;
      }
    }
    return kNoIndex;
  }

  void WriteLocalityAliases()
  {
    std::vector<std::tuple<std::string, std::uint32_t, std::uint32_t>> found;  // key, locality, name
    for (const LocalityAlias& alias : table_.localityAliases) {
      for (const std::uint32_t locality : Places(alias.locality)) {
        found.emplace_back(Key(alias.aliasName), locality, alias.aliasName);
      }
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    writer_.Begin(SectionId::LocalityAliases);
    for (const auto& [key, locality, name] : found) {
      for (const std::uint32_t value : {strings_.Add(key), strings_.OfName(name), locality}) {
        writer_.AppendNumber(value);
      }
    }
    writer_.End();
  }

  /** What the source says holds where it says something; what lies nearest comes first. */
  Lists Neighbours() const
  {
    Lists found = FindNeighbours(table_), said(found.size());
    for (const auto& [a, b] : table_.neighbours) {
      for (const std::uint32_t x : Places(a)) {
        for (const std::uint32_t y : Places(b)) {
          if (x == y) continue;
          said[x].push_back(y);
          said[y].push_back(x);
        }
      }
    }
    for (std::size_t i = 0; i < found.size(); ++i) {
      if (said[i].empty()) continue;
      const auto isSaid = [&](std::uint32_t other) { return Contains(said[i], other); };
      found[i].erase(std::remove_if(found[i].begin(), found[i].end(), std::not_fn(isSaid)), found[i].end());
      std::sort(said[i].begin(), said[i].end());
      for (const std::uint32_t other : said[i]) {
        if (found[i].size() < layout::kMaxNeighbours && !Contains(found[i], other)) found[i].push_back(other);
      }
    }
    return found;
  }

  void WriteNeighbours()
  {
    const Lists lists = Neighbours();
    writer_.Begin(SectionId::Neighbours);
    std::uint32_t end = 0;
    writer_.AppendNumber(end);
    for (const std::vector<std::uint32_t>& list : lists) {
      writer_.AppendNumber(end += static_cast<std::uint32_t>(list.size()));
    }
    for (const std::vector<std::uint32_t>& list : lists) writer_.AppendNumbers(list);
    writer_.End();
  }

  SectionWriter& writer_;
  const AddressTable& table_;
  const OrderedAddresses& ordered_;
  FileStrings& strings_;
  std::map<LocalityName, std::vector<std::uint32_t>> places_;
};

}  // namespace

std::vector<std::vector<std::uint32_t>> FindNeighbours(const AddressTable& table)
{
  constexpr std::size_t kEnough = 4;
  constexpr std::int32_t kCellSizes[] = {5'000, 20'000, 80'000};  // millionths of a degree
  Lists lists(table.localities.size());
  for (const std::int32_t cellSize : kCellSizes) {
    std::vector<bool> isWanted;
    for (const std::vector<std::uint32_t>& list : lists) isWanted.push_back(list.size() < kEnough);
    AddSharing(table, cellSize, isWanted, lists);
  }
  return lists;
}

void WriteRelations(SectionWriter& writer, const AddressTable& table, const OrderedAddresses& ordered,
                    FileStrings& strings)
{
  RelationWriter(writer, table, ordered, strings).Run();
}

}  // namespace arf
