/** A line of the list that is shown while somebody types. */
#ifndef QXPAF_ARF_HINT_HINT_H
#define QXPAF_ARF_HINT_HINT_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <tuple>

#include "arf/format/point_cursor.h"
#include "arf/hint/place_reading.h"

namespace arf {

enum class HintKind : std::uint8_t
{
  Locality,
  Street,
  Building,  ///< a number with several addresses
  Address    ///< one address: nothing is left to choose
};

struct Hint
{
  HintKind kind = HintKind::Address;
  Spelling spelling = Spelling::AsTyped;
  std::uint8_t rank = 0;         ///< how well it fits, best first
  std::uint32_t count = 0;       ///< addresses behind it
  std::uint32_t streetSize = 0;  ///< addresses of its street
  std::uint32_t locality = 0;
  std::uint32_t street = kNoIndex;  ///< kNoIndex for a locality
  IndexRange points;                ///< of a building or address
  std::uint32_t own = kNoIndex;     ///< ordinal of the address that bears the hint's own identifier, if there is one
};

/** The best hints so far, in the order in which they are shown; never two for the same. */
class HintList
{
 public:
  static constexpr std::size_t kMax = 50;

  void Clear() { count_ = 0; }
  bool Empty() const { return count_ == 0; }
  std::size_t Count() const { return count_; }
  const Hint* begin() const { return hints_.data(); }
  const Hint* end() const { return hints_.data() + count_; }
  const Hint& operator[](std::size_t i) const { return hints_[i]; }

  /** Puts a hint where it belongs, unless a better one for the same is there; the worst may fall out. */
  void Add(const Hint& hint)
  {
    const auto same = std::find_if(hints_.begin(), End(), [&hint](const Hint& other) { return AreSame(hint, other); });
    if (same != End()) {
      if (!IsBefore(hint, *same)) return;
      std::move(same + 1, End(), same);
      --count_;
    }
    const auto place = std::upper_bound(hints_.begin(), End(), hint, IsBefore);
    if (place == hints_.end()) return;
    if (count_ < kMax) ++count_;
    std::move_backward(place, End() - 1, End());
    *place = hint;
  }

  static bool IsBefore(const Hint& a, const Hint& b)
  {
    const auto order = [](const Hint& h) {
      return std::tuple(h.rank, ~h.count, ~h.streetSize, h.street, h.locality, h.points.first);
    };
    return order(a) < order(b);
  }

 private:
  /** A street stands for all of its addresses. */
  static bool AreSame(const Hint& a, const Hint& b)
  {
    if (a.street != b.street || a.locality != b.locality) return false;
    return a.kind == HintKind::Street || b.kind == HintKind::Street || a.points.first == b.points.first;
  }

  std::array<Hint, kMax>::iterator End() { return hints_.begin() + static_cast<std::ptrdiff_t>(count_); }

  std::array<Hint, kMax> hints_;
  std::size_t count_ = 0;
};

}  // namespace arf

#endif
