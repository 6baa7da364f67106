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

constexpr std::size_t kForms = 9;

// The forms of 1 to 9 in one decimal place.
struct DecimalPlace
{
  int unit;
  std::string_view forms[kForms];
};

constexpr DecimalPlace kPlaces[] = {
    {100, {"c", "cc", "ccc", "cd", "d", "dc", "dcc", "dccc", "cm"}},
    {10, {"x", "xx", "xxx", "xl", "l", "lx", "lxx", "lxxx", "xc"}},
    {1, {"i", "ii", "iii", "iv", "v", "vi", "vii", "viii", "ix"}},
};

constexpr std::size_t kMinRomanWord = 2;
constexpr int kMaxRomanWordValue = 49;
constexpr ByteSet kRomanWordLetters("IVXLivxl");

// Setting this bit makes ASCII letters lower case and makes no letter of anything else.
constexpr int kLowerCaseBit = 0x20;

bool IsRomanLetter(char c, char lower)
{
  return (c | kLowerCaseBit) == lower;
}

bool StartsWith(std::string_view text, std::string_view lower)
{
  return text.size() >= lower.size() &&
         std::equal(lower.begin(), lower.end(), text.begin(), [](char want, char c) { return IsRomanLetter(c, want); });
}

// Takes what the text has of one decimal place off its front and returns its value. The highest form that matches wins,
// so that "cm" is not read as "c".
int TakePlace(std::string_view& text, const DecimalPlace& place)
{
  for (std::size_t i = kForms; i > 0; --i) {
    const std::string_view form = place.forms[i - 1];
    if (!StartsWith(text, form)) continue;
    text.remove_prefix(form.size());
    return static_cast<int>(i) * place.unit;
  }
  return 0;
}

}  // namespace

int RomanValue(std::string_view text)
{
  std::int64_t total = 0;
  while (!text.empty() && IsRomanLetter(text.front(), 'm')) {
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
