/** The names of a dictionary by their length, to look through those only that a mistyped name may stand for. */
#ifndef QXPAF_ARF_MATCH_NAMES_BY_LENGTH_H
#define QXPAF_ARF_MATCH_NAMES_BY_LENGTH_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "arf/match/name_signature.h"

namespace arf {

class NamesByLength
{
 public:
  /** @param signatures  one for each name of the dictionary, in its order */
  explicit NamesByLength(std::span<const std::uint32_t> signatures);

  std::uint32_t Count() const { return static_cast<std::uint32_t>(names_.size()); }

  /** Calls `take` with each name that may be `written` with two typing errors; shorter ones first. */
  template <class Take>
  void ForEachLike(const NameSignature& written, Take take) const
  {
    constexpr std::uint32_t kErrors = 2;
    constexpr std::size_t kAtOnce = 16;  // hardly any name of a block passes
    const std::uint32_t shortest = written.Length() - std::min(written.Length(), kErrors);
    const std::uint32_t behind = std::min<std::uint32_t>(written.Length() + kErrors + 1, NameSignature::kLengths);
    const auto mayBe = [&](std::uint32_t letters) { return written.MayHaveLetters(kErrors, letters); };
    for (std::size_t first = starts_[shortest], end = starts_[behind]; first < end; first += kAtOnce) {
      const auto block = std::span(letters_).subspan(first, std::min(kAtOnce, end - first));
      unsigned passes = 0;
      for (const std::uint32_t letters : block) passes |= mayBe(letters);
      for (std::size_t i = 0; passes != 0 && i < block.size(); ++i)
        if (mayBe(block[i])) take(names_[first + i]);
    }
  }

 private:
  std::array<std::uint32_t, NameSignature::kLengths + 1> starts_{};  ///< of each length, in the lists below
  std::vector<std::uint32_t> letters_;
  std::vector<std::uint32_t> names_;
};

}  // namespace arf

#endif
