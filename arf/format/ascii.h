/** Comparisons and trimming of ASCII texts, for names of properties and fields. */
#ifndef QXPAF_ARF_FORMAT_ASCII_H
#define QXPAF_ARF_FORMAT_ASCII_H

#include <algorithm>
#include <string_view>

namespace arf {

inline char LowerAscii(char c)
{
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline bool EqualIgnoringCase(std::string_view a, std::string_view b)
{
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

inline std::string_view Trimmed(std::string_view text)
{
  constexpr std::string_view kSpace = " \t\r\n";
  const std::size_t first = std::min(text.find_first_not_of(kSpace), text.size());
  const std::size_t last = text.find_last_not_of(kSpace);
  return last == std::string_view::npos ? std::string_view() : text.substr(first, last + 1 - first);
}

}  // namespace arf

#endif
