/**
 * An address as somebody wrote it, cut into words. Letters are upper-cased and lose their accents, apostrophes go, and
 * every other sign separates; what separated two words is kept with the second one, because a comma, a slash and a dash
 * carry meaning in addresses.
 */
#ifndef QXPAF_ARF_MATCH_INPUT_TEXT_H
#define QXPAF_ARF_MATCH_INPUT_TEXT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace arf {

inline constexpr std::size_t kMaxInputBytes = 4096;
inline constexpr std::size_t kMaxInputWords = 96;

/** What stands between a word and the one before it. */
enum class Joint : std::uint8_t
{
  Space,  ///< white space or a sign without meaning
  Break,  ///< a comma, line break, TAB, bracket or control character
  Slash,
  Dash
};

struct Word
{
  std::string_view text;
  std::string_view canonical;  ///< the form in which names are compared (canonical_words.h)
  Joint before = Joint::Break;
  bool hasDigit = false;
  bool isNumber = false;   ///< nothing but digits
  bool afterAnd = false;   ///< "&" or "+" stands before it
  bool afterHash = false;  ///< "#" stands before it
};

enum class InputFault
{
  None,
  TooLong,
  TooManyWords
};

/** A half-open range of word positions. */
struct WordRange
{
  std::size_t first = 0;
  std::size_t last = 0;
  bool Empty() const { return first >= last; }
};

class InputText
{
 public:
  /**
   * Replaces the contents. Text that is not valid UTF-8 as a whole is read as Windows-1252.
   *
   * @param text  copied, so it need not outlive the call. After a fault the contents are empty.
   */
  InputFault Read(std::string_view text);

  std::size_t Count() const { return count_; }
  const Word& operator[](std::size_t i) const { return words_[i]; }

  /** Some words as one text, separated by single spaces whatever separated them in the input. */
  std::string_view Text(std::size_t first, std::size_t last) const;
  std::string_view Text(WordRange range) const { return Text(range.first, range.last); }

  /** The words before `end` that no break separates. */
  WordRange LastPart(std::size_t end) const;

  /** Whether a break stands between two of these words. */
  bool HasInnerBreak(WordRange range) const;
  bool HasDigit(WordRange range) const;
  /** How many words directly before `end` are free of digits, up to `most` of them and not before `first`. */
  std::size_t WordsWithoutDigits(std::size_t first, std::size_t end, std::size_t most) const;

 private:
  friend class InputTextReader;

  // A byte of Windows-1252 takes up to three bytes as UTF-8.
  std::array<char, 3 * kMaxInputBytes + kMaxInputWords> buffer_;
  std::array<Word, kMaxInputWords> words_;
  std::size_t count_ = 0;
};

/** Some text's match key in a fixed buffer, for comparing names without allocating. */
class KeyBuffer
{
 public:
  explicit KeyBuffer(std::string_view text);
  std::string_view View() const { return {buffer_.data(), length_}; }

 private:
  std::array<char, 256> buffer_;
  std::size_t length_;
};

inline bool IsDigit(char c)
{
  return c >= '0' && c <= '9';
}
inline bool IsUpperLetter(char c)
{
  return c >= 'A' && c <= 'Z';
}

}  // namespace arf

#endif
