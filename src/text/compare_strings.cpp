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

template <class Char>
int Compare(const Char* a, const Char* b, int maxDist, bool digitsMayDiffer)
{
  SkipCommonPrefix(a, b);
  if (*a == 0) return Capped(Length(b));
  if (*b == 0) return Capped(Length(a));
  if (maxDist <= 0) return MoreThan(maxDist);
  if (!digitsMayDiffer && IsDigit(*a) && IsDigit(*b)) return MoreThan(maxDist);
  const RestPair<Char> rests{a, b, Length(a), Length(b)};
  if (std::abs(rests.aLength - rests.bLength) > maxDist) return MoreThan(maxDist);
  const auto distance =
      digitsMayDiffer ? DistanceOfAnything(rests, maxDist) : DistanceWithFixedDigits(rests, maxDist);
  return distance.value_or(MoreThan(maxDist));
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
