// Searches by place: polygons, statistics, concordances and geographical codes.
#include "arf/au/au_searcher.h"
#include "arf/au/not_offered.h"

namespace arf {

int AuSearcher::SetGeographicalCodes(const char*, char* errText, int errSize)
{
  return NotOffered(errText, errSize);
}

int AuSearcher::BeginPolygonSearch(const char*, const char*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}

int AuSearcher::GetNextAddressInPolygon(char* out, int outSize)
{
  return NotOffered(out, outSize);
}

int AuSearcher::GetSearchStatistics(const char*, const char*, const char*, const char*, char* out, int outSize)
{
  return NotOffered(out, outSize);
}

int AuSearcher::BeginGifConcordance(std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t, int)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}

int AuSearcher::GetNextGifConcordance(char* out1, int size1, char* out2, int size2, void*)
{
  NotOffered(out2, size2);
  return NotOffered(out1, size1);
}

}  // namespace arf
