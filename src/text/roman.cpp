// Roman numerals.
#include "text/roman.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "qxpaf/text/normalise.h"
#include "text/byte_set.h"

namespace qxpaf {
namespace {

// Setting this bit makes ASCII letters lower case and makes no letter of anything else.
constexpr unsigned int kLowerCaseBit = 0x20;

constexpr std::size_t kLongestForm = 4;

// The first four characters in lower case, the first of them in the top byte; what is missing is no letter.
constexpr std::uint32_t PackedLetters(std::string_view text)
{
  std::uint32_t packed = 0;
  for (std::size_t i = 0; i < kLongestForm; ++i)
    packed = packed << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) | kLowerCaseBit : 0U);
  return packed;
}

// One to four letters that stand for a digit, packed so that one comparison finds them at the front of a text.
struct Form
{
  constexpr explicit(false) Form(const char* letters)
      : length(std::string_view(letters).size()),
        mask(~std::uint32_t{0} << (8 * (kLongestForm - length))),
        packed(PackedLetters(letters))
  {
  }

  std::size_t length;
  std::uint32_t mask;
  std::uint32_t packed;
};

constexpr std::size_t kForms = 9;

// The forms of 1 to 9 in one decimal place.
struct DecimalPlace
{
  int unit;
  Form forms[kForms];
};

constexpr DecimalPlace kPlaces[] = {
    {100, {"c", "cc", "ccc", "cd", "d", "dc", "dcc", "dccc", "cm"}},
    {10, {"x", "xx", "xxx", "xl", "l", "lx", "lxx", "lxxx", "xc"}},
    {1, {"i", "ii", "iii", "iv", "v", "vi", "vii", "viii", "ix"}},
};

constexpr std::size_t kMinRomanWord = 2;
constexpr int kMaxRomanWordValue = 49;
constexpr ByteSet kRomanWordLetters("IVXLivxl");

// Takes what the text has of one decimal place off its front and returns its value. The highest form that matches wins,
// so that "cm" is not read as "c".
int TakePlace(std::string_view& text, const DecimalPlace& place)
{
  const std::uint32_t letters = PackedLetters(text);
  for (std::size_t i = kForms; i > 0; --i) {
    const Form& form = place.forms[i - 1];
    if ((letters & form.mask) != form.packed) continue;
    text.remove_prefix(form.length);
    return static_cast<int>(i) * place.unit;
  }
  return 0;
}

}  // namespace

int RomanValue(std::string_view text)
{
  std::int64_t total = 0;
  while (!text.empty() && (static_cast<unsigned char>(text.front()) | kLowerCaseBit) == 'm') {
    total += 1000;
    text.remove_prefix(1);
  }
  for (const DecimalPlace& place : kPlaces) total += TakePlace(text, place);
  if (!text.empty()) return 0;
  return static_cast<int>(std::min<std::int64_t>(total, std::numeric_limits<int>::max()));
}

bool IsRomanWord(std::string_view word)
{
  if (word.size() < kMinRomanWord) return false;
  if (!std::all_of(word.begin(), word.end(), [](char c) { return kRomanWordLetters.Has(c); })) return false;
  const int value = RomanValue(word);
  return value >= 1 && value <= kMaxRomanWordValue;
}

}  // namespace qxpaf

int ReadRomanNumeral(const char* s)
{
  return qxpaf::RomanValue(s);
}
