/** The level types of Australian addresses: full forms, abbreviations for print, other written forms. */
#ifndef QXPAF_ARF_TABLES_LEVEL_TYPES_H
#define QXPAF_ARF_TABLES_LEVEL_TYPES_H

#include <span>
#include <string_view>

#include "arf/tables/word_table.h"

namespace arf {

/** All level types, sorted by full form. */
std::span<const WordRow> LevelTypeRows();

/**
 * The full form of a level type in any written form ("L" and "LEVEL" give "LEVEL"); empty when it is not known.
 *
 * @param upper  upper case, single-spaced, without punctuation (MatchKey makes it so).
 */
std::string_view ExpandLevelType(std::string_view upper);

/** The abbreviation for print ("LEVEL" gives "L"); the argument itself when its full form is not known. */
std::string_view AbbreviateLevelType(std::string_view full);

}  // namespace arf

#endif
