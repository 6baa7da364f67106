/** The unit types of Australian addresses: full forms, abbreviations for print, other written forms. */
#ifndef QXPAF_ARF_TABLES_UNIT_TYPES_H
#define QXPAF_ARF_TABLES_UNIT_TYPES_H

#include <span>
#include <string_view>

#include "arf/tables/word_table.h"

namespace arf {

/** All unit types, sorted by full form. */
std::span<const WordRow> UnitTypeRows();

/**
 * The full form of a unit type in any written form ("APT" and "APARTMENT" give "APARTMENT"); empty when it is not
 * known.
 *
 * @param upper  upper case, single-spaced, without punctuation (MatchKey makes it so).
 */
std::string_view ExpandUnitType(std::string_view upper);

/** The abbreviation for print ("APARTMENT" gives "APT"); the argument itself when its full form is not known. */
std::string_view AbbreviateUnitType(std::string_view full);

}  // namespace arf

#endif
