/**
 * What each departure from the data costs. The candidate with the least sum is taken; two with the same sum leave the
 * question open. A strict search takes only the departures of the first group.
 */
#ifndef QXPAF_ARF_MATCH_PENALTIES_H
#define QXPAF_ARF_MATCH_PENALTIES_H

#include <cstdint>

#include "arf/match/name_index.h"

namespace arf {

// Ways to write the same thing.
inline constexpr std::uint8_t kNameVariantPenalty = 1;        ///< "Mt Isa" for "MOUNT ISA"
inline constexpr std::uint8_t kPlaceOrderPenalty = 1;         ///< postcode or state before the locality
inline constexpr std::uint8_t kDetachedSuffixPenalty = 1;     ///< "12 A" for "12A"
inline constexpr std::uint8_t kTypeInNamePenalty = 1;         ///< "Town Hall 1/135", where HALL may be the unit's type
inline constexpr std::uint8_t kOtherUnitTypePenalty = 1;      ///< "Flat 3" for "UNIT 3"
inline constexpr std::uint8_t kUnwrittenLevelPenalty = 1;     ///< "Unit 3" for "UNIT 3 LEVEL 2"
inline constexpr std::uint8_t kUnwrittenLotPenalty = 1;       ///< "12" for "LOT 5 12"
inline constexpr std::uint8_t kUnwrittenBuildingPenalty = 1;  ///< "11" for "OPERA COURT, 11"
inline constexpr std::uint8_t kOtherBuildingPenalty = 1;      ///< words in front that are not the address's building
inline constexpr std::uint8_t kUnusualUnitPenalty = 2;        ///< "3/12" for "CARSPACE 3"
inline constexpr std::uint8_t kBrokenNamePenalty = 2;         ///< a comma inside a name

// Changes, which only a lenient search makes.
inline constexpr std::uint8_t kPreferredUnitPenalty = 1;     ///< "3/12" for "SHOP 3", when there may be a "UNIT 3" too
inline constexpr std::uint8_t kBarePairPenalty = 32;         ///< "3 12" for "3/12"
inline constexpr std::uint8_t kDashPairPenalty = 34;         ///< "3-12" for "3/12"
inline constexpr std::uint8_t kArticlePenalty = 32;          ///< "Gap" for "THE GAP"
inline constexpr std::uint8_t kUnknownLevelPenalty = 32;     ///< the level written is not in the data, the unit is
inline constexpr std::uint8_t kUnknownLotPenalty = 32;       ///< the lot written is not in the data, the number is
inline constexpr std::uint8_t kSingleUnitPenalty = 32;       ///< no unit written, and the number has just this one
inline constexpr std::uint8_t kInsideRangePenalty = 40;      ///< "138" for "138-144"
inline constexpr std::uint8_t kStreetTypePenalty = 40;       ///< another street type or suffix, or none
inline constexpr std::uint8_t kMissingLocalityPenalty = 40;  ///< nothing but the postcode says where

/** A sum from here on holds a change: all the ways to write the same thing together stay below. */
inline constexpr std::uint8_t kFirstChange = 32;

/** One change needs everything else to confirm it: two of them together are too many. */
inline constexpr std::uint8_t kPenaltyLimit = 64;

inline constexpr std::uint8_t FitPenalty(NameFit fit)
{
  return fit == NameFit::Exact ? 0 : fit == NameFit::Variant ? kNameVariantPenalty : kArticlePenalty;
}

}  // namespace arf

#endif
