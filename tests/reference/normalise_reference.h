// A second, slow transcription of the rules of text clean-up, to compare the library with. It shares no code with the
// library's own; only letters, digits and case of non-ASCII characters are taken from the Unicode functions, which have
// tests of their own.
#ifndef QXPAF_TESTS_REFERENCE_NORMALISE_REFERENCE_H
#define QXPAF_TESTS_REFERENCE_NORMALISE_REFERENCE_H

#include <cctype>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "qxpaf/text/unicode.h"

namespace reference {

inline int Unsigned(char c)
{
  return static_cast<unsigned char>(c);
}

// ---- Roman numerals
// ---------------------------------------------------------------------------------------------------

inline int RomanPart(const std::string& s, std::size_t& at, const std::vector<std::string>& table, int unit)
{
  for (int position = 8; position >= 0; --position) {
    const std::string& form = table[static_cast<std::size_t>(position)];
    if (s.compare(at, form.size(), form) == 0) {
      at += form.size();
      return (position + 1) * unit;
    }
  }
  return 0;
}

inline int ReadRomanNumeral(std::string s)
{
  static const std::vector<std::string> hundreds = {"c", "cc", "ccc", "cd", "d", "dc", "dcc", "dccc", "cm"};
  static const std::vector<std::string> tens = {"x", "xx", "xxx", "xl", "l", "lx", "lxx", "lxxx", "xc"};
  static const std::vector<std::string> units = {"i", "ii", "iii", "iv", "v", "vi", "vii", "viii", "ix"};
  for (char& c : s) c = static_cast<char>(std::tolower(Unsigned(c)));
  std::size_t at = 0;
  int total = 0;
  while (at < s.size() && s[at] == 'm') {
    total += 1000;
    ++at;
  }
  total += RomanPart(s, at, hundreds, 100);
  total += RomanPart(s, at, tens, 10);
  total += RomanPart(s, at, units, 1);
  return at == s.size() ? total : 0;
}

inline void RomanRule(std::string& s, std::size_t first, std::size_t last)
{
  if (last - first < 2) return;
  const std::string span = s.substr(first, last - first);
  if (span.find_first_not_of("IVXLivxl") != std::string::npos) return;
  const int value = ReadRomanNumeral(span);
  if (value < 1 || value > 49) return;
  for (std::size_t i = first + 1; i < last; ++i) s[i] = static_cast<char>(std::toupper(Unsigned(s[i])));
}

// ---- Title case, one byte a character -------------------------------------------------------------------------------

inline int At(const std::string& s, std::size_t i)
{
  return i < s.size() ? Unsigned(s[i]) : 0;
}

inline bool IsWordByte(int c)
{
  return std::isalpha(c) || std::isdigit(c) || c == '\'';
}

inline bool StartsWordAfterApostrophe(const std::string& s, std::size_t i, std::size_t w)
{
  const bool a1 = IsWordByte(At(s, i + 1));
  const bool a2 = IsWordByte(At(s, i + 2));
  if (!(a1 && a2) && !(i - w < 2)) return false;
  const int u1 = std::toupper(At(s, i + 1));
  const int u2 = std::toupper(At(s, i + 2));
  if ((u1 == 'L' && u2 == 'L') || (u1 == 'V' && u2 == 'E') || (u1 == 'R' && u2 == 'E')) return IsWordByte(At(s, i + 3));
  return true;
}

inline std::string TitleCase(std::string s)
{
  std::size_t w = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    const int c = Unsigned(s[i]);
    if (std::isalpha(c)) {
      const bool upper = i == w || (i == w + 2 && s[i - 2] == 'M' && s[i - 1] == 'c');
      s[i] = static_cast<char>(upper ? std::toupper(c) : std::tolower(c));
    } else if (c == '\'') {
      if (StartsWordAfterApostrophe(s, i, w)) w = i + 1;
    } else if (!std::isdigit(c)) {
      RomanRule(s, w, i);
      w = i + 1;
    }
  }
  RomanRule(s, w, s.size());
  return s;
}

// ---- Title case, UTF-8
// ------------------------------------------------------------------------------------------------

struct Cell
{
  long character;
  std::string bytes;
};

