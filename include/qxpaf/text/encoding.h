/**
 * Conversions between the encodings of the library and its plug-ins, number-to-text helpers and a bounded copy.
 *
 * Conventions, for every function unless it says otherwise:
 *
 *  1. Encodings. Wide text (wchar_t, a signed 32-bit type) holds one Unicode code point per element; only Utf8ToUtf16
 *     and Utf32ToUtf16 produce surrogate pairs. Narrow text is UTF-8, except where the name says "Ansi" or "1252".
 *     "Ansi" always means Windows-1252, never the locale: bytes 0x80-0x9F stand for the 27 characters of that code page
 *     (0x81, 0x8D, 0x8F, 0x90 and 0x9D for the control character of the same value), every other byte for itself.
 *  2. Input pointers are not null and name zero-terminated text; nothing behind the terminator is read. Wide string
 *     objects are read up to their first zero element, UTF-8 string objects up to their first zero byte; functions on
 *     Windows-1252 string objects take every byte, zeros included.
 *  3. Counts and sizes are in elements (bytes for char). A size of a caller's buffer counts the terminator.
 *  4. Output strings are replaced. Input must not point into the string that a reader of UTF-8 fills.
 *  5. UTF-8 is read leniently: overlong forms (C0 AF is U+002F) and encoded surrogates (ED A0 80 is U+D800) are
 *     accepted. A sequence is invalid when its lead byte is 80-BF or F8-FF, when continuation bytes are missing, or
 *     when its value is above U+10FFFF.
 *  6. All functions are stateless and may run in any number of threads. Functions that build a string throw
 *     std::bad_alloc when memory runs out; nothing else is thrown. Time is linear in the length of the input.
 */
#ifndef QXPAF_TEXT_ENCODING_H
#define QXPAF_TEXT_ENCODING_H

#include <cstddef>
#include <string>

#include "qxpaf/export.h"

/** Target encoding of CharsetConvert. */
enum CharsetEnum : int
{
  CharsetUtf8 = 0,
  CharsetWindows1252 = 1, /**< characters without a byte are replaced */
  CharsetLatin1 = 2       /**< ISO-8859-1, characters above U+00FF are replaced */
};

/* ---- Single characters ------------------------------------------------------------------------------------------ */

/**
 * The Windows-1252 byte of a wide character.
 *
 * Values up to 0x7F, negative ones included, give their low byte. U+0080-U+009F have no byte, so that 0x81, 0x8D, 0x8F,
 * 0x90 and 0x9D convert to wide but not back.
 * @return false, with out untouched, when c has no byte
 */
QXPAF_API bool CharWideToAnsi(char& out, wchar_t c);

/** CharWideToAnsi. */
QXPAF_API bool CharToAnsi(char& out, wchar_t c);

/** Copies c. @return true */
QXPAF_API bool CharToAnsi(char& out, char c);

/** The code point of a Windows-1252 byte; every byte has one. */
QXPAF_API wchar_t CharAnsiToWide(unsigned char b);

/** Copies b. */
QXPAF_API void AnsiToChar(char& out, char b);

/** Sets out to CharAnsiToWide(b). */
QXPAF_API void AnsiToChar(wchar_t& out, char b);

/**
 * Writes the UTF-8 form of c, 1 to 4 bytes without terminator, to a buffer of at least 4 bytes.
 *
 * A negative c gives one byte, its low 8 bits; a c above 0xFFFF always gives four bytes, even beyond U+10FFFF.
 * @return the number of bytes written
 */
QXPAF_API int WideCharToUtf8(char* out, wchar_t c);

/* ---- Stepping through UTF-8 ------------------------------------------------------------------------------------- */

/**
 * Decodes the sequence at p, which may be the terminator (giving 0), and moves p behind it.
 *
 * @return false when p starts no valid sequence. p and out are then untouched, with one exception: for a sequence of
 *         four bytes above U+10FFFF, p has moved by 4 and out holds the value.
 */
QXPAF_API bool NextUtf8Char(wchar_t& out, const char*& p);

/**
 * Decodes the sequence at p as a Windows-1252 byte.
 *
 * @return false, with out untouched, when the sequence is invalid (p as in the wide form) or when the character has no
 *         byte (p has then moved behind it)
 */
QXPAF_API bool NextUtf8Char(char& out, const char*& p);

/** Decodes the sequence at p into a string of one element. @return false, with out untouched, as in the wide form */
QXPAF_API bool NextUtf8Char(std::wstring& out, const char*& p);

/**
 * Decodes the sequence at p, never failing.
 *
 * @return the code point; or, when p starts no valid sequence, the byte at p (0x80-0xFF), p having moved by one only
 */
