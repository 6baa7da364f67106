/**
 * The configuration file read in the plainest way: the whole content at once, character by character, no code shared
 * with the library. Slow and obvious; the library must agree with it on any content.
 */
#ifndef QXPAF_TESTS_UNIT_CONFIG_PLAIN_CONFIG_H
#define QXPAF_TESTS_UNIT_CONFIG_PLAIN_CONFIG_H

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace plain {

using std::string;
using Pairs = std::vector<std::pair<string, string>>;

inline bool IsBlank(char c)
{
  return c == ' ' || (c >= '\t' && c <= '\r');
}

inline string Lower(string text)
{
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  return text;
}

inline bool Begins(const string& line, const string& start)
{
  return Lower(line).rfind(Lower(start), 0) == 0;
}

inline string WithSlashes(string key)
{
  for (char& c : key) {
    if (c == '\\') c = '/';
  }
  return key;
}

/** One piece as a line: up to a zero byte, without line end, without leading white space. */
inline string Line(string piece)
{
  piece = piece.c_str();
  if (!piece.empty() && piece.back() == '\n') {
    piece.pop_back();
    if (!piece.empty() && piece.back() == '\r') piece.pop_back();
  }
  while (!piece.empty() && IsBlank(piece[0])) piece.erase(0, 1);
  return piece;
}

inline std::vector<string> Lines(const string& content, std::size_t longest)
{
  std::vector<string> lines;
  string piece;
  for (const char c : content) {
    piece += c;
    if (c == '\n' || piece.size() == longest) {
      lines.push_back(Line(piece));
      piece.clear();
    }
  }
  if (!piece.empty()) lines.push_back(Line(piece));
  return lines;
}

inline string NormalKey(const string& key)
{
  const string slashes = WithSlashes(key);
  return slashes.empty() || slashes.back() == '/' ? slashes : slashes + "/";
}

/** For the reader class. */
inline std::optional<string> Value(const string& content, const string& key, const string& name)
{
  const string start = NormalKey(key) + name + "=";
  for (const string& line : Lines(content, 1023)) {
    if (Begins(line, start)) return line.substr(start.size());
  }
  return std::nullopt;
}

inline Pairs ValuesBelow(const std::vector<string>& lines, const string& start)
{
  Pairs pairs;
  for (const string& line : lines) {
    if (!Begins(line, start)) continue;
    const string rest = line.substr(start.size());
    const std::size_t equals = rest.find('=');
    if (equals == string::npos) continue;
    const string name = rest.substr(0, equals);
    if (name.find('/') == string::npos) pairs.emplace_back(name, rest.substr(equals + 1));
  }
  return pairs;
}

inline Pairs Values(const string& content, const string& key)
{
  return ValuesBelow(Lines(content, 1023), NormalKey(key));
}

inline std::vector<string> Keys(const string& content, const string& key)
{
  const string start = NormalKey(key);
  std::set<string> keys;
  for (const string& line : Lines(content, 1023)) {
    if (!Begins(line, start) || line.size() == start.size()) continue;
    const string rest = line.substr(start.size());
    const std::size_t slash = rest.find('/');
    const std::size_t equals = rest.find('=');
    if (slash == string::npos) continue;
    if (equals == string::npos || slash < equals) keys.insert(rest.substr(0, slash));
  }
  return {keys.begin(), keys.end()};
}

/** For the registry-style accessors. */
inline std::optional<string> RegistryValue(const string& content, const string& key, const string& name)
{
  if (name.find('/') != string::npos) return std::nullopt;
  const string path = WithSlashes(key) + (key.empty() ? "" : "/") + name;
  for (const string& line : Lines(content, 255)) {
    const std::size_t equals = line.find('=');
    if (equals == string::npos || equals != path.size()) continue;
    if (Lower(line.substr(0, equals)) == Lower(path)) return line.substr(equals + 1);
  }
  return std::nullopt;
}

inline Pairs RegistryValues(const string& content, const string& key)
{
  return ValuesBelow(Lines(content, 255), WithSlashes(key) + "/");
}

}  // namespace plain

#endif
