/**
 * Which addresses of a street have the number, unit, level, lot or building that was typed. All of them are compared
 * exactly; what was not typed may be there.
 */
#ifndef QXPAF_ARF_HINT_PREMISE_SEARCH_H
#define QXPAF_ARF_HINT_PREMISE_SEARCH_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "arf/format/database.h"
#include "arf/hint/typed_text.h"
#include "arf/match/premise.h"

namespace arf {

/** How a number fits the one that was typed, best first. */
enum class NumberFit : std::uint8_t
{
  Same = 0,
  RangeStart = 1,  ///< "12" for 12-14
  InRange = 2,     ///< "13" for 12-14
  Suffix = 3,      ///< "12" for 12A
  None = 4
};

/** Neighbouring addresses of one number, or one address. */
struct PremiseHit
{
  std::uint32_t first = 0;      ///< ordinal
  std::uint32_t points = 0;     ///< from the first to the last one
  std::uint32_t count = 0;      ///< of addresses that read differently
  std::uint32_t wholes = 0;     ///< of them, those without unit and level
  std::uint32_t lastWhole = 0;  ///< ordinal

  /** The address that stands for the number itself; kNoIndex where there is none, or more than one. */
  std::uint32_t Own() const { return wholes == 1 ? lastWhole : count == 1 ? first : kNoIndex; }
};

struct PremiseHits
{
  static constexpr std::size_t kMax = 8;
  std::array<PremiseHit, kMax> hits;
  std::size_t count = 0;
  NumberFit fit = NumberFit::None;  ///< of all of them
  std::uint32_t visited = 0;
};

/** Whether two addresses have the same number, suffixes and range; each without a number stands alone. */
bool SameNumber(const Point& a, const Point& b);

/** Whether two addresses of one street read the same. */
bool ReadsTheSame(const Point& a, const Point& b);

/** Whether an address goes into one hint with the one before it in the street. */
bool BelongsTo(const Point& point, const Point& before);

/** Whether an address is a unit or level of a number. */
inline bool IsInside(const Point& point)
{
  return !(point.unitType.empty() && point.unitNumber.empty() && point.levelType.empty() && point.levelNumber.empty());
}

/** Adds an address to a hit that began with, or last took, the address `before`. */
void AddPoint(PremiseHit& hit, const Point& point, const Point* before);

/** @param most  addresses to look at */
PremiseHits SearchPremise(const Database& database, const TypedText& typed, const Street& street,
                          const Premise& premise, std::uint32_t most);

}  // namespace arf

#endif
