/** For each kind of postal deliveries, the largest places that have it. A view of the file; reading never fails. */
#ifndef QXPAF_ARF_HINT_POSTAL_LISTS_H
#define QXPAF_ARF_HINT_POSTAL_LISTS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "arf/format/database.h"
#include "arf/hint/hint_layout.h"

namespace arf {

class PostalLists
{
 public:
  /** The database must outlive the lists; without the section there are none. */
  explicit PostalLists(const Database& database)
  {
    const std::span<const std::uint32_t> words = database.Section(layout::SectionId::PostalLists).Words();
    if (words.empty() || words.size() - 1 <= words[0]) return;
    starts_ = words.subspan(1, std::size_t{words[0]} + 1);
    streets_ = words.subspan(1 + starts_.size());
  }

  std::size_t Count() const { return starts_.empty() ? 0 : starts_.size() - 1; }

  /** Streets of one kind, the largest first. */
  std::span<const std::uint32_t> At(std::size_t kind) const
  {
    const std::size_t first = std::min<std::size_t>(starts_[kind], streets_.size());
    const std::size_t end = std::clamp<std::size_t>(starts_[kind + 1], first, streets_.size());
    return streets_.subspan(first, std::min(end - first, hint_layout::kMaxPostalListed));
  }

 private:
  std::span<const std::uint32_t> starts_;
  std::span<const std::uint32_t> streets_;
};

}  // namespace arf

#endif
