/** Postal deliveries as written: "PO Box 123", "G.P.O. Box C96", "Locked Bag 7", "Care PO". */
#ifndef QXPAF_ARF_MATCH_POSTAL_WORDS_H
#define QXPAF_ARF_MATCH_POSTAL_WORDS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "arf/match/input_text.h"

namespace arf {

struct PostalWords
{
  std::string_view type;  ///< as on mail, a view of the tables; empty: the words are something else
  std::size_t start = 0;  ///< the first word of the type
  WordRange number;       ///< empty for a kind without numbers
};

/** A postal delivery that takes up the last words of `body`. */
PostalWords ReadPostalAtEnd(const InputText& input, WordRange body);

/** Where a type that takes a number begins directly before `end`, not before `first`; `end` when there is none. */
std::size_t PostalTypeBefore(const InputText& input, std::size_t first, std::size_t end);

/** The parts of a postal number: "C96", "C 96", "123A". */
struct PostalNumber
{
  std::string_view prefix;
  std::uint32_t number = 0;
  std::string_view suffix;
};

/** False when the text is no number; empty text is number 0, a kind without numbers. */
bool ReadPostalNumber(std::string_view text, PostalNumber& number);

}  // namespace arf

#endif
