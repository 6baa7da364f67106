// Guessing whether bytes are UTF-8.
#include <algorithm>
#include <cstdint>
#include <string_view>

#include "qxpaf/text/encoding.h"
#include "text/utf8_blocks.h"
#include "text/utf8_codec.h"

namespace qxpaf {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// The ratio of IsStringUtf8 on string objects.
constexpr int kStringRatio = 10;

// Bytes of the well-formed sequence that this byte leads; 0 for a byte that leads none.
std::size_t SequenceLength(unsigned char lead)
{
  if (lead < 0xC2 || lead > 0xF4) return 0;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
}

// What a bad sequence takes with it.
enum class BadSequence
{
  kWholeLength,
  kLeadOnly
};

class SequenceCount
{
 public:
  SequenceCount(std::string_view text, BadSequence badSequence)
  {
    const char* const end = text.data() + text.size();
    for (const char* p = text.data(); p < end;) {
      good_ += Utf8BlockCount(p, end).Sequences();
      CountStretch(p, end, badSequence);
    }
  }

  bool LooksLikeUtf8(int ratio) const
  {
    if (good_ == 0) return false;
    if (bad_ == 0) return true;
    // Sign-extended, so that a negative ratio makes the quotient 0.
    const auto divisor = static_cast<std::uint64_t>(static_cast<std::int64_t>(ratio));
    return divisor != 0 && good_ / divisor > bad_;
  }

 private:
  // What comes before blocks are worth another try.
  static constexpr std::ptrdiff_t kStretch = 32;

  void CountStretch(const char*& p, const char* end, BadSequence badSequence)
  {
    const char* const stop = end - p > kStretch ? p + kStretch : end;
    while (p < stop) p += IsAsciiByte(*p) ? 1 : CountAt(p, static_cast<std::size_t>(end - p), badSequence);
  }

  // Counts what a byte above 0x7F starts and returns the bytes to move on by. `left` bytes are left, this one included.
  std::size_t CountAt(const char* p, std::size_t left, BadSequence badSequence)
  {
    const std::size_t length = SequenceLength(static_cast<unsigned char>(*p));
    if (length != 0 && length <= left && HasContinuations(p, length)) {
      ++good_;
      return length;
    }
    ++bad_;
    if (length == 0 || badSequence == BadSequence::kLeadOnly) return 1;
    return std::min(length, left);
  }

  static bool HasContinuations(const char* p, std::size_t length)
  {
    return IsUtf8Continuation(p[1]) && (length < 3 || IsUtf8Continuation(p[2])) &&
           (length < 4 || IsUtf8Continuation(p[3]));
  }

  std::uint64_t good_ = 0;
  std::uint64_t bad_ = 0;
};

}  // namespace
}  // namespace qxpaf

bool IsBufferUtf8(const char* buf, unsigned long len, int ratio)
{
  const std::string_view text(buf, len);
  if (text.starts_with(qxpaf::kUtf8Mark)) return true;
  return qxpaf::SequenceCount(text, qxpaf::BadSequence::kWholeLength).LooksLikeUtf8(ratio);
}

bool IsStringUtf8(const char* s, int ratio)
{
  return qxpaf::SequenceCount(s, qxpaf::BadSequence::kLeadOnly).LooksLikeUtf8(ratio);
}

bool IsStringUtf8(const std::string& s, int)
{
  return IsStringUtf8(s.c_str(), qxpaf::kStringRatio);
}
