#include <algorithm>
#include <climits>
#include <cstdlib>
#include <string>

#include "qxpaf/text/fuzzy.h"
#include "text/bounded_distance.h"
#include "text/compared_text.h"
#include "text/slip_filter.h"

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

// Whether a look at the texts tells that they are further apart.
template <int kBound, class Char>
bool AreFarApart(const RestPair<Char>& rests)
{
  if constexpr (sizeof(Char) == 1)
    return NeedsMoreSlips<kBound>(rests.a, static_cast<std::size_t>(rests.aLength), rests.b,
                                  static_cast<std::size_t>(rests.bLength));
  else
    return false;
}

// One bound after the other: a small distance is found long before all ways of the larger bound are tried out.
template <int kBound, class Char>
[[gnu::noinline]] int SearchUpTo(const RestPair<Char>& rests, bool digitsMayDiffer)
{
  if constexpr (kBound > 1) {
    const int distance = SearchUpTo<kBound - 1>(rests, digitsMayDiffer);
    if (distance < kBound) return distance;
  }
  return DistanceUpTo<kBound>(rests.a, rests.b, rests.bLength - rests.aLength, digitsMayDiffer);
}

template <int kBound, class Char>
int CompareRestsUpTo(const RestPair<Char>& rests, bool digitsMayDiffer)
{
  return AreFarApart<kBound>(rests) ? kBound + 1 : SearchUpTo<kBound>(rests, digitsMayDiffer);
}

// The rests do not start alike, neither is empty, and the bound is at least 1.
template <class Char>
int CompareRests(const RestPair<Char>& rests, int maxDist, bool digitsMayDiffer)
{
  if (std::abs(rests.bLength - rests.aLength) > maxDist) return MoreThan(maxDist);
  if (!digitsMayDiffer && IsDigit(*rests.a) && IsDigit(*rests.b)) return MoreThan(maxDist);
  switch (maxDist) {
    case 1:
      return SearchUpTo<1>(rests, digitsMayDiffer);
    case 2:
      return CompareRestsUpTo<2>(rests, digitsMayDiffer);
    case 3:
      return CompareRestsUpTo<3>(rests, digitsMayDiffer);
    default:
      return BoundedDistance(rests, maxDist, digitsMayDiffer).value_or(MoreThan(maxDist));
  }
}

template <class Char>
[[gnu::noinline]] int CompareWithLengths(const Char* a, const Char* b, int maxDist, bool digitsMayDiffer)
{
  const std::ptrdiff_t aLength = Length(a);
  const std::ptrdiff_t bLength = Length(b);
  const std::size_t common = *a == *b ? CommonLength(a, b, static_cast<std::size_t>(std::min(aLength, bLength))) : 0;
  const auto skipped = static_cast<std::ptrdiff_t>(common);
  const RestPair<Char> rests{a + skipped, b + skipped, aLength - skipped, bLength - skipped};
  if (rests.aLength == 0 || rests.bLength == 0) return Capped(rests.aLength + rests.bLength);
  return maxDist <= 0 ? MoreThan(maxDist) : CompareRests(rests, maxDist, digitsMayDiffer);
}

// Whether the first characters alone tell that the distance exceeds a small bound: most unlike pairs are told apart
// here, without a call.
template <class Char>
bool StartFarApart(const Char* a, const Char* b, int maxDist)
{
  if (*a == *b) return false;
  if (maxDist == 1) return IsNoSlip(a, b);
  if constexpr (sizeof(Char) == 1)
    return maxDist == 2 && NeedsMoreSlipsAtOnce<2>(a, b);
  else
    return false;
}

template <class Char>
int Compare(const Char* a, const Char* b, int maxDist, bool digitsMayDiffer)
{
  return StartFarApart(a, b, maxDist) ? maxDist + 1 : CompareWithLengths(a, b, maxDist, digitsMayDiffer);
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
