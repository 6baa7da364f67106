#include "arf/match/postal_words.h"

#include <algorithm>

#include "arf/match/premise.h"
#include "arf/tables/postal_types.h"

namespace arf {
namespace {

constexpr std::size_t kLongestType = 5;  // words: "ROADSIDE MAIL BOX OR BAG"
constexpr std::size_t kMaxPrefixLetters = 3;

/** The longest type directly before `end`. */
PostalWords ReadTypeBefore(const InputText& input, std::size_t first, std::size_t end)
{
  for (std::size_t count = input.WordsWithoutDigits(first, end, kLongestType); count > 0; --count) {
    const std::string_view type = ExpandPostalType(input.Text(end - count, end));
    if (!type.empty()) return {type, end - count, {}};
  }
  return {};
}

}  // namespace

PostalWords ReadPostalAtEnd(const InputText& input, WordRange body)
{
  const std::size_t end = body.last;
  PostalNumber ignored;
  // One word of a number, or a letter and a number.
  for (std::size_t words = 1; words <= 2 && body.first + words < end; ++words) {
    const WordRange number{end - words, end};
    if (!input[end - 1].hasDigit || !ReadPostalNumber(input.Text(number), ignored)) continue;
    const bool hasSign = number.first > body.first && IsNumberSign(input[number.first - 1].text);
    PostalWords found = ReadTypeBefore(input, body.first, number.first - (hasSign ? 1 : 0));
    if (found.type.empty() || !PostalTypeTakesNumber(found.type)) continue;
    found.number = number;
    return found;
  }
  if (body.Empty()) return {};
  const PostalWords found = ReadTypeBefore(input, body.first, end);
  return found.type.empty() || PostalTypeTakesNumber(found.type) ? PostalWords{} : found;
}

std::size_t PostalTypeBefore(const InputText& input, std::size_t first, std::size_t end)
{
  const bool hasSign = end > first && IsNumberSign(input[end - 1].text);
  const PostalWords found = ReadTypeBefore(input, first, end - (hasSign ? 1 : 0));
  return found.type.empty() || !PostalTypeTakesNumber(found.type) ? end : found.start;
}

bool ReadPostalNumber(std::string_view text, PostalNumber& number)
{
  number = {};
  if (text.empty()) return true;
  const std::size_t letters = std::min(text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), text.size());
  if (letters > kMaxPrefixLetters || letters == text.size()) return false;
  number.prefix = text.substr(0, letters);
  std::string_view rest = text.substr(letters);
  if (letters > 0 && rest.front() == ' ') rest.remove_prefix(1);
  HouseNumber house;
  if (!ReadHouseNumber(rest, house)) return false;
  number.number = house.number;
  number.suffix = house.suffix;
  return true;
}

}  // namespace arf
