/** Writes a text into a caller's buffer, never beyond its end, and knows whether everything fitted. */
#ifndef QXPAF_ARF_MATCH_BOUNDED_TEXT_H
#define QXPAF_ARF_MATCH_BOUNDED_TEXT_H

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace arf {

class BoundedText
{
 public:
  /** @param size  bytes of `out`, terminator included; nothing is ever written when it is below 1 */
  BoundedText(char* out, int size) : out_(out), capacity_(out && size > 0 ? static_cast<std::size_t>(size) - 1 : 0)
  {
    writable_ = out && size > 0;
    whole_ = writable_;
    Terminate();
  }

  BoundedText& operator<<(std::string_view text)
  {
    const std::size_t taken = text.size() < capacity_ - length_ ? text.size() : capacity_ - length_;
    if (taken > 0) std::memcpy(out_ + length_, text.data(), taken);
    length_ += taken;
    whole_ = whole_ && taken == text.size();
    Terminate();
    return *this;
  }

  BoundedText& operator<<(char c) { return *this << std::string_view(&c, 1); }

  BoundedText& operator<<(std::uint32_t number)
  {
    char digits[12];
    const auto result = std::to_chars(digits, digits + sizeof digits, number);
    return *this << std::string_view(digits, static_cast<std::size_t>(result.ptr - digits));
  }

  /** Starts a part (a field of a record): words are separated from what stands before them in the same part only. */
  void StartPart() { partStart_ = length_; }

  /** A space, unless nothing stands before it in this part. */
  BoundedText& Gap()
  {
    if (length_ > partStart_) *this << ' ';
    return *this;
  }

  /** A word separated from what stands before it; nothing when it is empty. */
  BoundedText& Word(std::string_view word)
  {
    if (!word.empty()) Gap() << word;
    return *this;
  }

  /** Makes every `unwanted` character of this part, and every control character, a space. */
  void CleanPart(char unwanted) { Clean(partStart_, length_, unwanted); }
  /** The same for the text from `first` up to `last`, or as much of it as there is. */
  void Clean(std::size_t first, std::size_t last, char unwanted)
  {
    for (std::size_t i = first; i < last && i < length_; ++i)
      if (out_[i] == unwanted || static_cast<unsigned char>(out_[i]) < ' ') out_[i] = ' ';
  }

  /** Whether everything fitted; false also where there is no room for the terminator. */
  bool IsWhole() const { return whole_; }
  std::size_t Length() const { return length_; }
  std::string_view View() const { return {out_, length_}; }

  void Clear()
  {
    length_ = 0;
    partStart_ = 0;
    whole_ = writable_;
    Terminate();
  }

 private:
  void Terminate()
  {
    if (writable_) out_[length_] = '\0';
  }

  char* out_;
  std::size_t capacity_;
  std::size_t length_ = 0;
  std::size_t partStart_ = 0;
  bool writable_ = false;
  bool whole_ = false;
};

}  // namespace arf

#endif
