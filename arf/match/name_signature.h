/**
 * Four bytes that say which letters a name has and how long it is, so that most names that cannot be meant by a
 * mistyped one are passed over without looking at their text. Lists of names are searched so, one signature after the
 * other.
 */
#ifndef QXPAF_ARF_MATCH_NAME_SIGNATURE_H
#define QXPAF_ARF_MATCH_NAME_SIGNATURE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace arf {

class NameSignature
{
 public:
  /** Of a canonical name (canonical_words.h). */
  explicit NameSignature(std::string_view canonical)
  {
    for (const char c : canonical)
      if (c >= 'A' && c <= 'Z') bits_ |= 1U << (c - 'A');
    bits_ |= static_cast<std::uint32_t>(std::min(canonical.size(), kLongest)) << kLetters;
  }
  static NameSignature FromBits(std::uint32_t bits) { return NameSignature(bits); }

  std::uint32_t Bits() const { return bits_; }

  /** False when more than that many typing errors lie between the two names. */
  bool MayBeWithin(unsigned errors, const NameSignature& other) const
  {
    const std::uint32_t length = bits_ >> kLetters;
    const std::uint32_t otherLength = other.bits_ >> kLetters;
    const std::uint32_t difference = length > otherLength ? length - otherLength : otherLength - length;
    // An error takes one letter away and adds another at most.
    return (difference <= errors) & HasAtMost(2 * errors, (bits_ ^ other.bits_) & kLetterMask);
  }

 private:
  static constexpr unsigned kLetters = 26;
  static constexpr std::uint32_t kLetterMask = (1U << kLetters) - 1;
  static constexpr std::size_t kLongest = 63;  ///< longer names count as that long
  /** Whether so many bits are set at most; without a count of bits, which would be a call on basic processors. */
  static constexpr bool HasAtMost(unsigned count, std::uint32_t bits)
  {
    for (; count > 0; --count) bits &= bits - 1;
    return bits == 0;
  }
  explicit NameSignature(std::uint32_t bits) : bits_(bits) {}
  std::uint32_t bits_ = 0;
};

}  // namespace arf

#endif
