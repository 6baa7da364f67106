/** Units and levels as written: "Unit 3", "U3", "Lvl 2", "Ground Floor", "3rd Floor", "Rear". */
#ifndef QXPAF_ARF_MATCH_OCCUPANCY_WORDS_H
#define QXPAF_ARF_MATCH_OCCUPANCY_WORDS_H

#include <cstddef>
#include <string_view>

#include "arf/match/input_text.h"

namespace arf {

/** A unit or level that some words say; count 0: they say none. */
struct OccupancyWords
{
  std::string_view type;    ///< full form, a view of the tables
  std::string_view number;  ///< a view of the input; may be empty
  bool isLevel = false;
  bool isAmbiguous = false;  ///< the type's written form stands for a unit's and a level's ("FL" is flat and floor)
  std::size_t count = 0;
};

/** How an ambiguous type is taken. */
enum class Preference
{
  Units,
  Levels
};

/** The type alone, directly before `end` and not before `first`. */
OccupancyWords ReadDesignator(const InputText& input, std::size_t first, std::size_t end, Preference preference);

/** A whole unit or level directly before `end` and not before `first`. */
OccupancyWords ReadOccupancyBefore(const InputText& input, std::size_t first, std::size_t end, Preference preference);

/** Type and number in one word: "U3", "LVL2", "SHOP4". */
OccupancyWords ReadCombined(std::string_view word, Preference preference);

/** Whether a unit or level type makes sense without a number ("REAR", "GROUND"). */
bool StandsAlone(std::string_view type);

/** Whether two types of units may stand for each other; a car space never stands for a flat. */
bool Interchangeable(std::string_view unitType, std::string_view otherUnitType);

/** Whether two types of levels say the same ("LEVEL" and "FLOOR"). */
bool SameLevelType(std::string_view levelType, std::string_view otherLevelType);

}  // namespace arf

#endif
