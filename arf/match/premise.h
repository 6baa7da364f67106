/**
 * What stands before the street: unit, level, lot, number, and what is left over, which may be a building's name or an
 * addressee. Several readings may be possible ("12-14" is a range, or unit 12 of number 14); they are compared with the
 * data, never with each other.
 */
#ifndef QXPAF_ARF_MATCH_PREMISE_H
#define QXPAF_ARF_MATCH_PREMISE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "arf/match/fixed_text.h"
#include "arf/match/input_text.h"
#include "arf/match/penalties.h"

namespace arf {

using Identifier = FixedText<16>;  ///< of a unit, level or lot: "3", "12A", "G07", "4-6"

/** A unit or level; `type` is a full form from the tables and may be empty ("3/12"), and so may the number ("REAR"). */
struct Occupancy
{
  std::string_view type;
  Identifier number;
  bool Written() const { return !type.empty() || !number.Empty(); }
};

struct Premise
{
  std::uint32_t numberFirst = 0;  ///< 0: none written
  std::uint32_t numberLast = 0;   ///< 0: no range
  std::string_view numberPrefix;  ///< "G" of "G12"
  std::string_view numberFirstSuffix;
  std::string_view numberLastSuffix;
  Occupancy unit;
  Occupancy level;
  Identifier lot;
  WordRange building;              ///< words that belong to nothing else
  bool buildingIsBinding = false;  ///< those words hold numbers, so that they must not be passed over
  bool lenientOnly = false;        ///< a reading that strict rules do not take
  bool isLastResort = false;       ///< a reading for when the others lead nowhere
  Departures departures;

  bool HasNumber() const { return numberFirst != 0; }
  /** Whether nothing was written before the street. */
  bool IsEmpty() const
  {
    return !HasNumber() && lot.Empty() && !unit.Written() && !level.Written() && building.Empty();
  }
};

class Premises
{
 public:
  static constexpr std::size_t kMax = 8;

  /** All readings of some words, likeliest first; none when the words cannot stand before a street. */
  Premises(const InputText& input, WordRange words);

  const Premise* begin() const { return readings_.data(); }
  const Premise* end() const { return readings_.data() + count_; }
  bool Empty() const { return count_ == 0; }

 private:
  friend class PremiseParser;
  Premises() = default;
  void Add(const Premise& premise)
  {
    if (count_ < kMax) readings_[count_++] = premise;
  }
  std::array<Premise, kMax> readings_;
  std::size_t count_ = 0;
};

/** A house number as written: "12", "12A". */
struct HouseNumber
{
  std::uint32_t number = 0;
  std::string_view suffix;  ///< a view of the word given
};

/** Reads up to nine digits and up to two letters that make no ordinal ("1ST"); false when the word is something else.
 */
bool ReadHouseNumber(std::string_view word, HouseNumber& number);

/** "NO", "NUMBER" */
bool IsNumberSign(std::string_view word);

}  // namespace arf

#endif
