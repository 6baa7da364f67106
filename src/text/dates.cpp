// Dates in the order day, month, year.
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "qxpaf/text/normalise.h"
#include "text/byte_class.h"

namespace qxpaf {
namespace {

constexpr std::string_view kMonths[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                        "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
constexpr int kMaxTokens = 3;
constexpr int kLastMonth = 12;
constexpr int kLastDay = 31;
constexpr int kLastShortYear = 99;
constexpr int kCentury = 2000;

// The comparison ends at the terminator, which is no letter.
bool StartsWithMonth(const char* p, std::string_view month)
{
  return std::all_of(month.begin(), month.end(), [&p](char letter) { return ToUpperByte(*p++) == letter; });
}

// 1 to 12, 0 for no month.
int MonthOf(const char* p)
{
  for (int i = 0; i < kLastMonth; ++i) {
    if (StartsWithMonth(p, kMonths[i])) return i + 1;
  }
  return 0;
}

// The words and numbers of a date.
class DateTokens
{
 public:
  // False at a second word, an unknown month or a number of 0.
  bool Read(const char* p)
  {
    for (int token = 0; token < kMaxTokens; ++token) {
      while (*p != '\0' && !IsLetterOrDigitByte(*p)) ++p;
      if (*p == '\0') break;
      if (!(IsLetterByte(*p) ? TakeMonth(p) : TakeNumber(p))) return false;
    }
    return true;
  }

  int Month() const { return month_; }
  int Count() const { return count_; }
  int Number(int i) const { return numbers_[i]; }

 private:
  bool TakeMonth(const char*& p)
  {
    if (month_ != 0) return false;
    month_ = MonthOf(p);
    while (IsLetterByte(*p)) ++p;
    return month_ != 0;
  }

  bool TakeNumber(const char*& p)
  {
    char* end;
    const long value = std::strtol(p, &end, 10);
    p = end;
    numbers_[count_++] = static_cast<int>(std::min<long>(value, std::numeric_limits<int>::max()));
    return value != 0;
  }

  int month_ = 0;
  int count_ = 0;
  int numbers_[kMaxTokens] = {};
};

}  // namespace
}  // namespace qxpaf

bool ReadDateDMY(const char* s, int& year, int& month, int& day)
{
  qxpaf::DateTokens tokens;
  const bool valid = tokens.Read(s);
  month = tokens.Month();
  day = qxpaf::kLastDay;
  if (!valid || tokens.Count() == 0) return false;

  // The last number is the year; the others are taken from the front, where a month by name needs none.
  int used = 0;
  const int others = tokens.Count() - 1;
  const bool named = month != 0;
  if (others == 2 || (others == 1 && named)) day = tokens.Number(used++);
  if (!named) month = others > 0 ? tokens.Number(used) : qxpaf::kLastMonth;
  year = tokens.Number(others);
  if (year <= qxpaf::kLastShortYear) year += qxpaf::kCentury;
  return true;
}
