/** The states and territories. */
#ifndef QXPAF_ARF_TABLES_STATES_H
#define QXPAF_ARF_TABLES_STATES_H

#include <span>
#include <string_view>

#include "arf/tables/word_table.h"

namespace arf {

/** All states, sorted by `full` ("NEW SOUTH WALES"); `abbreviation` is the code used in databases and on mail. */
std::span<const WordRow> StateRows();

/**
 * The code of a state in any written form ("NSW", "N S W", "NEW SOUTH WALES" give "NSW"); empty when unknown.
 *
 * @param upper  upper case, single-spaced, without punctuation (MatchKey makes it so).
 */
std::string_view StateCode(std::string_view upper);

/** The full name for a code or other written form; empty when unknown. */
std::string_view StateName(std::string_view upper);

}  // namespace arf

#endif
