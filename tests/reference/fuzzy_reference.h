// Second, slow transcriptions of the rules of the fuzzy comparisons, to compare the library with: the distance is the
// recursion that defines it, without any memory of what was asked before. They share no code with the library.
#ifndef QXPAF_TESTS_REFERENCE_FUZZY_REFERENCE_H
#define QXPAF_TESTS_REFERENCE_FUZZY_REFERENCE_H

#include <algorithm>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <vector>

namespace reference {

template <class Char>
int TextLength(const Char* s)
{
  return static_cast<int>(std::char_traits<Char>::length(s));
}

template <class Char>
bool IsAsciiDigit(Char c)
{
  return c >= '0' && c <= '9';
}

template <class Char>
int CompareStrings2(const Char* a, const Char* b, int maxDist, bool digitsMayDiffer)
{
  while (*a != 0 && *a == *b) {
    ++a;
    ++b;
  }
  if (*a == 0) return TextLength(b);
  if (*b == 0) return TextLength(a);
  if (maxDist == 0) return 1;
  if (std::abs(TextLength(a) - TextLength(b)) > maxDist) return maxDist + 1;
  if (!digitsMayDiffer && IsAsciiDigit(*a) && IsAsciiDigit(*b)) return maxDist + 1;
  int t = maxDist + 1;
  if (a[0] == b[1] && a[1] == b[0]) t = CompareStrings2(a + 2, b + 2, maxDist - 1, digitsMayDiffer);
  const int s = CompareStrings2(a + 1, b + 1, maxDist - 1, digitsMayDiffer);
  const int d = CompareStrings2(a + 1, b, maxDist - 1, digitsMayDiffer);
  const int i = CompareStrings2(a, b + 1, maxDist - 1, digitsMayDiffer);
  return std::min(std::min(t, s), std::min(d, i)) + 1;
}

// What the recursion gives for a bound that is never reached, kInfinite when digits are always in the way. Every pair
// of rests is computed once, so that long texts and large bounds can be compared too.
inline constexpr int kInfinite = 1000000;

template <class String>
int UnboundedDistance(const String& a, const String& b, bool digitsMayDiffer)
{
  const std::size_t la = a.size();
  const std::size_t lb = b.size();
  std::vector<int> table((la + 1) * (lb + 1));
  const auto rest = [&table, lb](std::size_t i, std::size_t j) -> int& { return table[i * (lb + 1) + j]; };
  for (std::size_t i = la + 1; i-- > 0;) {
    for (std::size_t j = lb + 1; j-- > 0;) {
      if (i == la || j == lb) {
        rest(i, j) = static_cast<int>(i == la ? lb - j : la - i);
      } else if (a[i] == b[j]) {
        rest(i, j) = rest(i + 1, j + 1);
      } else if (!digitsMayDiffer && IsAsciiDigit(a[i]) && IsAsciiDigit(b[j])) {
        rest(i, j) = kInfinite;
      } else {
        int least = std::min(rest(i + 1, j + 1), std::min(rest(i + 1, j), rest(i, j + 1)));
        const bool transposed = i + 1 < la && j + 1 < lb && a[i] == b[j + 1] && a[i + 1] == b[j];
        if (transposed) least = std::min(least, rest(i + 2, j + 2));
        rest(i, j) = std::min(kInfinite, least + 1);
      }
    }
  }
  return rest(0, 0);
}

template <class Char>
bool EqualTexts(const Char* a, const Char* b)
{
  for (; *a != 0 && *a == *b; ++a) ++b;
  return *a == *b;
}

template <class Char>
bool StringsNearlyTheSame(const Char* a, const Char* b, bool& identical, bool firstMustMatch, bool digitsMayDiffer)
{
  constexpr bool kWide = std::is_same_v<Char, wchar_t>;
  identical = false;
  if (firstMustMatch && a[0] != b[0]) return false;
  if (EqualTexts(a, b)) {
    identical = true;
    return true;
  }
  const Char* p = a;
  const Char* q = b;
  while (*p == *q) {
    ++p;
    ++q;
  }
  if (*p == 0) return q[1] == 0 && (kWide || digitsMayDiffer || !IsAsciiDigit(q[0]));
  if (*q == 0) return p[1] == 0 && (kWide || digitsMayDiffer || !IsAsciiDigit(p[0]));
  if (!digitsMayDiffer) {
    if (IsAsciiDigit(q[0])) return false;
    if (IsAsciiDigit(p[0]) && p[0] != q[1]) return false;
  }
  if (p[0] == q[1] && p[1] == q[0] && EqualTexts(p + 2, q + 2)) return true;
  if (EqualTexts(p + 1, q + 1)) return true;
  if (EqualTexts(p + 1, q)) return true;
  return EqualTexts(p, q + 1);
}

template <class String>
float CompareJaro(const String& a, const String& b)
{
  const int la = static_cast<int>(a.size());
  const int lb = static_cast<int>(b.size());
  const int mx = std::max(la, lb);
  String ma(static_cast<std::size_t>(mx + 1), 0);
  String mb(static_cast<std::size_t>(mx + 1), 0);
  String c = b;
  int reach = mx / 2 - 1;
  if (reach < 0) reach = 0;
  const auto at = [](int i) { return static_cast<std::size_t>(i); };
  int m = 0;
  for (int i = 0; i < la; ++i) {
    for (int j = std::max(i - reach, 0); j <= std::min(lb, i + reach); ++j) {
      if (a[at(i)] == c[at(j)]) {
        c[at(j)] = 0;
        ma[at(m)] = a[at(i)];
        ++m;
        break;
      }
    }
  }
  if (m == 0) return 0.0F;
  int k = 0;
  for (int j = 0; j < lb; ++j)
    if (c[at(j)] == 0) mb[at(k++)] = b[at(j)];
  int t = 0;
  for (int i = 0; i < m; ++i) t += ma[at(i)] != mb[at(i)] ? 1 : 0;
  const float fm = static_cast<float>(m);
  return (static_cast<float>(m - t / 2) / fm + fm / static_cast<float>(la) + fm / static_cast<float>(lb)) / 3.0F;
}

}  // namespace reference

#endif
