/** A searcher's settings and the properties through which they are read and written. */
#ifndef QXPAF_ARF_AU_SETTINGS_H
#define QXPAF_ARF_AU_SETTINGS_H

#include <string_view>

#include "arf/au/record_fields.h"
#include "arf/format/database.h"
#include "arf/match/bounded_text.h"

namespace arf {

struct Settings
{
  char delimiter = '\t';
  FieldList outputFields;
};

/**
 * Reads a property into `out`.
 *
 * @param database  null where none is open: properties of the database and of searchers then do not exist
 * @param settings  null where there is no searcher
 * @return 0 or PAF_AU_ERR_UNKNOWN_PROPERTY; whether the text fitted is the caller's to see
 */
int ReadProperty(std::string_view name, const Database* database, const Settings* settings, BoundedText& out);

/**
 * Sets a property. Nothing changes on failure.
 *
 * @param reason  receives on failure a sentence that says why
 * @return 0, PAF_AU_ERR_UNKNOWN_PROPERTY, PAF_AU_ERR_READ_ONLY_PROPERTY or PAF_AU_ERR_PROPERTY_VALUE
 */
int WriteProperty(std::string_view name, std::string_view value, const Database& database, Settings& settings,
                  BoundedText& reason);

}  // namespace arf

#endif
