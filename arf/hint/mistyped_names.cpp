#include "arf/hint/mistyped_names.h"

#include <algorithm>

namespace arf {

TypedName NameWithin(const TypedText& typed, WordRange words)
{
  TypedName name;
  name.open = typed.IsOpen(words);
  for (std::size_t last = words.first + 1; last <= words.last; ++last) {
    const std::string_view text = typed.Text({words.first, last});
    if (text.size() >= kLeastMistyped) name.Add(text);
  }
  return name;
}

std::span<const NameTree::Found> MistypedNames::Of(const NameTree& tree, const TypedText& typed, WordRange words,
                                                   bool sureStart)
{
  const auto end = entries_.begin() + static_cast<std::ptrdiff_t>(count_);
  const auto known = std::find_if(entries_.begin(), end, [&](const Entry& entry) {
    return entry.words.first == words.first && entry.words.last == words.last && entry.sureStart == sureStart;
  });
  if (known != end) return std::span(known->found).first(known->count);
  count_ = std::min(count_ + 1, kMaxEntries);
  Entry& entry = entries_[count_ - 1];
  entry.words = words;
  entry.sureStart = sureStart;
  TypedName name = NameWithin(typed, words);
  name.sureStart = sureStart;
  entry.count = tree.Mistyped(name, entry.found);
  return std::span(entry.found).first(entry.count);
}

}  // namespace arf
