/** A short text inside its owner: copies what fits, never allocates. */
#ifndef QXPAF_ARF_MATCH_FIXED_TEXT_H
#define QXPAF_ARF_MATCH_FIXED_TEXT_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace arf {

template <std::size_t Capacity>
class FixedText
{
 public:
  FixedText() = default;
  explicit FixedText(std::string_view text) { Append(text); }

  /** False, and cut, when the text does not fit. */
  bool Append(std::string_view text)
  {
    const std::string_view taken = text.substr(0, Capacity - length_);
    std::copy(taken.begin(), taken.end(), text_.begin() + length_);
    length_ = static_cast<std::uint16_t>(length_ + taken.size());
    return taken.size() == text.size();
  }
  void Clear() { length_ = 0; }

  std::string_view View() const { return {text_.data(), length_}; }
  bool Empty() const { return length_ == 0; }

 private:
  static_assert(Capacity <= UINT16_MAX);
  // Left uninitialised behind length_: these objects are made in numbers on the query path.
  std::array<char, Capacity> text_;
  std::uint16_t length_ = 0;
};

}  // namespace arf

#endif
