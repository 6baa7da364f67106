/** The kinds of postal delivery (boxes, bags, services): the form used on mail and other written forms. */
#ifndef QXPAF_ARF_TABLES_POSTAL_TYPES_H
#define QXPAF_ARF_TABLES_POSTAL_TYPES_H

#include <span>
#include <string_view>

#include "arf/tables/word_table.h"

namespace arf {

/** All kinds, sorted by `full`, which is the form on mail: "GPO BOX", "LOCKED BAG", "PO BOX", "RMB". */
std::span<const WordRow> PostalTypeRows();

/**
 * The form on mail of any written form ("P O BOX", "POST OFFICE BOX" and "POBOX" give "PO BOX"); empty when unknown.
 *
 * @param upper  upper case, single-spaced, without punctuation (MatchKey makes it so).
 */
std::string_view ExpandPostalType(std::string_view upper);

/** Whether any written form begins with this letter, a capital; few letters do. */
bool MayBeginPostalType(char letter);

/** Whether a kind, given in its form on mail, carries a number; "CARE PO" and "CPA" do not. True for unknown kinds. */
bool PostalTypeTakesNumber(std::string_view type);

}  // namespace arf

#endif
