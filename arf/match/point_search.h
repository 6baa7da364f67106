/**
 * Compares what was written before a street with the addresses of a street. Numbers, suffixes and identifiers of units,
 * levels and lots are compared exactly; what a strict search and a lenient one differ in is decided here.
 */
#ifndef QXPAF_ARF_MATCH_POINT_SEARCH_H
#define QXPAF_ARF_MATCH_POINT_SEARCH_H

#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>

#include "arf/format/database.h"
#include "arf/match/premise.h"

namespace arf {

enum class Rules
{
  Strict,
  Lenient
};

/** The best addresses found so far, all with the same penalty; the count is right, the first ones are kept. */
struct PointSet
{
  static constexpr std::size_t kKept = 4;

  Departures departures;  ///< of the first address
  std::uint32_t count = 0;
  std::array<std::uint32_t, kKept> ordinals{};

  bool Empty() const { return count == 0; }
  /** Keeps an address if its penalty is the least so far; one that is there already is not counted again. */
  void Add(std::uint32_t ordinal, const Departures& withDepartures);
  void Add(const PointSet& other, const Departures& more);
  /** The penalty; more than any address has for an empty set. */
  unsigned Sum() const { return Empty() ? UINT_MAX : departures.Sum(); }
};

struct PointSearch
{
  PointSet found;             ///< addresses that fit what was written
  PointSet units;             ///< units and levels at the number, where none was written
  bool numberExists = false;  ///< the number is there, whatever else was written
  std::uint32_t alias =
      kNoIndex;               ///< fits, but says an address with another number or unit, which a strict search refuses
  std::uint32_t visited = 0;  ///< addresses looked at
};

PointSearch SearchPoints(const Database& database, const InputText& input, const Street& street, const Premise& premise,
                         Rules rules);

/** Whether two identifiers are equal; leading zeros of digits do not count. */
bool SameIdentifier(std::string_view a, std::string_view b);

}  // namespace arf

#endif
