/** The walk over hints that a search gives, and over what stands behind them. */
#ifndef QXPAF_ARF_HINT_HINT_ENUMERATION_H
#define QXPAF_ARF_HINT_HINT_ENUMERATION_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "arf/format/database.h"
#include "arf/hint/hint.h"
#include "arf/hint/hint_search.h"
#include "arf/match/bounded_text.h"

namespace arf {

class HintEnumeration
{
 public:
  /** @param database  must outlive the enumeration */
  explicit HintEnumeration(const Database& database) : data_(database), search_(database) {}

  /**
   * Starts with the hints themselves: localities, streets, numbers, addresses. A single hint is followed by what stands
   * behind it: the streets of a locality, the numbers of a street, the addresses of a number.
   *
   * @param most  hints in all
   */
  InputFault StartHints(std::string_view text, std::string_view place, std::size_t most);

  /** Starts with the addresses behind all hints, those of the best one first; without end of its own. */
  InputFault StartAddresses(std::string_view text, std::string_view place);

  /** Ends what runs; nothing is started. */
  void Reset();
  bool IsStarted() const { return started_; }
  /** The hint whose turn it is; null at the end. It stays the same until Advance. */
  const Hint* Current() const { return atHint_ ? &current_ : nullptr; }
  void Advance();

 private:
  /** What is being walked, a range of streets or of addresses. */
  enum class Parts
  {
    None,
    Streets,
    Numbers,
    Addresses
  };

  InputFault Start(std::string_view text, std::string_view place, std::size_t most);
  bool NextHint();
  void Open(const Hint& hint);
  bool NextPart();
  bool NextStreet();
  bool NextNumber();
  bool NextAddress();
  Hint HintAt(const Point& point) const;
  bool HasNumberedText(const Point& point) const;

  const Database& data_;
  HintSearch search_;
  Hint current_;
  bool atHint_ = false;
  bool started_ = false;
  bool addressesOnly_ = false;
  std::size_t left_ = 0;      ///< hints that may still come
  std::size_t nextHint_ = 0;  ///< of the search
  Parts parts_ = Parts::None;
  IndexRange rest_;  ///< of `parts_`, what is still to come
  Hint opened_;      ///< whose parts they are
  Point before_;     ///< the last address of `parts_`
  bool hasBefore_ = false;
};

/** The two enumerations of a client, which run apart from each other; their memory is taken at first use. */
struct HintEnumerations
{
  std::unique_ptr<HintEnumeration> hints;
  std::unique_ptr<HintEnumeration> addresses;
};

/** "12 GEORGE STREET, SYDNEY NSW 2000": the text that takes the place of what was typed. */
void AppendHintText(BoundedText& text, const Database& database, const Hint& hint);

}  // namespace arf

#endif
