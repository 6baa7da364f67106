/**
 * Frees a text from what is no part of an address, and takes words apart that were run together. Nothing that could be
 * a house number, a unit or a lot is ever left out.
 */
#ifndef QXPAF_ARF_MATCH_REPAIR_H
#define QXPAF_ARF_MATCH_REPAIR_H

#include <cstdint>
#include <string_view>

#include "arf/match/fixed_text.h"
#include "arf/match/input_text.h"
#include "arf/match/penalties.h"

namespace arf {

/** Room for repaired texts; kept from search to search. */
struct RepairBuffer
{
  FixedText<kMaxInputBytes> withoutLinks;
  FixedText<kMaxInputBytes> repaired;
};

/** Whose the letter behind the digits of "12AKing" is. */
enum class StuckLetter : std::uint8_t
{
  OfName,   ///< "12 AKing"
  OfNumber  ///< "12A King"
};

/**
 * Leaves out e-mail and web addresses, telephone numbers, numbers of companies and of seven digits and more, "via" and
 * "(near …)" with a place, and words behind state and postcode; takes "12SmithSt" and "Richmond3121" apart; puts
 * a number that stands behind the street in front of it.
 *
 * @param words       the text as read; overwritten while working, so that the caller reads what he needs again
 * @param departures  receives what was done
 * @return            a view of the buffer; empty when there was nothing to repair
 */
std::string_view Repair(std::string_view text, StuckLetter letter, InputText& words, RepairBuffer& buffer,
                        Departures& departures);

}  // namespace arf

#endif