inline std::string Utf8Bytes(long c)
{
  const auto byte = [](long value) { return static_cast<char>(value); };
  if (c < 0x80) return {byte(c)};
  if (c < 0x800) return {byte(0xC0 + c / 64), byte(0x80 + c % 64)};
  if (c < 0x10000) return {byte(0xE0 + c / 4096), byte(0x80 + c / 64 % 64), byte(0x80 + c % 64)};
  return {byte(0xF0 + c / 262144), byte(0x80 + c / 4096 % 64), byte(0x80 + c / 64 % 64), byte(0x80 + c % 64)};
}

inline Cell CellAt(const std::string& s, std::size_t at)
{
  const int lead = At(s, at);
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC0 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF8 ? 4
                                           : 0;
  long value = length == 1 ? lead : length == 2 ? lead % 32 : length == 3 ? lead % 16 : lead % 8;
  bool valid = length > 0;
  for (std::size_t i = 1; i < length; ++i) {
    const int next = At(s, at + i);
    if (next < 0x80 || next > 0xBF) {
      valid = false;
      break;
    }
    value = value * 64 + next % 64;
  }
  if (!valid || value > 0x10FFFF) return {lead, s.substr(at, 1)};
  return {value, s.substr(at, length)};
}

inline bool IsAlphaCell(const Cell& c)
{
  return UnicodeIsAlpha(static_cast<wchar_t>(c.character));
}

inline bool IsDigitCell(const Cell& c)
{
  return UnicodeIsDigit(static_cast<wchar_t>(c.character));
}

inline bool IsApostropheCell(const Cell& c)
{
  return c.character == 0x27 || c.character == 0x2019;
}

inline void Recase(Cell& c, bool upper)
{
  const auto old = static_cast<wchar_t>(c.character);
  const long changed = upper ? UnicodeToUpper(old) : UnicodeToLower(old);
  if (changed == c.character) return;
  const std::string bytes = Utf8Bytes(changed);
  if (bytes.size() == c.bytes.size()) c = {changed, bytes};
}

inline bool StartsWordAfterApostrophe(const std::vector<Cell>& cells, std::size_t i, std::size_t w)
{
  const auto isWord = [&](std::size_t k) {
    return k < cells.size() && (IsAlphaCell(cells[k]) || IsDigitCell(cells[k]) || IsApostropheCell(cells[k]));
  };
  const auto upper = [&](std::size_t k) {
    return k < cells.size() ? UnicodeToUpper(static_cast<wchar_t>(cells[k].character)) : L'\0';
  };
  if (!(isWord(i + 1) && isWord(i + 2)) && i - w >= 2) return false;
  const std::wstring two = {upper(i + 1), upper(i + 2)};
  if (two == L"LL" || two == L"VE" || two == L"RE") return isWord(i + 3);
  return true;
}

inline std::string Join(const std::vector<Cell>& cells, std::size_t first, std::size_t last)
{
  std::string out;
  for (std::size_t i = first; i < last; ++i) out += cells[i].bytes;
  return out;
}

inline std::string TitleCaseUtf8(const std::string& s)
{
  std::vector<Cell> cells;
  for (std::size_t at = 0; at < s.size(); at += cells.back().bytes.size()) cells.push_back(CellAt(s, at));
  std::size_t w = 0;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    Cell& c = cells[i];
    if (IsAlphaCell(c)) {
      const bool mc = i == w + 2 && cells[i - 2].character == 'M' && cells[i - 1].character == 'c';
      Recase(c, i == w || mc);
    } else if (IsApostropheCell(c)) {
      if (StartsWordAfterApostrophe(cells, i, w)) w = i + 1;
    } else if (!IsDigitCell(c)) {
      // The span that ends in a separator is never a numeral.
      w = i + 1;
    }
  }
  std::string tail = Join(cells, w, cells.size());
  RomanRule(tail, 0, tail.size());
  return Join(cells, 0, w) + tail;
}

// ---- Clean-up
// -----------------------------------------------------------------------------------------------------------

inline std::string RemoveMultipleSpaces(std::string s)
{
  for (std::size_t at = s.find("  "); at != std::string::npos; at = s.find("  ", at)) s.erase(at, 1);
  return s;
}

