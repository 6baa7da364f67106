/** Some lines of text that are brought into a width and a number of lines. Never allocates. */
#ifndef QXPAF_ARF_PRINT_ADDRESS_LINES_H
#define QXPAF_ARF_PRINT_ADDRESS_LINES_H

#include <array>
#include <cstddef>
#include <string_view>

#include "arf/match/fixed_text.h"

namespace arf {

class AddressLines
{
 public:
  static constexpr std::size_t kMaxLines = 32;
  static constexpr std::size_t kMaxLength = 512;  ///< bytes of a line
  using Line = FixedText<kMaxLength>;

  std::size_t Count() const { return count_; }
  std::string_view operator[](std::size_t i) const { return lines_[i].View(); }

  /** Appends a line; an empty one is passed over. False when there is no room for it. */
  bool Add(std::string_view line);
  /** Appends words to the last line, separated by `between`. False when they do not fit. */
  bool Extend(std::string_view between, std::string_view words);

  /** Breaks lines at spaces so that none has more than `width` characters. False when a word alone is longer. */
  bool Wrap(std::size_t width);
  /**
   * Joins lines from the top, with commas, until there are `most` of them; the last line, which is the locality's, is
   * joined only when `most` is 1. False when the joined lines would be longer than `width`, 0 being no limit.
   */
  bool JoinTo(std::size_t most, std::size_t width);

 private:
  bool WrapLine(std::string_view line, std::size_t width);

  std::array<Line, kMaxLines> lines_;
  std::size_t count_ = 0;
};

/** Characters of a UTF-8 text; a byte that begins none counts with the character before it. */
std::size_t CharactersOf(std::string_view text);

}  // namespace arf

#endif
