/** What the client of a searcher may choose. */
#ifndef QXPAF_ARF_AU_SETTINGS_H
#define QXPAF_ARF_AU_SETTINGS_H

#include "arf/au/record_fields.h"
#include "arf/search/search_settings.h"

namespace arf {

struct Settings
{
  char delimiter = '\t';
  FieldList outputFields;
  SearchSettings search;
};

}  // namespace arf

#endif
