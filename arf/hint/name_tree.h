/**
 * Finds the names of one dictionary of a database by how they begin, also when one letter was mistyped, and the largest
 * streets or localities that bear them. A view of the file; reading never fails, a section that contradicts itself
 * gives fewer or other names.
 */
#ifndef QXPAF_ARF_HINT_NAME_TREE_H
#define QXPAF_ARF_HINT_NAME_TREE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "arf/format/database.h"
#include "arf/hint/hint_layout.h"

namespace arf {

/** Neighbouring names of a dictionary. */
struct NameSpan
{
  std::uint32_t first = 0;
  std::uint32_t count = 0;
  /** The largest that bear these names, descending; empty where so few bear them that the postings themselves serve. */
  std::span<const std::uint32_t> largest;
};

/** Letters; shorter texts are too little to see a typing error in. */
inline constexpr std::size_t kLeastMistyped = 4;

/** Names of more words than this are not looked for. */
inline constexpr std::size_t kMaxNameWords = 6;

/**
 * A text in which a name has one typing error: a letter too many, missing, wrong, or two swapped. The name is the whole
 * text or its first words; what may be asked for together is found by one walk.
 */
struct TypedName
{
  std::string_view text;
  std::array<std::size_t, kMaxNameWords> lengths{};  ///< bytes that the name may be, ascending
  std::size_t lengthCount = 0;
  bool open = false;  ///< the whole text is the beginning of a name, and its last letter neither wrong nor too many
  bool sureStart = false;  ///< the first letter is right

  /** Another length; the text ends with the longest. */
  void Add(std::string_view beginning)
  {
    text = beginning;
    if (lengthCount < kMaxNameWords) lengths[lengthCount++] = beginning.size();
  }
};

class NameTree
{
 public:
  /** Both trees of a database; empty ones where it has no hint sections. The database must outlive them. */
  static NameTree OfStreets(const Database& database);
  static NameTree OfLocalities(const Database& database);

  std::optional<NameSpan> All() const;
  /** The names that begin with `prefix`. */
  std::optional<NameSpan> Beginning(std::string_view prefix) const;
  /** The one name that is `name`. */
  std::optional<NameSpan> Named(std::string_view name) const;

  /** Names that some of a text may be. */
  struct Found
  {
    NameSpan names;
    std::size_t length = 0;  ///< bytes of the text
  };
  static constexpr std::size_t kMaxSpans = 24;  ///< for each length
  using FoundList = std::array<Found, 2 * kMaxSpans>;

  /**
   * @return how many spans there are; what there is no room for is left out. Names without an error are among them only
   *         beside others.
   */
  std::size_t Mistyped(const TypedName& typed, FoundList& found) const;

  /** A name in the form of the dictionary. */
  std::string_view Name(std::uint32_t index) const { return (database_->*name_)(index); }

 private:
  class Walk;
  using Node = hint_layout::Node;

  using NameMember = std::string_view (Database::*)(std::uint32_t) const;
  NameTree(const Database& database, ByteReader nodes, NameMember name);

  std::optional<Node> NodeAt(std::uint64_t index) const;
  std::optional<Node> ChildBy(const Node& node, char letter) const;
  NameSpan SpanOf(const Node& node) const;
  NameSpan PartOf(const Node& node, std::uint32_t first, std::uint32_t count) const;

  const Database* database_;
  ByteReader nodes_;
  std::span<const std::uint32_t> lists_;
  NameMember name_;
};

/** Whether one typing error turns `name`, or if `open` a beginning of it, into `typed`; also true without an error. */
bool IsMistyped(std::string_view name, std::string_view typed, bool open);

}  // namespace arf

#endif
