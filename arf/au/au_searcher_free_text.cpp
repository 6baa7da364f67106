// The ranked search with words in any order.
#include "arf/au/au_searcher.h"
#include "arf/au/not_offered.h"

namespace arf {

int AuSearcher::BeginAddressSearch(const char*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}

int AuSearcher::GetNextAddressSearch(char* out, int outSize)
{
  return NotOffered(out, outSize);
}

}  // namespace arf
