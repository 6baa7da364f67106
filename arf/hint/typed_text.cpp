#include "arf/hint/typed_text.h"

#include "arf/match/canonical_words.h"

namespace arf {
namespace {

constexpr std::string_view kArticle = "THE ";

bool IsLetter(char c)
{
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/** "V.R.", which may become V.R.D. */
bool EndsInInitial(std::string_view text)
{
  const std::size_t size = text.size();
  return size > 3 && text[size - 1] == '.' && IsLetter(text[size - 2]) && text[size - 3] == '.';
}

/** Whether a text ends inside a word: with a letter, a digit, an apostrophe, a byte beyond ASCII or among initials. */
bool EndsInWord(std::string_view text)
{
  if (text.empty()) return false;
  const char last = text.back();
  return IsLetter(last) || IsDigit(last) || last == '\'' || static_cast<unsigned char>(last) >= 0x80 ||
         EndsInInitial(text);
}

/** MC DONALD, O BRIEN, V R D: whether a word is often written together with the next one. */
bool MayJoinNext(const Word& word)
{
  return !word.hasDigit && (word.text.size() == 1 || word.text == "MC" || word.text == "MAC");
}

}  // namespace

InputFault TypedText::Read(std::string_view text)
{
  open_ = EndsInWord(text);
  const InputFault fault = words_.Read(text);
  for (std::size_t i = 0; i < words_.Count(); ++i) forms_[i] = FormsOf(words_[i]);
  return fault;
}

TypedText::Forms TypedText::FormsOf(const Word& word)
{
  Forms forms;
  if (word.canonical != word.text) forms.Add(word.canonical);
  if (word.text.size() < 2) return forms;
  for (const CanonicalRow& row : CanonicalRows())
    if (row.canonical == word.canonical && row.written != word.text) forms.Add(row.written);
  return forms;
}

OtherSpellings::OtherSpellings(const TypedText& typed, WordRange words) : typed_(typed), words_(words)
{
  AddWithArticle();
  AddWithForms();
  AddJoined();
  AddSplit();
}

NameText* OtherSpellings::Next()
{
  if (count_ == kMax) return nullptr;
  texts_[count_].Clear();
  return &texts_[count_++];
}

void OtherSpellings::AddWithArticle()
{
  const std::string_view text = typed_.Text(words_);
  NameText& other = *Next();
  if (text.starts_with(kArticle)) {
    other.Append(text.substr(kArticle.size()));
  } else {
    other.Append(kArticle);
    other.Append(text);
  }
}

/** One word at a time in another form. */
void OtherSpellings::AddWithForms()
{
  for (std::size_t place = words_.first; place < words_.last; ++place) {
    for (const std::string_view form : typed_.OtherForms(place)) {
      NameText* other = Next();
      if (!other) return;
      for (std::size_t i = words_.first; i < words_.last; ++i) {
        if (i > words_.first) other->Append(" ");
        other->Append(i == place ? form : typed_[i].text);
      }
    }
  }
}

void OtherSpellings::AddJoined()
{
  const auto joinsNext = [this](std::size_t i) { return MayJoinNext(typed_[i]); };
  bool hasJoint = false;
  for (std::size_t i = words_.first; i + 1 < words_.last; ++i) hasJoint = hasJoint || joinsNext(i);
  NameText* other = hasJoint ? Next() : nullptr;
  if (!other) return;
  for (std::size_t i = words_.first; i < words_.last; ++i) {
    if (i > words_.first && !joinsNext(i - 1)) other->Append(" ");
    other->Append(typed_[i].text);
  }
}

/** The first word in its letters, or MC apart from what follows. */
void OtherSpellings::AddSplit()
{
  constexpr std::size_t kMostInitials = 4;
  const Word& first = typed_[words_.first];
  const std::string_view text = first.text;
  const bool isClan = text.starts_with("MC") && text.size() > kMostInitials;
  if (first.hasDigit || text.size() < 2 || (text.size() > kMostInitials && !isClan)) return;
  NameText* other = Next();
  if (!other) return;
  const std::size_t head = isClan ? std::string_view("MC").size() : 1;
  other->Append(text.substr(0, head));
  for (std::size_t at = head; at < text.size(); ++at) {
    if (at == head || !isClan) other->Append(" ");
    other->Append(text.substr(at, 1));
  }
  for (std::size_t i = words_.first + 1; i < words_.last; ++i) {
    other->Append(" ");
    other->Append(typed_[i].text);
  }
}

}  // namespace arf
