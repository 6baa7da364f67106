/**
 * Cities whose names people write behind the suburb, though no part of the address has them: capitals, and regions with
 * many localities, some of which are no locality themselves.
 */
#ifndef QXPAF_ARF_TABLES_CITIES_H
#define QXPAF_ARF_TABLES_CITIES_H

#include <string_view>

namespace arf {

/**
 * The city whose name some words end with, empty when there is none.
 *
 * @param upper  upper case, single-spaced, without punctuation
 * @param state  "NSW", the state of the city; empty for any
 */
std::string_view CityAtEnd(std::string_view upper, std::string_view state);

}  // namespace arf

#endif
