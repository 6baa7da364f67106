/**
 * Cleaning of address text in place, two small parsers, and replacements of platform string functions (those whose
 * names end in an underscore).
 *
 * Conventions, for every function unless it says otherwise:
 *
 *  1. Text is zero-terminated, one byte a character, in a buffer of the caller's; it must be writable where it is not
 *     const. Pointers are not null, and nothing behind the terminator is read or written. In-place functions never make
 *     text longer, so a buffer that holds the text is large enough.
 *  2. "Letter", "digit", upper and lower case are the C library's, on the byte taken as unsigned, in the current
 * locale: in the "C" locale and in all UTF-8 locales they are ASCII's. Text in UTF-8 keeps its other bytes, but they
 * count as neither letters nor digits. Blanks are ' ' only, not tabs.
 *  3. Sizes are in bytes and count the terminator.
 *  4. All functions are stateless and may run in any number of threads on different text. None throws. Only Split_
 *     allocates. Time is linear in the length of the text and the sets.
 */
#ifndef QXPAF_TEXT_NORMALISE_H
#define QXPAF_TEXT_NORMALISE_H

#include <cstdio>
#include <ctime>

#include "qxpaf/export.h"

/* ---- Replacements of platform functions ------------------------------------------------------------------------- */

/** Upper-cases every byte. @return s */
QXPAF_API char* strupr_(char* s);

/** Lower-cases every byte. @return s */
QXPAF_API char* strlwr_(char* s);

/** Every element through towupper. @return s */
QXPAF_API wchar_t* wcsupr_(wchar_t* s);

/**
 * The digits of value in a radix of 2 to 36, lower-case letters above 9, with '-' before a negative value in every
 * radix: -255 gives "-ff" in radix 16. Any other radix gives the empty string.
 *
 * @param buf at least 34 bytes: 32 digits, sign and terminator
 * @return buf
 */
QXPAF_API char* itoa_(int value, char* buf, int radix);

/** Non-zero for a letter, a digit or '_'. c is a byte, 0 to 255; any other value gives 0. */
QXPAF_API int iscsym_(int c);

/** Reverses the order of the bytes. @return s */
QXPAF_API char* strrev_(char* s);

/**
 * Compares element by element after towlower.
 *
 * @return at the first difference 1 when a's element is the greater one, -1 when b's is; where a text ends before any
 *         difference, 1 when a goes on, 0 when both end, and -2 (not -1) when b goes on
 */
QXPAF_API int wcsicmp_(const wchar_t* a, const wchar_t* b);

/** wcsicmp_ on the first n elements at most. @return as wcsicmp_; 0 when n elements compared equal, so also for n = 0
 */
QXPAF_API int wcsnicmp_(const wchar_t* a, const wchar_t* b, unsigned long n);

/** Removes trailing blanks. */
QXPAF_API void RTrim_(char* s);

/** Removes leading and trailing runs of c. */
QXPAF_API void Trim_(char* s, char c);

/** Removes leading and trailing bytes that occur in set. */
QXPAF_API void Trim_(char* s, const char* set);

/**
 * The pieces of s between separators, each without leading and trailing blanks: " a, b ,,c" at ',' gives "a", "b", ""
 * and "c". Empty pieces count, so there is one more than there are separators; the empty text has one.
 *
 * @return an array that ends with a null pointer, the caller's, to be freed with FreeArray_ (array and pieces are made
 *         by new[]); null when memory runs out
 */
QXPAF_API char** Split_(const char* s, char sep);

/** Frees with delete[] every string up to the null pointer at the end, then the array. Null is ignored. */
QXPAF_API void FreeArray_(char** a);
QXPAF_API void FreeArray_(wchar_t** a);

/** Frees the array that p points to, if any, with delete[] and sets p to null. Strings in it are not freed. */
template <class T>
QXPAF_API void delete_array_and_null(T*& p)
{
  delete[] p;
  p = nullptr;
}
extern template void delete_array_and_null<char>(char*&);
extern template void delete_array_and_null<char*>(char**&);

/** Appends c and a terminator: s must have room for two bytes from its terminator on. @return s */
QXPAF_API char* strcatc(char* s, char c);

/**
 * fgets, without the line's end: a line feed at the end of what was read is removed, and then a carriage return before
 * it. A carriage return alone stays, also where a line feed would not have fitted.
 *
 * @param n the size of buf
 * @return buf; null at the end of the file or on an error
 */
QXPAF_API char* fgets_(char* buf, int n, FILE* f);

/** localtime_r. @return whether out was set; it is not when the year does not fit */
QXPAF_API bool Localtime(const time_t* t, tm& out);

/**
 * ctime_r: "Thu Jan  1 00:00:00 1970" and a line feed.
 *
 * @param buf at least 26 bytes @return false, with buf empty, when the time has no such form
 */
QXPAF_API bool Ctime(const time_t* t, char* buf);

