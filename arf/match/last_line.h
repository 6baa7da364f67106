/**
 * The last line of an address: locality, state and postcode, and what was written about the latter two.
 */
#ifndef QXPAF_ARF_MATCH_LAST_LINE_H
#define QXPAF_ARF_MATCH_LAST_LINE_H

#include <array>
#include <cstddef>
#include <string_view>

#include "arf/format/database.h"
#include "arf/match/fixed_text.h"
#include "arf/match/input_text.h"

namespace arf {

/** State and postcode as written; each may be missing. */
struct WrittenPlace
{
  std::string_view state;  ///< code, a view of the table of states
  FixedText<4> postcode;

  bool StateFits(const Locality& locality) const;
  bool PostcodeFits(const Locality& locality) const { return postcode.Empty() || postcode.View() == locality.postcode; }
  bool Fits(const Locality& locality) const { return PostcodeFits(locality) && StateFits(locality); }
  bool Empty() const { return state.empty() && postcode.Empty(); }
  /** Takes over what `more` says. */
  void Merge(const WrittenPlace& more);
  /** "NSW 2000" */
  FixedText<24> Text() const;
};

/** A word or words that say state, postcode or country, at one end of a range of words. */
struct PlaceWords
{
  WrittenPlace place;     ///< what they say
  std::size_t count = 0;  ///< 0: there are none
  bool isCountry = false;
};

/** The words directly before `end` but not before `first`, the longest reading; says nothing that `known` has already.
 */
PlaceWords ReadPlaceBefore(const InputText& input, std::size_t first, std::size_t end, const WrittenPlace& known);

/** The same for the words directly behind `first`. */
PlaceWords ReadPlaceAfter(const InputText& input, std::size_t first, std::size_t end, const WrittenPlace& known);

/** One way to cut state, postcode and country off the end of an input. */
struct Tail
{
  std::size_t localityEnd = 0;
  WrittenPlace place;
  bool isOtherReading = false;  ///< of "WEST AUSTRALIA 4341", which is no postcode of that state, WEST is no part
};

/** All ways, the one that cuts most first; the last cuts nothing, because state names may end localities' names. */
class Tails
{
 public:
  explicit Tails(const InputText& input);
  const Tail* begin() const { return tails_.data(); }
  const Tail* end() const { return tails_.data() + count_; }

 private:
  static constexpr std::size_t kMax = 6;
  std::array<Tail, kMax> tails_;
  std::size_t count_ = 0;
};

}  // namespace arf

#endif
