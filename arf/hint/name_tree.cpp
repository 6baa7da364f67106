#include "arf/hint/name_tree.h"

#include <algorithm>
#include <cstring>

#include "arf/format/fold.h"
#include "arf/format/partition_point.h"

namespace arf {

using layout::SectionId;

namespace {

constexpr std::size_t kLongestTyped = kMaxNameLength;

ByteReader NodesOf(const Database& database, bool localities)
{
  const ByteReader section = database.Section(SectionId::HintTree);
  const std::uint64_t streetNodes = section.U32At(hint_layout::kStreetNodes);
  const std::uint64_t localityNodes = section.U32At(hint_layout::kLocalityNodes);
  const std::uint64_t streetBytes = streetNodes * hint_layout::kNodeSize;
  if (!localities) return section.Part(hint_layout::kHeaderSize, streetBytes);
  return section.Part(hint_layout::kHeaderSize + streetBytes, localityNodes * hint_layout::kNodeSize);
}

}  // namespace

NameTree NameTree::OfStreets(const Database& database)
{
  return {database, NodesOf(database, false), &Database::StreetName};
}

NameTree NameTree::OfLocalities(const Database& database)
{
  return {database, NodesOf(database, true), &Database::LocalityName};
}

NameTree::NameTree(const Database& database, ByteReader nodes, NameMember name)
    : database_(&database), nodes_(nodes), lists_(database.Section(SectionId::HintWeights).Words()), name_(name)
{
}

std::optional<NameTree::Node> NameTree::NodeAt(std::uint64_t index) const
{
  const ByteReader bytes = nodes_.Part(index * hint_layout::kNodeSize, hint_layout::kNodeSize);
  if (bytes.Size() == 0) return std::nullopt;
  Node node;
  std::memcpy(&node, bytes.Data(), sizeof node);
  return node;
}

std::optional<NameTree::Node> NameTree::ChildBy(const Node& node, char letter) const
{
  const auto wanted = static_cast<std::uint8_t>(letter);
  const ByteReader children = nodes_.Part(std::uint64_t{node.firstChild} * hint_layout::kNodeSize,
                                          std::uint64_t{node.childCount} * hint_layout::kNodeSize);
  if (children.Size() == 0) return std::nullopt;
  const std::uint8_t* letters = children.Data() + offsetof(Node, letter);
  const std::uint32_t place =
      PartitionPoint(0, node.childCount, [&](std::uint32_t i) { return letters[i * hint_layout::kNodeSize] < wanted; });
  if (place == node.childCount || letters[place * hint_layout::kNodeSize] != wanted) return std::nullopt;
  const std::optional<Node> child = NodeAt(std::uint64_t{node.firstChild} + place);
  // Walks end because each step leads deeper; a file that was tampered with may say otherwise.
  const bool isBelow = child && (child->IsLeaf() || child->depth > node.depth);
  return isBelow ? child : std::nullopt;
}

NameSpan NameTree::SpanOf(const Node& node) const
{
  NameSpan span{node.firstName, node.nameCount, {}};
  if (node.firstListed <= lists_.size() && node.listed <= lists_.size() - node.firstListed)
    span.largest = lists_.subspan(node.firstListed, node.listed);
  return span;
}

/** The list belongs to the whole node; a part of one that has a list does not occur in files that were not tampered
 *  with. */
NameSpan NameTree::PartOf(const Node& node, std::uint32_t first, std::uint32_t count) const
{
  return count == node.nameCount ? SpanOf(node) : NameSpan{first, count, {}};
}

std::optional<NameSpan> NameTree::All() const
{
  const std::optional<Node> root = NodeAt(0);
  return root ? std::optional(SpanOf(*root)) : std::nullopt;
}

std::optional<NameSpan> NameTree::Beginning(std::string_view prefix) const
{
  std::optional<Node> node = NodeAt(0);
  while (node && prefix.size() > node->depth && !node->IsLeaf()) node = ChildBy(*node, prefix[node->depth]);
  if (!node) return std::nullopt;
  if (prefix.size() <= node->depth)
    return Name(node->firstName).starts_with(prefix) ? std::optional(SpanOf(*node)) : std::nullopt;
  const std::uint32_t first =
      PartitionPoint(node->firstName, node->nameCount, [&](std::uint32_t name) { return Name(name) < prefix; });
  const std::uint32_t left = node->nameCount - (first - node->firstName);
  const std::uint32_t end =
      PartitionPoint(first, left, [&](std::uint32_t name) { return Name(name).starts_with(prefix); });
  return end > first ? std::optional(PartOf(*node, first, end - first)) : std::nullopt;
}

std::optional<NameSpan> NameTree::Named(std::string_view name) const
{
  std::optional<Node> node = NodeAt(0);
  while (node && name.size() >= node->depth && !node->IsLeaf())
    node = ChildBy(*node, name.size() > node->depth ? name[node->depth] : '\0');
  if (!node || !node->IsLeaf()) return std::nullopt;
  const std::uint32_t index =
      PartitionPoint(node->firstName, node->nameCount, [&](std::uint32_t i) { return Name(i) < name; });
  if (index - node->firstName >= node->nameCount || Name(index) != name) return std::nullopt;
  return PartOf(*node, index, 1);
}

bool IsMistyped(std::string_view name, std::string_view typed, bool open)
{
  const std::size_t shorter = std::min(name.size(), typed.size());
  const auto end = typed.begin() + static_cast<std::ptrdiff_t>(shorter);
  const auto same = static_cast<std::size_t>(std::mismatch(typed.begin(), end, name.begin()).first - typed.begin());
  name.remove_prefix(same);
  typed.remove_prefix(same);
  const auto continues = [open](std::string_view rest, std::string_view typedRest) {
    return open ? rest.starts_with(typedRest) : rest == typedRest;
  };
  if (continues(name, typed)) return true;
  const auto behind = [](std::string_view text, std::size_t count) {
    return text.substr(std::min(count, text.size()));
  };
  const bool mayReplace = !typed.empty() && (!open || typed.size() > 1);
  if (mayReplace && continues(name, behind(typed, 1))) return true;
  if (name.empty()) return false;
  if (mayReplace && continues(behind(name, 1), behind(typed, 1))) return true;
  if (continues(behind(name, 1), typed)) return true;
  const bool isSwapped = name.size() > 1 && typed.size() > 1 && name[0] == typed[1] && name[1] == typed[0];
  return isSwapped && continues(behind(name, 2), behind(typed, 2));
}

/** One search with a typing error: down the tree, with the error put where a name first differs from the text. */
class NameTree::Walk
{
 public:
  Walk(const NameTree& tree, const TypedName& rules, FoundList& found)
      : tree_(tree), typed_(rules.text), rules_(rules), found_(found)
  {
  }

