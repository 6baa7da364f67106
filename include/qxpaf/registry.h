/**
 * Registry-style access to the configuration file, for programs written against such an interface.
 *
 * The file is text, one value a line: key path, "/", value name, "=", value. The root key has no path:
 *
 *     PafDir=/data/au/
 *     ARF/AU/Main=/data/au/main.dat
 *
 * The second line is the value "Main" of the key "ARF\AU". Lines may end in CR LF; white space before a line is
 * skipped, all other white space counts. Keys and names are found whatever the case of their ASCII letters; values are
 * returned byte for byte. The first line that fits wins. There are no comments: a line that nobody asks for is never
 * found.
 *
 * The file is the first of these that opens: ".morvex" in the working directory; the file that the environment variable
 * MORVEX_CONFIG_FILE names; ".morvex" in the directory HOME (not tried here when HOME has more than 246 characters);
 * "/usr/etc/.morvex". It is opened and read afresh by every call, in pieces of at most 255 characters (line end
 * included): what is longer counts as several lines. The library's own settings come from the same file and accept
 * lines of up to 1023 characters.
 *
 * Keys are written with "\" or "/" between their parts and without a separator at the end: with one, nothing is found.
 * All functions are reentrant, throw nothing and print nothing; the environment must not be changed during a call.
 *
 * The registry-era tests for files and directories (FileExists_, DirectoryExists_, FilePatternExists_, mkdir_) are in
 * qxpaf/platform/file.h, which this header includes.
 */
#ifndef QXPAF_REGISTRY_H
#define QXPAF_REGISTRY_H

#include "qxpaf/export.h"
#include "qxpaf/platform/file.h"

/* Configuration error codes. 0 is success. */

/** Key and name together have more than 254 characters. */
inline constexpr int kRegistryKeyTooLong = 1300;
/** No configuration file could be opened. */
inline constexpr int kRegistryNoFile = 1301;
/** No line holds the value, or the name holds "/". */
inline constexpr int kRegistryNotFound = 1302;
/** Reserved; the library understands it as kRegistryNoFile but never gives it. */
inline constexpr int kRegistryReserved = 1303;
/** The configuration file was opened but could not be read to its end. Not given by the functions below. */
inline constexpr int kRegistryReadError = 1320;
/** A value name holds "/" or "=". Not given by the functions below. */
inline constexpr int kRegistryBadName = 1321;
/** The value is not an unsigned integer. Not given by the functions below. */
inline constexpr int kRegistryNotUnsigned = 1322;

/**
 * Looks up one text value.
 *
 * @param key    key path, or null or empty for the root
 * @param name   value name; null gives kRegistryNotFound
 * @param value  buffer of `size` bytes; receives at most size - 1 characters of the value, and zeros in all the rest,
 * so that the last byte is always zero. Null, or a size below 1: nothing is written, only the length told.
 * @param size   in: bytes of the buffer, terminator included. Out: the length of the whole value without terminator,
 *               which is size or more when the text was cut.
 * @return 0; kRegistryKeyTooLong, kRegistryNoFile or kRegistryNotFound with value and size as they were
 */
QXPAF_API int LookUpRegistry_(const char* key, const char* name, char* value, int& size, bool ignored);

/**
 * Looks up one number: the decimal digits at the start of the first 29 characters of a text value, behind optional
 * white space and sign. What follows them is ignored and no digits are 0, so "12abc" is 12 and "0x10" is 0. A negative
 * number or one above 32 bits is taken modulo 2^32 (above 63 bits: 4294967295, or 0 with "-").
 *
 * @param key, name  as for LookUpRegistry_
 * @return true when the value was found; otherwise `value` is as it was
 */
QXPAF_API bool LookUpRegistryI_(const char* key, const char* name, unsigned int& value, bool ignored);

/**
 * Lists the values that stand directly in one key, in file order.
 *
 * @param key     key path of at most 254 characters. The root's values cannot be listed: the empty key lists the lines
 *                that begin with "/".
 * @param names   receives a new array of new strings, ended by a null pointer: the value names, duplicates included
 * @param values  receives the same for the values, at the same positions
 *
 * Both outputs are null when there is nothing to list from: no configuration file, a key that is null or too long, no
 * memory for the arrays. A key without values gives two empty lists. When memory runs out later, the lists end early.
 * The caller frees every string and both arrays with delete[] (FreeArray_ frees a list and its strings so). Nothing
 * happens when names or values is null.
 */
QXPAF_API void EnumerateRegistry_(const char* key, char*** names, char*** values);

/** Listing sub-keys is not offered. @return 0 */
QXPAF_API int EnumerateRegistryKeys_(const char* key);

/** The configuration is never written. @return 0 */
QXPAF_API int SetRegistryValue_(const char* key, const char* name, const char* value);

/**
 * The first label of the computer's host name (what stands before its first ".").
 *
 * @param buffer  `size` bytes, terminator included; empty afterwards when the whole host name with its domain and
 *                terminator does not fit. Null or a size of 0: nothing is written.
 */
QXPAF_API void GetComputerName_(char* buffer, unsigned long size);

/** The number of processors that are online. */
QXPAF_API int GetNumberOfProcessors_();

/** Leaves its arguments as they are; kept for programs that call it. */
QXPAF_API void GetVersionOfThisFile(int& major, int& minor, int& release, int& build, void* module);

#endif
