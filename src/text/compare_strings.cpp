#include <algorithm>
#include <climits>
#include <cstdlib>
#include <string>

#include "qxpaf/text/fuzzy.h"
#include "text/bounded_distance.h"
#include "text/compared_text.h"

namespace qxpaf {
namespace {

template <class Char>
std::ptrdiff_t Length(const Char* text)
{
  return static_cast<std::ptrdiff_t>(std::char_traits<Char>::length(text));
}

int Capped(std::ptrdiff_t length)
{
  return static_cast<int>(std::min<std::ptrdiff_t>(length, INT_MAX));
}

constexpr int MoreThan(int bound)
{
  return bound == INT_MAX ? bound : bound + 1;
}

// The distance, or kBound + 1 where it is larger, by trying out every slip: for small bounds that is quicker than to
// set up a table. lengthDifference is the length of b less that of a, and so the least number of slips.
template <int kBound, class Char>
int DistanceUpTo(const Char* a, const Char* b, std::ptrdiff_t lengthDifference, bool digitsMayDiffer)
{
  SkipCommonPrefix(a, b);
  const std::ptrdiff_t least = std::abs(lengthDifference);
  if (least > kBound) return kBound + 1;
  if (*a == 0 || *b == 0) return static_cast<int>(least);
  if (!digitsMayDiffer && IsDigit(*a) && IsDigit(*b)) return kBound + 1;
  if constexpr (kBound == 1) {
    return IsOneSlip(a, b) ? 1 : 2;
  } else {
    int best = kBound + 1;
    const auto attempt = [&](const Char* restA, const Char* restB, std::ptrdiff_t difference) {
      if (1 + std::abs(difference) >= best) return;
      best = std::min(best, 1 + DistanceUpTo<kBound - 1>(restA, restB, difference, digitsMayDiffer));
    };
    if (a[0] == b[1] && a[1] == b[0]) attempt(a + 2, b + 2, lengthDifference);
    attempt(a + 1, b + 1, lengthDifference);
    attempt(a + 1, b, lengthDifference + 1);
    attempt(a, b + 1, lengthDifference - 1);
    return best;
  }
}

// The rests do not start alike, neither is empty, and the bound is at least 2.
template <class Char>
int CompareRests(const RestPair<Char>& rests, int maxDist, bool digitsMayDiffer)
{
  const std::ptrdiff_t difference = rests.bLength - rests.aLength;
  if (std::abs(difference) > maxDist) return MoreThan(maxDist);
  if (maxDist == 2) return DistanceUpTo<2>(rests.a, rests.b, difference, digitsMayDiffer);
  if (maxDist == 3) return DistanceUpTo<3>(rests.a, rests.b, difference, digitsMayDiffer);
  return BoundedDistance(rests, maxDist, digitsMayDiffer).value_or(MoreThan(maxDist));
}

template <class Char>
int Compare(const Char* a, const Char* b, int maxDist, bool digitsMayDiffer)
{
  SkipCommonPrefix(a, b);
  if (*a == 0) return Capped(Length(b));
  if (*b == 0) return Capped(Length(a));
  if (maxDist <= 0) return MoreThan(maxDist);
  if (!digitsMayDiffer && IsDigit(*a) && IsDigit(*b)) return MoreThan(maxDist);
  if (maxDist == 1) return IsOneSlip(a, b) ? 1 : 2;
  return CompareRests<Char>({a, b, Length(a), Length(b)}, maxDist, digitsMayDiffer);
}

}  // namespace
}  // namespace qxpaf

int CompareStrings2(const char* a, const char* b, int maxDist, bool digitsMayDiffer)
{
  return qxpaf::Compare(a, b, maxDist, digitsMayDiffer);
}

int CompareStrings2(const wchar_t* a, const wchar_t* b, int maxDist, bool digitsMayDiffer)
{
  return qxpaf::Compare(a, b, maxDist, digitsMayDiffer);
}
