// Whole-text conversion through a block on the stack: the result is allocated once, in its final size, and none of its
// elements is written twice.
#ifndef QXPAF_SRC_TEXT_PIECEWISE_H
#define QXPAF_SRC_TEXT_PIECEWISE_H

#include <algorithm>
#include <cstddef>
#include <string>

namespace qxpaf {

inline constexpr std::ptrdiff_t kPieceLength = 256;

// What a piece can become: up to four bytes for each of its elements; or one wide element for each, and one more when a
// surrogate pair comes from a sequence that straddles the end of the piece.
template <class Out>
inline constexpr std::size_t kBlockLength = sizeof(Out) == 1 ? 4 * kPieceLength : kPieceLength + 1;

struct Piece
{
  std::size_t length;  // elements written to the block
  bool complete;       // false: the conversion refused to go on
};

// `convert(position, stop, to)` converts elements from position on, moving it, until it is at stop or behind it, and
// returns the end of what it wrote at `to`. It stops the whole conversion by leaving position before stop.
template <class Out, class In, class Convert>
Piece ConvertPiece(Out* block, const In*& position, const In* end, Convert convert)
{
  const In* const stop = end - position > kPieceLength ? position + kPieceLength : end;
  const Out* const used = convert(position, stop, block);
  return {static_cast<std::size_t>(used - block), position >= stop};
}

// Sets out to the converted text, with at least `capacity` elements reserved. False when `convert` stopped.
template <class Out, class In, class Convert>
bool ConvertToCapacity(std::basic_string<Out>& out, const In* text, const In* end, std::size_t capacity,
                       Convert convert)
{
  Out block[kBlockLength<Out>];
  out.clear();
  while (text < end) {
    const Piece piece = ConvertPiece(block, text, end, convert);
    if (out.empty()) out.reserve(std::max(capacity, piece.length));
    out.append(block, piece.length);
    if (!piece.complete) return false;
  }
  return true;
}

template <class Out, class In, class Convert>
std::size_t MeasureConverted(const In* text, const In* end, Convert convert)
{
  Out block[kBlockLength<Out>];
  std::size_t length = 0;
  for (bool complete = true; complete && text < end;) {
    const Piece piece = ConvertPiece(block, text, end, convert);
    length += piece.length;
    complete = piece.complete;
  }
  return length;
}

// The same for conversions that change the length: text of more than one piece is measured by a trial run.
template <class Out, class In, class Convert>
bool ConvertText(std::basic_string<Out>& out, const In* text, const In* end, std::size_t capacity, Convert convert)
{
  if (end - text > kPieceLength) capacity = std::max(capacity, MeasureConverted<Out>(text, end, convert));
  return ConvertToCapacity(out, text, end, capacity, convert);
}

}  // namespace qxpaf

#endif
