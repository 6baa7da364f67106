#include "arf/build/building_writer.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "arf/build/build_error.h"
#include "arf/build/name_tables_writer.h"
#include "arf/build/string_pool.h"
#include "arf/build/text_table_writer.h"
#include "arf/format/fold.h"
#include "arf/match/canonical_words.h"

namespace arf {
namespace {

/** Something, and one of the names or points that it has. */
using Link = std::pair<std::uint32_t, std::uint32_t>;

/** The buildings' names in ascending order, and which points have each. */
struct Buildings
{
  StringPool keys;
  std::vector<std::uint32_t> order;  ///< key numbers without that of the empty key
  std::vector<Link> points;          ///< place in `order`, ordinal; ascending
};

Buildings BuildingsOf(const AddressTable& table, const OrderedAddresses& ordered)
{
  Buildings buildings;
  // Of each part: the number of its key, once it was looked up.
  std::vector<std::uint32_t> keyOfPart(ordered.partOrder.size(), kNoIndex);
  std::uint32_t ordinal = 0;
  for (const AddressRow& row : table.rows) {
    const std::uint32_t building = table.details[row.details].building;
    std::uint32_t& key = keyOfPart[building];
    if (key == kNoIndex) key = buildings.keys.Intern(MatchKey(table.parts.At(ordered.partOrder[building])));
    if (key != 0) buildings.points.emplace_back(key, ordinal);
    ++ordinal;
  }
  buildings.order = buildings.keys.SortedNumbers();
  std::erase(buildings.order, 0U);
  std::vector<std::uint32_t> places(buildings.keys.Count());
  for (std::uint32_t i = 0; i < buildings.order.size(); ++i) places[buildings.order[i]] = i;
  for (Link& link : buildings.points) link.first = places[link.first];
  std::sort(buildings.points.begin(), buildings.points.end());
  return buildings;
}

/** Collects words and what has them. */
class WordCollector
{
 public:
  /** @return the links of the words of `count` texts, by number of the word */
  template <class TextAt>
  std::vector<Link> Add(std::uint32_t count, TextAt textAt)
  {
    std::vector<Link> links;
    for (std::uint32_t i = 0; i < count; ++i) {
      std::string_view rest = textAt(i);
      while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(' '), rest.size());
        if (end > 0) links.emplace_back(words_.Intern(rest.substr(0, end)), i);
        rest.remove_prefix(std::min(end + 1, rest.size()));
      }
    }
    return links;
  }

  /** The words in ascending order; the numbers in the links become places in it. */
  std::vector<std::uint32_t> Sort(std::span<std::vector<Link>> kinds) const
  {
    std::vector<std::uint32_t> order = words_.SortedNumbers();
    std::erase(order, 0U);
    std::vector<std::uint32_t> places(words_.Count());
    for (std::uint32_t i = 0; i < order.size(); ++i) places[order[i]] = i;
    for (std::vector<Link>& links : kinds) {
      for (Link& link : links) link.first = places[link.first];
      std::sort(links.begin(), links.end());
      links.erase(std::unique(links.begin(), links.end()), links.end());
    }
    return order;
  }

  std::string_view At(std::uint32_t number) const { return words_.At(number); }

 private:
  StringPool words_;
};

/** @param links  ascending */
void AppendLists(SectionWriter& writer, std::uint32_t count, const std::vector<Link>& links)
{
  std::size_t start = 0;
  for (std::uint32_t i = 0; i <= count; ++i) {
    while (start < links.size() && links[start].first < i) ++start;
    writer.AppendNumber(static_cast<std::uint32_t>(start));
  }
  for (const Link& link : links) writer.AppendNumber(link.second);
}

template <class TextAt>
void AppendPaddedTexts(SectionWriter& writer, std::uint32_t count, TextAt textAt)
{
  AppendTexts(writer, count, textAt);
  constexpr std::uint32_t kZeros = 0;
  writer.Append(&kZeros, (sizeof kZeros - writer.Length() % sizeof kZeros) % sizeof kZeros);
}

}  // namespace

void WriteBuildingNames(SectionWriter& writer, const AddressTable& table, const OrderedAddresses& ordered)
{
  const Buildings buildings = BuildingsOf(table, ordered);
  const auto size = [](const auto& list) { return static_cast<std::uint32_t>(list.size()); };
  WordCollector words;
  const auto keyAt = [&](const SortedDictionary& dictionary) {
    return [&](std::uint32_t i) { return ordered.keys.At(dictionary.texts[i]); };
  };
  const auto buildingAt = [&](std::uint32_t i) { return buildings.keys.At(buildings.order[i]); };
  std::vector<Link> kinds[] = {
      words.Add(size(ordered.streetNames.texts), keyAt(ordered.streetNames)),
      words.Add(size(ordered.localityNames.texts), keyAt(ordered.localityNames)),
      words.Add(size(buildings.order), buildingAt),
  };
  const std::vector<std::uint32_t> order = words.Sort(kinds);
  writer.Begin(layout::SectionId::BuildingNames);
  writer.AppendNumbers({size(order), size(buildings.order)});
  AppendPaddedTexts(writer, size(order), [&](std::uint32_t i) { return words.At(order[i]); });
  AppendPaddedTexts(writer, size(buildings.order), buildingAt);
  AppendLists(writer, size(buildings.order), buildings.points);
  for (const std::vector<Link>& links : kinds) AppendLists(writer, size(order), links);
  writer.End();
  std::vector<std::uint32_t> hashes;
  for (std::uint32_t i = 0; i < size(buildings.order); ++i) hashes.push_back(CanonicalName(buildingAt(i)).Hash());
  WriteNameHash(writer, layout::SectionId::BuildingNameHash, hashes);
}

}  // namespace arf
