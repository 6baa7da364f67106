/** The street types of Australian addresses: full forms, abbreviations for print, other written forms. */
#ifndef QXPAF_ARF_TABLES_STREET_TYPES_H
#define QXPAF_ARF_TABLES_STREET_TYPES_H

#include <span>
#include <string_view>

#include "arf/tables/word_table.h"

namespace arf {

/** All street types, sorted by full form. */
std::span<const WordRow> StreetTypeRows();

/**
 * The full form of a street type in any written form ("ST" and "STREET" give "STREET"); empty when it is not known.
 *
 * @param upper  upper case, single-spaced, without punctuation (MatchKey makes it so).
 */
std::string_view ExpandStreetType(std::string_view upper);

/** The full form of another form ("PDE" gives "PARADE"); empty when the word is no type's other form. */
std::string_view SpelledOutType(std::string_view upper);

/** The abbreviation for print ("STREET" gives "ST"); the argument itself when its full form is not known. */
std::string_view AbbreviateStreetType(std::string_view full);

}  // namespace arf

#endif
