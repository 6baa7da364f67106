// The walk that title casing makes over a text, for any kind of text.
#ifndef QXPAF_SRC_TEXT_TITLE_CASE_H
#define QXPAF_SRC_TEXT_TITLE_CASE_H

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "text/roman.h"

namespace qxpaf {

// Text describes the characters of a zero-terminated text:
//
//     Char                                            the type of a character
//     kNumeralsInside                                 whether numerals count anywhere, or only at the end of the text
//     Char Take(const char*& p)                       reads the character at p, which is not the terminator
//     bool IsLetter(Char), IsDigit(Char), IsApostrophe(Char)
//     Char ToUpper(Char), ToLower(Char)
//     Char Put(char* at, std::size_t length, Char old, Char c)
//                                                     replaces old, of so many bytes, by c if it can; what is there now
template <class Text>
class TitleCaser
{
 public:
  explicit TitleCaser(char* s) : at_(s), wordStart_(s) {}

  void Run()
  {
    while (*at_ != '\0') Step();
    CaseNumeral();
  }

 private:
  using Char = typename Text::Char;

  static constexpr std::size_t kLead = 2;  // the characters that are remembered of a word

  static constexpr std::size_t kShortestNumeral = 2;  // characters

  // Contractions that are no names, without their apostrophe.
  static constexpr std::string_view kContractions[] = {"LL", "VE", "RE"};

  void Step()
  {
    const char* next = at_;
    const Char c = Text::Take(next);
    const auto length = static_cast<std::size_t>(next - at_);
    if (Text::IsLetter(c)) {
      const Char cased = IsCapital() ? Text::ToUpper(c) : Text::ToLower(c);
      StayInWord(length, cased == c ? c : Text::Put(at_, length, c, cased));
    } else if (Text::IsApostrophe(c)) {
      IsWordBehindApostrophe(next) ? BeginWord(length) : StayInWord(length, c);
    } else if (Text::IsDigit(c)) {
      StayInWord(length, c);
    } else {
      if (Text::kNumeralsInside) CaseNumeral();
      BeginWord(length);
    }
  }

  // The first letter, and the one behind "Mc".
  bool IsCapital() const
  {
    if (position_ == 0) return true;
    return position_ == kLead && lead_[0] == Char{'M'} && lead_[1] == Char{'c'};
  }

  // Whether a new word begins at next, behind the apostrophe at at_.
  bool IsWordBehindApostrophe(const char* next) const
  {
    const char* p = next;
    const bool isLong = TakeWordCharacter(p) && TakeWordCharacter(p);
    if (!isLong && position_ >= kLead) return false;
    return !TakeContraction(next) || TakeWordCharacter(next);
  }

  static bool TakeWordCharacter(const char*& p)
  {
    if (*p == '\0') return false;
    const Char c = Text::Take(p);
    return Text::IsLetter(c) || Text::IsApostrophe(c) || Text::IsDigit(c);
  }

  // Moves p behind the letters of a contraction, or not at all.
  static bool TakeContraction(const char*& p)
  {
    return std::any_of(std::begin(kContractions), std::end(kContractions),
                       [&p](std::string_view letters) { return TakeLetters(p, letters); });
  }

  static bool TakeLetters(const char*& p, std::string_view letters)
  {
    const char* next = p;
    for (const char letter : letters) {
      if (*next == '\0' || Text::ToUpper(Text::Take(next)) != static_cast<Char>(letter)) return false;
    }
    p = next;
    return true;
  }

  // Steps over a character that the current word goes on with.
  void StayInWord(std::size_t length, Char c)
  {
    if (position_ < kLead) lead_[position_] = c;
    ++position_;
    at_ += length;
  }

  // Steps over a character behind which a word begins.
  void BeginWord(std::size_t length)
  {
    at_ += length;
    wordStart_ = at_;
    position_ = 0;
  }

  // Upper-cases the word that ends at at_ if it is a Roman numeral; its first letter is so already.
  void CaseNumeral()
  {
    if (position_ < kShortestNumeral) return;
    if (!IsRomanWord(std::string_view(wordStart_, static_cast<std::size_t>(at_ - wordStart_)))) return;
    for (char* p = wordStart_ + 1; p != at_; ++p) *p = static_cast<char>(Text::ToUpper(static_cast<Char>(*p)));
  }

  char* at_;
  char* wordStart_;
  std::size_t position_ = 0;  // characters, not bytes, from wordStart_ to at_
  Char lead_[kLead] = {};     // the first characters of the word, as they are in the text now
};

}  // namespace qxpaf

#endif
