/**
 * The check symbols of the 4-state barcode: a Reed-Solomon code over the 64 values of three bars.
 *
 * Source: Australia Post, Customer Barcoding Technical Specifications. The field is GF(64) with the primitive
 * polynomial x^6 + x + 1; the generator polynomial has the roots a^1 to a^4, a being the field's primitive element x.
 */
#ifndef QXPAF_ARF_BARCODE_REED_SOLOMON_H
#define QXPAF_ARF_BARCODE_REED_SOLOMON_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace arf {

inline constexpr std::size_t kCheckSymbols = 4;
/** A code word has fewer symbols than the field. */
inline constexpr std::size_t kMaxDataSymbols = 63 - kCheckSymbols;

/** The check symbols of `data` (kMaxDataSymbols at most, each below 64), in the order in which they follow the data. */
std::array<std::uint8_t, kCheckSymbols> CheckSymbols(std::span<const std::uint8_t> data);

}  // namespace arf

#endif
