/** The names that words of a text may be with a typing error in them; each word is looked at once. */
#ifndef QXPAF_ARF_HINT_MISTYPED_NAMES_H
#define QXPAF_ARF_HINT_MISTYPED_NAMES_H

#include <array>
#include <cstddef>
#include <span>

#include "arf/hint/name_tree.h"
#include "arf/hint/typed_text.h"

namespace arf {

/** What to look for: a name that begins with the word words.first and ends with any up to words.last. */
TypedName NameWithin(const TypedText& typed, WordRange words);

class MistypedNames
{
 public:
  /** Forgets all; to be called for each text. */
  void Clear() { count_ = 0; }

  /**
   * NameTree::Mistyped of NameWithin; valid until the next call.
   *
   * @param sureStart  the first letter is right
   */
  std::span<const NameTree::Found> Of(const NameTree& tree, const TypedText& typed, WordRange words, bool sureStart);

 private:
  struct Entry
  {
    WordRange words;
    bool sureStart = false;
    NameTree::FoundList found;
    std::size_t count = 0;
  };

  static constexpr std::size_t kMaxEntries = 16;  ///< the last one is replaced when there are more
  std::array<Entry, kMaxEntries> entries_;
  std::size_t count_ = 0;
};

}  // namespace arf

#endif
