/**
 * The post office's 4-state customer barcode, as a text of bars: 0 full, 1 ascender, 2 descender, 3 tracker.
 *
 * Source: Australia Post, Customer Barcoding Technical Specifications. From left to right: start bars 13, the format
 * control code (two digits, table N), the DPID (eight digits, table N), customer information or a filler bar, the check
 * symbols (twelve bars), stop bars 13. Places that nothing is written to are filled with trackers.
 *
 * Nothing here allocates or keeps state; any number of threads may call it.
 */
#ifndef QXPAF_ARF_BARCODE_FOUR_STATE_H
#define QXPAF_ARF_BARCODE_FOUR_STATE_H

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "arf/match/bounded_text.h"

namespace arf {

/** The longest barcode, format 62. */
inline constexpr std::size_t kMaxFourStateBars = 67;
inline constexpr std::size_t kDpidDigits = 8;
inline constexpr std::size_t kFormatDigits = 2;

struct FourStateFormat
{
  std::string_view code;  ///< the format control code
  std::string_view name;  ///< "customer barcode 2"
  std::size_t bars;
  std::size_t customerDigits;      ///< of customer information, in table N
  std::size_t customerCharacters;  ///< of customer information, in table C; both 0 where it carries none
};

/** All formats, ascending by code. */
std::span<const FourStateFormat> FourStateFormats();
/** Null for a code that is none. */
const FourStateFormat* FindFourStateFormat(std::string_view code);

/** How customer information is written. */
enum class CustomerEncoding
{
  Automatic,  ///< N for digits alone, otherwise C; N holds more digits than C, so that is never the worse choice
  Numeric,    ///< table N: digits
  Text        ///< table C: letters, digits, space, #
};

struct FourStateRequest
{
  std::string_view dpid{};         ///< one to eight digits; fewer than eight have lost leading zeros
  std::string_view format = "11";  ///< format control code
  std::string_view customer{};     ///< customer information; may be empty
  CustomerEncoding encoding = CustomerEncoding::Automatic;
};

enum class FourStateFault
{
  None,
  Dpid,              ///< empty, longer than eight characters, or not digits alone
  Format,            ///< no known format control code
  CustomerNotTaken,  ///< customer information with a format that carries none
  CustomerTooLong,
  CustomerCharacter  ///< a character that the encoding does not have
};

/** The bars of one barcode. */
class FourStateBars
{
 public:
  std::string_view View() const { return {bars_.data(), count_}; }
  void Clear() { count_ = 0; }
  /** Appends `count` bars, three at most: the base-4 digits of `code`. */
  void Append(unsigned code, std::size_t count);
  /** Appends trackers up to `count` bars in all. */
  void FillTo(std::size_t count);

 private:
  std::array<char, kMaxFourStateBars> bars_;
  std::size_t count_ = 0;
};

/** Whether the request's customer information is written in table N. */
bool IsNumeric(const FourStateRequest& request);

/** Makes a barcode; `bars` is empty unless the result is None. */
FourStateFault EncodeFourState(const FourStateRequest& request, FourStateBars& bars);

/** Appends a sentence on what is wrong with a request that EncodeFourState refused. */
void DescribeFault(FourStateFault fault, const FourStateRequest& request, BoundedText& text);

}  // namespace arf

#endif
