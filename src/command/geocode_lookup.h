/** The records in which commands ask for addresses. */
#ifndef QXPAF_SRC_COMMAND_GEOCODE_LOOKUP_H
#define QXPAF_SRC_COMMAND_GEOCODE_LOOKUP_H

#include <string>

namespace qxpaf {

/** The instance's field delimiter. */
struct Delimiter
{
  char text[4] = {};  ///< the property's text, perhaps empty

  char Character() const { return text[0] != '\0' ? text[0] : '\t'; }
};

/** @return 0 or the status of the property */
int ReadDelimiter(int id, Delimiter& delimiter);

/** A record of empty fields, then one with this text. */
std::string Record(const Delimiter& delimiter, std::size_t fieldsBefore, const char* text);

/**
 * The command LookupByGeocode. Its parameters, in any order: "Id"; "LatLong" with "True", for latitude and longitude
 * joined by a comma; "Unique" with "True", to get nothing when there is a second address; "Range", the range of this
 * search alone. A later "LatLong" takes "Unique" back.
 *
 * @param rest  the parameters and the geocode
 * @param text  receives the address; the buffer that holds the rest too
 * @param size  the characters that the address may take
 */
int LookupByGeocode(char* rest, char* text, int size);

}  // namespace qxpaf

#endif
