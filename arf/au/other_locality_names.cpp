#include "arf/au/other_locality_names.h"

#include <algorithm>

namespace arf {

std::string_view OtherLocalityNames::First(std::uint32_t locality) const
{
  std::call_once(collected_, [this] { Collect(); });
  const auto entry = std::lower_bound(entries_.begin(), entries_.end(), locality,
                                      [](const Entry& e, std::uint32_t wanted) { return e.locality < wanted; });
  return entry != entries_.end() && entry->locality == locality ? database_.LocalityAliasAt(entry->alias).name
                                                                : std::string_view();
}

void OtherLocalityNames::Collect() const
{
  const std::uint32_t count = database_.LocalityAliasCount();
  entries_.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) entries_.push_back({database_.LocalityAliasAt(i).locality, i});
  std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
    return a.locality < b.locality || (a.locality == b.locality && a.alias < b.alias);
  });
  const auto isSame = [](const Entry& a, const Entry& b) { return a.locality == b.locality; };
  entries_.erase(std::unique(entries_.begin(), entries_.end(), isSame), entries_.end());
}

}  // namespace arf
