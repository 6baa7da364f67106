// The constant tables behind letter case, character classes and accents. scripts/gen_unicode.py writes their contents
// from the Unicode Character Database, in the versions that the results are fixed to; they need no work at start-up.
#ifndef QXPAF_SRC_TEXT_UNICODE_TABLES_H
#define QXPAF_SRC_TEXT_UNICODE_TABLES_H

#include <cstddef>
#include <cstdint>

namespace qxpaf {

// The number of leading high bytes whose pages come first in every table, in order, so that Latin, Greek, Cyrillic,
// Armenian and Hebrew letters are looked up without the index.
inline constexpr std::size_t kLeadingPages = 6;

// One entry for every code point of the Basic Multilingual Plane, in pages of 256 that equal stretches share. Entry 0
// says that the table has nothing about the character.
template <std::size_t kPages>
struct BmpTable
{
  std::uint8_t pageOf[256];
  std::uint16_t entries[kPages * 256];

  // Of a character on the leading pages.
  std::uint32_t LeadingEntry(wchar_t c) const { return entries[static_cast<std::uint32_t>(c)]; }

  // Of any element; 0 outside the plane, negative values included.
  std::uint32_t Entry(wchar_t c) const
  {
    const auto codePoint = static_cast<std::uint32_t>(c);
    if (codePoint < kLeadingPages * 256) [[likely]]
      return LeadingEntry(c);
    if (codePoint > 0xFFFF) return 0;
    return entries[pageOf[codePoint >> 8] * 256U + (codePoint & 0xFF)];
  }
};

// Mapped characters.
extern const BmpTable<16> kLowerCase;
extern const BmpTable<17> kUpperCase;
extern const BmpTable<9> kAccents;

// Folds: characters, or rows of the lists further down.
extern const BmpTable<19> kCaseFold;

// Property words: a category code in bits 0-5 and flags above them.
extern const BmpTable<68> kProperties;

inline constexpr std::uint32_t kCategoryMask = 0x3F;
inline constexpr std::uint32_t kDecimalDigit = 16;
inline constexpr std::uint32_t kGroupShift = 3;
inline constexpr std::uint32_t kPunctuationGroup = 5;

inline constexpr std::uint32_t kAlphabetic = 1U << 6;
inline constexpr std::uint32_t kUppercase = 1U << 7;
inline constexpr std::uint32_t kLowercase = 1U << 8;
inline constexpr std::uint32_t kWhiteSpace = 1U << 9;
inline constexpr std::uint32_t kHexDigit = 1U << 10;

// Fold entries that are no characters: kPairMark + row of kFoldPairs, kTripleMark + row of kFoldTriples. They take the
// place of surrogates, which nothing folds to.
inline constexpr std::uint32_t kPairMark = 0xD800;
inline constexpr std::uint32_t kTripleMark = 0xDA00;
inline constexpr std::uint32_t kListMarkMask = 0xFE00;

// Folds of two and of three characters, in reading order, by ascending code point of what is folded.
extern const std::uint16_t kFoldPairs[88][2];
extern const std::uint16_t kFoldTriples[16][3];

// Windows-1252, byte to byte; bytes that stay are their own entries.
extern const std::uint8_t kAnsiUpper[256];
extern const std::uint8_t kAnsiLower[256];
extern const std::uint8_t kAnsiAccents[256];

// The byte that replaces a UTF-8 sequence, 0 for none, by code point: U+00C0-U+023F (C3 80-C8 BF) and U+1E00-U+1EFF
// (E1 B8 80-E1 BB BF).
extern const std::uint8_t kUtf8BasesOfTwo[384];
extern const std::uint8_t kUtf8BasesOfThree[256];

}  // namespace qxpaf

#endif
