/** Which localities a line of text names, without correcting anything. */
#ifndef QXPAF_ARF_MATCH_LOCALITY_QUERY_H
#define QXPAF_ARF_MATCH_LOCALITY_QUERY_H

#include <cstdint>
#include <vector>

#include "arf/match/decision.h"
#include "arf/match/engine.h"
#include "arf/match/input_text.h"

namespace arf {

/**
 * Collects every locality that fits a name, a state and a postcode, of which some may be missing: "SYDNEY NSW 2000",
 * "Richmond", "2000", "NT". State and postcode may stand before the name where nothing is found otherwise.
 *
 * @param found  emptied first; in ascending order. Allocates only when it has to grow.
 * @return why there is none; Fault::None when there are some.
 */
Failure FindLocalities(const Engine& engine, const InputText& line, std::vector<std::uint32_t>& found);

}  // namespace arf

#endif
