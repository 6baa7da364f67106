/** Corners as written: "Cnr Smith St & Jones Rd", "Smith St / Jones Rd", "12 Smith St (cnr Jones)", "A and B Streets".
 */
#ifndef QXPAF_ARF_MATCH_CORNER_WORDS_H
#define QXPAF_ARF_MATCH_CORNER_WORDS_H

#include <array>
#include <cstddef>
#include <string_view>

#include "arf/match/input_text.h"

namespace arf {

/** One way to tell the words of the two streets apart; "Cnr Smith St" has the same words for both. */
struct CornerWords
{
  WordRange first;
  WordRange second;
  bool isCertain = false;  ///< a word says that it is a corner, so that these words can be nothing but streets
};

class CornerReadings
{
 public:
  static constexpr std::size_t kMax = 4;

  CornerReadings(const InputText& input, WordRange body);
  const CornerWords* begin() const { return readings_.data(); }
  const CornerWords* end() const { return readings_.data() + count_; }

 private:
  enum class Joining
  {
    BySigns,  ///< "&", "+", "/", "and"
    ByOthers  ///< a comma or a dash
  };
  void Add(const CornerWords& words);
  void Split(const InputText& input, WordRange words, Joining joining, bool isCertain);
  std::array<CornerWords, kMax> readings_;
  std::size_t count_ = 0;
};

/** Whether a text may be a corner at all; most are told apart so. */
bool MayBeCorner(const InputText& input);

/** Whether some words have something like a house number, which an ordinal ("1ST") is not. */
bool HasHouseNumber(const InputText& input, WordRange words);

/** The type that a word is the plural of, as two streets may share it: "STREETS", "STS"; empty when it is none. */
std::string_view PluralType(std::string_view word);

}  // namespace arf

#endif
