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

using RepairedText = FixedText<kMaxInputBytes>;

/** Room for repaired texts; kept from search to search. */
struct RepairBuffer
{
  RepairedText withoutLinks;
  RepairedText repaired;
};

/** What stood before a word, between it and the text so far. */
inline void AppendJoint(RepairedText& text, const Word& word)
{
  if (text.Empty()) return;
  const Joint joint = word.before;
  text.Append(joint == Joint::Break ? ", " : joint == Joint::Slash ? "/" : joint == Joint::Dash ? "-" : " ");
  if (word.afterAnd) text.Append("& ");
}

/** Whose the letter behind the digits of "12AKing" is. */
enum class StuckLetter : std::uint8_t
{
  OfName,   ///< "12 AKing"
  OfNumber  ///< "12A King"
};

/** What "via" says that is to be left out. */
enum class Detour : std::uint8_t
{
  ToBreak,   ///< "12 Smith St, via Bundaberg, Sydney": up to the next break, state or postcode
  WordOnly,  ///< "12 Smith St via Dubbo": the word, the place behind it is the locality
  ToPlace    ///< up to state or postcode
};

/** One way to repair a text, of several. */
struct RepairChoice
{
  StuckLetter letter = StuckLetter::OfName;
  Detour detour = Detour::ToBreak;
};

/** Whether a text says "via", so that there are choices. */
bool HasDetour(const InputText& words);

/**
 * Leaves out e-mail and web addresses, telephone numbers, numbers of companies and of seven digits and more, "via" and
 * "(near …)" with a place, "near" with a street, names like "7-Eleven", and words behind state and postcode; takes
 * "12SmithSt" and "Richmond3121" apart; puts a number or range that stands behind the street in front of it.
 *
 * @param words       the text as read; overwritten while working, so that the caller reads what he needs again
 * @param departures  receives what was done
 * @return            a view of the buffer; empty when there was nothing to repair
 */
std::string_view Repair(std::string_view text, RepairChoice choice, InputText& words, RepairBuffer& buffer,
                        Departures& departures);

}  // namespace arf

#endif
