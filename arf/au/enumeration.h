/** The walk over addresses that GetAddress starts and GetNextAddress continues. */
#ifndef QXPAF_ARF_AU_ENUMERATION_H
#define QXPAF_ARF_AU_ENUMERATION_H

#include <cstdint>
#include <vector>

#include "arf/format/database.h"
#include "arf/spatial/area_search.h"

namespace arf {

class Enumeration
{
 public:
  /** @param database  must outlive the enumeration */
  explicit Enumeration(const Database& database) : database_(database) {}

  /** Ends what runs; nothing is started. */
  void Reset();
  /** One address. */
  void StartWith(std::uint32_t ordinal);
  /**
   * The addresses of the localities in Localities(), in stored order.
   *
   * @param filter  must outlive the enumeration; null takes all
   */
  void StartLocalities(PointFilter* filter);
  /** The addresses that a search found. @param area  must outlive the enumeration */
  void StartArea(AreaSearch& area);

  /** Where the caller puts the localities before StartLocalities; the memory is kept from query to query. */
  std::vector<std::uint32_t>& Localities() { return localities_; }

  bool IsStarted() const { return started_; }
  /** The address whose turn it is; null at the end. It stays the same until Advance. */
  const Point* Current() const { return atPoint_ ? &point_ : nullptr; }
  void Advance();

 private:
  bool FindNext();
  bool Takes(std::uint32_t ordinal) const;
  void AdvanceArea();

  const Database& database_;
  std::vector<std::uint32_t> localities_;
  std::size_t nextLocality_ = 0;
  IndexRange streets_;  ///< of the current locality, those still to come
  PointCursor cursor_;  ///< in the current street
  PointFilter* filter_ = nullptr;
  AreaSearch* area_ = nullptr;  ///< where the addresses come from, if not from localities
  Point point_;
  bool atPoint_ = false;
  bool started_ = false;
};

}  // namespace arf

#endif
