/** The properties of searchers and of the plug-in itself: one table from names to what answers them. */
#ifndef QXPAF_ARF_AU_PROPERTIES_H
#define QXPAF_ARF_AU_PROPERTIES_H

#include <string_view>

#include "arf/au/settings.h"
#include "arf/barcode/sort_plan.h"
#include "arf/format/database.h"
#include "arf/match/bounded_text.h"
#include "arf/match/penalties.h"

namespace arf {

/** What properties are read from. All are null outside a searcher of an open database. */
struct PropertySource
{
  const Database* database = nullptr;
  const SortPlanFile* sortPlan = nullptr;
  const Settings* settings = nullptr;
  const Departures* departures = nullptr;  ///< of the last search; empty when it found nothing
};

/**
 * Reads a property into `out`.
 *
 * @param reason  receives on failure a sentence that says more than the status does; may stay empty
 * @return 0, PAF_AU_ERR_UNKNOWN_PROPERTY for a name that means nothing with this source, or another status of the
 *         plug-in; whether the text fitted is the caller's to see
 */
int ReadProperty(std::string_view name, const PropertySource& source, BoundedText& out, BoundedText& reason);

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
