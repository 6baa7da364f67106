#include <cstring>

#include "qxpaf/text/phonetic.h"
#include "text/name_letters.h"

namespace qxpaf {
namespace {

// The digit of each letter A-Z. '0' is a vowel: never written, but it separates equal digits. H and W are blank: they
// neither write nor separate.
constexpr char kDigits[] = "0123012 02245501262301 202";

constexpr char kVowel = '0';
constexpr char kIgnored = ' ';
constexpr char kEnd = '\0';

// Non-letters are passed over exactly as H and W are.
constexpr ByteTable<char> kCodes([](char c) {
  if (c == '\0') return kEnd;
  const char letter = kUpperLetter[c];
  return letter != '\0' ? kDigits[letter - 'A'] : kIgnored;
});

// The digits of a key, one at a time. The name starts with a letter.
class SoundexDigits
{
 public:
  explicit SoundexDigits(const char* name) : next_(name + 1), previous_(kCodes[*name]) {}

  // The next digit, '1' to '6'; kEnd when there is none, and then always.
  char Next()
  {
    for (;;) {
      const char code = kCodes[*next_];
      if (code == kEnd) return kEnd;
      ++next_;
      const char before = previous_;
      previous_ = code == kIgnored ? before : code;
      // Vowels and ignored characters are the smallest codes.
      if ((code > kVowel) & (code != before)) return code;
    }
  }

 private:
  const char* next_;
  char previous_;
};

constexpr int kLetterShift = 9;
constexpr int kBitsPerDigit = 3;

}  // namespace
}  // namespace qxpaf

void Soundex(char* out, const char* name, unsigned long len)
{
  name = qxpaf::SkipSpace(name);
  const char first = qxpaf::kUpperLetter[*name];
  if (first == '\0' || len == 0) {
    out[0] = '\0';
    return;
  }
  std::memset(out, '0', len);
  out[len] = '\0';
  out[0] = first;
  qxpaf::SoundexDigits digits(name);
  for (unsigned long i = 1; i < len; ++i) {
    const char digit = digits.Next();
    if (digit == qxpaf::kEnd) return;
    out[i] = digit;
  }
}

unsigned short Soundex2(const char* name)
{
  const char first = qxpaf::kUpperLetter[*name];
  if (first == '\0') return 0;
  int key = (first - 'A' + 1) << qxpaf::kLetterShift;
  qxpaf::SoundexDigits digits(name);
  for (int shift = qxpaf::kLetterShift - qxpaf::kBitsPerDigit; shift >= 0; shift -= qxpaf::kBitsPerDigit) {
    const char digit = digits.Next();
    if (digit == qxpaf::kEnd) break;
    key |= (digit - '0') << shift;
  }
  return static_cast<unsigned short>(key);
}
