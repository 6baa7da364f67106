/** Lists of written geographical codes: entries "kind=code" separated by commas or semicolons. */
#ifndef QXPAF_ARF_SEARCH_CODE_LIST_H
#define QXPAF_ARF_SEARCH_CODE_LIST_H

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "arf/format/ascii.h"
#include "arf/search/geographical_code.h"

namespace arf {

inline constexpr std::size_t kMaxCodes = 64;

struct WrittenCode
{
  std::string_view kind;
  std::string_view code;
};

/** Takes the next entry off a list, without the white space around it; empty between two separators. */
inline std::string_view TakeListEntry(std::string_view& list)
{
  const std::size_t end = std::min(list.find_first_of(",;"), list.size());
  const std::string_view entry = Trimmed(list.substr(0, end));
  list.remove_prefix(std::min(end + 1, list.size()));
  return entry;
}

inline WrittenCode SplitCode(std::string_view entry)
{
  const std::size_t equals = entry.find('=');
  if (equals == std::string_view::npos) return {};
  return {Trimmed(entry.substr(0, equals)), Trimmed(entry.substr(equals + 1))};
}

}  // namespace arf

#endif