  std::size_t Run()
  {
    if (const std::optional<Node> root = tree_.NodeAt(0)) Visit(*root, {});
    return count_;
  }

 private:
  static constexpr int kMaxVisits = 4096;  ///< no name of any real database comes near it

  /** How far name and text have been compared. */
  struct Place
  {
    std::size_t inName = 0;
    std::size_t inTyped = 0;
    bool erred = false;
    char swapped = '\0';  ///< what the next letter must be, because it was typed before the last one
  };

  void Visit(const Node& node, const Place& at)
  {
    if (++visits_ > kMaxVisits) return;
    if (node.IsLeaf()) return VisitLeaf(node);
    if (rules_.open && at.inTyped >= typed_.size() && at.swapped == '\0') {
      if (at.erred) Add(tree_.SpanOf(node), typed_.size());
      return;
    }
    if (at.inName < node.depth) {
      const std::string_view name = tree_.Name(node.firstName);
      if (at.inName < name.size()) Step(node, at, name[at.inName]);
      return;
    }
    if (MayErr(at)) return VisitChildren(node, at);
    VisitChildBy(node, at, OnlyLetter(at));
    if (IsInnerEnd(at)) VisitChildBy(node, at, '\0');
  }

  bool MayErr(const Place& at) const { return !at.erred && !(rules_.sureStart && at.inName == 0); }

  /** What the name must go on with when it has no error here; 0: it must end. */
  char OnlyLetter(const Place& at) const
  {
    if (at.swapped != '\0') return at.swapped;
    return at.inTyped < typed_.size() ? typed_[at.inTyped] : '\0';
  }

