/**
 * Departures: everything in which an address of the data may differ from what was written and still be meant by it.
 * Each kind has a name, which programs see in the property that explains a match, and a cost. The candidate with the
 * least sum is taken; what a search does about close ones is below.
 */
#ifndef QXPAF_ARF_MATCH_PENALTIES_H
#define QXPAF_ARF_MATCH_PENALTIES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "arf/match/bounded_text.h"
#include "arf/match/name_index.h"

namespace arf {

enum class Departure : std::uint8_t
{
  // Ways to write the same thing; a strict search takes these only.
  StreetVariant,      ///< "Bulbul Ct" for "BUL BUL COURT"
  LocalityVariant,    ///< "Mt Isa" for "MOUNT ISA"
  PlaceOrder,         ///< postcode or state before the locality
  DetachedSuffix,     ///< "12 A" for "12A"
  TypeInName,         ///< "Town Hall 1/135", where HALL may be the unit's type
  OtherUnitType,      ///< "Flat 3" for "UNIT 3"
  UnwrittenLevel,     ///< "Unit 3" for "UNIT 3 LEVEL 2"
  UnwrittenLot,       ///< "12" for "LOT 5 12"
  UnwrittenBuilding,  ///< "11" for "OPERA COURT, 11"
  OtherBuilding,      ///< words in front that are not the address's building
  BrokenStreet,       ///< a comma inside a street
  BrokenLocality,     ///< a comma inside a locality
  StreetAlias,        ///< another name of the street
  LocalityAlias,      ///< another name of the locality
  UnitBehindStreet,   ///< "12 Smith St Unit 3"
  AddressAlias,       ///< another way to say the address, with its number and unit

  // Changes, which only a lenient search makes.
  PreferredUnit,      ///< "3/12" for "SHOP 3", when there may be a "UNIT 3" too; alone no change
  UnusualUnit,        ///< "3/12" for "CARSPACE 3"
  StreetArticle,      ///< "Esplanade" for "THE ESPLANADE"
  LocalityArticle,    ///< "Gap" for "THE GAP"
  BarePair,           ///< "3 12" for "3/12"
  DashPair,           ///< "3-12" for "3/12"
  UnknownLevel,       ///< the level written is not in the data, the unit is
  UnknownLot,         ///< the lot written is not in the data, the number is
  UnknownUnit,        ///< the unit written is not in the data: the building is the answer
  SingleUnit,         ///< no unit written, and the number has just this one
  InsideRange,        ///< "138" for "138-144"
  RangeMiddle,        ///< the number is neither end of the range
  RenumberedAlias,    ///< another way to say the address, with another number or unit
  StreetTypeTypo,     ///< "Stret" for "STREET"
  StreetTypeMissing,  ///< "435 Whitewood"
  StreetTypeDiffers,  ///< another street type
  SuffixMissing,      ///< "King St" for "KING STREET WEST"
  SuffixAdded,        ///< "King St West" for "KING STREET"
  StreetTypo,         ///< one typing error
  StreetTypoShort,    ///< one typing error in a name of up to five letters
  StreetTwoTypos,     ///< two typing errors in a long name
  StreetSound,        ///< sounds alike
  LocalityTypo,
  LocalityTypoShort,
  LocalityTwoTypos,
  LocalitySound,
  LocalityPart,     ///< "Darwin" for "DARWIN CITY", "Sydney CBD" for "SYDNEY"
  LocalityOrder,    ///< "East Kew" for "KEW EAST"
  LocalityMissing,  ///< nothing but the postcode says where
  Neighbour,        ///< the street is not in the locality written but in one beside it
  PostcodeDigit,    ///< one digit of the postcode is wrong, or two are swapped
  PostcodeDiffers,  ///< another postcode
  Noise,            ///< telephone numbers, e-mail addresses and the like were left out
  RunTogether,      ///< words were taken apart: "12SmithSt"
  NumberBehind,     ///< "Smith St 12"
  SurplusPlace,     ///< a further place behind the locality: "12 Smith St, Richmond, Melbourne VIC"
  Corner,           ///< the other street of a corner was left out: "12 Smith St cnr Jones St"
  JoinedNumbers,    ///< "6 & 8" for "6-8"
  LookAlike,        ///< digits for letters or the other way round: "Sm1th", "283O"
  StateTypo,        ///< one typing error in the state
  LocalityFirst,    ///< "Dubbo NSW, 12 Smith St"
  kCount
};

struct DepartureRow
{
  Departure kind;
  std::string_view name;
  std::uint8_t penalty;
};

inline constexpr std::size_t kDepartureCount = static_cast<std::size_t>(Departure::kCount);
inline constexpr Departure kFirstChange = Departure::PreferredUnit;

/** All kinds, in the order of the enumeration. */
inline constexpr std::array<DepartureRow, kDepartureCount> kDepartureRows = {{
    {Departure::StreetVariant, "street_variant", 1},
    {Departure::LocalityVariant, "locality_variant", 1},
    {Departure::PlaceOrder, "place_order", 1},
    {Departure::DetachedSuffix, "detached_suffix", 1},
    {Departure::TypeInName, "type_in_name", 1},
    {Departure::OtherUnitType, "other_unit_type", 1},
    {Departure::UnwrittenLevel, "unwritten_level", 1},
    {Departure::UnwrittenLot, "unwritten_lot", 1},
    {Departure::UnwrittenBuilding, "unwritten_building", 1},
    {Departure::OtherBuilding, "other_building", 1},
    {Departure::BrokenStreet, "broken_street", 2},
    {Departure::BrokenLocality, "broken_locality", 2},
    {Departure::StreetAlias, "street_alias", 2},
    {Departure::LocalityAlias, "locality_alias", 2},
    {Departure::UnitBehindStreet, "unit_behind_street", 1},
    {Departure::AddressAlias, "address_alias", 2},
    {Departure::PreferredUnit, "preferred_unit", 1},
    {Departure::UnusualUnit, "unusual_unit", 4},
    {Departure::StreetArticle, "street_article", 8},
    {Departure::LocalityArticle, "locality_article", 8},
    {Departure::BarePair, "bare_pair", 12},
    {Departure::DashPair, "dash_pair", 14},
    {Departure::UnknownLevel, "unknown_level", 12},
    {Departure::UnknownLot, "unknown_lot", 12},
    {Departure::UnknownUnit, "unknown_unit", 20},
    {Departure::SingleUnit, "single_unit", 12},
    {Departure::InsideRange, "inside_range", 12},
    {Departure::RangeMiddle, "range_middle", 4},
    {Departure::RenumberedAlias, "renumbered_alias", 4},
    {Departure::StreetTypeTypo, "street_type_typo", 8},
    {Departure::StreetTypeMissing, "street_type_missing", 12},
    {Departure::StreetTypeDiffers, "street_type_differs", 15},
    {Departure::SuffixMissing, "street_suffix_missing", 12},
    {Departure::SuffixAdded, "street_suffix_added", 16},
    {Departure::StreetTypo, "street_typo", 12},
    {Departure::StreetTypoShort, "street_typo_short", 16},
    {Departure::StreetTwoTypos, "street_two_typos", 24},
    {Departure::StreetSound, "street_sounds_alike", 18},
    {Departure::LocalityTypo, "locality_typo", 12},
    {Departure::LocalityTypoShort, "locality_typo_short", 16},
    {Departure::LocalityTwoTypos, "locality_two_typos", 24},
    {Departure::LocalitySound, "locality_sounds_alike", 18},
    {Departure::LocalityPart, "locality_part", 16},
    {Departure::LocalityOrder, "locality_word_order", 6},
    {Departure::LocalityMissing, "locality_missing", 30},
    {Departure::Neighbour, "neighbour", 14},
    {Departure::PostcodeDigit, "postcode_digit", 12},
    {Departure::PostcodeDiffers, "postcode_differs", 16},
    {Departure::Noise, "noise", 4},
    {Departure::RunTogether, "run_together", 8},
    {Departure::NumberBehind, "number_behind", 8},
    {Departure::SurplusPlace, "surplus_place", 12},
    {Departure::Corner, "corner", 6},
    {Departure::JoinedNumbers, "joined_numbers", 8},
    {Departure::LookAlike, "look_alike", 12},
    {Departure::StateTypo, "state_typo", 8},
    {Departure::LocalityFirst, "locality_first", 6},
}};

/** Sums from here on are too far from what was written. */
inline constexpr unsigned kPenaltyLimit = 80;

/** From this sum on number, street and locality must all have been written. */
inline constexpr unsigned kConvincing = 40;

/** An answer that changes something needs such a lead before the best address of any other street. */
inline constexpr unsigned kMargin = 4;

/** A set of departures and its cost. */
class Departures
{
 public:
  constexpr Departures() = default;
  constexpr Departures(Departure kind) { Add(kind); }

