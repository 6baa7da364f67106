/**
 * Guesses at a text in which nothing was found: signs that look alike were mistaken for each other, the state is
 * mistyped, words follow it, the locality stands first, or something in brackets stands behind the street. What is in
 * front of the last house number stays as it is.
 */
#ifndef QXPAF_ARF_MATCH_MISREAD_H
#define QXPAF_ARF_MATCH_MISREAD_H

#include <string_view>

#include "arf/match/input_text.h"
#include "arf/match/penalties.h"
#include "arf/match/repair.h"

namespace arf {

/**
 * "112 Sm1ths R0ad Dubbo NWS 283O, please ring": letters for digits of the postcode, digits for letters of names, one
 * typing error in the state, up to two words behind it.
 *
 * @param one         the letter that a digit 1 is taken for, 'I' or 'L'
 * @param departures  receives what was done
 * @return            a view of `out`; empty when nothing looks misread
 */
std::string_view PutRight(const InputText& words, char one, RepairedText& out, Departures& departures);

/**
 * "Dubbo NSW 2830, 112 Smiths Road" with the first part put behind the others.
 *
 * @return a view of `out`; empty when the first part cannot be a locality with state and postcode
 */
std::string_view PutLocalityLast(const InputText& words, RepairedText& out);

/**
 * "112 Smiths Road (Napoleon Rise), Dubbo" without the first brackets.
 *
 * @param inner  receives a view of what was in the brackets; it is for the caller to judge
 * @return       a view of `out`; empty when there are no brackets behind a digit, or a digit is inside
 */
std::string_view LeaveBracketsOut(std::string_view text, RepairedText& out, std::string_view& inner);

}  // namespace arf

#endif
