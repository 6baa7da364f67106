#include "arf/build/hint_writer.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <string_view>
#include <vector>

#include "arf/hint/hint_layout.h"

namespace arf {
namespace {

using hint_layout::kLeafNames;
using hint_layout::kMaxListed;
using hint_layout::Node;

/** The tree of one dictionary; its lists are put behind those that are there already. */
class TreeBuilder
{
 public:
  TreeBuilder(const SortedDictionary& dictionary, const StringPool& texts, const std::vector<std::uint32_t>& weights,
              std::vector<std::uint32_t>& lists)
      : dictionary_(dictionary), texts_(texts), weights_(weights), lists_(lists)
  {
  }

  /** The nodes level by level, so that the children of a node stand together. */
  std::vector<Node> Run()
  {
    const auto names = static_cast<std::uint32_t>(dictionary_.texts.size());
    if (names > 0) Add(0, names, 0);
    for (std::size_t i = 0; i < nodes_.size(); ++i) Split(i);
    return std::move(nodes_);
  }

 private:
  std::string_view Name(std::uint32_t name) const { return texts_.At(dictionary_.texts[name]); }

  std::uint32_t FirstPosting(std::uint32_t name) const
  {
    return name < dictionary_.firstPosting.size() ? dictionary_.firstPosting[name]
                                                  : static_cast<std::uint32_t>(dictionary_.postings.size());
  }

  void Add(std::uint32_t first, std::uint32_t count, std::uint8_t letter)
  {
    Node node;
    node.firstName = first;
    node.nameCount = count;
    node.letter = letter;
    node.depth = CommonLength(Name(first), Name(first + count - 1));
    List(node);
    nodes_.push_back(node);
  }

  /** Names have at most 255 bytes. */
  static std::uint8_t CommonLength(std::string_view a, std::string_view b)
  {
    const std::size_t length = std::min(a.size(), b.size());
    const auto end = a.begin() + static_cast<std::ptrdiff_t>(length);
    return static_cast<std::uint8_t>(std::mismatch(a.begin(), end, b.begin()).first - a.begin());
  }

  /** Lists the largest of what bears the node's names; of equal ones the first. */
  void List(Node& node)
  {
    const auto begin = dictionary_.postings.begin() + FirstPosting(node.firstName);
    const auto end = dictionary_.postings.begin() + FirstPosting(node.firstName + node.nameCount);
    if (end - begin <= static_cast<std::ptrdiff_t>(kMaxListed)) return;
    node.listed = static_cast<std::uint8_t>(kMaxListed);
    node.firstListed = static_cast<std::uint32_t>(lists_.size());
    largest_.resize(kMaxListed);
    std::partial_sort_copy(begin, end, largest_.begin(), largest_.end(), [this](std::uint32_t a, std::uint32_t b) {
      return weights_[a] != weights_[b] ? weights_[a] > weights_[b] : a < b;
    });
    lists_.insert(lists_.end(), largest_.begin(), largest_.end());
  }

  void Split(std::size_t index)
  {
    const Node node = nodes_[index];
    if (node.nameCount == 1 || (node.nameCount <= kLeafNames && node.listed == 0)) return;
    const auto firstChild = static_cast<std::uint32_t>(nodes_.size());
    const std::uint32_t end = node.firstName + node.nameCount;
    for (std::uint32_t first = node.firstName; first < end;) {
      const std::uint8_t letter = LetterAt(first, node.depth);
      std::uint32_t next = first + 1;
      while (next < end && LetterAt(next, node.depth) == letter) ++next;
      Add(first, next - first, letter);
      first = next;
    }
    nodes_[index].firstChild = firstChild;
    nodes_[index].childCount = static_cast<std::uint8_t>(nodes_.size() - firstChild);
  }

  std::uint8_t LetterAt(std::uint32_t name, std::size_t place) const
  {
    const std::string_view text = Name(name);
    return place < text.size() ? static_cast<std::uint8_t>(text[place]) : 0;
  }

