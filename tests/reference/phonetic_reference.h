// Second, slow transcriptions of the rules of the phonetic keys, to compare the library with. They share no code with
// it and ask the C library what a letter is.
#ifndef QXPAF_TESTS_REFERENCE_PHONETIC_REFERENCE_H
#define QXPAF_TESTS_REFERENCE_PHONETIC_REFERENCE_H

#include <cctype>
#include <cstdlib>
#include <cstring>

namespace reference {

inline bool IsAlpha(char c)
{
  return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

inline char ToUpper(char c)
{
  return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

inline void UpperCase(char* s)
{
  for (; *s != 0; ++s) *s = ToUpper(*s);
}

// The end of the text is a member of every set.
inline bool InSet(const char* set, char c)
{
  return std::strchr(set, c) != nullptr;
}

inline char SoundexCode(char letter)
{
  switch (ToUpper(letter)) {
    case 'B':
    case 'F':
    case 'P':
    case 'V':
      return '1';
    case 'C':
    case 'G':
    case 'J':
    case 'K':
    case 'Q':
    case 'S':
    case 'X':
    case 'Z':
      return '2';
    case 'D':
    case 'T':
      return '3';
    case 'L':
      return '4';
    case 'M':
    case 'N':
      return '5';
    case 'R':
      return '6';
    case 'H':
    case 'W':
      return ' ';
    default:
      return '0';
  }
}

inline void Soundex(char* out, const char* name, unsigned long len)
{
  while (std::isspace(static_cast<unsigned char>(*name)) != 0) ++name;
  if (!IsAlpha(*name) || len == 0) {
    out[0] = 0;
    return;
  }
  for (unsigned long i = 0; i < len; ++i) out[i] = '0';
  out[len] = 0;
  out[0] = ToUpper(*name);
  char prev = SoundexCode(*name);
  unsigned long i = 1;
  for (++name; i < len && *name != 0; ++name) {
    if (!IsAlpha(*name)) continue;
    const char code = SoundexCode(*name);
    if (code == ' ') continue;
    if (code != '0' && code != prev) out[i++] = code;
    prev = code;
  }
}

inline unsigned short Soundex2(const char* name)
{
  if (!IsAlpha(name[0])) return 0;
  const int letter = ToUpper(name[0]) - 'A';
  int key = (letter + 1) * 512;
  char prev = SoundexCode(name[0]);
  int n = 1;
  for (++name; n < 4 && *name != 0; ++name) {
    if (!IsAlpha(*name)) continue;
    const char code = SoundexCode(*name);
    if (code == ' ') continue;
    if (code != '0' && code != prev) {
      key |= (code - '0') << (3 * (3 - n));
      ++n;
    }
    prev = code;
  }
  return static_cast<unsigned short>(key);
}

// One step of the walk over the word, on the letter at word[p].
inline void NysiisRule(char* word, int p)
{
  char& c = word[p];
  char& q = word[p + 1];
  const char after = q != 0 ? word[p + 2] : '\0';
  const bool first = p == 0;
  switch (c) {
    case 'A':
    case 'I':
    case 'O':
    case 'U':
      c = 'A';
      if (q == 'W') q = 'A';
      break;
    case 'D':
      if (q == 'G') c = 'G';
      break;
    case 'E':
      if (q == 'V' && !first) q = 'F';
      c = 'A';
      if (q == 'W') q = 'A';
      break;
    case 'G':
      if (q == 'H' && after == 'T') {
        q = 'T';
        c = 'T';
      }
      break;
    case 'H':
      if (first) break;
      if (word[p - 1] == 'A')
        c = 'A';
      else if (InSet("AEIOU", q))
        c = word[p - 1];
      break;
    case 'K':
      c = q == 'N' ? 'N' : 'C';
      break;
    case 'M':
      if (!first) c = 'N';
      break;
    case 'P':
      if (q == 'H') {
        q = 'F';
        c = 'F';
      }
      break;
    case 'Q':
      if (!first) c = 'G';
      break;
    case 'S':
      if (q == 'H') {
        q = after == 0 ? 'A' : 'S';
      } else if (q == 'C' && after == 'H') {
        q = 'S';
        word[p + 2] = word[p + 3] == 0 ? 'A' : 'S';
      }
      break;
    case 'W':
      if (q == 'R') c = 'R';
      break;
    case 'Y':
      if (!first && q != 0) c = 'A';
      if (q == 'W') q = c;
      break;
    case 'Z':
      c = 'S';
      break;
    default:
      break;
  }
}

inline void NysiisEnding(char* word)
{
  const std::size_t n = std::strlen(word);
  if (n < 2) return;
  char& p = word[n - 2];
  char& l = word[n - 1];
  char joined = 0;
  if (l == 'D' && p == 'R') joined = 'D';
  if (l == 'D' && p == 'N') joined = 'N';
  if (l == 'E' && (p == 'Y' || p == 'E' || p == 'I')) joined = 'Y';
  if (l == 'T' && (p == 'D' || p == 'R')) joined = 'D';
  if (l == 'T' && p == 'N') joined = 'N';
  if (l == 'X' && (p == 'I' || p == 'E')) p = 'C';
  if (joined != 0) {
    p = joined;
    l = 0;
  }
}

inline void Nysiis(char* out, const char* name, unsigned long len)
{
  for (unsigned long i = 0; i <= len; ++i) out[i] = 0;
  while (std::isspace(static_cast<unsigned char>(*name)) != 0) ++name;
  char word[52] = "";
  int n = 0;
  for (int examined = 0; examined < 51 && name[examined] != 0; ++examined) {
    if (std::isdigit(static_cast<unsigned char>(name[examined])) != 0) return;
    if (IsAlpha(name[examined])) word[n++] = name[examined];
  }
  if (n == 0) return;
  const char typed = word[0];
  UpperCase(word);
  while (n > 1 && (word[n - 1] == 'S' || word[n - 1] == 'Z')) word[--n] = 0;
  if (word[0] == 'M' && word[1] == 'A' && word[2] == 'C') word[1] = 'C';
  if (word[0] == 'P' && word[1] == 'F') word[0] = 'F';
  NysiisEnding(word);
  unsigned long k = 0;
  for (int p = 0; word[p] != 0; ++p) {
    NysiisRule(word, p);
    if (k == 0 || out[k - 1] != word[p]) out[k++] = word[p];
    if (k == len + 1) break;
  }
  if (k >= 2) {
    if (out[k - 1] == 'A') {
      out[k - 1] = 0;
    } else if (out[k - 1] == 'Y' && out[k - 2] == 'A') {
      out[k - 2] = 'Y';
      out[k - 1] = 0;
    }
  }
  if (out[0] == 'A') out[0] = ToUpper(typed);
  out[len] = 0;
}

struct MetaphoneLetter
{
  char prev;
  char c;
  char next;
  char next2;
};

// What C gives, or 0 for nothing.
inline char MetaphoneC(const MetaphoneLetter& at)
{
  if (at.prev == 'S' && InSet("IEY", at.next)) return 0;
  if (at.next == 'I' && at.next2 == 'A') return 'X';
  if (InSet("IEY", at.next)) return 'S';
  if (at.next == 'H') {
    if (at.prev == 'S') return 'K';
    if (at.prev == 0 && at.next2 != 0 && !InSet("AEIOU", at.next2)) return 'K';
    return 'X';
  }
  return 'K';
}

inline char MetaphoneG(const MetaphoneLetter& at)
{
  if (at.prev != 0 && at.next == 'H' && (at.next2 == 0 || !InSet("AEIOU", at.next2))) return 0;
  if (at.prev != 0 && at.next == 'N') return 0;
  if (at.prev != 'G' && InSet("EIY", at.next)) return 'J';
  return 'K';
}

inline char MetaphoneH(const MetaphoneLetter& at)
{
  if (at.next == 0) return 0;
  if (at.prev != 0 && InSet("CSPTG", at.prev)) return 0;
  return InSet("AEIOU", at.next) ? 'H' : '\0';
}

inline char MetaphoneT(const MetaphoneLetter& at)
{
  if (at.next == 'I' && (at.next2 == 'O' || at.next2 == 'A')) return 'X';
  if (at.next == 'H') return '0';
  if (at.next == 'C' && at.next2 == 'H') return 0;
  return 'T';
}

// D before G and X are dealt with by the walk.
inline char MetaphoneCode(const MetaphoneLetter& at)
{
  switch (at.c) {
    case 'A':
    case 'E':
    case 'I':
    case 'O':
    case 'U':
      return at.prev == 0 ? at.c : '\0';
    case 'B':
      return at.prev == 'M' && at.next == 0 ? '\0' : 'B';
    case 'C':
      return MetaphoneC(at);
    case 'D':
      return 'T';
    case 'F':
    case 'J':
    case 'L':
    case 'M':
    case 'N':
    case 'R':
      return at.c;
    case 'G':
      return MetaphoneG(at);
    case 'H':
      return MetaphoneH(at);
    case 'K':
      return at.prev == 'C' ? '\0' : 'K';
    case 'P':
      return at.next == 'H' ? 'F' : 'P';
    case 'Q':
      return 'K';
    case 'S':
      if (at.next == 'H' || (at.next == 'I' && (at.next2 == 'O' || at.next2 == 'A'))) return 'X';
      return 'S';
    case 'T':
      return MetaphoneT(at);
    case 'V':
      return 'F';
    case 'W':
    case 'Y':
      return at.next != 0 && InSet("AEIOU", at.next) ? at.c : '\0';
    case 'Z':
      return 'S';
    default:
      return 0;
  }
}

// The working copy after the rules for the first two letters; the caller frees it.
inline char* MetaphoneCopy(const char* name)
{
  char* copy = static_cast<char*>(std::malloc(std::strlen(name) + 1));
  const bool dropFirst = (name[0] == 'A' && name[1] == 'E') || (name[0] == 'G' && name[1] == 'N') ||
                         (name[0] == 'K' && name[1] == 'N') || (name[0] == 'P' && name[1] == 'N');
  const bool isWr = name[0] == 'W' && name[1] == 'R';
  std::strcpy(copy, dropFirst || isWr ? name + 1 : name);
  if (isWr) copy[0] = 'W';
  if (name[0] == 'X') copy[0] = 'S';
  UpperCase(copy);
  return copy;
}

inline void Metaphone(char* out, const char* name, unsigned long len)
{
  out[0] = 0;
  if (name[0] == 0 || len == 0) return;
  if (name[1] == 0) {
    out[0] = ToUpper(name[0]);
    out[1] = 0;
    return;
  }
  char* copy = MetaphoneCopy(name);
  unsigned long n = 0;
  char prev = 0;
  for (const char* p = copy; *p != 0 && n < len;) {
    const char next = p[1];
    const MetaphoneLetter at = {prev, *p, next, next != 0 ? p[2] : '\0'};
    prev = *p++;
    if (at.c == at.prev) continue;
    if (at.c == 'D' && at.next == 'G' && InSet("EIY", at.next2)) {
      out[n++] = 'J';
      p += at.next2 != 0 ? 2 : 1;
    } else if (at.c == 'X') {
      out[n++] = 'K';
      if (n < len) out[n++] = 'S';
    } else if (IsAlpha(at.c)) {
      const char code = MetaphoneCode(at);
      if (code != 0) out[n++] = code;
    }
  }
  out[n] = 0;
  std::free(copy);
}

}  // namespace reference

#endif
