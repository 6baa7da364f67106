// What to show while somebody types.
#include "arf/au/au_searcher.h"
#include "arf/au/not_offered.h"

namespace arf {

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

}  // namespace arf
