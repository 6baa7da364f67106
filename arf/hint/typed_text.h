/** What somebody has typed so far, cut into words. */
#ifndef QXPAF_ARF_HINT_TYPED_TEXT_H
#define QXPAF_ARF_HINT_TYPED_TEXT_H

#include <array>
#include <cstddef>
#include <span>
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

  /** Other ways to write a word: "MOUNT" for "MT". */
  std::span<const std::string_view> OtherForms(std::size_t word) const
  {
    return std::span(forms_[word].texts).first(forms_[word].count);
  }

  /** Whether more letters may follow these words: they are the last ones and nothing stands behind them. */
  bool IsOpen(WordRange range) const { return open_ && range.last == words_.Count(); }

 private:
  struct Forms
  {
    static constexpr std::size_t kMax = 4;
    std::array<std::string_view, kMax> texts;
    std::size_t count = 0;
    void Add(std::string_view text)
    {
      if (count < kMax) texts[count++] = text;
    }
  };
  static Forms FormsOf(const Word& word);

  InputText words_;
  std::array<Forms, kMaxInputWords> forms_;
  bool open_ = false;
};

/**
 * Other ways to write some words, as names of the data may have them: "MOUNT ISA" for "MT ISA", "THE STRAND", "VRD" for
 * "V R D" and "V R D" for "VRD", "MCDONALD" and "MC DONALD".
 */
class OtherSpellings
{
 public:
  static constexpr std::size_t kMax = 8;

  OtherSpellings(const TypedText& typed, WordRange words);
  const NameText* begin() const { return texts_.data(); }
  const NameText* end() const { return texts_.data() + count_; }

 private:
  /** Room for one more, empty; null where there is none. */
  NameText* Next();
  void AddWithArticle();
  void AddWithForms();
  void AddJoined();
  void AddSplit();

  const TypedText& typed_;
  WordRange words_;
  std::array<NameText, kMax> texts_;
  std::size_t count_ = 0;
};

}  // namespace arf

#endif
