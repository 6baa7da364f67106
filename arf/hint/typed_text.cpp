#include "arf/hint/typed_text.h"

#include "arf/match/canonical_words.h"

namespace arf {
namespace {

constexpr std::string_view kArticle = "THE ";

/** Whether a text ends inside a word: with a letter, a digit, an apostrophe or a byte beyond ASCII. */
bool EndsInWord(std::string_view text)
{
  if (text.empty()) return false;
  const char last = text.back();
  const bool isLetter = (last >= 'A' && last <= 'Z') || (last >= 'a' && last <= 'z');
  return isLetter || IsDigit(last) || last == '\'' || static_cast<unsigned char>(last) >= 0x80;
}

}  // namespace

InputFault TypedText::Read(std::string_view text)
{
  open_ = EndsInWord(text);
  return words_.Read(text);
}

OtherSpellings::OtherSpellings(const TypedText& typed, WordRange words)
{
  AddWithArticle(typed.Text(words));
  for (std::size_t i = words.first; i < words.last; ++i) {
    const std::string_view written = typed[i].text;
    const std::string_view canonical = CanonicalWord(written);
    if (canonical != written) AddWithWord(typed, words, i, canonical);
    if (written.size() < 2) continue;
    for (const CanonicalRow& row : CanonicalRows())
      if (row.canonical == canonical && row.written != written) AddWithWord(typed, words, i, row.written);
  }
}

void OtherSpellings::AddWithArticle(std::string_view text)
{
  NameText& other = texts_[count_];
  if (text.starts_with(kArticle))
    other.Append(text.substr(kArticle.size()));
  else
    other.Append(kArticle);
  if (!text.starts_with(kArticle)) other.Append(text);
  ++count_;
}

void OtherSpellings::AddWithWord(const TypedText& typed, WordRange words, std::size_t place, std::string_view instead)
{
  if (count_ == kMax) return;
  NameText& other = texts_[count_++];
  for (std::size_t i = words.first; i < words.last; ++i) {
    if (i > words.first) other.Append(" ");
    other.Append(i == place ? instead : typed[i].text);
  }
}

}  // namespace arf
