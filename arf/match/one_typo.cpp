#include "arf/match/one_typo.h"

#include <algorithm>
#include <utility>

namespace arf {

bool IsOneTypoApart(std::string_view a, std::string_view b)
{
  if (a.size() > b.size()) std::swap(a, b);
  if (b.size() - a.size() > 1) return false;
  const auto difference = static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin()).first - a.begin());
  a.remove_prefix(difference);
  b.remove_prefix(difference);
  if (a.size() < b.size()) return a == b.substr(1);
  if (a.empty()) return false;
  if (a.substr(1) == b.substr(1)) return true;
  return a.size() >= 2 && a[0] == b[1] && a[1] == b[0] && a.substr(2) == b.substr(2);
}

}  // namespace arf