  /** Whether the name may end here although the text goes on. */
  bool IsInnerEnd(const Place& at) const
  {
    const auto end = rules_.lengths.begin() + static_cast<std::ptrdiff_t>(rules_.lengthCount);
    return at.swapped == '\0' && at.inTyped < typed_.size() &&
           std::find(rules_.lengths.begin(), end, at.inTyped) != end;
  }

  void VisitChildBy(const Node& node, const Place& at, char letter)
  {
    if (const std::optional<Node> child = tree_.ChildBy(node, letter)) VisitChild(*child, at);
  }

  void VisitChildren(const Node& node, const Place& at)
  {
    for (std::uint32_t i = 0; i < node.childCount; ++i) {
      const std::optional<Node> child = tree_.NodeAt(std::uint64_t{node.firstChild} + i);
      if (!child) return;
      VisitChild(*child, at);
    }
  }

  void VisitChild(const Node& child, const Place& at)
  {
    if (child.letter == 0)
      VisitLeaf(child);
    else
      Step(child, at, static_cast<char>(child.letter));
  }

  /** Goes on behind the letter that the names of the node have at a place. */
  void Step(const Node& node, Place at, char letter)
  {
    if (letter != OnlyLetter(at)) {
      if (MayErr(at)) StepWithError(node, at, letter);
      return;
    }
    ++at.inName;
    if (at.swapped == '\0') ++at.inTyped;
    at.swapped = '\0';
    Visit(node, at);
  }

  void StepWithError(const Node& node, Place at, char letter)
  {
    ++at.inName;
    at.erred = true;
    Visit(node, at);  // the letter is missing in the text
    const std::size_t left = typed_.size() - at.inTyped;
    if (left == 0) return;
    Place next = at;
    if (left > 1 || !rules_.open) {  // another one was typed
      next.inTyped = at.inTyped + 1;
      Visit(node, next);
    }
    if (left < 2 || typed_[at.inTyped + 1] != letter) return;
    next.inTyped = at.inTyped + 2;  // there is one too many in the text
    Visit(node, next);
    next.swapped = typed_[at.inTyped];
    Visit(node, next);
  }

  void VisitLeaf(const Node& node)
  {
    const std::uint32_t count = std::min(node.nameCount, hint_layout::kLeafNames);
    for (std::uint32_t i = 0; i < count; ++i) VisitName(node, node.firstName + i);
  }

  void VisitName(const Node& node, std::uint32_t index)
  {
    const std::string_view name = tree_.Name(index);
    for (std::size_t i = 0; i < rules_.lengthCount; ++i) {
      const std::size_t length = rules_.lengths[i];
      const bool open = rules_.open && length == typed_.size();
      const bool mayBe = name.size() + 1 >= length && (open || name.size() <= length + 1);
      if (mayBe && IsMistyped(name, typed_.substr(0, length), open)) Add(tree_.PartOf(node, index, 1), length);
    }
  }

  void Add(const NameSpan& span, std::size_t length)
  {
    const auto isKnown = [&](const Found& known) {
      return known.length == length && known.names.first <= span.first &&
             std::uint64_t{span.first} + span.count <= std::uint64_t{known.names.first} + known.names.count;
    };
    const auto end = found_.begin() + static_cast<std::ptrdiff_t>(count_);
    if (count_ == found_.size() || std::any_of(found_.begin(), end, isKnown)) return;
    const auto same = std::count_if(found_.begin(), end, [&](const Found& known) { return known.length == length; });
    if (same < static_cast<std::ptrdiff_t>(kMaxSpans)) found_[count_++] = {span, length};
  }

  const NameTree& tree_;
  std::string_view typed_;
  const TypedName& rules_;
  FoundList& found_;
  std::size_t count_ = 0;
  int visits_ = 0;
};

std::size_t NameTree::Mistyped(const TypedName& typed, FoundList& found) const
{
  if (typed.lengthCount == 0 || typed.text.size() > kLongestTyped) return 0;
  return Walk(*this, typed, found).Run();
}

}  // namespace arf
