#include "arf/match/input_text.h"

#include <algorithm>

#include "arf/format/fold.h"
#include "arf/match/canonical_words.h"
#include "qxpaf/text/encoding.h"

namespace arf {
namespace {

/** The length of the well-formed UTF-8 sequence at the front, and its code point; 0 when there is none. */
std::size_t DecodeUtf8(std::string_view text, char32_t& codePoint)
{
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) {
    codePoint = lead;
    return 1;
  }
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  codePoint = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    codePoint = (codePoint << 6) | (byte(i) & 0x3FU);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return codePoint < kSmallest[length] || codePoint > 0x10FFFF || isSurrogate ? 0 : length;
}

bool IsValidUtf8(std::string_view text)
{
  for (char32_t ignored = 0; !text.empty();) {
    const std::size_t length = DecodeUtf8(text, ignored);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

enum class Sign
{
  Letter,
  Dropped,
  Dot,
  Space,
  And,
  Hash,
  Break,
  Slash,
  Dash
};

Sign ClassifyAscii(char32_t c)
{
  if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) return Sign::Letter;
  switch (c) {
    case '\'':
    case '`':
      return Sign::Dropped;
    case '.':
      return Sign::Dot;
    case '/':
    case '\\':
      return Sign::Slash;
    case '-':
      return Sign::Dash;
    case '&':
    case '+':
      return Sign::And;
    case '#':
      return Sign::Hash;
    case ',':
    case ';':
    case '(':
    case ')':
    case '[':
    case ']':
    case 0x7F:
      return Sign::Break;
    default:
      return c < ' ' ? Sign::Break : Sign::Space;
  }
}

Sign Classify(char32_t c)
{
  if (c < 0x80) return ClassifyAscii(c);
  if (c < 0xA0 || c == 0x2028 || c == 0x2029) return Sign::Break;
  if (c == 0xB4 || c == 0x2BC || c == 0x2018 || c == 0x2019 || c == 0x201B || c == 0x2032) return Sign::Dropped;
  if ((c >= 0x2010 && c <= 0x2015) || c == 0x2212) return Sign::Dash;
  if (c == 0x2044 || c == 0x2215) return Sign::Slash;
  const bool isSpace = c == 0xA0 || (c >= 0x2000 && c <= 0x200F) || c == 0x202F || c == 0x3000 || c == 0xFEFF;
  const bool isQuote = c == 0x201C || c == 0x201D || c == 0x201E || c == 0xAB || c == 0xBB;
  return isSpace || isQuote ? Sign::Space : Sign::Letter;
}

bool IsFraction(char32_t c)
{
  return (c >= 0xBC && c <= 0xBE) || (c >= 0x2150 && c <= 0x215E);
}

/** The joint of two signs that meet: a break wins, a slash or dash survives spaces, and two of them cancel out. */
Joint Combine(Joint pending, Joint next)
{
  if (pending == Joint::Break || next == Joint::Break) return Joint::Break;
  if (pending == Joint::Space) return next;
  return next == Joint::Space || next == pending ? pending : Joint::Space;
}

}  // namespace

/** One pass over a text. */
class InputTextReader
{
 public:
  InputTextReader(InputText& target, std::string_view text) : target_(target), rest_(text), isUtf8_(IsValidUtf8(text))
  {
  }

  InputFault Run()
  {
    target_.count_ = 0;
    while (!rest_.empty()) {
      const std::string_view sequence = TakeCharacter();
      if (!Take(sequence)) {
        target_.count_ = 0;
        return InputFault::TooManyWords;
      }
    }
    EndWord();
    KeepInitials();
    return InputFault::None;
  }

 private:
  void KeepInitials()
  {
    for (std::size_t i = 1; i < target_.count_; ++i) {
      Word& word = target_.words_[i];
      Word& before = target_.words_[i - 1];
      if (!AreInitials(word.text, before.text)) continue;
      word.canonical = word.text;
      before.canonical = before.text;
    }
  }

  /** The next character as UTF-8, its code point in codePoint_. */
  std::string_view TakeCharacter()
  {
    if (isUtf8_) {
      const std::size_t length = DecodeUtf8(rest_, codePoint_);
      const std::string_view sequence = rest_.substr(0, length);
      rest_.remove_prefix(length);
      return sequence;
    }
    const wchar_t wide = CharAnsiToWide(static_cast<unsigned char>(rest_.front()));
    rest_.remove_prefix(1);
    codePoint_ = static_cast<char32_t>(wide);
    return {utf8_.data(), static_cast<std::size_t>(WideCharToUtf8(utf8_.data(), wide))};
  }

