#include "arf/match/occupancy_words.h"

#include <algorithm>

#include "arf/match/canonical_words.h"
#include "arf/match/premise.h"
#include "arf/tables/level_types.h"
#include "arf/tables/unit_types.h"

namespace arf {
namespace {

constexpr std::size_t kLongestType = 3;  // words: "LOWER GROUND FLOOR"
constexpr std::size_t kShortestTypeBeforeLetter = 3;
constexpr std::string_view kLevel = "LEVEL";
constexpr std::string_view kFloor = "FLOOR";

/** Types that make sense without a number. */
constexpr std::string_view kNumberless[] = {
    "BASEMENT",  "GROUND",           "LOBBY",        "LOWER GROUND FLOOR", "LOWER LEVEL",
    "MEZZANINE", "OBSERVATION DECK", "PENTHOUSE",    "PLATFORM",           "PODIUM",
    "REAR",      "ROOFTOP",          "SUB-BASEMENT", "UPPER GROUND FLOOR", "UPPER LEVEL",
};

/** Parts of a building that are no place to live or work; "Unit 3" never means one of these. */
constexpr std::string_view kAppurtenances[] = {
    "ANTENNA",      "AUTOMATED TELLER MACHINE",
    "CAGE",         "CARPARK",
    "CARSPACE",     "GARAGE",
    "MARINE BERTH", "SIGN",
    "STORE",        "SUBSTATION",
    "BOATSHED",     "COOLROOM",
    "VAULT",        "SHED",
};

template <std::size_t Count>
bool IsOneOf(const std::string_view (&list)[Count], std::string_view word)
{
  return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

OccupancyWords FromText(std::string_view text, Preference preference)
{
  const std::string_view unit = ExpandUnitType(text);
  const std::string_view level = ExpandLevelType(text);
  OccupancyWords words;
  words.isAmbiguous = !unit.empty() && !level.empty();
  words.isLevel = !level.empty() && (unit.empty() || preference == Preference::Levels);
  words.type = words.isLevel ? level : unit;
  return words;
}

bool IsIdentifier(const Word& word)
{
  return word.hasDigit || (word.text.size() == 1 && IsUpperLetter(word.text.front()));
}

/** "3RD FLOOR", "LEVEL" behind its number; ordinals may be spelled out. */
OccupancyWords ReadOrdinalLevel(const InputText& input, std::size_t first, std::size_t end)
{
  OccupancyWords words;
  if (end < first + 2 || ExpandLevelType(input[end - 1].text).empty()) return words;
  const std::string_view type = ExpandLevelType(input[end - 1].text);
  const std::string_view ordinal = CanonicalWord(input[end - 2].text);
  const std::size_t digits = std::min(ordinal.find_first_not_of("0123456789"), ordinal.size());
  if (digits == 0 || ordinal.size() != digits + 2 || (type != kLevel && type != kFloor)) return words;
  words.type = type;
  words.number = ordinal.substr(0, digits);
  words.isLevel = true;
  words.count = 2;
  return words;
}

/** A type without number: "REAR", "GROUND FLOOR". One letter alone is never enough. */
OccupancyWords ReadNumberless(const InputText& input, std::size_t first, std::size_t end, Preference preference)
{
  OccupancyWords words = ReadDesignator(input, first, end, preference);
  const bool isLetter = words.count == 1 && input[end - 1].text.size() == 1;
  if (words.count > 0 && (isLetter || !StandsAlone(words.type))) words.count = 0;
  return words;
}

}  // namespace

OccupancyWords ReadDesignator(const InputText& input, std::size_t first, std::size_t end, Preference preference)
{
  for (std::size_t count = input.WordsWithoutDigits(first, end, kLongestType); count > 0; --count) {
    OccupancyWords words = FromText(input.Text(end - count, end), preference);
    if (words.type.empty()) continue;
    words.count = count;
    return words;
  }
  return {};
}

OccupancyWords ReadCombined(std::string_view word, Preference preference)
{
  const std::size_t letters = word.find_first_of("0123456789");
  if (letters == 0 || letters == std::string_view::npos) return {};
  // The number may start with a letter of its own: "APTG1".
  for (std::size_t typeEnd = letters; typeEnd + 1 >= letters && typeEnd > 0; --typeEnd) {
    OccupancyWords words = FromText(word.substr(0, typeEnd), preference);
    if (words.type.empty() || (typeEnd < letters && typeEnd < kShortestTypeBeforeLetter)) continue;
    words.number = word.substr(typeEnd);
    words.count = 1;
    return words;
  }
  return {};
}

OccupancyWords ReadOccupancyBefore(const InputText& input, std::size_t first, std::size_t end, Preference preference)
{
  if (end <= first) return {};
  const Word& last = input[end - 1];
  if (IsIdentifier(last)) {
    const bool hasSign = end > first + 2 && IsNumberSign(input[end - 2].text);  // "Unit No 3"
    OccupancyWords words = ReadDesignator(input, first, end - (hasSign ? 2 : 1), preference);
    if (words.count > 0) {
      words.number = last.text;
      words.count += hasSign ? 2 : 1;
      return words;
    }
    if (words = ReadCombined(last.text, preference); words.count > 0) return words;
  }
  if (const OccupancyWords words = ReadOrdinalLevel(input, first, end); words.count > 0) return words;
  return ReadNumberless(input, first, end, preference);
}

bool StandsAlone(std::string_view type)
{
  return IsOneOf(kNumberless, type);
}

bool Interchangeable(std::string_view unitType, std::string_view otherUnitType)
{
  if (unitType == otherUnitType) return true;
  return !IsOneOf(kAppurtenances, unitType) && !IsOneOf(kAppurtenances, otherUnitType);
}

bool SameLevelType(std::string_view levelType, std::string_view otherLevelType)
{
  const auto isStorey = [](std::string_view type) { return type == kLevel || type == kFloor; };
  return levelType == otherLevelType || (isStorey(levelType) && isStorey(otherLevelType));
}

}  // namespace arf
