#include "qxpaf/text/phonetic.h"
#include "text/name_letters.h"

namespace qxpaf {
namespace {

// A character of the name in upper case with its neighbours; 0 stands for what lies before the start or behind the end.
struct Place
{
  char previous;
  char current;
  char next;
  char next2;

  bool IsStart() const { return previous == '\0'; }
  bool NextAre(char a, char b) const { return next == a && next2 == b; }
  bool BeforeIoOrIa() const { return NextAre('I', 'O') || NextAre('I', 'A'); }
};

// The end of the word counts as a front vowel: a final C or G is soft.
constexpr bool IsFrontVowelOrEnd(char c)
{
  return c == 'I' || c == 'E' || c == 'Y' || c == '\0';
}

struct Sound
{
  char first = '\0';  // 0 gives nothing
  char second = '\0';
  bool swallowsTwo = false;  // the next two characters are skipped
};

using Rule = Sound (*)(const Place&);

Sound RuleB(const Place& at)
{
  return at.previous == 'M' && at.next == '\0' ? Sound{} : Sound{'B'};
}

Sound RuleCh(const Place& at)
{
  if (at.previous == 'S') return {'K'};
  const bool beforeConsonant = at.next2 != '\0' && !IsVowel(at.next2);
  return at.IsStart() && beforeConsonant ? Sound{'K'} : Sound{'X'};
}

Sound RuleC(const Place& at)
{
  const bool soft = IsFrontVowelOrEnd(at.next);
  if (soft && at.previous == 'S') return {};
  if (at.NextAre('I', 'A')) return {'X'};
  if (soft) return {'S'};
  return at.next == 'H' ? RuleCh(at) : Sound{'K'};
}

Sound RuleD(const Place& at)
{
  if (at.next == 'G' && IsFrontVowelOrEnd(at.next2)) return {'J', '\0', true};
  return {'T'};
}

// After another G the letter is skipped before any rule is asked.
Sound RuleG(const Place& at)
{
  if (!at.IsStart() && at.next == 'H' && !IsVowel(at.next2)) return {};
  if (!at.IsStart() && at.next == 'N') return {};
  return IsFrontVowelOrEnd(at.next) ? Sound{'J'} : Sound{'K'};
}

Sound RuleH(const Place& at)
{
  switch (at.previous) {
    case 'C':
    case 'S':
    case 'P':
    case 'T':
    case 'G':
      return {};
    default:
      return IsVowel(at.next) ? Sound{'H'} : Sound{};
  }
}

Sound RuleK(const Place& at)
{
  return at.previous == 'C' ? Sound{} : Sound{'K'};
}

Sound RuleP(const Place& at)
{
  return at.next == 'H' ? Sound{'F'} : Sound{'P'};
}

Sound RuleS(const Place& at)
{
  return at.next == 'H' || at.BeforeIoOrIa() ? Sound{'X'} : Sound{'S'};
}

Sound RuleT(const Place& at)
{
  if (at.BeforeIoOrIa()) return {'X'};
  if (at.next == 'H') return {'0'};
  return at.NextAre('C', 'H') ? Sound{} : Sound{'T'};
}

Sound Glide(const Place& at)
{
  return IsVowel(at.next) ? Sound{at.current} : Sound{};
}

Sound RuleX(const Place&)
{
  return {'K', 'S'};
}

// Letters whose sound never depends on their neighbours. A blank gives nothing: vowels, which are heard at the start
// only. A dot stands for a letter with a rule of its own.
//                             ABCDEFGHIJKLMNOPQRSTUVWXYZ
constexpr char kFixedCodes[] = " ... F.. J.LMN .KR.. F...S";

constexpr char kByRule = '.';

// 0 for what gives nothing.
constexpr ByteTable<char> kCodes([](char c) {
  if (c < 'A' || c > 'Z') return '\0';
  const char code = kFixedCodes[c - 'A'];
  return code == ' ' ? '\0' : code;
});

constexpr Rule kRules[26] = {
    nullptr, RuleB, RuleC,   RuleD,   nullptr, nullptr, RuleG, RuleH,   nullptr,  // A-I
    nullptr, RuleK, nullptr, nullptr, nullptr, nullptr, RuleP, nullptr, nullptr,  // J-R
    RuleS,   RuleT, nullptr, nullptr, Glide,   RuleX,   Glide, nullptr,           // S-Z
};

Sound SoundOf(const Place& at)
{
  if (at.current == at.previous) return {};
  if (at.IsStart() && IsVowel(at.current)) return {at.current};
  const char code = kCodes[at.current];
  return code == kByRule ? kRules[at.current - 'A'](at) : Sound{code};
}

// The places of a name, one after the other, in upper case. No working copy is made, and nothing behind the terminator
// is read.
class Walk
{
 public:
  // The name's own first letter counts as first.
  Walk(const char* name, char first) : ahead_(name), at_{'\0', first, '\0', '\0'}
  {
    at_.next = Look();
    at_.next2 = at_.next != '\0' ? Look() : '\0';
  }

  bool AtEnd() const { return at_.current == '\0'; }
  const Place& At() const { return at_; }

  void Advance() { at_ = {at_.current, at_.next, at_.next2, at_.next2 != '\0' ? Look() : '\0'}; }

  // The character before the current one stays as it is.
  void SkipTwo()
  {
    const char current = at_.current;
    Advance();
    if (!AtEnd()) Advance();
    at_.current = current;
  }

 private:
  char Look() { return kUpper[*++ahead_]; }

  const char* ahead_;  // at the last character that was looked at
  Place at_;
};

constexpr bool StartsSilent(char first, char second)
{
  if (first == 'A') return second == 'E';
  return second == 'N' && (first == 'G' || first == 'K' || first == 'P');
}

// The rules for the first two letters see them as they were typed.
Walk Begin(const char* name)
{
  if (StartsSilent(name[0], name[1])) return {name + 1, name[1]};
  if (name[0] == 'W' && name[1] == 'R') return {name + 1, 'W'};
  return {name, name[0] == 'X' ? 'S' : kUpper[name[0]]};
}

}  // namespace
}  // namespace qxpaf

void Metaphone(char* out, const char* name, unsigned long len)
{
  char* const stop = out + len;
  if (name[0] != '\0' && name[1] == '\0') {
    if (out != stop) *out++ = qxpaf::kUpper[name[0]];
  } else if (name[0] != '\0') {
    for (qxpaf::Walk walk = qxpaf::Begin(name); !walk.AtEnd() && out != stop; walk.Advance()) {
      const qxpaf::Sound sound = qxpaf::SoundOf(walk.At());
      if (sound.first != '\0') *out++ = sound.first;
      if (sound.second != '\0' && out != stop) *out++ = sound.second;
      if (sound.swallowsTwo) walk.SkipTwo();
    }
  }
  *out = '\0';
}
