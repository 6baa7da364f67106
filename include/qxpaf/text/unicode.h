/**
 * Letter case, character classes and accent removal: for wide characters, for Windows-1252 bytes and for UTF-8 in
 * place.
 *
 * Conventions, for every function unless it says otherwise:
 *
 *  1. Everything follows from constant tables in the library, never from the locale. The tables are fixed to versions
 * of the Unicode Character Database so that results never change: 5.1.0 for upper and lower case and for accents, 5.2.0
 *     for classes, 8.0.0 for case folding. Characters that are newer than that have no case, no class and no accents.
 *  2. Wide text (wchar_t, a signed 32-bit type) holds one code point per element. Only U+0000-U+FFFF are known: every
 *     other element, negative ones included, is in no class and stays as it is, and so do surrogates, paired or not.
 *  3. String objects are taken whole, embedded zeros included; pointers are not null and name zero-terminated text,
 * which is changed in place up to its terminator. Nothing behind the terminator is read or written.
 *  4. Functions that take a string by value return it changed and allocate only when it grows: pass std::move(s) to
 * save the copy. Time is linear in the length.
 *  5. All functions are stateless and may run in any number of threads. Functions on string objects throw
 * std::bad_alloc when memory runs out; nothing else is thrown.
 *
 * A few results are not what other libraries give, and are meant to be: see UnicodeCaseFold, UnicodeFold,
 * UnicodeRemoveAccents and Utf8RemoveAccentsMe.
 */
#ifndef QXPAF_TEXT_UNICODE_H
#define QXPAF_TEXT_UNICODE_H

#include <string>

#include "qxpaf/export.h"

/* ---- Upper and lower case ------------------------------------------------------------------------------------------
 */

/** The simple (one to one) lower case of c; c itself when it has none. U+0130 gives U+0069. */
QXPAF_API wchar_t UnicodeToLower(wchar_t c);

/** The simple upper case of c; c itself when it has none, as for U+00DF. U+0131 gives U+0049, U+017F gives U+0053. */
QXPAF_API wchar_t UnicodeToUpper(wchar_t c);

/** Every element through UnicodeToLower. */
QXPAF_API std::wstring UnicodeToLower(std::wstring s);

/** Every element through UnicodeToUpper, but U+00DF (sharp s) becomes the two elements "SS". */
QXPAF_API std::wstring UnicodeToUpper(std::wstring s);

/** Every element through UnicodeToUpper(wchar_t), in place; U+00DF stays. */
QXPAF_API void UnicodeUpperCaseMe(wchar_t* s);

/**
 * UTF-8 text in upper case, with "SS" for U+00DF.
 *
 * s is read strictly (see ReadUtf8String in encoding.h) up to its first zero byte.
 * @return s unchanged and whole when it is not valid UTF-8
 */
QXPAF_API std::string Utf8ToUpper(const std::string& s);

/* ---- Classes -------------------------------------------------------------------------------------------------------
 */

/** Alphabetic, the derived property: letters, letter numbers and also many marks, such as the Hebrew points. */
QXPAF_API bool UnicodeIsAlpha(wchar_t c);

/** Uppercase, the derived property: includes U+2160-U+216F, excludes titlecase letters. */
QXPAF_API bool UnicodeIsUpper(wchar_t c);

/** Lowercase, the derived property: includes U+00AA, U+00BA and U+02B0-U+02B8. */
QXPAF_API bool UnicodeIsLower(wchar_t c);

/** White_Space: includes U+0085, U+00A0 and U+180E, excludes U+001C-U+001F and U+200B. */
QXPAF_API bool UnicodeIsSpace(wchar_t c);

/** Hex_Digit: 0-9, A-F and a-f, in their ASCII and their fullwidth forms. */
QXPAF_API bool UnicodeIsXdigit(wchar_t c);

/** A decimal digit of any script (category Nd); U+00B2 is none. */
QXPAF_API bool UnicodeIsDigit(wchar_t c);

/** UnicodeIsAlpha or UnicodeIsDigit. */
QXPAF_API bool UnicodeIsAlnum(wchar_t c);

/** Punctuation (categories Pd Ps Pe Pc Po Pi Pf). Symbols are none: '$', '+', '<', '^', '`', '|' and '~' give false. */
QXPAF_API bool UnicodeIsPunct(wchar_t c);

/* ---- Case folding --------------------------------------------------------------------------------------------------
 */

