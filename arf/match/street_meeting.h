/** Where two streets come nearest to each other, as far as their addresses tell. */
#ifndef QXPAF_ARF_MATCH_STREET_MEETING_H
#define QXPAF_ARF_MATCH_STREET_MEETING_H

#include <array>
#include <cstdint>

#include "arf/format/database.h"

namespace arf {

struct Meeting
{
  std::uint32_t first = kNoIndex;  ///< ordinal of the address of one street that is nearest to the other one
  std::uint32_t second = kNoIndex;
  double metres = 0;
  bool isLocated = false;  ///< both streets have numbered addresses with places, and all of them were compared
  bool Found() const { return first != kNoIndex; }
};

/** Finds meetings; its memory is in the object itself. */
class StreetMeetings
{
 public:
  static constexpr double kNear = 100;  ///< metres; streets whose addresses are farther from each other do not meet

  /**
   * The nearest pair of numbered addresses that are less than kNear apart.
   *
   * @param visited  addresses that were looked at are added
   */
  Meeting Find(const Database& data, const Street& first, const Street& second, std::uint32_t& visited);

 private:
  /** Not initialised: few searches need these, and memory that nobody writes costs nothing. */
  struct Place
  {
    std::int32_t along;  ///< the coordinate in which the street reaches farther
    std::int32_t across;
    std::uint32_t ordinal;
  };

  /** Different places that one street may have; it is the one with fewer addresses, and longer ones are cut. */
  static constexpr std::size_t kMaxPlaces = 1024;

  void Collect(const Database& data, const Street& street, std::uint32_t& visited);

  std::array<Place, kMaxPlaces> places_;
  std::size_t count_ = 0;
  bool isWhole_ = true;  ///< the street has no more places than were collected
  bool isAlongLongitude_ = false;
};

}  // namespace arf

#endif
