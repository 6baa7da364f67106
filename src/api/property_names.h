/** The names of properties, as "Properties" lists and "PropertyName" numbers them. */
#ifndef QXPAF_SRC_API_PROPERTY_NAMES_H
#define QXPAF_SRC_API_PROPERTY_NAMES_H

#include <string_view>

class IArfSearcher;

namespace qxpaf {

/** True for the names that the default plug-in answers without a database. */
bool IsDefaultPluginProperty(std::string_view name);

/**
 * All names, joined by ";": the library's and then the searcher's own list or, without one, the default plug-in's.
 *
 * @param searcher  may be null
 * @param id        the searcher's instance, to which its failures are recorded
 * @return 0; 6406 when it does not fit, with out unchanged; the searcher's status
 */
int ListPropertyNames(IArfSearcher* searcher, int id, char* out, int size);

/**
 * One name by its number: from 1 the library's, then the searcher's or, without one, the default plug-in's. A number
 * without a name answers the empty text.
 *
 * @return as ListPropertyNames
 */
int GetPropertyNameByIndex(IArfSearcher* searcher, int id, int n, char* out, int size);

}  // namespace qxpaf

#endif
