#include "text/bounded_distance.h"

#include <algorithm>
#include <climits>

#include "text/compared_text.h"
#include "text/scratch_array.h"

namespace qxpaf {
namespace {

using Index = std::ptrdiff_t;

constexpr std::size_t RowWidth(int bound)
{
  return 2 * static_cast<std::size_t>(bound) + 3;
}

// Walks outwards by cost. A place is an index i into a on a diagonal d, that is before a[i] and b[i + d]; for each cost
// only the furthest place of each diagonal is kept. That is enough while all characters may differ: from a place
// further on, on the same diagonal, the rest never costs more.
template <class Char>
class DiagonalSearch
{
 public:
  DiagonalSearch(const RestPair<Char>& rests, int bound, bool digitsMayDiffer)
      : rests_(rests),
        goal_(rests.bLength - rests.aLength),
        bound_(bound),
        digitsMayDiffer_(digitsMayDiffer),
        places_(2 * RowWidth(bound), kUnreached),
        reached_(places_.Data() + bound + 1),
        before_(reached_ + RowWidth(bound))
  {
    reached_[0] = 0;
  }

  std::optional<int> Run()
  {
    for (int cost = 1; cost <= bound_; ++cost) {
      std::swap(reached_, before_);
      const Index left = bound_ - cost;  // diagonals from which the goal is out of reach are left out
      const Index last = std::min<Index>(cost, goal_ + left);
      for (Index d = std::max<Index>(-cost, goal_ - left); d <= last; ++d) reached_[d] = Slide(d, Step(d));
      if (reached_[goal_] == rests_.aLength) return cost;
    }
    return std::nullopt;
  }

  // Whether the search left a place where both texts go on with digits.
  bool PassedDigits() const { return passedDigits_; }

 private:
  // So far down that no step makes a place of it.
  static constexpr Index kUnreached = -4;

  bool Exists(Index i, Index d) const { return i <= rests_.aLength && i + d <= rests_.bLength; }

  Index Step(Index d) const
  {
    const Index here = before_[d];
    Index furthest = here >= 0 && Exists(here + 1, d) ? here + 1 : kUnreached;
    if (here >= 0 && rests_.AreTransposed(here, here + d)) furthest = here + 2;
    const Index inserted = before_[d - 1];
    if (inserted > furthest && Exists(inserted, d)) furthest = inserted;
    const Index deleted = before_[d + 1] + 1;
    if (deleted > furthest && Exists(deleted, d)) furthest = deleted;
    return furthest;
  }

  // Past equal characters.
  Index Slide(Index d, Index i)
  {
    if (i < 0) return kUnreached;
    const Index end = std::min(rests_.aLength, rests_.bLength - d);
    if (i < end)
      i += static_cast<Index>(CommonLength(rests_.a + i, rests_.b + i + d, static_cast<std::size_t>(end - i)));
    if (!digitsMayDiffer_ && i < end && IsDigit(rests_.a[i]) && IsDigit(rests_.b[i + d])) passedDigits_ = true;
    return i;
  }

  const RestPair<Char>& rests_;
  const Index goal_;
  const int bound_;
  const bool digitsMayDiffer_;
  bool passedDigits_ = false;
  ScratchArray<Index, 2 * RowWidth(kLargestBoundOnStack)> places_;
  Index* reached_;  // by diagonal, with this cost or less
  Index* before_;   // with one less
};

// Fills the table of distances from the ends of both texts backwards, on the diagonals that the bound allows, three
// rows at a time. A way can end where digits clash, so the furthest place of a diagonal may be a dead end where one
// before it is none, and all of them have to be looked at.
template <class Char>
class BackwardTable
{
 public:
  BackwardTable(const RestPair<Char>& rests, int bound)
      : rests_(rests), bound_(bound), tooFar_(bound + 1), distances_(3 * RowWidth(bound), tooFar_)
  {
    for (std::size_t k = 0; k < 3; ++k) rows_[k] = distances_.Data() + k * RowWidth(bound) + bound + 1;
  }

  std::optional<int> Run()
  {
    for (Index i = rests_.aLength; i >= 0; --i) {
      std::rotate(rows_, rows_ + 2, rows_ + 3);
      for (Index d = bound_; d >= -bound_; --d) rows_[0][d] = std::min(tooFar_, Distance(i, d));
    }
    return rows_[0][0] <= bound_ ? std::optional<int>(rows_[0][0]) : std::nullopt;
  }

 private:
  // Of the rests from a[i] and b[i + d]. Rows hold what follows from a[i], a[i + 1] and a[i + 2], by diagonal.
  int Distance(Index i, Index d) const
  {
    const Index j = i + d;
    if (j < 0 || j > rests_.bLength) return tooFar_;
    if (i == rests_.aLength) return static_cast<int>(std::min<Index>(rests_.bLength - j, tooFar_));
    if (j == rests_.bLength) return static_cast<int>(std::min<Index>(rests_.aLength - i, tooFar_));
    if (rests_.a[i] == rests_.b[j]) return rows_[1][d];
    if (IsDigit(rests_.a[i]) && IsDigit(rests_.b[j])) return tooFar_;
    int least = std::min({rows_[1][d], rows_[1][d - 1], rows_[0][d + 1]});
    if (rests_.AreTransposed(i, j)) least = std::min(least, rows_[2][d]);
    return least + 1;
  }

  const RestPair<Char>& rests_;
  const int bound_;
  const int tooFar_;
  ScratchArray<int, 3 * RowWidth(kLargestBoundOnStack)> distances_;
  int* rows_[3];
};

// No finite distance is larger, so a larger bound would only cost memory.
int UsefulBound(Index largestDistance, int bound)
{
  return static_cast<int>(std::min<Index>({largestDistance, bound, INT_MAX - 1}));
}

}  // namespace

template <class Char>
std::optional<int> BoundedDistance(const RestPair<Char>& rests, int bound, bool digitsMayDiffer)
{
  // Without fixed digits the distance never exceeds the longer length, with them it may take both.
  const Index largest = digitsMayDiffer ? std::max(rests.aLength, rests.bLength) : rests.aLength + rests.bLength;
  const int useful = UsefulBound(largest, bound);
  DiagonalSearch<Char> search(rests, useful, digitsMayDiffer);
  const std::optional<int> distance = search.Run();
  // Fixed digits never make a distance smaller; and a way that meets no such digits is open with them fixed as well.
  if (!distance || !search.PassedDigits()) return distance;
  return BackwardTable<Char>(rests, useful).Run();
}

template std::optional<int> BoundedDistance(const RestPair<char>&, int, bool);
template std::optional<int> BoundedDistance(const RestPair<wchar_t>&, int, bool);

}  // namespace qxpaf
