/** Counts addresses, and the streets and localities that they are in. */
#ifndef QXPAF_ARF_SEARCH_PLACE_STATISTICS_H
#define QXPAF_ARF_SEARCH_PLACE_STATISTICS_H

#include <cstdint>
#include <vector>

#include "arf/format/database.h"

namespace arf {

/** What is counted in. */
enum class CountedIn
{
  Unknown,
  Polygon,
  Radius,
  Postcode,
  Locality,
  State
};

class PlaceStatistics
{
 public:
  /** @param database  must outlive the statistics */
  explicit PlaceStatistics(const Database& database) : database_(database) {}

  /** Forgets what was counted. The first call makes room for a bit a street and a locality. */
  void Clear();
  void AddPoint(std::uint32_t ordinal);
  /** All points of a street but those that are other ways to say an address. Adding a point or street twice counts its
   * addresses twice. */
  void AddStreet(std::uint32_t street);

  std::uint64_t Addresses() const { return addresses_; }
  std::uint32_t Streets() const { return streets_; }  ///< with a name; neither postal boxes nor lots without a street
  std::uint32_t Localities() const { return localities_; }

 private:
  void Enter(const Street& street);

  const Database& database_;
  std::vector<bool> seenStreets_, seenLocalities_;
  Street street_;  ///< of the last point
  std::uint64_t addresses_ = 0;
  std::uint32_t streets_ = 0;
  std::uint32_t localities_ = 0;
};

}  // namespace arf

#endif
