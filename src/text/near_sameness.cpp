#include "qxpaf/text/fuzzy.h"
#include "text/compared_text.h"

namespace qxpaf {
namespace {

// A digit more at the end is another number in narrow text but never in wide text.
bool MayBeAdded(char last, bool digitsMayDiffer)
{
  return digitsMayDiffer || !IsDigit(last);
}

bool MayBeAdded(wchar_t, bool)
{
  return true;
}

// One-sided on purpose: callers see only which digits of b, and of a, are refused.
template <class Char>
bool DigitsForbid(const Char* a, const Char* b)
{
  return IsDigit(b[0]) || (IsDigit(a[0]) && a[0] != b[1]);
}

// From where the texts differ. Kept out of the way of the pairs that are decided without a call.
template <class Char>
[[gnu::noinline]] bool DifferBySlip(const Char* a, const Char* b, bool digitsMayDiffer)
{
  if (*a == 0) return b[1] == 0 && MayBeAdded(*b, digitsMayDiffer);
  if (*b == 0) return a[1] == 0 && MayBeAdded(*a, digitsMayDiffer);
  if (!digitsMayDiffer && DigitsForbid(a, b)) return false;
  return IsOneSlip(a, b);
}

template <class Char>
bool NearlyTheSame(const Char* a, const Char* b, bool& identical, bool firstMustMatch, bool digitsMayDiffer)
{
  identical = false;
  if (*a == *b) {
    SkipCommonPrefix(a, b);
    if (*a == *b) return identical = true;
  } else if (firstMustMatch) {
    return false;
  }
  return !IsNoSlip(a, b) && DifferBySlip(a, b, digitsMayDiffer);
}

}  // namespace
}  // namespace qxpaf

bool StringsNearlyTheSame(const char* a, const char* b, bool& identical, bool firstMustMatch, bool digitsMayDiffer)
{
  return qxpaf::NearlyTheSame(a, b, identical, firstMustMatch, digitsMayDiffer);
}

bool StringsNearlyTheSame(const wchar_t* a, const wchar_t* b, bool& identical, bool firstMustMatch,
                          bool digitsMayDiffer)
{
  return qxpaf::NearlyTheSame(a, b, identical, firstMustMatch, digitsMayDiffer);
}
