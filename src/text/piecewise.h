// Whole-text conversion into a string that is allocated once, in its final size.
#ifndef QXPAF_SRC_TEXT_PIECEWISE_H
#define QXPAF_SRC_TEXT_PIECEWISE_H

#include <algorithm>
#include <cstddef>
#include <string>

#include "text/ascii_run.h"

namespace qxpaf {

inline constexpr std::size_t kPieceLength = 256;

// What a piece can become: up to four bytes for each of its elements; or one wide element for each, and one more when a
// surrogate pair comes from a sequence that straddles the end of the piece.
template <class Out>
inline constexpr std::size_t kBlockLength = sizeof(Out) == 1 ? 4 * kPieceLength : kPieceLength + 1;

// A conversion has, beside what it inherits from here,
//
//     Out* Convert(const In*& position, const In* stop, Out* to) const
//
// which converts elements from position on, moving it, until it is at stop or behind it, and returns the end of what it
// wrote at `to`; it refuses to go on by leaving position before stop. ASCII must convert to itself. And
//
//     std::size_t Measure(const In* text, std::size_t n) const
//
// the length of the converted text, exact for text that is well-formed. Malformed text may become longer, but not by more
// than one element for each of its own.
struct Conversion
{
  // What the result is to hold whatever its length.
  static std::size_t LeastCapacity(std::size_t) { return 0; }
};

// A short text that is all ASCII; false, with nothing done, for any other.
template <class Out, class In>
bool ConvertShortAscii(std::basic_string<Out>& out, const In* text, std::size_t n, std::size_t leastCapacity)
{
  if (n > kPieceLength || AsciiRuns::Length(text, n) != n) return false;
  out.clear();
  if (leastCapacity > n) out.reserve(leastCapacity);
  out.resize(n);
  AsciiRuns::Convert(out.data(), text, n);
  return true;
}

// Any text, through a block on the stack, so that no element of a long result is written twice.
template <class Out, class In, class AConversion>
bool ConvertPieces(std::basic_string<Out>& out, const In* text, const In* end, const AConversion& conversion)
{
  Out block[kBlockLength<Out>];
  while (text < end) {
    const In* const stop = text + std::min(kPieceLength, static_cast<std::size_t>(end - text));
    const auto length = static_cast<std::size_t>(conversion.Convert(text, stop, block) - block);
    if (length > out.capacity() - out.size()) out.reserve(out.size() + length + static_cast<std::size_t>(end - text));
    out.append(block, length);
    if (text < stop) return false;
  }
  return true;
}

// Sets out to the converted text; false when the conversion refused to go on, out then holding what precedes.
template <class Out, class In, class AConversion>
bool ConvertText(std::basic_string<Out>& out, const In* text, std::size_t n, const AConversion& conversion)
{
  const std::size_t leastCapacity = conversion.LeastCapacity(n);
  if (ConvertShortAscii(out, text, n, leastCapacity)) return true;
  out.clear();
  out.reserve(std::max(leastCapacity, conversion.Measure(text, n)));
  return ConvertPieces(out, text, text + n, conversion);
}

}  // namespace qxpaf

#endif
