/** Another name of each locality that has one, by locality; the data keeps them by name. */
#ifndef QXPAF_ARF_AU_OTHER_LOCALITY_NAMES_H
#define QXPAF_ARF_AU_OTHER_LOCALITY_NAMES_H

#include <cstdint>
#include <mutex>
#include <string_view>
#include <vector>

#include "arf/format/database.h"

namespace arf {

/** Any number of threads may ask. */
class OtherLocalityNames
{
 public:
  /** @param database  must outlive this */
  explicit OtherLocalityNames(const Database& database) : database_(database) {}

  /** The first of a locality's other names, by match key; empty when it has none. Only the first call ever allocates.
   */
  std::string_view First(std::uint32_t locality) const;

 private:
  struct Entry
  {
    std::uint32_t locality = 0;
    std::uint32_t alias = 0;
  };
  void Collect() const;

  const Database& database_;
  mutable std::once_flag collected_;
  mutable std::vector<Entry> entries_;  ///< ascending by locality, one for each
};

}  // namespace arf

#endif
