/** Reads polygons and places that callers wrote. */
#ifndef QXPAF_ARF_SPATIAL_POLYGON_TEXT_H
#define QXPAF_ARF_SPATIAL_POLYGON_TEXT_H

#include <string_view>

#include "arf/spatial/geo.h"
#include "arf/spatial/polygon.h"

namespace arf {

/**
 * Reads a polygon in one of two ways:
 *
 *  - a list of latitudes and longitudes, "-33.86,151.20;-33.87,151.22;-33.88,151.21". Numbers are separated by commas,
 *    semicolons or white space; "|" ends a ring. A ring's last vertex may repeat its first.
 *  - well-known text, POLYGON or MULTIPOLYGON, in any letter case, longitude before latitude, with "SRID=4326;" before
 *    it and third coordinates or not. POLYGON EMPTY has no rings.
 *
 * @return what is wrong, a sentence without its place; empty when the polygon was read. After a fault `polygon` is
 *         empty.
 */
std::string_view ReadPolygon(std::string_view text, Polygon& polygon);

/** Reads a latitude and a longitude, separated as in lists. @return as ReadPolygon */
std::string_view ReadPlace(std::string_view text, GeoPoint& place);

}  // namespace arf

#endif
