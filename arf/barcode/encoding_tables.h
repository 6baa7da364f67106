/**
 * The two ways in which the 4-state barcode writes characters as bars. Bars are numbers: 0 full, 1 ascender,
 * 2 descender, 3 tracker.
 *
 * Source: Australia Post, Customer Barcoding Technical Specifications, tables N and C. Both follow rules, from which
 * they are made here.
 */
#ifndef QXPAF_ARF_BARCODE_ENCODING_TABLES_H
#define QXPAF_ARF_BARCODE_ENCODING_TABLES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace arf {

inline constexpr unsigned kBarStates = 4;
inline constexpr unsigned kTracker = 3;

/** Bars of a digit in table N. */
inline constexpr std::size_t kNumericBars = 2;
/** Bars of a character in table C, and of a symbol that the check symbols are made of. */
inline constexpr std::size_t kTextBars = 3;

/**
 * The bars of a digit, 0 to 9, as a number of two base-4 digits: all pairs without a tracker in ascending order, and 30
 * for the nine.
 */
constexpr unsigned NumericCode(unsigned digit)
{
  return digit == 9 ? kTracker * kBarStates : digit / 3 * kBarStates + digit % 3;
}

inline constexpr std::uint8_t kNoCode = 0xFF;
using TextCodes = std::array<std::uint8_t, 256>;

/**
 * Table C by character: the three bars as a number of three base-4 digits, or kNoCode. All triples without a tracker
 * stand, in ascending order, for A to Z and 0; those whose one tracker comes first for 1 to 9; the others for space, #
 * and a to z.
 */
constexpr TextCodes MakeTextCodes()
{
  std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0";
  std::string_view trackerFirst = "123456789";
  std::string_view others = " #abcdefghijklmnopqrstuvwxyz";
  TextCodes codes{};
  codes.fill(kNoCode);
  for (unsigned code = 0; code < kBarStates * kBarStates * kBarStates; ++code) {
    const bool first = code / (kBarStates * kBarStates) == kTracker;
    const bool behind = code / kBarStates % kBarStates == kTracker || code % kBarStates == kTracker;
    std::string_view& group = behind ? others : first ? trackerFirst : plain;
    codes[static_cast<unsigned char>(group.front())] = static_cast<std::uint8_t>(code);
    group.remove_prefix(1);
  }
  return codes;
}

inline constexpr TextCodes kTextCodes = MakeTextCodes();

constexpr bool HasTextCode(char c)
{
  return kTextCodes[static_cast<unsigned char>(c)] != kNoCode;
}

}  // namespace arf

#endif
