// A second, slow transcription of case, classes and accents, step by step on growing and shrinking strings, to compare
// the library with. It shares neither code nor tables with the library.
#ifndef QXPAF_TESTS_REFERENCE_UNICODE_REFERENCE_H
#define QXPAF_TESTS_REFERENCE_UNICODE_REFERENCE_H

#include <algorithm>
#include <cstring>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "reference/unicode_rows.h"

namespace reference {

using Mapping = std::map<long, long>;

template <std::size_t kRuns>
Mapping MappingOf(const Run (&runs)[kRuns])
{
  Mapping mapping;
  for (const Run& run : runs)
    for (int c = run.first; c <= run.last; c += run.step) mapping[c] = c + run.delta;
  return mapping;
}

inline Mapping AccentsOf()
{
  Mapping mapping;
  for (const AccentRow& row : kAccentRows)
    for (int i = 0; i < 16; ++i)
      if (row.bases[i] != u'.') mapping[row.first + i] = row.bases[i];
  return mapping;
}

inline const Mapping& Lower()
{
  static const Mapping mapping = MappingOf(kLowerRuns);
  return mapping;
}

inline const Mapping& Upper()
{
  static const Mapping mapping = MappingOf(kUpperRuns);
  return mapping;
}

inline const Mapping& Accents()
{
  static const Mapping mapping = AccentsOf();
  return mapping;
}

inline const Mapping& SingleFolds()
{
  static const Mapping mapping = MappingOf(kFoldRuns);
  return mapping;
}

inline long Map(const Mapping& mapping, long c)
{
  const auto found = mapping.find(c);
  return found == mapping.end() ? c : found->second;
}

inline std::wstring MapEach(const Mapping& mapping, std::wstring s)
{
  for (wchar_t& c : s) c = static_cast<wchar_t>(Map(mapping, c));
  return s;
}

inline std::wstring ToUpper(std::wstring s)
{
  for (std::size_t p = 0; p < s.size(); ++p) {
    if (s[p] == 0xDF) {
      s[p] = L'S';
      s.insert(p, 1, L'S');
      ++p;
    } else {
      s[p] = static_cast<wchar_t>(Map(Upper(), s[p]));
    }
  }
  return s;
}

// The entry of a character: its fold, 0xD800 + its place among those that fold to two, 0xDA00 + its place among those
// that fold to three, or 0.
inline long FoldEntry(long c)
{
  long twos = 0;
  long threes = 0;
  for (const FoldList& list : kFoldLists) {
    const bool isThree = list.characters[2] != 0;
    if (list.codePoint == c) return isThree ? 0xDA00 + threes : 0xD800 + twos;
    ++(isThree ? threes : twos);
  }
  const long fold = Map(SingleFolds(), c);
  return fold == c ? 0 : fold;
}

// The row of that number among those with that many characters.
inline std::vector<wchar_t> FoldRow(std::size_t characters, long number)
{
  for (const FoldList& list : kFoldLists) {
    const std::size_t count = list.characters[2] != 0 ? 3 : 2;
    if (count == characters && number-- == 0) return {list.characters, list.characters + count};
  }
  return {};
}

inline std::wstring CaseFold(std::wstring s)
{
  std::size_t p = 0;
  while (p < s.size()) {
    const long v = s[p] >= 0 && s[p] <= 0xFFFF ? FoldEntry(s[p]) : 0;
    if (v >= 0xD800 && v <= 0xD9FF) {
      const long k = v - 0xD800;
      if (3 * k + 2 <= 47) {
        const std::vector<wchar_t> row = FoldRow(3, k);
        s[p] = row[0];
        s.insert(p, 1, row[1]);
        s.insert(p + 1, 1, row[2]);
        p += 2;
      }
    } else if (v >= 0xDA00 && v <= 0xDBFF) {
      const long k = v - 0xDA00;
      if (2 * k + 1 <= 175) {
        const std::vector<wchar_t> row = FoldRow(2, k);
        s[p] = row[0];
        s.insert(p, 1, row[1]);
        p += 1;
      }
    } else if (v != 0) {
      s[p] = static_cast<wchar_t>(v);
    }
    ++p;
  }
  return s;
}

template <std::size_t kSpans>
bool IsIn(const Span (&spans)[kSpans], long c)
{
  return std::any_of(std::begin(spans), std::end(spans), [c](const Span& span) {
    return c >= span.first && c <= span.last && (c - span.first) % span.step == 0;
  });
}

inline bool IsAlpha(long c)
{
  return IsIn(kAlphabeticSpans, c);
}
inline bool IsUpper(long c)
{
  return IsIn(kUppercaseSpans, c);
}
inline bool IsLower(long c)
{
  return IsIn(kLowercaseSpans, c);
}
inline bool IsSpace(long c)
{
  return IsIn(kWhiteSpaceSpans, c);
}
inline bool IsXdigit(long c)
{
  return IsIn(kHexDigitSpans, c);
}
inline bool IsDigit(long c)
{
  return IsIn(kDecimalDigitSpans, c);
}
inline bool IsAlnum(long c)
{
  return IsAlpha(c) || IsDigit(c);
}
inline bool IsPunct(long c)
{
  return IsIn(kPunctuationSpans, c);
}

// The byte that takes the place of the sequence of a code point, 0 for none.
inline char Utf8Base(int codePoint)
{
  for (const Utf8Row& row : kUtf8Rows)
    if (codePoint >= row.first && codePoint < row.first + 16)
      return row.bases[codePoint - row.first] == '.' ? '\0' : row.bases[codePoint - row.first];
  return 0;
}

// The ten tables of the UTF-8 form: by the byte behind C3-C8, and by the byte behind E1 B8-BB.
inline char EntryAfterTwo(unsigned char b0, unsigned char b1)
{
  if (b0 < 0xC3 || b0 > 0xC8 || b1 < 0x80 || b1 > 0xBF) return 0;
  return Utf8Base((b0 - 0xC0) * 64 + (b1 - 0x80));
}

inline char EntryAfterThree(unsigned char b1, unsigned char b2)
{
  if (b1 < 0xB8 || b1 > 0xBB || b2 < 0x80 || b2 > 0xBF) return 0;
  return Utf8Base(0x1000 + (b1 - 0x80) * 64 + (b2 - 0x80));
}

// In a buffer, up to the terminator, moving the rest of the text at every replacement.
inline void Utf8RemoveAccentsInBuffer(char* s)
{
  for (char* q = s; *q != 0; ++q) {
    const auto b0 = static_cast<unsigned char>(q[0]);
    const auto b1 = static_cast<unsigned char>(q[1]);
    if (const char e = EntryAfterTwo(b0, b1); e != 0) {
      std::memmove(q, q + 1, std::strlen(q));
      *q = e;
    } else if (b0 == 0xE1 && b1 != 0) {
      const char e3 = EntryAfterThree(b1, static_cast<unsigned char>(q[2]));
      if (e3 == 0) continue;
      std::memmove(q, q + 2, std::strlen(q) - 1);
      *q = e3;
    }
  }
}

inline std::string Utf8RemoveAccents(std::string s)
{
  for (std::size_t i = 0; i + 1 < s.size(); ++i) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    const auto b1 = static_cast<unsigned char>(s[i + 1]);
    if (const char e = EntryAfterTwo(b0, b1); e != 0) {
      s.erase(i, 1);
      s[i] = e;
    } else if (b0 == 0xE1 && i + 2 < s.size()) {
      const char e3 = EntryAfterThree(b1, static_cast<unsigned char>(s[i + 2]));
      if (e3 == 0) continue;
      s.erase(i, 2);
      s[i] = e3;
    }
  }
  return s;
}

inline int ToUpper1252(int byte)
{
  if (byte >= 'a' && byte <= 'z') return byte - 'a' + 'A';
  if (byte == 0x9A || byte == 0x9C || byte == 0x9E) return byte - 0x10;
  if ((byte >= 0xE0 && byte <= 0xF6) || (byte >= 0xF8 && byte <= 0xFE)) return byte - 0x20;
  return byte == 0xFF ? 0x9F : byte;
}

inline int ToLower1252(int byte)
{
  if (byte >= 'A' && byte <= 'Z') return byte - 'A' + 'a';
  if (byte == 0x8A || byte == 0x8C || byte == 0x8E) return byte + 0x10;
  if ((byte >= 0xC0 && byte <= 0xD6) || (byte >= 0xD8 && byte <= 0xDE)) return byte + 0x20;
  return byte == 0x9F ? 0xFF : byte;
}

inline int RemoveAccents1252(int byte)
{
  for (const ByteRow& row : kAnsiAccentRows)
    if (byte >= row.first && byte <= row.last) return row.base;
  return byte;
}

inline std::string MapEach(int (*map)(int), std::string s)
{
  for (char& c : s) c = static_cast<char>(map(static_cast<unsigned char>(c)));
  return s;
}

}  // namespace reference

#endif
