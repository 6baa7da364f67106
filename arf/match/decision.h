/**
 * Collects what the readings of one input led to, and decides: the address with the least penalty if there is just one,
 * otherwise why there is none. Of several failures the one that got furthest explains best what is wrong.
 */
#ifndef QXPAF_ARF_MATCH_DECISION_H
#define QXPAF_ARF_MATCH_DECISION_H

#include <cstdint>
#include <string_view>

#include "arf/match/fixed_text.h"
#include "arf/match/point_search.h"
#include "arf/match/reading.h"

namespace arf {

/** How a search ended. */
enum class Verdict
{
  Found,
  Nothing,
  TooLong,
  WrongLocality,
  WrongStreet,
  WrongNumber,
  Several
};

/** What exactly is wrong, in the order of how far a reading got. */
enum class Fault : std::uint8_t
{
  None,
  NothingRecognised,
  LocalityUnknown,      ///< no name of a locality was found where one should stand
  PlaceContradicts,     ///< state or postcode are not those of the locality
  StreetUnknown,        ///< no street of that name in the locality
  StreetMissing,        ///< nothing is left that could be a street: all of it names the locality
  StreetTypeDiffers,    ///< the name is there, with another type or suffix
  NumberMissing,        ///< no number was written, and the street alone does not decide
  NumberUnknown,        ///< no such number in the street
  UnitUnknown,          ///< the number is there, but not the unit, level or lot
  AliasWritten,         ///< another way to say an address whose number or unit is another
  CornerStreetUnknown,  ///< a corner of two streets, of which one or both are not in the locality
  CornerApart,          ///< both are there, but not near each other
  CornerWritten,        ///< two streets instead of a number and a street
  SeveralAddresses,
  SeveralLocalities,
  TooLong
};

/** A fault with what is needed to put it into words later, when the input may be gone. */
struct Failure
{
  Fault fault = Fault::None;
  std::uint32_t locality = kNoIndex;
  std::uint32_t street = kNoIndex;
  std::uint32_t number = 0;    ///< house number, for UnitUnknown; the alias's ordinal, for AliasWritten
  FixedText<80> written;       ///< the words that are wrong
  FixedText<24> writtenPlace;  ///< state and postcode as written
  PointSet points;             ///< for SeveralAddresses; for CornerWritten where the streets meet, one of each street
  std::uint32_t otherStreet = kNoIndex;  ///< of a corner
  FixedText<80> otherWritten;            ///< of a corner, for CornerStreetUnknown
};

Verdict VerdictOf(Fault fault);

class Decision
{
 public:
  void Reset() { *this = {}; }

  void Match(const PointSet& points, const Departures& departures, const Reading& reading, std::uint32_t street);
  /** Units of an address that was written without one, and that is no address by itself. */
  void Units(const PointSet& units, const Departures& departures, const Reading& reading, std::uint32_t street);
  /** Whether `fault` got further than everything so far; the caller then fills the failure in. */
  bool GoesFurther(Fault fault) const { return fault > failure_.fault; }
  void Fail(const Failure& failure, const Reading& reading);

  bool HasCandidates() const { return best_.count != 0 || units_.count != 0; }
  /** Whether the best candidate so far was reached without changing anything. */
  bool IsAsWritten() const { return HasCandidates() && !Best().departures.HasChange(); }
  /** The least penalty so far. */
  unsigned Sum() const { return Best().Sum(); }
  const Failure& Deepest() const { return failure_; }

  /**
   * Found only when one address has the least penalty and no unit is left open; a change needs a lead of kMargin before
   * the addresses of other streets.
   */
  bool IsFound() const { return best_.count == 1 && IsDecided(); }
  /** The addresses with the least penalty, when nothing but their number stands against an answer. */
  const PointSet* Equals() const { return IsDecided() ? &best_ : nullptr; }
  const PointSet& Best() const { return best_.Sum() <= units_.Sum() ? best_ : units_; }
  /** Turns candidates into the failure SeveralAddresses. */
  void Close();
  /** Drops all candidates and the failure stays. */
  void DropCandidates();

  /** The reading that led to the answer or to the failure. */
  const Reading& Chosen() const { return HasCandidates() ? bestReading_ : failedReading_; }

 private:
  bool IsDecided() const;
  void Take(PointSet& set, const PointSet& points, const Departures& departures, const Reading& reading,
            std::uint32_t street);

  PointSet best_;
  PointSet units_;
  std::uint32_t bestStreet_ = kNoIndex;
  PointSet rival_;  ///< the best of the other streets
  Reading bestReading_;
  Failure failure_;
  Reading failedReading_;
};

}  // namespace arf

#endif