  const SortedDictionary& dictionary_;
  const StringPool& texts_;
  const std::vector<std::uint32_t>& weights_;
  std::vector<std::uint32_t>& lists_;
  std::vector<Node> nodes_;
  std::vector<std::uint32_t> largest_;
};

/** How many addresses each street has. */
std::vector<std::uint32_t> StreetWeights(const AddressTable& table, const OrderedAddresses& ordered)
{
  std::vector<std::uint32_t> weights = ordered.firstRows;
  weights.push_back(static_cast<std::uint32_t>(table.rows.size()));
  std::adjacent_difference(weights.begin(), weights.end(), weights.begin());
  weights.erase(weights.begin());
  return weights;
}

/** How many addresses each locality has. */
std::vector<std::uint32_t> LocalityWeights(const AddressTable& table, const std::vector<std::uint32_t>& streetWeights)
{
  std::vector<std::uint32_t> weights(table.localities.size());
  for (std::size_t i = 0; i < streetWeights.size(); ++i) weights[table.streets[i].locality] += streetWeights[i];
  return weights;
}

/** For each kind of postal deliveries the largest streets of it; kinds as the input first has them. */
void WritePostalLists(SectionWriter& writer, const AddressTable& table, const std::vector<std::uint32_t>& weights)
{
  std::map<std::uint32_t, std::vector<std::uint32_t>> kinds;
  for (std::uint32_t i = 0; i < table.streets.size(); ++i)
    if (table.streets[i].isPostal) kinds[table.streets[i].type].push_back(i);
  std::vector<std::uint32_t> starts;
  std::vector<std::uint32_t> lists;
  for (auto& [type, streets] : kinds) {
    starts.push_back(static_cast<std::uint32_t>(lists.size()));
    std::sort(streets.begin(), streets.end(), [&](std::uint32_t a, std::uint32_t b) {
      return weights[a] != weights[b] ? weights[a] > weights[b] : a < b;
    });
    streets.resize(std::min(streets.size(), hint_layout::kMaxPostalListed));
    lists.insert(lists.end(), streets.begin(), streets.end());
  }
  starts.push_back(static_cast<std::uint32_t>(lists.size()));
  writer.Begin(layout::SectionId::PostalLists);
  writer.AppendNumber(static_cast<std::uint32_t>(kinds.size()));
  writer.AppendNumbers(starts);
  writer.AppendNumbers(lists);
  writer.End();
}

void AppendNodes(SectionWriter& writer, const std::vector<Node>& nodes)
{
  for (const Node& node : nodes) {
    for (const std::uint32_t number : {node.firstName, node.nameCount, node.firstChild, node.firstListed})
      writer.AppendNumber(number);
    for (const std::uint8_t byte : {node.childCount, node.listed, node.depth, node.letter})
      writer.Append(&byte, sizeof byte);
  }
}

}  // namespace

void WriteHints(SectionWriter& writer, const AddressTable& table, const OrderedAddresses& ordered)
{
  const std::vector<std::uint32_t> streetWeights = StreetWeights(table, ordered);
  const std::vector<std::uint32_t> localityWeights = LocalityWeights(table, streetWeights);
  std::vector<std::uint32_t> lists;
  const std::vector<Node> streets = TreeBuilder(ordered.streetNames, ordered.keys, streetWeights, lists).Run();
  const std::vector<Node> localities = TreeBuilder(ordered.localityNames, ordered.keys, localityWeights, lists).Run();
  writer.Begin(layout::SectionId::HintTree);
  for (const std::size_t number : {streets.size(), localities.size(), std::size_t{0}, std::size_t{0}})
    writer.AppendNumber(static_cast<std::uint32_t>(number));
  AppendNodes(writer, streets);
  AppendNodes(writer, localities);
  writer.End();
  writer.Begin(layout::SectionId::HintWeights);
  writer.AppendNumbers(lists);
  writer.End();
  WritePostalLists(writer, table, streetWeights);
}

}  // namespace arf
