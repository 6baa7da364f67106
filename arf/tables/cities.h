/**
 * Cities whose names people write behind the suburb, though no part of the address has them: capitals, and regions with
 * many localities, some of which are no locality themselves.
 */
#ifndef QXPAF_ARF_TABLES_CITIES_H
#define QXPAF_ARF_TABLES_CITIES_H

#include <string_view>

namespace arf {

/**
 * Whether a name is that of a city in a state.
 *
 * @param upper  upper case, single-spaced, without punctuation
 * @param state  "NSW"; empty for any
 */
bool IsCity(std::string_view upper, std::string_view state);

}  // namespace arf

#endif