QXPAF_API unsigned int NextUtf8Char(const char*& p);

/** Whether b is a whole character by itself: its top bit is clear. */
QXPAF_API bool Utf8IsSingle(char b);

/** Whether b starts a well-formed sequence of several bytes: 0xC2-0xF4. */
QXPAF_API bool Utf8IsLead(unsigned char b);

/** Whether b is a continuation byte: 0x80-0xBF. */
QXPAF_API bool Utf8IsContinue(char b);

/** The number of bytes of s that are no continuation bytes, that is of characters; s is not validated. */
QXPAF_API std::size_t Utf8Strlen(const char* s);

/** Moves p by one byte and then past continuation bytes. @return false, p unmoved, at the terminator */
QXPAF_API bool Utf8Inc(const char*& p);

/** The same on the index i into s. */
QXPAF_API bool Utf8Inc(const char* s, int& i);

/* ---- UTF-8 to wide ---------------------------------------------------------------------------------------------- */

/** Reads s up to its terminator or an invalid sequence. @return false at an invalid one; out holds what precedes it */
QXPAF_API bool ReadUtf8String(std::wstring& out, const char* s);

/**
 * The same for text of at most n bytes, which needs no terminator.
 *
 * A sequence that starts before s + n is read whole even if it ends behind it, so a terminator or the rest of the
 * sequence must follow when the last sequence is incomplete at s + n. @return true also when s + n is reached
 */
QXPAF_API bool ReadUtf8String(std::wstring& out, const char* s, unsigned long n);

/** Reads s whole. A byte that starts no valid sequence becomes the element of its value, 0x80-0xFF. */
QXPAF_API void ReadUtf8StringTolerant(std::wstring& out, const char* s);

/** ReadUtf8StringTolerant of s. */
QXPAF_API std::wstring Utf8ToWide(const std::string& s);

/**
 * Reads s as UTF-16 code units, one in each element; code points from U+10000 become surrogate pairs.
 *
 * A byte that starts no valid sequence ends the reading or, with tolerant, becomes the element of its value
 * sign-extended from 8 bits (0xE9 gives -23; other than in ReadUtf8StringTolerant, and meant to be).
 * @return false at an invalid sequence without tolerant; out holds what precedes it
 */
QXPAF_API bool Utf8ToUtf16(std::wstring& out, const char* s, bool tolerant);

/** The text that the UTF-8 string holds: a copy (std::string) or Utf8ToWide (std::wstring). No other types. */
template <class S>
S FromUtf8IfWide(const std::string& s);
template <>
QXPAF_API std::string FromUtf8IfWide<std::string>(const std::string& s);
template <>
QXPAF_API std::wstring FromUtf8IfWide<std::wstring>(const std::string& s);

/* ---- UTF-8 to Windows-1252 -------------------------------------------------------------------------------------- */

/**
 * Reads s as Windows-1252 up to its terminator, its first invalid sequence or its first character without a byte.
 *
 * @return true at the terminator; otherwise false, and out holds what precedes the stop
 */
QXPAF_API bool ReadUtf8String(std::string& out, const char* s);

/** The same for text of at most n bytes, with the bound of the wide form. */
QXPAF_API bool ReadUtf8String(std::string& out, const char* s, unsigned long n);

/** Reads s whole. A character without a byte becomes 0x7F; a byte that starts no valid sequence is copied. */
QXPAF_API void ReadUtf8StringTolerant(std::string& out, const char* s);

/* ---- To UTF-8 --------------------------------------------------------------------------------------------------- */

/**
 * Wide text as UTF-8. A surrogate pair becomes one sequence of four bytes, an unpaired surrogate one of three; negative
 * elements and those above 0x10FFFF are left out. The result's capacity is at least wcslen(s) + 1.
 */
QXPAF_API std::string WideToUtf8(const wchar_t* s);
QXPAF_API std::string WideToUtf8(const std::wstring& s);

/** Text of its usual encoding as UTF-8: wide text through WideToUtf8, narrow text as Windows-1252. */
QXPAF_API std::string StringToUtf8(const wchar_t* s);
QXPAF_API std::string StringToUtf8(const std::wstring& s);
QXPAF_API std::string StringToUtf8(const char* s);
QXPAF_API std::string StringToUtf8(const std::string& s);

/** Windows-1252 text as UTF-8, every byte of s. */
QXPAF_API std::string Windows1252ToUtf8(std::string s);

