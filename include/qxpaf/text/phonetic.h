/**
 * Phonetic keys: names that sound alike get equal keys. The rules are this library's own variants of published methods.
 *
 * Conventions, for every function:
 *
 *  1. Names are zero-terminated single-byte text, not null; nothing behind the terminator is read. Letters are the 26
 *     ASCII letters in either case. Every byte from 0x80 on counts as a non-letter, so accented letters do, in any
 *     encoding. White space is blank, tab, line feed, vertical tab, form feed and carriage return.
 *  2. Classes and case are those of the C library in its "C" locale, and stay so when the process has chosen another
 *     locale: keys are stored and compared across processes, and a Turkish "i" must not change them.
 *  3. len is the number of characters a key may have, without the terminator; out must hold len + 1 bytes and must not
 *     overlap the name. A key is always terminated. len 0 gives the empty key.
 *  4. All functions are stateless, may run in any number of threads, allocate nothing and throw nothing. Time is linear
 *     in the length of the name at worst; Nysiis looks at a bounded part of it.
 */
#ifndef QXPAF_TEXT_PHONETIC_H
#define QXPAF_TEXT_PHONETIC_H

#include "qxpaf/export.h"

/**
 * The Soundex key: the upper-case first letter, then digits for the consonant groups that follow it.
 *
 * After Russell and Odell (US patents 1,261,167 of 1918 and 1,435,663 of 1922), with the rule of the later census
 * version that H and W do not separate equal digits, while a vowel or Y does. Leading white space is skipped; other
 * non-letters are passed over without effect. The key always has len characters, filled up with '0'. Classic keys have
 * len 4: Robert, Rupert and "  robert" give R163, Ashcraft A261, Lee L000.
 *
 * @param out at least len + 1 bytes; becomes empty when the name does not start with a letter ("42nd")
 */
QXPAF_API void Soundex(char* out, const char* name, unsigned long len);

/**
 * The Soundex key of four characters as a number: the place of the first letter in the alphabet (A is 1) in bits 9-13,
 * the three digits in bits 6-8, 3-5 and 0-2. Robert (R163) gives 18 * 512 + 1 * 64 + 6 * 8 + 3 = 9331.
 *
 * Keys compare as their texts do. Unlike Soundex, leading white space is not skipped.
 *
 * @return 0 when the name does not start with a letter
 */
QXPAF_API unsigned short Soundex2(const char* name);

/**
 * The NYSIIS key, of letters only: vowels count as one sound ('A'), but a vowel at the start keeps its letter.
 *
 * After R. L. Taft, Name Search Techniques, New York State Identification and Intelligence System, 1970, with the
 * endings, the letter rules and the end rules changed. Leading white space is skipped; of what follows, 51 characters
 * are looked at and other non-letters left out. MacDonald gives MCDANALD, Knight NAT, Phillips FALAP, Evans EVAN.
 *
 * @param out at least len + 1 bytes, all of them set: zeros follow the key. Becomes empty when there is no letter, or a
 *            digit, among the characters looked at
 */
QXPAF_API void Nysiis(char* out, const char* name, unsigned long len);

/**
 * The Metaphone key: consonant sounds in upper case, with X for "sh" and "ch" and the digit 0 for "th"; vowels only at
 * the start.
 *
 * After L. Philips, Hanging on the Metaphone, Computer Language 7 (12), 1990, with several rules changed. A name of one
 * character gives that character in upper case, whatever it is. The rules for the first two letters (AE, GN, KN, PN,
 * WR, X) act on upper-case input only: KNIGHT gives NT, knight KNT. A letter that repeats the character before it gives
 * nothing. The end of the name acts like an I, E or Y after C and G: MARC gives MRS, KING KNJ.
 *
 * @param out at least len + 1 bytes; BOX with len 2 gives BK, as the S of its X finds no room
 */
QXPAF_API void Metaphone(char* out, const char* name, unsigned long len);

#endif
