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
    bits_ |= static_cast<std::uint32_t>(std::min<std::size_t>(canonical.size(), kLengths - 1)) << kLetters;
  }
  static NameSignature FromBits(std::uint32_t bits) { return NameSignature(bits); }

  static constexpr std::uint32_t kLengths = 64;  ///< longer names count as the longest of these

  std::uint32_t Bits() const { return bits_; }
  std::uint32_t Length() const { return bits_ >> kLetters; }
  std::uint32_t Letters() const { return bits_ & kLetterMask; }

  /** False when more than that many typing errors lie between the two names. */
  bool MayBeWithin(unsigned errors, const NameSignature& other) const
  {
    const std::uint32_t length = Length();
    const std::uint32_t otherLength = other.Length();
    const std::uint32_t difference = length > otherLength ? length - otherLength : otherLength - length;
    return (difference <= errors) & MayHaveLetters(errors, other.Letters());
  }
  /** The same of names whose lengths are known to lie near each other. */
  bool MayHaveLetters(unsigned errors, std::uint32_t otherLetters) const
  {
    // An error takes one letter away and adds another at most.
    return HasAtMost(2 * errors, Letters() ^ otherLetters);
  }

 private:
  static constexpr unsigned kLetters = 26;
  static constexpr std::uint32_t kLetterMask = (1U << kLetters) - 1;
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
