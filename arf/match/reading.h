/** One way in which an input was read: which words were taken for what. */
#ifndef QXPAF_ARF_MATCH_READING_H
#define QXPAF_ARF_MATCH_READING_H

#include <string_view>

#include "arf/match/last_line.h"
#include "arf/match/premise.h"

namespace arf {

/** Views and word ranges belong to the input that was read last. */
struct Reading
{
  Premise premise;
  WordRange streetName;
  std::string_view streetType;    ///< full form
  std::string_view streetSuffix;  ///< full form
  std::string_view postalType;    ///< as on mail, "PO BOX"; empty for streets
  std::string_view postalNumber;
  WordRange locality;
  WrittenPlace place;
};

}  // namespace arf

#endif
