/** Letter case of ASCII, whatever the process locale: plug-in names, country codes and options are ASCII by contract.
 */
#ifndef QXPAF_SRC_PLATFORM_ASCII_H
#define QXPAF_SRC_PLATFORM_ASCII_H

#include <algorithm>
#include <string>
#include <string_view>

namespace qxpaf {

constexpr char AsciiUpper(char c)
{
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char AsciiLower(char c)
{
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string AsciiUpper(std::string text)
{
  std::transform(text.begin(), text.end(), text.begin(), [](char c) { return AsciiUpper(c); });
  return text;
}

inline std::string AsciiLower(std::string text)
{
  std::transform(text.begin(), text.end(), text.begin(), [](char c) { return AsciiLower(c); });
  return text;
}

constexpr bool EqualIgnoringCase(std::string_view a, std::string_view b)
{
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return AsciiUpper(x) == AsciiUpper(y); });
}

constexpr bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix)
{
  return text.size() >= prefix.size() && EqualIgnoringCase(text.substr(0, prefix.size()), prefix);
}

}  // namespace qxpaf

#endif
