#ifndef QXPAF_SRC_API_PLUGIN_VERSION_H
#define QXPAF_SRC_API_PLUGIN_VERSION_H

class IArfSearcher;

namespace qxpaf {

/** Operations that the first plug-ins did not have. */
enum class Feature
{
  GifConcordance,
  AddressSearch
};

/** Compares two versions number by number; missing and non-numeric numbers count as 0. @return -1, 0 or 1 */
int CompareVersions(const char* a, const char* b);

/** True when the searcher's plug-in is newer than the last version of its country that lacked the feature. */
bool HasFeature(IArfSearcher& searcher, Feature feature);

}  // namespace qxpaf

#endif
