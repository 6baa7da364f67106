/**
 * Folding of names. Two forms are used throughout: the display form (upper case, single-spaced, punctuation kept) and
 * the match key, which is what people's spellings of one name have in common. Both work on UTF-8 and know the letters
 * of ASCII, Latin-1 and Latin Extended-A; other characters, and bytes that are not UTF-8, pass unchanged.
 */
#ifndef QXPAF_ARF_FORMAT_FOLD_H
#define QXPAF_ARF_FORMAT_FOLD_H

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace arf {

/** The longest name (and so the longest key) that a database may hold, in bytes. */
inline constexpr std::size_t kMaxNameLength = 255;

/**
 * Match key: upper case, accents and other marks removed ("É" gives "E", "ß" gives "SS"), apostrophes of any kind
 * dropped, every other ASCII sign, dash or white space a word gap, words separated by one space, no space at the ends.
 *
 * @param out  receives the key, not terminated. A key is never longer than its text; what does not fit is cut off.
 * @return     the length of the key.
 */
std::size_t MatchKey(std::string_view text, std::span<char> out);

/** The same as a string. */
std::string MatchKey(std::string_view text);

/**
 * Display form: upper case, white space and control characters as single spaces, none at the ends; punctuation and
 * accents stay. Never longer than its text; `out` and result as with MatchKey.
 */
std::size_t DisplayForm(std::string_view text, std::span<char> out);

/** The same as a string. */
std::string DisplayForm(std::string_view text);

}  // namespace arf

#endif