inline std::string RemovePunctuationForIndex(std::string s, char keep)
{
  for (char& c : s)
    if (!std::isalpha(Unsigned(c)) && !std::isdigit(Unsigned(c)) && c != keep) c = ' ';
  s = RemoveMultipleSpaces(s);
  if (!s.empty() && s.front() == ' ') s.erase(0, 1);
  if (!s.empty() && s.back() == ' ') s.pop_back();
  return s;
}

inline std::string RemoveInBrackets(std::string s)
{
  for (const char* pair : {"()", "[]", "{}"}) {
    for (;;) {
      const std::size_t open = s.rfind(pair[0]);
      if (open == std::string::npos) break;
      const std::size_t close = s.find(pair[1], open);
      if (close == std::string::npos) break;
      s.erase(open, close - open + 1);
    }
  }
  return RemoveMultipleSpaces(s);
}

inline std::string StripChars(const std::string& s, const std::string& chars)
{
  std::string out;
  for (const char c : s)
    if (chars.find(c) == std::string::npos) out += c;
  return out;
}

inline std::string Trim(const std::string& s, const std::string& set)
{
  const std::size_t first = s.find_first_not_of(set);
  if (first == std::string::npos) return {};
  return s.substr(first, s.find_last_not_of(set) - first + 1);
}

inline std::vector<std::string> Split(const std::string& s, char sep)
{
  std::vector<std::string> out(1);
  for (const char c : s) {
    if (c == sep)
      out.emplace_back();
    else
      out.back() += c;
  }
  for (std::string& piece : out) piece = Trim(piece, " ");
  return out;
}

// ---- Dates
// ------------------------------------------------------------------------------------------------------------

struct Date
{
  bool valid;
  int year, month, day;

  bool operator==(const Date& other) const
  {
    return valid == other.valid && year == other.year && month == other.month && day == other.day;
  }
};

inline long DecimalUpToIntMax(const std::string& digits)
{
  long value = 0;
  for (const char c : digits) {
    value = value * 10 + (c - '0');
    if (value > 2147483647) value = 2147483647;
  }
  return value;
}

inline int MonthNumber(std::string word)
{
  static const std::string names = "janfebmaraprmayjunjulaugsepoctnovdec";
  if (word.size() < 3) return 0;
  for (char& c : word) c = static_cast<char>(std::tolower(Unsigned(c)));
  for (int i = 0; i < 12; ++i)
    if (names.compare(static_cast<std::size_t>(i) * 3, 3, word, 0, 3) == 0) return i + 1;
  return 0;
}

// The year given is what a failure leaves.
inline Date ReadDateDMY(const std::string& s, int year)
{
  Date date = {false, year, 0, 31};
  std::vector<int> numbers;
  std::size_t at = 0;
  for (int tokens = 0; tokens < 3; ++tokens) {
    while (at < s.size() && !std::isalpha(At(s, at)) && !std::isdigit(At(s, at))) ++at;
    if (at == s.size()) break;
    const std::size_t start = at;
    if (std::isalpha(At(s, at))) {
      while (std::isalpha(At(s, at))) ++at;
      if (date.month != 0) return date;
      date.month = MonthNumber(s.substr(start, at - start));
      if (date.month == 0) return date;
    } else {
      while (std::isdigit(At(s, at))) ++at;
      numbers.push_back(static_cast<int>(DecimalUpToIntMax(s.substr(start, at - start))));
      if (numbers.back() == 0) return date;
    }
  }
  const bool named = date.month != 0;
  if (numbers.empty()) return date;
  if (numbers.size() == 3) {
    date = {true, numbers[2], numbers[1], numbers[0]};
  } else if (numbers.size() == 2 && named) {
    date = {true, numbers[1], date.month, numbers[0]};
  } else if (numbers.size() == 2) {
    date = {true, numbers[1], numbers[0], 31};
  } else if (named) {
    date = {true, numbers[0], date.month, 31};
  } else {
    date = {true, numbers[0], 12, 31};
  }
  if (date.year <= 99) date.year += 2000;
  return date;
}

}  // namespace reference

#endif