  constexpr void Add(Departure kind)
  {
    if (Has(kind)) return;
    kinds_ |= Bit(kind);
    sum_ = static_cast<std::uint16_t>(sum_ + kDepartureRows[static_cast<std::size_t>(kind)].penalty);
  }
  constexpr void Add(const Departures& other)
  {
    const std::uint64_t common = kinds_ & other.kinds_;
    if (common == 0) {
      kinds_ |= other.kinds_;
      sum_ = static_cast<std::uint16_t>(sum_ + other.sum_);
      return;
    }
    for (const DepartureRow& row : kDepartureRows)
      if (other.Has(row.kind)) Add(row.kind);
  }
  constexpr Departures operator+(const Departures& other) const
  {
    Departures sum = *this;
    sum.Add(other);
    return sum;
  }

  constexpr bool Has(Departure kind) const { return (kinds_ & Bit(kind)) != 0; }
  constexpr bool Empty() const { return kinds_ == 0; }
  constexpr unsigned Sum() const { return sum_; }
  /** Whether something written was replaced or passed over. */
  constexpr bool HasChange() const { return Changes() != 0; }
  /** Whether `kind` is the only change, but for what concerns the text as a whole. */
  constexpr bool ChangesOnly(Departure kind) const
  {
    return (Changes() & ~(Bit(kind) | Bit(Departure::Noise) | Bit(Departure::RunTogether))) == 0;
  }

 private:
  static constexpr std::uint64_t Bit(Departure kind) { return std::uint64_t{1} << static_cast<unsigned>(kind); }
  constexpr std::uint64_t Changes() const { return kinds_ & ~(2 * Bit(kFirstChange) - 1); }

  std::uint64_t kinds_ = 0;
  std::uint16_t sum_ = 0;
};

/** What it costs that a name fits so. */
constexpr Departures StreetDepartures(NameFit fit)
{
  if (fit == NameFit::Exact) return {};
  return fit == NameFit::Variant ? Departure::StreetVariant : Departure::StreetArticle;
}
constexpr Departures LocalityDepartures(NameFit fit)
{
  if (fit == NameFit::Exact) return {};
  return fit == NameFit::Variant ? Departure::LocalityVariant : Departure::LocalityArticle;
}

/** "street_typo=12;postcode_differs=16"; nothing for an empty set. */
void AppendDepartures(BoundedText& text, const Departures& departures);

/** The same for all kinds there are. */
void AppendPenaltyTable(BoundedText& text);

}  // namespace arf

#endif
