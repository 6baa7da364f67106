/** What somebody has typed so far, cut into words. */
#ifndef QXPAF_ARF_HINT_TYPED_TEXT_H
#define QXPAF_ARF_HINT_TYPED_TEXT_H

#include <array>
#include <cstddef>
#include <string_view>

#include "arf/match/fixed_text.h"
#include "arf/match/input_text.h"

namespace arf {

/** Names are compared up to this length; longer words are nobody's names. */
using NameText = FixedText<255>;

class TypedText
{
 public:
  /** Replaces the contents; the text need not outlive the call. */
  InputFault Read(std::string_view text);

  const InputText& Words() const { return words_; }
  std::size_t Count() const { return words_.Count(); }
  const Word& operator[](std::size_t i) const { return words_[i]; }
  std::string_view Text(WordRange range) const { return words_.Text(range); }

  /** Whether more letters may follow these words: they are the last ones and nothing stands behind them. */
  bool IsOpen(WordRange range) const { return open_ && range.last == words_.Count(); }

 private:
  InputText words_;
  bool open_ = false;
};

/** Other ways to write some words, as names of the data may have them: "MT ISA" for "MOUNT ISA", "THE STRAND". */
class OtherSpellings
{
 public:
  static constexpr std::size_t kMax = 6;

  OtherSpellings(const TypedText& typed, WordRange words);
  const NameText* begin() const { return texts_.data(); }
  const NameText* end() const { return texts_.data() + count_; }

 private:
  void AddWithArticle(std::string_view text);
  void AddWithWord(const TypedText& typed, WordRange words, std::size_t place, std::string_view instead);

  std::array<NameText, kMax> texts_;
  std::size_t count_ = 0;
};

}  // namespace arf

#endif
