#include "arf/barcode/reed_solomon.h"

#include <algorithm>

namespace arf {
namespace {

constexpr unsigned kFieldSize = 64;
constexpr unsigned kOrder = kFieldSize - 1;  ///< of the multiplicative group
constexpr unsigned kPrimitivePolynomial = 0b1000011;

struct Field
{
  std::array<std::uint8_t, 2 * kOrder> power{};  ///< of the primitive element; twice, so that exponents may be added
  std::array<std::uint8_t, kFieldSize> log{};    ///< meaningless for 0
};

constexpr Field MakeField()
{
  Field field;
  unsigned value = 1;
  for (unsigned exponent = 0; exponent < kOrder; ++exponent) {
    field.power[exponent] = field.power[exponent + kOrder] = static_cast<std::uint8_t>(value);
    field.log[value] = static_cast<std::uint8_t>(exponent);
    value <<= 1;
    if (value >= kFieldSize) value ^= kPrimitivePolynomial;
  }
  return field;
}

constexpr Field kField = MakeField();

constexpr std::uint8_t Multiply(std::uint8_t a, std::uint8_t b)
{
  return a == 0 || b == 0 ? std::uint8_t{0} : kField.power[std::size_t{kField.log[a]} + kField.log[b]];
}

using Generator = std::array<std::uint8_t, kCheckSymbols>;

/** The coefficients behind the leading 1, highest power first. */
constexpr Generator MakeGenerator()
{
  std::array<std::uint8_t, kCheckSymbols + 1> product{1};
  for (std::size_t root = 1; root <= kCheckSymbols; ++root)
    for (std::size_t i = root; i > 0; --i)
      product[i] = static_cast<std::uint8_t>(product[i] ^ Multiply(product[i - 1], kField.power[root]));
  Generator generator{};
  std::copy(product.begin() + 1, product.end(), generator.begin());
  return generator;
}

constexpr Generator kGenerator = MakeGenerator();
static_assert(kGenerator == Generator{30, 29, 17, 48});

/** Check symbols in one number, the first in the highest bits. */
using Packed = std::uint32_t;

constexpr unsigned kSymbolBits = 6;
constexpr unsigned kFirstSymbol = kSymbolBits * (kCheckSymbols - 1);
constexpr Packed kAllSymbols = (Packed{1} << (kSymbolBits * kCheckSymbols)) - 1;
static_assert(1U << kSymbolBits == kFieldSize);

/** The generator times every symbol. */
constexpr std::array<Packed, kFieldSize> MakeMultiples()
{
  std::array<Packed, kFieldSize> multiples{};
  for (std::size_t symbol = 0; symbol < kFieldSize; ++symbol)
    for (const std::uint8_t coefficient : kGenerator)
      multiples[symbol] = multiples[symbol] << kSymbolBits | Multiply(static_cast<std::uint8_t>(symbol), coefficient);
  return multiples;
}

/** By the number of symbols behind a symbol: what each value of it adds to the check symbols. */
using Shares = std::array<std::array<Packed, kFieldSize>, kMaxDataSymbols>;

constexpr Shares MakeShares()
{
  Shares shares{};
  shares[0] = MakeMultiples();
  for (std::size_t behind = 1; behind < kMaxDataSymbols; ++behind)
    for (std::size_t symbol = 0; symbol < kFieldSize; ++symbol) {
      const Packed before = shares[behind - 1][symbol];
      shares[behind][symbol] = (before << kSymbolBits & kAllSymbols) ^ shares[0][before >> kFirstSymbol];
    }
  return shares;
}

constexpr Shares kShares = MakeShares();

}  // namespace

std::array<std::uint8_t, kCheckSymbols> CheckSymbols(std::span<const std::uint8_t> data)
{
  Packed sum = 0;
  for (std::size_t i = 0; i < data.size(); ++i) sum ^= kShares[data.size() - 1 - i][data[i] % kFieldSize];
  std::array<std::uint8_t, kCheckSymbols> symbols;
  for (std::size_t i = kCheckSymbols; i-- > 0; sum >>= kSymbolBits)
    symbols[i] = static_cast<std::uint8_t>(sum % kFieldSize);
  return symbols;
}

}  // namespace arf
