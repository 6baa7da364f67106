// Concatenation into a buffer of limited size.
#include <charconv>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <limits>

#include "qxpaf/text/normalise.h"

namespace qxpaf {
namespace {

// The decimal text of a number, where it is a zero-terminated string.
class NumberText
{
 public:
  explicit NumberText(long n) { *std::to_chars(text_, text_ + kMaxLength, n).ptr = '\0'; }

  const char* Get() const { return text_; }

 private:
  static constexpr int kMaxLength = std::numeric_limits<long>::digits10 + 2;  // all digits and a sign
  char text_[kMaxLength + 1];
};

}  // namespace
}  // namespace qxpaf

void ConcatStrings(char* dst, unsigned long size, const char* s1, const char* s2, const char* s3, const char* s4)
{
  if (size == 0) return;
  *dst = '\0';
  std::size_t room = size - 1;
  for (const char* const s : {s1, s2, s3, s4}) {
    if (s == nullptr) continue;
    const std::size_t length = strnlen(s, room);
    std::memcpy(dst, s, length);
    dst += length;
    *dst = '\0';
    room -= length;
  }
}

void ConcatStrings(char* dst, unsigned long size, const char* s1, const char* s2, long n)
{
  ConcatStrings(dst, size, s1, s2, qxpaf::NumberText(n).Get(), nullptr);
}

void ConcatStrings(char* dst, unsigned long size, const char* s1, long n, const char* s2)
{
  ConcatStrings(dst, size, s1, qxpaf::NumberText(n).Get(), s2, nullptr);
}
