// Whole-text conversion into a string that is allocated once, in its final size.
#ifndef QXPAF_SRC_TEXT_PIECEWISE_H
#define QXPAF_SRC_TEXT_PIECEWISE_H

#include <algorithm>
#include <cstddef>
#include <string>

namespace qxpaf {

inline constexpr std::size_t kPieceLength = 256;

// What a piece can become: up to four bytes for each of its elements; or one wide element for each, and one more when a
// surrogate pair comes from a sequence that straddles the end of the piece.
template <class Out>
inline constexpr std::size_t kBlockLength = sizeof(Out) == 1 ? 4 * kPieceLength : kPieceLength + 1;

// What a conversion may write, beyond that, behind what counts.
inline constexpr std::size_t kPieceSlack = 16;

// A conversion has, beside what it inherits from here,
//
//     Out* Convert(const In*& position, const In* stop, Out* to) const
//
// which converts elements from position on, moving it, until it is at stop or behind it, and returns the end of what it
// wrote at `to`; it refuses to go on by leaving position before stop. ASCII must convert to itself. And
//
//     std::size_t Measure(const In* text, std::size_t n) const
//
// the length of the converted text, exact for text that is well-formed. Malformed text may become longer, but not by
// more than one element for each of its own.
struct Conversion
{
  // What the result is to hold whatever its length.
  static std::size_t LeastCapacity(std::size_t) { return 0; }

  // The elements among the first `most` that belong to the text: fewer, and the text ends there.
  template <class In>
  static std::size_t PieceLength(const In*, std::size_t most)
  {
    return most;
  }

  // Enough for what n more elements become, when more was needed than was expected.
  template <class In>
  static std::size_t MeasureRest(const In*, std::size_t n)
  {
    return n;
  }
};

// Elements from position to end, none when the position is behind the end.
template <class In>
std::size_t Distance(const In* position, const In* end)
{
  return position < end ? static_cast<std::size_t>(end - position) : 0;
}

// Sets out to the converted text; false when the conversion refused to go on, out then holding what precedes. The text
// is converted in a block on the stack, so that no element of the result is written twice and a short one needs no
// measuring. `capacity` is what the result is expected to need.
template <class Out, class In, class AConversion>
bool ConvertText(std::basic_string<Out>& out, const In* text, std::size_t n, std::size_t capacity,
                 const AConversion& conversion)
{
  Out block[kBlockLength<Out> + kPieceSlack];
  const In* const end = text + n;
  out.clear();
  while (text < end) {
    const In* const stop = text + conversion.PieceLength(text, std::min(kPieceLength, Distance(text, end)));
    if (stop == text) break;
    const auto length = static_cast<std::size_t>(conversion.Convert(text, stop, block) - block);
    if (out.size() + length > capacity)
      capacity = out.size() + length + conversion.MeasureRest(text, Distance(text, end));
    out.reserve(capacity);
    out.append(block, length);
    if (text < stop) return false;
  }
  return true;
}

template <class Out, class In, class AConversion>
bool ConvertText(std::basic_string<Out>& out, const In* text, std::size_t n, const AConversion& conversion)
{
  std::size_t capacity = conversion.LeastCapacity(n);
  if (n > kPieceLength) capacity = std::max(capacity, conversion.Measure(text, n));
  return ConvertText(out, text, n, capacity, conversion);
}

}  // namespace qxpaf

#endif
