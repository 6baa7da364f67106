#include "arf/match/corner_words.h"

#include <algorithm>

#include "arf/match/premise.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::string_view kAnd = "AND";
constexpr std::string_view kCorners[] = {"CNR", "CRN", "COR", "CORNER"};

bool IsCorner(const Word& word)
{
  return std::find(std::begin(kCorners), std::end(kCorners), word.text) != std::end(kCorners);
}

/** Whether a slash stands between words, not between numbers. */
bool HasSlashBefore(const InputText& input, std::size_t position)
{
  return position > 0 && input[position].before == Joint::Slash && !input[position].hasDigit &&
         !input[position - 1].hasDigit;
}

bool IsJoined(const InputText& input, std::size_t position)
{
  return input[position].afterAnd || HasSlashBefore(input, position);
}

}  // namespace

CornerReadings::CornerReadings(const InputText& input, WordRange body)
{
  std::size_t corner = body.first;
  while (corner < body.last && !IsCorner(input[corner])) ++corner;
  const WordRange left{body.first, corner};
  WordRange right{corner + 1, body.last};
  if (!right.Empty() && input[right.first].text == "OF") ++right.first;
  if (right.Empty()) {
    Split(input, left, Joining::BySigns, corner < body.last);
    return;
  }
  const bool isNumbered = HasHouseNumber(input, left);
  if (isNumbered) Add({left, right, true});
  Split(input, right, Joining::BySigns, true);
  Split(input, right, Joining::ByOthers, false);
  if (!isNumbered) Add({left, right, true});
  if (count_ == 0) Add({right, right, false});
}

void CornerReadings::Add(const CornerWords& words)
{
  if (count_ < kMax && !words.first.Empty() && !words.second.Empty()) readings_[count_++] = words;
}

void CornerReadings::Split(const InputText& input, WordRange words, Joining joining, bool isCertain)
{
  for (std::size_t i = words.first + 1; i < words.last; ++i) {
    const WordRange before{words.first, i};
    const bool isOther = input[i].before == Joint::Break || input[i].before == Joint::Dash;
    if (joining == Joining::BySigns && input[i].text == kAnd)
      Add({before, {i + 1, words.last}, isCertain});
    else if (input[i - 1].text != kAnd && (joining == Joining::BySigns ? IsJoined(input, i) : isOther))
      Add({before, {i, words.last}, isCertain});
  }
}

bool MayBeCorner(const InputText& input)
{
  for (std::size_t i = 0; i < input.Count(); ++i)
    if (IsCorner(input[i]) || input[i].text == kAnd || IsJoined(input, i)) return true;
  return false;
}

bool HasHouseNumber(const InputText& input, WordRange words)
{
  HouseNumber ignored;
  for (std::size_t i = words.first; i < words.last; ++i)
    if (ReadHouseNumber(input[i].text, ignored)) return true;
  return false;
}

std::string_view PluralType(std::string_view word)
{
  if (word.size() < 3 || word.back() != 'S') return {};
  return ExpandStreetType(word.substr(0, word.size() - 1));
}

}  // namespace arf