  /** False when there is no room for another word. */
  bool Take(std::string_view sequence)
  {
    switch (Classify(codePoint_)) {
      case Sign::Letter:
        return Append(sequence);
      case Sign::Dropped:
        return true;
      case Sign::Dot:
        if (!JoinsInitials()) Separate(Joint::Space);
        return true;
      case Sign::Space:
        Separate(Joint::Space);
        return true;
      case Sign::And:
        Separate(Joint::Space);
        and_ = true;
        return true;
      case Sign::Hash:
        Separate(Joint::Space);
        hash_ = true;
        return true;
      case Sign::Break:
        Separate(Joint::Break);
        return true;
      case Sign::Slash:
        Separate(Joint::Slash);
        return true;
      case Sign::Dash:
        Separate(Joint::Dash);
        return true;
    }
    return true;
  }

  bool Append(std::string_view sequence)
  {
    if (!inWord_) {
      if (target_.count_ == kMaxInputWords) return false;
      if (size_ > 0) target_.buffer_[size_++] = ' ';
      wordStart_ = size_;
      inWord_ = true;
      onlyInitials_ = true;
      sinceDot_ = 0;
    }
    if (sequence.size() == 1) {
      const char c = sequence.front();
      target_.buffer_[size_++] = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    } else if (IsFraction(codePoint_)) {  // "10½" is another number than 10
      size_ = static_cast<std::size_t>(
          std::copy(sequence.begin(), sequence.end(), target_.buffer_.begin() + static_cast<std::ptrdiff_t>(size_)) -
          target_.buffer_.begin());
    } else {
      size_ += MatchKey(sequence, std::span<char>(target_.buffer_).subspan(size_));
    }
    if (++sinceDot_ > 1) onlyInitials_ = false;
    return true;
  }

  /** "N.S.W." and "P.O." are one word each; the dots of "Mt.Isa" and "P.O.Box" separate. */
  bool JoinsInitials()
  {
    if (!inWord_ || !onlyInitials_ || rest_.empty() || !IsLetterAt(0) || IsWordAt(1)) return false;
    // A word may still be empty: some characters leave nothing in the match key.
    if (size_ == 0 || !IsUpperOrLower(target_.buffer_[size_ - 1])) return false;
    sinceDot_ = 0;
    return true;
  }
  static bool IsUpperOrLower(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
  bool IsLetterAt(std::size_t i) const { return i < rest_.size() && IsUpperOrLower(rest_[i]); }
  bool IsWordAt(std::size_t i) const { return IsLetterAt(i) || (i < rest_.size() && IsDigit(rest_[i])); }

  void Separate(Joint joint)
  {
    EndWord();
    pending_ = Combine(pending_, joint);
  }

  void EndWord()
  {
    if (!inWord_) return;
    inWord_ = false;
    const std::string_view text(target_.buffer_.data() + wordStart_, size_ - wordStart_);
    if (text.empty()) {  // a character that folds to nothing
      if (size_ > 0) --size_;
      return;
    }
    const auto digits = std::count_if(text.begin(), text.end(), IsDigit);
    Word& word = target_.words_[target_.count_++];
    word = {text,
            CanonicalWord(text),
            target_.count_ == 1 ? Joint::Break : pending_,
            digits > 0,
            static_cast<std::size_t>(digits) == text.size(),
            and_,
            hash_};
    pending_ = Joint::Space;
    and_ = hash_ = false;
  }

  InputText& target_;
  std::string_view rest_;
  bool isUtf8_;
  char32_t codePoint_ = 0;
  std::array<char, 8> utf8_{};
  std::size_t size_ = 0;
  std::size_t wordStart_ = 0;
  std::size_t sinceDot_ = 0;
  bool inWord_ = false;
  bool onlyInitials_ = false;
  Joint pending_ = Joint::Space;
  bool and_ = false;
  bool hash_ = false;
};

InputFault InputText::Read(std::string_view text)
{
  count_ = 0;
  if (text.size() > kMaxInputBytes) return InputFault::TooLong;
  return InputTextReader(*this, text).Run();
}

std::string_view InputText::Text(std::size_t first, std::size_t last) const
{
  if (first >= last) return {};
  const char* start = words_[first].text.data();
  const std::string_view end = words_[last - 1].text;
  return {start, static_cast<std::size_t>(end.data() + end.size() - start)};
}

WordRange InputText::LastPart(std::size_t end) const
{
  std::size_t first = end;
  while (first > 0 && words_[first - 1].before != Joint::Break) --first;
  return {first > 0 ? first - 1 : 0, end};
}

bool InputText::HasInnerBreak(WordRange range) const
{
  for (std::size_t i = range.first + 1; i < range.last; ++i)
    if (words_[i].before == Joint::Break) return true;
  return false;
}

bool InputText::HasDigit(WordRange range) const
{
  for (std::size_t i = range.first; i < range.last; ++i)
    if (words_[i].hasDigit) return true;
  return false;
}

std::size_t InputText::WordsWithoutDigits(std::size_t first, std::size_t end, std::size_t most) const
{
  std::size_t count = 0;
  while (count < most && first + count < end && !words_[end - 1 - count].hasDigit) ++count;
  return count;
}

KeyBuffer::KeyBuffer(std::string_view text) : length_(MatchKey(text, buffer_)) {}

}  // namespace arf
