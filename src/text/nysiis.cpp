#include <cstring>

#include "qxpaf/text/phonetic.h"
#include "text/name_letters.h"

namespace qxpaf {
namespace {

constexpr int kExamined = 51;

constexpr bool IsDigit(char c)
{
  return c >= '0' && c <= '9';
}

// The letters of a name in upper case, always terminated. Rules read at most one letter behind a letter they have seen.
struct Word
{
  char letters[kExamined + 1];
  int length = 0;

  char Last() const { return letters[length - 1]; }

  // False, with the word unusable, at a digit. Characters behind the examined ones do not matter.
  bool Take(const char* name)
  {
    for (const char* const stop = name + kExamined; name != stop && *name != '\0'; ++name) {
      if (IsDigit(*name)) return false;
      const char letter = kUpperLetter[*name];
      letters[length] = letter;
      if (letter != '\0') ++length;
    }
    letters[length] = '\0';
    return length != 0;
  }

  // The last two letters become one.
  void EndIn(char letter)
  {
    --length;
    letters[length - 1] = letter;
    letters[length] = '\0';
  }
};

void DropFinalSibilants(Word& word)
{
  while (word.length > 1 && (word.Last() == 'S' || word.Last() == 'Z')) --word.length;
  word.letters[word.length] = '\0';
}

void ReplacePrefix(char* word)
{
  if (std::strncmp(word, "MAC", 3) == 0)
    word[1] = 'C';
  else if (std::strncmp(word, "PF", 2) == 0)
    word[0] = 'F';
}

void ReplaceEnding(Word& word)
{
  if (word.length < 2) return;
  char& before = word.letters[word.length - 2];
  switch (word.Last()) {
    case 'D':
      if (before == 'R') return word.EndIn('D');
      if (before == 'N') return word.EndIn('N');
      return;
    case 'E':
      if (before == 'Y' || before == 'E' || before == 'I') return word.EndIn('Y');
      return;
    case 'T':
      if (before == 'D' || before == 'R') return word.EndIn('D');
      if (before == 'N') return word.EndIn('N');
      return;
    case 'X':
      if (before == 'I' || before == 'E') before = 'C';
      return;
    default:
      return;
  }
}

// A rule changes the letter at p and perhaps the next ones. Letters before p have had their rules already.
using Rule = void (*)(char* p, bool isFirst);

void Unchanged(char*, bool) {}

void OpenVowel(char* p, bool)
{
  p[0] = 'A';
  if (p[1] == 'W') p[1] = 'A';
}

void RuleD(char* p, bool)
{
  if (p[1] == 'G') p[0] = 'G';
}

void RuleE(char* p, bool isFirst)
{
  if (p[1] == 'V' && !isFirst) p[1] = 'F';
  OpenVowel(p, isFirst);
}

void RuleG(char* p, bool)
{
  if (p[1] == 'H' && p[2] == 'T') p[0] = p[1] = 'T';
}

void RuleH(char* p, bool isFirst)
{
  if (isFirst) return;
  if (p[-1] == 'A' || p[1] == '\0' || IsVowel(p[1])) p[0] = p[-1];
}

void RuleK(char* p, bool)
{
  p[0] = p[1] == 'N' ? 'N' : 'C';
}

void RuleM(char* p, bool isFirst)
{
  if (!isFirst) p[0] = 'N';
}

void RuleP(char* p, bool)
{
  if (p[1] == 'H') p[0] = p[1] = 'F';
}

void RuleQ(char* p, bool isFirst)
{
  if (!isFirst) p[0] = 'G';
}

// The last letter of SH or SCH: a sibilant, or a vowel where it ends the word.
void SoftenH(char* h)
{
  *h = h[1] == '\0' ? 'A' : 'S';
}

void RuleS(char* p, bool)
{
  if (p[1] == 'H') return SoftenH(p + 1);
  if (p[1] != 'C' || p[2] != 'H') return;
  p[1] = 'S';
  SoftenH(p + 2);
}

void RuleW(char* p, bool)
{
  if (p[1] == 'R') p[0] = 'R';
}

void RuleY(char* p, bool isFirst)
{
  if (!isFirst && p[1] != '\0') p[0] = 'A';
  if (p[1] == 'W') p[1] = p[0];
}

void RuleZ(char* p, bool)
{
  p[0] = 'S';
}

constexpr Rule kRules[26] = {
    OpenVowel, Unchanged, Unchanged, RuleD,     RuleE,     Unchanged, RuleG, RuleH, OpenVowel,  // A-I
    Unchanged, RuleK,     Unchanged, RuleM,     Unchanged, OpenVowel, RuleP, RuleQ, Unchanged,  // J-R
    RuleS,     Unchanged, OpenVowel, Unchanged, RuleW,     Unchanged, RuleY, RuleZ,             // S-Z
};

// Appends the sounds of the word without repetitions, at most len + 1 letters, and returns how many they are.
unsigned long AppendSounds(char* out, char* word, unsigned long len)
{
  unsigned long appended = 0;
  for (char* p = word; *p != '\0' && appended <= len; ++p) {
    kRules[*p - 'A'](p, p == word);
    if (appended == 0 || *p != out[appended - 1]) out[appended++] = *p;
  }
  return appended;
}

void ApplyEndRules(char* key, unsigned long length)
{
  if (length < 2) return;
  if (key[length - 1] == 'A') {
    key[length - 1] = '\0';
  } else if (key[length - 2] == 'A' && key[length - 1] == 'Y') {
    key[length - 2] = 'Y';
    key[length - 1] = '\0';
  }
}

}  // namespace
}  // namespace qxpaf

void Nysiis(char* out, const char* name, unsigned long len)
{
  std::memset(out, 0, len + 1);
  qxpaf::Word word;
  if (!word.Take(qxpaf::SkipSpace(name))) return;
  const char first = word.letters[0];
  qxpaf::DropFinalSibilants(word);
  qxpaf::ReplacePrefix(word.letters);
  qxpaf::ReplaceEnding(word);
  qxpaf::ApplyEndRules(out, qxpaf::AppendSounds(out, word.letters, len));
  if (out[0] == 'A') out[0] = first;
  out[len] = '\0';
}
