/** Whether a text without a locality names a street of the data, without correcting anything. */
#ifndef QXPAF_ARF_MATCH_STREET_QUERY_H
#define QXPAF_ARF_MATCH_STREET_QUERY_H

#include "arf/match/engine.h"
#include "arf/match/input_text.h"

namespace arf {

/**
 * True for "George St", "6 George St", "George St NSW 2000", where a street in that state and postcode is written so,
 * name, type and suffix; if a number, lot or unit is written, one such street must have it. Looks at a bounded number
 * of streets, allocates nothing.
 */
bool NamesStreet(const Engine& engine, const InputText& text);

}  // namespace arf

#endif
