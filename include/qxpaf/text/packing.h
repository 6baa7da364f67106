/**
 * Compact storage of upper-case text: six bits a character, and five bits a character for keys.
 *
 * Both forms put the first character into the most significant bits of the first byte, without gaps: four characters of
 * six bits fill three bytes, eight characters of five bits fill five. Source and destination must not overlap. All
 * functions are stateless, may run in any number of threads, allocate nothing and throw nothing.
 */
#ifndef QXPAF_TEXT_PACKING_H
#define QXPAF_TEXT_PACKING_H

#include "qxpaf/export.h"

/** c - 0x20 for the characters that six bits hold, ' ' to '_'; 0 for any other. */
QXPAF_API unsigned char CharToSixBits(char c);

/**
 * Packs characters into six bits each: blank, punctuation, digits and upper-case letters (0x20-0x5F).
 *
 * Other characters are not refused but fold onto these, by the low six bits of c - 0x20: lower-case letters onto
 * punctuation and digits, 'a' onto '!' (CharToSixBits gives 0 for them).
 *
 * Where the result is smaller than dstSize, up to two bytes behind it are set to zero (one behind the byte in which the
 * next character would start, if there are two characters or more); other bytes of dst stay. With no characters dst[0]
 * is set to zero. With dstSize 0 nothing is written.
 *
 * @param dst gets the packed bytes, dstSize at most
 * @param src srcLen characters; zero bytes among them count, and no terminator is needed
 * @return the number of bytes used, a partly used last byte included; dstSize when the rest was cut off
 */
QXPAF_API unsigned long Compress6(char* dst, unsigned long dstSize, const char* src, unsigned long srcLen);

/**
 * Unpacks what Compress6 packed. Writes no terminator.
 *
 * @param dst gets count characters, each 0x20-0x5F
 * @param src the (6 * count + 7) / 8 bytes that hold them; no more are read
 * @param count a negative one counts as 0
 */
QXPAF_API void Decompress6(char* dst, const char* src, int count);

/**
 * Packs characters into five bits each, for keys: there is no way back, since several characters share a code.
 *
 *     0 the zero byte    11-18 A to H    24 O, Q       29 U, V
 *     1-10 0 to 9        19 I, J         25 P          30 W
 *                        20-23 K to N    26-28 R to T  31 everything else: X, Y, Z, lower case, blank, punctuation
 *
 * Only the bytes of the result are written; the unused bits of the last one are zero.
 *
 * @param dst gets the packed bytes, dstSize at most
 * @param src srcLen characters; zero bytes among them count, and no terminator is needed
 * @return the number of bytes used; dstSize + 1 (and meant to be) when the characters do not fit into dstSize bytes
 */
QXPAF_API long Compress5(char* dst, unsigned long dstSize, const char* src, unsigned long srcLen);

#endif
