/** The properties that choose what searches and enumerations answer. */
#ifndef QXPAF_ARF_AU_SEARCH_PROPERTIES_H
#define QXPAF_ARF_AU_SEARCH_PROPERTIES_H

#include "arf/au/property_request.h"

namespace arf {

// Each pair answers and takes one property; see Property in properties.cpp. They mean nothing outside a searcher.
int ReadLatLongSearchRange(const PropertyRequest& request);
int ReadStateFilter(const PropertyRequest& request);
int ReadAddressFilter(const PropertyRequest& request);
int ReadPointsOfInterest(const PropertyRequest& request);
int ReadGeographicalCodes(const PropertyRequest& request);
int ReadGeographicalCodesFilter(const PropertyRequest& request);
int ReadGifCommonMinimumPercent(const PropertyRequest& request);

bool WriteLatLongSearchRange(std::string_view value, const Database& database, Settings& settings, BoundedText& reason);
bool WriteStateFilter(std::string_view value, const Database& database, Settings& settings, BoundedText& reason);
bool WriteAddressFilter(std::string_view value, const Database& database, Settings& settings, BoundedText& reason);
bool WritePointsOfInterest(std::string_view value, const Database& database, Settings& settings, BoundedText& reason);
bool WriteGeographicalCodes(std::string_view value, const Database& database, Settings& settings, BoundedText& reason);
bool WriteGeographicalCodesFilter(std::string_view value, const Database& database, Settings& settings,
                                  BoundedText& reason);
bool WriteGifCommonMinimumPercent(std::string_view value, const Database& database, Settings& settings,
                                  BoundedText& reason);

}  // namespace arf

#endif
