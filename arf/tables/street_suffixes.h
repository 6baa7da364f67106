/** The street suffixs of Australian addresses: full forms, abbreviations for print, other written forms. */
#ifndef QXPAF_ARF_TABLES_STREET_SUFFIXES_H
#define QXPAF_ARF_TABLES_STREET_SUFFIXES_H

#include <span>
#include <string_view>

#include "arf/tables/word_table.h"

namespace arf {

/** All street suffixs, sorted by full form. */
std::span<const WordRow> StreetSuffixRows();

/**
 * The full form of a street suffix in any written form ("N" and "NORTH" give "NORTH"); empty when it is not known.
 *
 * @param upper  upper case, single-spaced, without punctuation (MatchKey makes it so).
 */
std::string_view ExpandStreetSuffix(std::string_view upper);

/** The abbreviation for print ("NORTH" gives "N"); the argument itself when its full form is not known. */
std::string_view AbbreviateStreetSuffix(std::string_view full);

}  // namespace arf

#endif
