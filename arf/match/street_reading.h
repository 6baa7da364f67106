/**
 * Where in an input a street may stand, and what its words say. "12 King St West" ends in a suffix, a type before it
 * and a name before that; but the last words may all belong to the name ("The Esplanade"), so there are several
 * readings.
 */
#ifndef QXPAF_ARF_MATCH_STREET_READING_H
#define QXPAF_ARF_MATCH_STREET_READING_H

#include <array>
#include <cstddef>
#include <string_view>

#include "arf/match/input_text.h"

namespace arf {

/** One way to read the end of a street: the words before `nameEnd` are its name. */
struct StreetEnding
{
  std::size_t nameEnd = 0;
  std::string_view type;    ///< full form
  std::string_view suffix;  ///< full form
  bool isApart = false;     ///< a break stands before the suffix
  bool isGuess = false;     ///< the type is just the last word, for types that the data has and the tables have not
};

class StreetEndings
{
 public:
  static constexpr std::size_t kMax = 13;

  /** All readings of the words before `range.last`; the likeliest first. */
  StreetEndings(const InputText& input, WordRange range);

  const StreetEnding* begin() const { return endings_.data(); }
  const StreetEnding* end() const { return endings_.data() + count_; }

 private:
  void Add(const StreetEnding& ending);
  std::size_t first_;
  std::array<StreetEnding, kMax> endings_;
  std::size_t count_ = 0;
};

/** Whether a street's name may start at a position: behind a number, behind a break, or at the very start. */
bool MayStartName(const InputText& input, std::size_t first, std::size_t position);

}  // namespace arf

#endif
