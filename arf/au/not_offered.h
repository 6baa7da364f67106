/** The answer of operations that the plug-in does not offer: 6408, and an empty text where there is room for one. */
#ifndef QXPAF_ARF_AU_NOT_OFFERED_H
#define QXPAF_ARF_AU_NOT_OFFERED_H

#include "arf/match/bounded_text.h"
#include "qxpaf/paf.h"

namespace arf {

inline int NotOffered(char* out, int outSize)
{
  BoundedText(out, outSize).Clear();
  return PAF_ERR_NOT_IMPLEMENTED;
}

}  // namespace arf

#endif
