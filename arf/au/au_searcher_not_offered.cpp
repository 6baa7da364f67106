// The operations that this release does not offer. They answer 6408 and leave an empty text where there is room for
// one.
#include "arf/au/au_searcher.h"
#include "arf/match/bounded_text.h"
#include "qxpaf/paf.h"

namespace arf {
namespace {

int NotOffered(char* out, int outSize)
{
  BoundedText(out, outSize).Clear();
  return PAF_ERR_NOT_IMPLEMENTED;
}

}  // namespace

int AuSearcher::ValidatePartialAddress(const char*, char* out, int outSize)
{
  return NotOffered(out, outSize);
}

int AuSearcher::GetPopupHint(const char*, const char*, int, char* out, int outSize)
{
  return NotOffered(out, outSize);
}

int AuSearcher::GetNextPopupHint(char* out, int outSize)
{
  return NotOffered(out, outSize);
}

int AuSearcher::GetAddressHint(const char*, const char*, char* out, int outSize)
{
  return NotOffered(out, outSize);
}

int AuSearcher::GetNextAddressHint(char* out, int outSize)
{
  return NotOffered(out, outSize);
}

int AuSearcher::ValidateFullAddress(const char*, char* out, int outSize, int, char*)
{
  return NotOffered(out, outSize);
}

int AuSearcher::FormatAddress(const char*, char* out, long, int outSize)
{
  return NotOffered(out, outSize);
}

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

int AuSearcher::BeginAddressSearch(const char*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}

int AuSearcher::GetNextAddressSearch(char* out, int outSize)
{
  return NotOffered(out, outSize);
}

}  // namespace arf
