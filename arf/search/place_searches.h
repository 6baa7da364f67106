/** All that a searcher keeps for searches by place. */
#ifndef QXPAF_ARF_SEARCH_PLACE_SEARCHES_H
#define QXPAF_ARF_SEARCH_PLACE_SEARCHES_H

#include <cstdint>
#include <vector>

#include "arf/search/address_filter.h"
#include "arf/search/concordance.h"
#include "arf/search/place_statistics.h"
#include "arf/spatial/area_search.h"

namespace arf {

struct PlaceSearches
{
  explicit PlaceSearches(const Database& database)
      : tree(database.Section(layout::SectionId::SpatialTree), database.PointCount()),
        near(tree),
        polygon(tree),
        counted(tree),
        addressFilter(database),
        polygonFilter(database),
        countFilter(database),
        statistics(database),
        concordance(database)
  {
  }
  PlaceSearches(const PlaceSearches&) = delete;
  PlaceSearches& operator=(const PlaceSearches&) = delete;

  SpatialTree tree;
  AreaSearch near;     ///< of GetAddress
  AreaSearch polygon;  ///< of BeginPolygonSearch
  AreaSearch counted;  ///< of GetSearchStatistics
  AddressFilter addressFilter, polygonFilter, countFilter;
  PlaceStatistics statistics;
  std::vector<std::uint32_t> localities;  ///< of statistics
  Concordance concordance;
};

}  // namespace arf

#endif
