/** Addresses of a database as lines of text, in upper case and full forms. */
#ifndef QXPAF_ARF_MATCH_ADDRESS_TEXT_H
#define QXPAF_ARF_MATCH_ADDRESS_TEXT_H

#include "arf/format/database.h"
#include "arf/match/bounded_text.h"

namespace arf {

/** "UNIT 3 LEVEL 2 12-14 GEORGE STREET", "LOT 5 SMITH ROAD", "PO BOX 123"; the words are put behind what is there. */
void AppendStreetLine(BoundedText& text, const Point& point, const Street& street);

/** "GEORGE STREET WEST"; "PO BOX" for postal deliveries. */
void AppendStreet(BoundedText& text, const Street& street);

/** "SYDNEY NSW 2000" */
void AppendLocality(BoundedText& text, const Locality& locality);

/** "TOWN HALL, UNIT 3 12 GEORGE STREET, SYDNEY NSW 2000" */
void AppendAddress(BoundedText& text, const Database& database, std::uint32_t ordinal);

/** "12A-14B", "C96"; nothing for an address without number. */
void AppendNumber(BoundedText& text, const Point& point);

/** "UNIT 3 LEVEL 2"; nothing for a whole building. */
void AppendOccupancy(BoundedText& text, const Point& point);

}  // namespace arf

#endif