/* ---- Bounded concatenation ----------------------------------------------------------------------------------------
 */

/**
 * The strings s1 to s4 one behind the other, cut to size - 1 bytes and always terminated. Null stands for no string.
 *
 * No more of a string is read than fits, so the last one that fits in part needs no terminator. dst is emptied before
 * anything is read and must not overlap the strings.
 * @param size the size of dst; 0 leaves dst untouched
 */
QXPAF_API void ConcatStrings(char* dst, unsigned long size, const char* s1, const char* s2, const char* s3,
                             const char* s4);

/** The same of s1, s2 and the decimal digits of n. */
QXPAF_API void ConcatStrings(char* dst, unsigned long size, const char* s1, const char* s2, long n);

/** The same of s1, the decimal digits of n, and s2. */
QXPAF_API void ConcatStrings(char* dst, unsigned long size, const char* s1, long n, const char* s2);

/* ---- Clean-up -------------------------------------------------------------------------------------------------------
 */

/**
 * Title case for names: "JOHN MCDONALD" gives "John McDonald", "O'BRIEN" "O'Brien", "LEVEL IV" "Level IV".
 *
 * Words are runs of letters, digits and apostrophes.
 *  - The first character of a word is upper-cased, other letters are lower-cased. Digits do not change; a word that
 *    begins with one has no capital ("4TH" gives "4th").
 *  - Behind "Mc" at the start of a word comes a capital; behind "Mac" none ("Macdonald").
 *  - Behind an apostrophe that is the first or second character of a word, or that two word characters follow, a new
 *    word begins ("D'Arcy"). An apostrophe before "ll", "ve" or "re" begins one only if the word goes on behind these
 *    two letters ("You'll", but "O'Reilly").
 *  - A word of two or more letters, all of them I, V, X or L, is upper-cased when it is a Roman numeral from 1 to 49.
 * @return s
 */
QXPAF_API char* TitleCase(char* s);

/**
 * The same for UTF-8, with letters, digits and case of the Unicode tables (see unicode.h) whatever the locale, and with
 * U+2019 as apostrophe beside U+0027. A byte that starts no valid sequence counts as the character of its value.
 *
 * Meant to be: only the last word of the text, with nothing behind it, can become a Roman numeral: "HENRY VIII" gives
 * "Henry VIII", but "VIII HENRY" gives "Viii Henry". A character whose other case takes more or fewer bytes stays.
 * @return s
 */
QXPAF_API char* TitleCaseUtf8(char* s);

/** Every run of two or more blanks becomes one blank. */
QXPAF_API void RemoveMultipleSpaces(char* s);

/**
 * Blanks in place of everything but letters, digits and keep, then one blank for each run and none at either end:
 * "  St. John's-Wood " keeping '\'' gives "St John's Wood".
 *
 * @param keep 0 keeps nothing
 */
QXPAF_API void RemovePunctuationForIndex(char* s, char keep);

/**
 * Removes bracketed text with its brackets: ( ) first, then [ ], then { }. Then RemoveMultipleSpaces.
 *
 * Of one kind, the last opening bracket and the first closing one behind it are removed with what is between, again and
 * again, until the last opening bracket has no closing one behind it. So nested brackets go as a whole, and nothing
 * before an unclosed bracket goes: "a (b) (c" stays. Closing brackets without an opening one stay.
 */
QXPAF_API void RemoveInBrackets(char* s);

/** Removes every byte that occurs in chars. @return s */
QXPAF_API char* StripChars(char* s, const char* chars);

/** Replaces every from by to, which may be 0. */
QXPAF_API void Replace(char* s, char from, char to);

/** Replaces every byte that occurs in set by to, which may be 0. */
QXPAF_API void Replace(char* s, const char* set, char to);

/* ---- Parsers
 * ---------------------------------------------------------------------------------------------------------- */

/**
 * The value of a Roman numeral, in upper, lower or mixed case: any number of Ms, then hundreds, tens and units as in
 * "MCMXCIV" (1994).
 *
 * @return 0 when s is empty or no such numeral ("iiii", "IL"); at most INT_MAX
 */
QXPAF_API int ReadRomanNumeral(const char* s);

/**
 * Reads a date from up to three numbers and English month names (three letters or more, in any case), with anything
 * between them: day, month and year; day and year with a month's name anywhere; month and year; or the year. "15 Mar
 * 2024", "15/3/24" and "March 15, 2024" are the same day. A missing day is 31; a missing month, and with it the day,
 * is 31 December. What follows the third number or name is ignored. A year up to 99 gets 2000 added. Day and month are
 * not checked against the calendar; numbers above INT_MAX count as INT_MAX.
 *
 * @return false without any number, with a number of 0, a second word, or a word that is no month. year is then
 *         untouched; month is the month named so far, or 0, and day is 31.
 */
QXPAF_API bool ReadDateDMY(const char* s, int& year, int& month, int& day);

#endif
