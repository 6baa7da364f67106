/**
 * How close two texts are: a bounded edit distance, a test for at most one slip of the typist, and a similarity.
 *
 * Conventions, for every function:
 *
 *  1. Characters are compared by value, case included; callers bring case and accents into one form first. Narrow text
 *     is compared byte by byte: an accented letter of UTF-8 counts as two or more characters.
 *  2. Pointers are not null and name zero-terminated text; nothing behind the terminator is read.
 *  3. Digits are '0' to '9' only. A changed digit is another house or another postcode, no slip, so two functions treat
 *     digits apart unless told that they may differ (digitsMayDiffer).
 *  4. All functions are stateless and may run in any number of threads. They allocate nothing but for the long inputs
 *     that their comments name, and then throw std::bad_alloc when memory runs out; nothing else is thrown.
 */
#ifndef QXPAF_TEXT_FUZZY_H
#define QXPAF_TEXT_FUZZY_H

#include <string>

#include "qxpaf/export.h"

/**
 * The least number of substitutions, insertions, deletions and transpositions of neighbours that turn a into b, where
 * nothing transposed is edited again (F. J. Damerau, A technique for computer detection and correction of spelling
 * errors, Communications of the ACM 7 (3), 1964), as long as it is at most maxDist.
 *
 * SMITH against SMYTH, SMIHT or SMITHS is 1.
 *
 * A larger distance gives maxDist + 1, INT_MAX where that does not fit. When one text begins with the other, the
 * difference of their lengths is the result, however large: A against AXYZ is 3 whatever maxDist is. A negative maxDist
 * gives maxDist + 1 for all other pairs.
 *
 * Without digitsMayDiffer, two places from which both texts go on with different digits are never part of a way from a
 * to b: no digit is substituted for another, and nothing is inserted or deleted there either. Equal characters are
 * always matched as they come, so such a place can be unavoidable: 12 MAIN against 13 MAIN exceeds every bound, and so
 * does 1 against 21.
 *
 * Time is linear in the lengths times maxDist at worst. Allocates only when maxDist and a text, both, exceed 255.
 */
QXPAF_API int CompareStrings2(const char* a, const char* b, int maxDist, bool digitsMayDiffer);

/** The same for wide text. */
QXPAF_API int CompareStrings2(const wchar_t* a, const wchar_t* b, int maxDist, bool digitsMayDiffer);

/**
 * Whether a and b are equal or one slip apart (the four kinds of Damerau, see CompareStrings2): one substitution, one
 * insertion, one deletion or one transposition of neighbours.
 *
 * Without digitsMayDiffer, where the texts begin to differ b must not go on with a digit, and a only with a digit that
 * is the next but one character of b; one character more at the end must be no digit. UNIT 5 and UNIT 5A are nearly the
 * same, UNIT 5 and UNIT 6 or UNIT 55 are not. This is not symmetric, and not the same as a distance of 1.
 *
 * @param identical      set on every call: true when a and b are equal
 * @param firstMustMatch texts whose first characters differ are not nearly the same
 */
QXPAF_API bool StringsNearlyTheSame(const char* a, const char* b, bool& identical, bool firstMustMatch,
                                    bool digitsMayDiffer);

/** The same for wide text, but one character more at the end may always be a digit: UNIT 5 and UNIT 55 give true. */
QXPAF_API bool StringsNearlyTheSame(const wchar_t* a, const wchar_t* b, bool& identical, bool firstMustMatch,
                                    bool digitsMayDiffer);

/**
 * The Jaro similarity (M. A. Jaro, Advances in record-linkage methodology, Journal of the American Statistical
 * Association 84, 1989), from 0 (nothing in common) to 1 (equal): MARTHA and MARHTA 0.944, DWAYNE and DUANE 0.822.
 *
 * Characters match within a distance of half the longer length minus one, each with the first free partner in b. The
 * number of matched pairs out of order is halved and rounded down. There is no bonus for a common beginning. The result
 * is computed in single precision, in this order: ((m - t / 2) / m + m / la + m / lb) / 3.
 *
 * Two empty texts give 0. A zero character inside a text is a character like others. Allocates only when a text has
 * more than 64 characters. Time is linear in the lengths (for wide text as far as characters differ in their low byte).
 */
QXPAF_API float CompareJaro(const std::string& a, const std::string& b);

/** The same for wide text. */
QXPAF_API float CompareJaro(const std::wstring& a, const std::wstring& b);

#endif
