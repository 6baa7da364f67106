/** Polygon, statistics, concordance and free-text searches. */
#include "api/plugin_version.h"
#include "api/query_frame.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"

using namespace qxpaf;

namespace {

/** A query that only newer plug-ins know; the others answer 6408, which like all the library's own is not recorded. */
template <class Operation>
int QueryFeature(int id, Feature feature, Reconnect reconnect, Operation&& operation)
{
  return AtBoundary([&] {
    return WithInstance(id, reconnect, NoRequest(), [&](IArfSearcher& searcher) {
      if (!HasFeature(searcher, feature)) return static_cast<int>(PAF_ERR_NOT_IMPLEMENTED);
      return RecordFailure(operation(searcher), id, nullptr);
    });
  });
}

}  // namespace

int pafBeginPolygonSearch(int id, const char* text1, const char* text2)
{
  return Query(
      id, Reconnect::First, [&](int serverId) { return BeginPolygonSearchViaSocket(serverId, text1, text2); },
      [&](IArfSearcher& searcher) { return searcher.BeginPolygonSearch(text1, text2); });
}

int pafGetNextAddressInPolygon(int id, char* out, int size)
{
  if (size < 1) return PAF_ERR_BUFFER_TOO_SMALL;
  return Query(
      id, Reconnect::Never, [&](int serverId) { return GetNextAddressInPolygonViaSocket(serverId, out, size); },
      [&](IArfSearcher& searcher) { return searcher.GetNextAddressInPolygon(out, size); });
}

int pafGetSearchStatistics(int id, const char* text1, const char* text2, const char* text3, const char* text4,
                           char* out, int size)
{
  if (size < 1) return PAF_ERR_BUFFER_TOO_SMALL;
  const auto remote = [&](int serverId) {
    return GetSearchStatisticsViaSocket(serverId, text1, text2, text3, text4, out, size);
  };
  return Query(id, Reconnect::Never, remote, [&](IArfSearcher& searcher) {
    return searcher.GetSearchStatistics(text1, text2, text3, text4, out, size);
  });
}

int pafBeginGifConcordance(int id, intptr_t a, intptr_t b, intptr_t c, intptr_t d, intptr_t e, int n)
{
  return QueryFeature(id, Feature::GifConcordance, Reconnect::First,
                      [&](IArfSearcher& searcher) { return searcher.BeginGifConcordance(a, b, c, d, e, n); });
}

int pafGetNextGifConcordance(int id, char* out1, int size1, char* out2, int size2, void* detail)
{
  if (size1 < 1 || size2 < 1) return PAF_ERR_BUFFER_TOO_SMALL;
  return QueryFeature(id, Feature::GifConcordance, Reconnect::Never, [&](IArfSearcher& searcher) {
    return searcher.GetNextGifConcordance(out1, size1, out2, size2, detail);
  });
}

int pafBeginAddressSearch(int id, const char* query)
{
  return QueryFeature(id, Feature::AddressSearch, Reconnect::First,
                      [&](IArfSearcher& searcher) { return searcher.BeginAddressSearch(query); });
}

int pafGetNextAddressSearch(int id, char* out, int size)
{
  if (size < 1) return PAF_ERR_BUFFER_TOO_SMALL;
  return QueryFeature(id, Feature::AddressSearch, Reconnect::Never,
                      [&](IArfSearcher& searcher) { return searcher.GetNextAddressSearch(out, size); });
}
