#include "arf/format/fold.h"

#include <algorithm>
#include <cstdint>

namespace arf {
namespace {

/** What one character of a text turns into. */
struct Folded
{
  enum Kind
  {
    kText,
    kGap,
    kNothing
  } kind = kText;
  std::size_t taken = 1;   ///< bytes of the character
  char text[4] = {};       ///< what replaces it, when kText
  std::size_t length = 0;  ///< of `text`, never more than `taken`
};

Folded Gap(std::size_t taken)
{
  return {Folded::kGap, taken, {}, 0};
}

Folded Nothing(std::size_t taken)
{
  return {Folded::kNothing, taken, {}, 0};
}

Folded OneByte(char c)
{
  return {Folded::kText, 1, {c}, 1};
}

bool IsAsciiLower(char c)
{
  return c >= 'a' && c <= 'z';
}

char AsciiUpper(char c)
{
  return IsAsciiLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
}

std::uint8_t ByteAt(std::string_view text, std::size_t at)
{
  return at < text.size() ? static_cast<std::uint8_t>(text[at]) : std::uint8_t{0};
}

bool IsTrail(std::uint8_t byte)
{
  return (byte & 0xC0) == 0x80;
}

/** The code point of a two-byte sequence at the front of `text`, or 0. */
std::uint32_t TwoByteCode(std::string_view text)
{
  const std::uint8_t lead = ByteAt(text, 0), trail = ByteAt(text, 1);
  if (lead < 0xC2 || lead > 0xDF || !IsTrail(trail)) return 0;
  return (static_cast<std::uint32_t>(lead & 0x1F) << 6) | (trail & 0x3FU);
}

/** The code point of a three-byte sequence that begins with E2 80, or 0: the general punctuation U+2000 … U+203F. */
std::uint32_t PunctuationCode(std::string_view text)
{
  if (ByteAt(text, 0) != 0xE2 || ByteAt(text, 1) != 0x80 || !IsTrail(ByteAt(text, 2))) return 0;
  return 0x2000U | (ByteAt(text, 2) & 0x3FU);
}

constexpr std::uint32_t kFirstLetter = 0xC0, kLastLetter = 0x17F;  // Latin-1 letters and Latin Extended-A

/** Base letters of U+00C0 … U+017F, sixteen a row; digits stand for the pairs below, the blank for × and ÷. */
constexpr std::string_view kBaseLetters =
    "AAAAAA1CEEEEIIII"
    "DNOOOOO OUUUUY43"
    "AAAAAA1CEEEEIIII"
    "DNOOOOO OUUUUY4Y"
    "AAAAAACCCCCCCCDD"
    "DDEEEEEEEEEEGGGG"
    "GGGGHHHHIIIIIIII"
    "II55JJKKKLLLLLLL"
    "LLLNNNNNNNNNOOOO"
    "OO22RRRRRRSSSSSS"
    "SSTTTTTTUUUUUUUU"
    "UUUUWWYYYZZZZZZS";
static_assert(kBaseLetters.size() == kLastLetter - kFirstLetter + 1);
constexpr std::string_view kPairs[] = {"AE", "OE", "SS", "TH", "IJ"};

Folded BaseLetter(std::uint32_t code)
{
  const char base = kBaseLetters[code - kFirstLetter];
  if (base == ' ') return Gap(2);
  if (base < '1' || base > '5') return {Folded::kText, 2, {base}, 1};
  const std::string_view pair = kPairs[base - '1'];
  return {Folded::kText, 2, {pair[0], pair[1]}, 2};
}

bool IsApostrophe(std::uint32_t code)
{
  static constexpr std::uint32_t kApostrophes[] = {'\'', '`', 0xB4, 0x2BC, 0x2018, 0x2019, 0x201B, 0x2032};
  return std::find(std::begin(kApostrophes), std::end(kApostrophes), code) != std::end(kApostrophes);
}

Folded KeyOfAscii(char c)
{
  if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return OneByte(c);
  if (IsAsciiLower(c)) return OneByte(AsciiUpper(c));
  return c == '\'' || c == '`' ? Nothing(1) : Gap(1);
}

Folded KeyOf(std::string_view text)
{
  if (ByteAt(text, 0) < 0x80) return KeyOfAscii(text[0]);
  if (const std::uint32_t code = PunctuationCode(text)) return IsApostrophe(code) ? Nothing(3) : Gap(3);
  const std::uint32_t code = TwoByteCode(text);
  const bool isMark = code >= 0x300 && code <= 0x36F;
  if (isMark || (code != 0 && IsApostrophe(code))) return Nothing(2);
  if (code >= 0x80 && code < kFirstLetter) return Gap(2);
  if (code >= kFirstLetter && code <= kLastLetter) return BaseLetter(code);
  return OneByte(text[0]);
}

/** Upper case of a letter of Latin-1 or Latin Extended-A; itself where there is none of these blocks. */
std::uint32_t UpperCode(std::uint32_t code)
{
  if (code < 0x100) {
    if (code == 0xFF) return 0x178;
    return code >= 0xE0 && code != 0xF7 ? code - 0x20 : code;
  }
  if (code == 0x131) return 'I';
  if (code == 0x17F) return 'S';
  if (code == 0x130 || code == 0x138 || code == 0x149 || code == 0x178) return code;
  // Capital and small letters alternate; between U+0139 and U+0148, and from U+0179 on, capitals have odd numbers.
  const bool capitalsAreOdd = (code >= 0x139 && code <= 0x148) || code >= 0x179;
  return (code & 1U) == (capitalsAreOdd ? 0U : 1U) ? code - 1 : code;
}

Folded UpperOf(std::string_view text)
{
  const std::uint8_t byte = ByteAt(text, 0);
  if (byte < 0x80) return byte <= ' ' || byte == 0x7F ? Gap(1) : OneByte(AsciiUpper(text[0]));
  const std::uint32_t code = TwoByteCode(text);
  if (code >= 0x80 && code <= 0xA0) return Gap(2);
  if (code < kFirstLetter || code > kLastLetter) return OneByte(text[0]);
  const std::uint32_t upper = UpperCode(code);
  if (upper < 0x80) return {Folded::kText, 2, {static_cast<char>(upper)}, 1};
  return {Folded::kText, 2, {static_cast<char>(0xC0 | (upper >> 6)), static_cast<char>(0x80 | (upper & 0x3F))}, 2};
}

/** Folds character by character; gaps become one space between two words. Returns the length written. */
template <class Fold>
std::size_t FoldInto(std::string_view text, std::span<char> out, Fold fold)
{
  std::size_t length = 0;
  bool gap = false;
  while (!text.empty()) {
    const Folded folded = fold(text);
    text.remove_prefix(std::min(folded.taken, text.size()));
    if (folded.kind == Folded::kGap) gap = length > 0;
    if (folded.kind != Folded::kText) continue;
    if (folded.length + gap > out.size() - length) break;
    if (gap) out[length++] = ' ';
    gap = false;
    for (std::size_t i = 0; i < folded.length; ++i) out[length++] = folded.text[i];
  }
  return length;
}

}  // namespace

std::size_t MatchKey(std::string_view text, std::span<char> out)
{
  return FoldInto(text, out, KeyOf);
}

std::string MatchKey(std::string_view text)
{
  std::string key(text.size(), '\0');
  key.resize(MatchKey(text, key));
  return key;
}

std::size_t DisplayForm(std::string_view text, std::span<char> out)
{
  return FoldInto(text, out, UpperOf);
}

std::string DisplayForm(std::string_view text)
{
  std::string display(text.size(), '\0');
  display.resize(DisplayForm(text, display));
  return display;
}

}  // namespace arf
