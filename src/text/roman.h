// Roman numerals in text that has no terminator of its own.
#ifndef QXPAF_SRC_TEXT_ROMAN_H
#define QXPAF_SRC_TEXT_ROMAN_H

#include <string_view>

namespace qxpaf {

// ReadRomanNumeral of the whole text.
int RomanValue(std::string_view text);

// Whether title casing shows the word as a numeral: two characters or more, I, V, X and L only, a value of 1 to 49.
bool IsRomanWord(std::string_view word);

}  // namespace qxpaf

#endif