/**
 * Expands a buffer in place by a placement rule of its own, kept for callers that rely on it. The result is not the
 * UTF-8 form of the text unless the text is ASCII: use the string form.
 *
 * room = size - strlen(s) is computed once. For each i up to the terminator, where s[i] has its top bit set and the n
 * bytes of its UTF-8 form fit in room, strlen(s) - i bytes (the length at the start) are moved from s + 1 to s + n and
 * the n bytes are written at s, not at s + i; what was inserted is read again. A byte is left as it is when its move
 * would have a negative length or write at or behind s + size. The result may have lost its terminator.
 * @param size the size of the buffer, terminator included @return true
 */
QXPAF_API bool Windows1252ToUtf8(char* s, unsigned long size);

/** Wide text through WideToUtf8; narrow text, which is UTF-8 already, is copied. */
QXPAF_API std::string ToUtf8IfWide(const wchar_t* s);
QXPAF_API std::string ToUtf8IfWide(const std::wstring& s);
QXPAF_API std::string ToUtf8IfWide(const char* s);
QXPAF_API std::string ToUtf8IfWide(const std::string& s);

/** Sets dst to src, whole. */
QXPAF_API void ToUtf8IfDestNotWide(std::wstring& dst, const std::wstring& src);

/** Sets dst to WideToUtf8(src). */
QXPAF_API void ToUtf8IfDestNotWide(std::string& dst, const std::wstring& src);

/* ---- Wide to Windows-1252 --------------------------------------------------------------------------------------- */

/** Wide text through CharWideToAnsi; a character without a byte becomes replacement. */
QXPAF_API std::string WideToAnsi(const wchar_t* s, char replacement);
QXPAF_API std::string WideToAnsi(const std::wstring& s, char replacement);

/** Whether every character of s has a Windows-1252 byte. */
QXPAF_API bool CanWideToAnsi(const wchar_t* s);

/**
 * Converts src, terminator included, into a buffer of at least wcslen(src) + 1 bytes, which may be src's own.
 *
 * @return false at the first character without a byte: dst is written up to just before it and is not terminated
 */
QXPAF_API bool WideToAnsi(char* dst, const wchar_t* src);

/**
 * Sets dst to the converted text of src, src.length() bytes long whatever happens.
 *
 * Conversion ends at the first zero of src or, with false, at the first character without a byte. All bytes of dst from
 * there on are zero. @return true at a zero
 */
QXPAF_API bool WideToAnsi(std::string& dst, const std::wstring& src);

/** Any text as a narrow string: wide text through WideToAnsi; narrow text is copied and replacement ignored. */
QXPAF_API std::string StringToAnsi(const wchar_t* s, char replacement);
QXPAF_API std::string StringToAnsi(const std::wstring& s, char replacement);
QXPAF_API std::string StringToAnsi(const char* s, char replacement);
QXPAF_API std::string StringToAnsi(const std::string& s, char replacement);

/** Any text into the caller's storage: wide text through the WideToAnsi of the same shape; narrow text is copied. */
QXPAF_API bool StringToAnsi(char* dst, const wchar_t* src);
QXPAF_API bool StringToAnsi(char* dst, const char* src);
QXPAF_API bool StringToAnsi(std::string& dst, const std::wstring& src);
QXPAF_API bool StringToAnsi(std::string& dst, const std::string& src);

/* ---- Windows-1252 to wide --------------------------------------------------------------------------------------- */

/** Exactly n bytes, zeros included, through CharAnsiToWide. The result's capacity is at least n + 1. */
QXPAF_API std::wstring AnsiToWide(const char* s, unsigned long n);

/** AnsiToWide of strlen(s) or s.length() bytes. */
QXPAF_API std::wstring AnsiToWide(const char* s);
QXPAF_API std::wstring AnsiToWide(const std::string& s);

/** Any text as a wide string: a copy, or AnsiToWide. */
QXPAF_API std::wstring StringToWide(const std::wstring& s);
QXPAF_API std::wstring StringToWide(const std::string& s);

/** Sets dst to the Windows-1252 text s (of n bytes, or up to its terminator): AnsiToWide, or the bytes themselves. */
QXPAF_API void AnsiToString(std::wstring& dst, const char* s, unsigned long n);
QXPAF_API void AnsiToString(std::wstring& dst, const char* s);
QXPAF_API void AnsiToString(std::string& dst, const char* s);
QXPAF_API void AnsiToString(std::string& dst, const char* s, unsigned long n);

/** Writes s, terminator included, into a buffer of at least strlen(s) + 1 elements: converted, or copied. */
QXPAF_API void AnsiToStringC(wchar_t* dst, const char* s);
QXPAF_API void AnsiToStringC(char* dst, const char* s);

/* ---- UCS-2 and UTF-16 ------------------------------------------------------------------------------------------- */

