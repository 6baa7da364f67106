// Addresses judged and laid out.
#include "arf/au/au_searcher.h"
#include "arf/au/not_offered.h"

namespace arf {

int AuSearcher::ValidatePartialAddress(const char*, char* out, int outSize)
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

}  // namespace arf
