/**
 * Arithmetic on locations. All functions are stateless, may run in any number of threads, allocate nothing and throw
 * nothing. Results are those of IEEE double arithmetic in the stated order, without fused operations.
 */
#ifndef QXPAF_TEXT_GEOMETRY_H
#define QXPAF_TEXT_GEOMETRY_H

#include "qxpaf/export.h"

/**
 * The great-circle distance in kilometres on a sphere of radius 6371.0 km, by the spherical law of cosines.
 *
 * With degrees first multiplied by 0.017453292519943295, x = sin(lat1) * sin(lat2) + cos(lat1) * cos(lat2) * cos(lon2 -
 * lon1); the distance is 0.0 when x is 1 or more, 20015.086796020572 when it is below -1, otherwise acos(x) * 6371.0.
 * Equal points give exactly 0.0; points less than about a hundred metres apart are measured coarsely, in steps of about
 * a tenth of a metre at best, because x is then close to 1.
 *
 * @param lat1,lat2 latitudes in degrees, north positive
 * @param lon1,lon2 longitudes in degrees, east positive
 * @return 0 to 20015.086796020572; not a number when an argument is none or infinite
 */
QXPAF_API double LatLongDist(double lat1, double lon1, double lat2, double lon2);

/**
 * The same on text, as text in kilometres.
 *
 * A point is a latitude, one character of any kind and a longitude: "-33.86,151.21". Numbers are read with strtod and
 * written with printf, so that the locale's decimal point counts. What follows the longitude is ignored.
 *
 * @param out      at least outSize + 1 bytes; empty when a point cannot be read. Longer text is cut to outSize bytes.
 *                 Behind the terminator only out[outSize] is written, which is always zero after success.
 * @param decimals digits behind the decimal point; more than 6, and fewer than 0, count as 6
 * @param outSize  the number of characters that out holds, its terminator not counted
 */
QXPAF_API void LatLongDist(char* out, const char* point1, const char* point2, int decimals, unsigned long outSize);

/**
 * The intersection of the line through (x1, y1) and (x2, y2) with the line through (x3, y3) and (x4, y4).
 *
 * @param tolerance a line whose x coordinates differ by no more is vertical. A vertical line whose y coordinates differ
 *                  by no more, too, is a point and has no intersection.
 * @param minAngle  in degrees: lines that cross at a smaller angle (0 to 90) count as parallel. 0 does not test the
 *                  angle: then only equal slopes, and two vertical lines, are parallel.
 * @param x,y       the intersection. The x of a vertical line is that of its first point.
 * @param onFirstSegment null, or set to whether the intersection lies between the points of the first line, both
 *                  included: by its x, or by its y where x1 equals x2 exactly. The second segment is not tested.
 * @return false when there is no intersection; x, y and onFirstSegment are then untouched
 */
QXPAF_API bool IntersectionOfLines(double x1, double y1, double x2, double y2, double x3, double y3, double x4,
                                   double y4, double tolerance, double minAngle, double& x, double& y,
                                   bool* onFirstSegment);

#endif
