/** Whether a written name is a mistyped or misheard form of a name of the data. */
#ifndef QXPAF_ARF_MATCH_NAME_LIKENESS_H
#define QXPAF_ARF_MATCH_NAME_LIKENESS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "arf/match/canonical_words.h"
#include "arf/match/name_signature.h"

namespace arf {

enum class Likeness : std::uint8_t
{
  None,  ///< other names, and equal ones
  OneTypo,
  OneTypoShort,  ///< in a name of up to five letters, where it says less
  TwoTypos,      ///< in names of seven letters and more
  Sound          ///< sounds alike, and up to three letters differ
};

/** A written name, made ready to be compared with many of the data. */
class WrittenName
{
 public:
  /** @param key  upper case, single-spaced */
  explicit WrittenName(std::string_view key);

  /** Whether names can be like this one at all: names of less than three letters, or with more than 40, never are. */
  bool IsComparable() const { return name_.View().size() >= kShortest && name_.View().size() <= kLongest; }
  /** A quick test, which lets all names pass for which Compare finds a likeness but some that sound alike. */
  bool MayBe(std::uint32_t signature) const
  {
    return signature_.MayBeWithin(kMostErrors, NameSignature::FromBits(signature));
  }
  const NameSignature& Signature() const { return signature_; }
  Likeness Compare(std::string_view storedKey) const;

 private:
  static constexpr std::size_t kShortest = 3;
  static constexpr std::size_t kLongest = 40;
  static constexpr unsigned kMostErrors = 2;
  static constexpr std::size_t kSoundLength = 8;
  using Sound = std::array<char, kSoundLength + 1>;

  CanonicalName name_;
  NameSignature signature_;
  Sound sound_;
};

}  // namespace arf

#endif