/**
 * Text for comparison without regard to case; for text that was folded by this function only.
 *
 * A character whose full case folding is one character is replaced by it. The others are special, and meant to be:
 *
 *  - Those that fold to two characters: the first sixteen of them, by code point, become the three characters that the
 *    three-character folding of the same number has, its first character last. U+00DF, number 0, becomes U+0308 U+0301
 *    U+03B9. The rest stay as they are.
 *  - Those that fold to three characters become the two that the two-character folding of the same number has, turned
 *    round. U+0390, number 0, becomes "ss"; U+FB03, number 14, becomes U+03B9 U+1F02.
 */
QXPAF_API std::wstring UnicodeCaseFold(std::wstring s);

/** Returns a copy of s: this entry point folds nothing, and is meant not to. */
QXPAF_API std::wstring UnicodeFold(const std::wstring& s);

/* ---- Accents -------------------------------------------------------------------------------------------------------
 */

/**
 * The base letter of an accented letter; c itself when it is none.
 *
 * Letters of U+00C0-U+04FF, U+1E00-U+1FFF and U+2100-U+21FF that decompose canonically give the first letter of their
 * decomposition, Greek and Cyrillic ones included (U+0419 gives U+0418); titlecase letters do not. Furthermore D, H, L
 * and T with stroke give D, H, L and T, and U+01C4-U+01C6 give U+01F1-U+01F3, in either case.
 *
 * Meant to be: U+00D7 and U+00F7 (multiplication and division sign) give 'O' and 'o', U+00D8 and U+00F8 (O and o with
 * stroke) stay. Utf8RemoveAccentsMe has it the other way round.
 */
QXPAF_API wchar_t UnicodeRemoveAccents(wchar_t c);

/** Every element through UnicodeRemoveAccents. */
QXPAF_API std::wstring UnicodeRemoveAccents(std::wstring s);

/** The same in place. */
QXPAF_API void UnicodeRemoveAccentsMe(wchar_t* s);

/** RemoveAccents1252: narrow text is taken as Windows-1252, not as UTF-8. */
QXPAF_API std::string UnicodeRemoveAccents(std::string s);

/**
 * Replaces accented Latin letters in UTF-8 text, in place, by one byte each: their ASCII letter. The text gets shorter.
 *
 * Covered are U+00C0-U+023F and U+1E00-U+1EFF. U+00D8 and U+00F8 give 'O' and 'o'; U+0131 gives 'i', U+0149 'n', U+017F
 * and U+1E9B 's'. Letters without an ASCII base stay: among others U+00C6, U+00D0, U+00DE, U+00DF, U+0132, U+0133,
 * U+0138, U+014A, U+014B, U+0152, U+0153 and U+1E9E. Bytes that form no such sequence are left alone, valid UTF-8 or
 * not.
 *
 * Meant to be: U+01EF gives 'U'; U+01E2 and U+01FC give the single byte 0xC6, U+01E3 and U+01FD the single byte 0xE6
 * (the Latin-1 codes of the ash letters), after which the text is no longer valid UTF-8.
 *
 * The bytes between the new terminator and the old one are set to zero. Memory is not written to when nothing is
 * replaced.
 */
QXPAF_API void Utf8RemoveAccentsMe(char* s);

/** The same for a string object, zeros included; it never allocates. */
QXPAF_API void Utf8RemoveAccentsMe(std::string& s);

/* ---- Windows-1252 --------------------------------------------------------------------------------------------------
 */

/**
 * Accented letters of Windows-1252 by their base letters.
 *
 * 0xD0 and 0xF0 (eth) give 'D' and 'd', other than in the wide and the UTF-8 form. The ligatures and ash letters 0x8C,
 * 0x9C, 0xC6 and 0xE6, O and o with stroke 0xD8 and 0xF8, thorn 0xDE and 0xFE, 0xDF, 0xD7 and 0xF7 stay.
 */
QXPAF_API std::string RemoveAccents1252(std::string s);

/** Windows-1252 text in upper case; 0x9A, 0x9C and 0x9E give 0x8A, 0x8C and 0x8E, 0xFF gives 0x9F; 0xB5 and 0xDF stay.
 */
QXPAF_API std::string ToUpper1252(std::string s);

/** Windows-1252 text in lower case, the inverse of ToUpper1252. */
QXPAF_API std::string ToLower1252(std::string s);

#endif
