/**
 * Other ways to say the words that stand where a locality should: people put the direction of a name on its other side
 * ("East Kew" for "KEW EAST"), abbreviate "PORT" like "POINT", and say that they mean the middle of a town ("Sydney
 * CBD", "Melbourne City").
 */
#ifndef QXPAF_ARF_MATCH_LOCALITY_WORDINGS_H
#define QXPAF_ARF_MATCH_LOCALITY_WORDINGS_H

#include <array>
#include <cstddef>
#include <string_view>

#include "arf/match/fixed_text.h"
#include "arf/match/input_text.h"
#include "arf/match/penalties.h"

namespace arf {

struct LocalityWording
{
  FixedText<120> name;  ///< a match key, which need not be the name of anything
  Departure departure = Departure::LocalityVariant;
};

class LocalityWordings
{
 public:
  /** None for most words, and none for words that a break separates. */
  LocalityWordings(const InputText& input, WordRange words);

  const LocalityWording* begin() const { return wordings_.data(); }
  const LocalityWording* end() const { return wordings_.data() + count_; }
  bool Empty() const { return count_ == 0; }

 private:
  static constexpr std::size_t kMax = 5;
  void Add(Departure departure, std::string_view first, std::string_view second);

  std::array<LocalityWording, kMax> wordings_;
  std::size_t count_ = 0;
};

/** Whether a word says where in a place something is, so that it may stand on either side of the place's name. */
bool IsDirection(const Word& word);

/** Whether some words of a text have other wordings at all. */
bool HasWordings(const InputText& input);

}  // namespace arf

#endif
