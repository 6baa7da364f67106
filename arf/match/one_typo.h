/** Whether two words are one typing error apart. */
#ifndef QXPAF_ARF_MATCH_ONE_TYPO_H
#define QXPAF_ARF_MATCH_ONE_TYPO_H

#include <string_view>

namespace arf {

/** True when one letter left out, put in, replaced or two neighbours swapped turns `a` into `b`; false when equal. */
bool IsOneTypoApart(std::string_view a, std::string_view b);

}  // namespace arf

#endif