/**
 * Text as UCS-2 bytes, two for each input character, low byte first (LE) or last (BE); no mark, no terminator. Bits
 * above 15 are dropped, and narrow text is taken as ISO-8859-1, not as Windows-1252.
 */
QXPAF_API std::string UnicodeToUCS2LE(const wchar_t* s);
QXPAF_API std::string UnicodeToUCS2BE(const wchar_t* s);
QXPAF_API std::string UnicodeToUCS2LE(const char* s);
QXPAF_API std::string UnicodeToUCS2BE(const char* s);

/**
 * Zero-terminated code points as UTF-16 code units, one in each element. U+10FFFE is the last that is converted:
 * 0x10FFFF and above are dropped, and meant to be.
 */
QXPAF_API void Utf32ToUtf16(std::wstring& out, const unsigned int* cps);

/** The same for one code point, which may be zero; out is empty when it is dropped. */
QXPAF_API void Utf32ToUtf16(std::wstring& out, unsigned int cp);

/** Sets out to the one element cp, unchanged. */
QXPAF_API void Utf32ToWide(std::wstring& out, unsigned int cp);

/* ---- Choice of encoding ----------------------------------------------------------------------------------------- */

/**
 * Wide text in the target encoding, characters that it lacks becoming replacement (UTF-8 lacks none, see WideToUtf8).
 *
 * For CharsetLatin1 negative elements give their low byte. Any value that is no CharsetEnum gives an empty string.
 */
QXPAF_API std::string CharsetConvert(const std::wstring& s, CharsetEnum target, char replacement);

/** Applies convert to each character up to the first zero; where it returns false, replacement is put. */
QXPAF_API std::string ConvertFromWide(const std::wstring& s, bool (*convert)(char&, wchar_t), char replacement);

/* ---- Recognising UTF-8 ------------------------------------------------------------------------------------------ */

/**
 * Guesses whether a buffer holds UTF-8.
 *
 * True when it starts with the mark EF BB BF. Otherwise sequences of several bytes are counted as good or bad: false
 * without good ones (plain ASCII included), true without bad ones, else good / ratio > bad, where the quotient is an
 * unsigned integer. A negative ratio gives false then, and so does 0. A lead byte claims the whole length of its
 * sequence even when its continuation bytes are wrong; a sequence that would run past the end counts as bad.
 * @param len the bytes of the buffer, which needs no terminator
 */
QXPAF_API bool IsBufferUtf8(const char* buf, unsigned long len, int ratio);

/** The same for zero-terminated text, where the mark is an ordinary sequence and a bad lead byte claims only itself. */
QXPAF_API bool IsStringUtf8(const char* s, int ratio);

/** The same with a ratio of 10, whatever ratio is given. */
QXPAF_API bool IsStringUtf8(const std::string& s, int ratio);

/* ---- Numbers ---------------------------------------------------------------------------------------------------- */

/**
 * Numbers as text: integers in decimal; floating point as printf's "%f" does, with six decimals, no exponent and the
 * decimal point of the process's locale. Narrow results are always whole; wide ones are cut to 255 characters.
 */
QXPAF_API std::string QX_to_string(int value);
QXPAF_API std::string QX_to_string(unsigned int value);
QXPAF_API std::string QX_to_string(long value);
QXPAF_API std::string QX_to_string(unsigned long value);
QXPAF_API std::string QX_to_string(long long value);
QXPAF_API std::string QX_to_string(unsigned long long value);
QXPAF_API std::string QX_to_string(float value);
QXPAF_API std::string QX_to_string(double value);
QXPAF_API std::string QX_to_string(long double value);
QXPAF_API std::wstring QX_to_wstring(int value);
QXPAF_API std::wstring QX_to_wstring(unsigned int value);
QXPAF_API std::wstring QX_to_wstring(long value);
QXPAF_API std::wstring QX_to_wstring(unsigned long value);
QXPAF_API std::wstring QX_to_wstring(long long value);
QXPAF_API std::wstring QX_to_wstring(unsigned long long value);
QXPAF_API std::wstring QX_to_wstring(float value);
QXPAF_API std::wstring QX_to_wstring(double value);
QXPAF_API std::wstring QX_to_wstring(long double value);

/* ---- Bounded copy ----------------------------------------------------------------------------------------------- */

/**
 * Copies src into a buffer of size bytes, terminator included, cutting it to size - 1 bytes.
 *
 * @return true when src was copied whole; false when it was cut, or when dst or src is null or size is 0, in which case
 *         nothing is written
 */
QXPAF_API bool QX_strcpy(char* dst, const char* src, unsigned long size);

#endif
