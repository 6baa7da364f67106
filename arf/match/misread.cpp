#include "arf/match/misread.h"

#include <algorithm>

#include "arf/match/last_line.h"
#include "arf/match/occupancy_words.h"
#include "arf/match/one_typo.h"
#include "arf/tables/states.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::size_t kPostcodeDigits = 4;
constexpr std::size_t kFewestDigits = 2;    // of a postcode that has letters
constexpr std::size_t kFewestLetters = 3;   // of a word that has digits
constexpr std::size_t kMostSurplus = 2;     // words behind a state
constexpr std::size_t kLongestState = 3;    // words
constexpr std::size_t kShortestOfName = 4;  // letters that the last word of a long state name has at least
constexpr std::string_view kOtherTerritories = "OT";

struct LookAlike
{
  char digit;
  char letter;
};
constexpr LookAlike kDigitsOfLetters[] = {{'0', 'O'}, {'0', 'Q'}, {'0', 'D'}, {'1', 'I'}, {'1', 'L'},
                                          {'2', 'Z'}, {'5', 'S'}, {'6', 'G'}, {'8', 'B'}};
constexpr LookAlike kLettersOfDigits[] = {{'0', 'O'}, {'2', 'Z'}, {'5', 'S'}, {'6', 'G'}, {'8', 'B'}};

using ShortText = FixedText<48>;

/** A word with letters for its digits; empty when one looks like no letter. */
ShortText WithLetters(std::string_view word, char one)
{
  ShortText text;
  for (const char c : word) {
    const auto same = [c](const LookAlike& row) { return row.digit == c; };
    const auto row = std::find_if(std::begin(kLettersOfDigits), std::end(kLettersOfDigits), same);
    const char letter = !IsDigit(c) ? c : c == '1' ? one : row == std::end(kLettersOfDigits) ? '\0' : row->letter;
    if (letter == '\0' || !text.Append({&letter, 1})) return {};
  }
  return text;
}

/** "283O" as "2830"; empty when the word is no postcode so. */
ShortText AsPostcode(const Word& word)
{
  ShortText text;
  if (word.isNumber || word.text.size() != kPostcodeDigits) return {};
  if (std::count_if(word.text.begin(), word.text.end(), IsDigit) < static_cast<std::ptrdiff_t>(kFewestDigits))
    return {};
  for (const char c : word.text) {
    const auto same = [c](const LookAlike& row) { return row.letter == c; };
    const auto row = std::find_if(std::begin(kDigitsOfLetters), std::end(kDigitsOfLetters), same);
    if (!IsDigit(c) && row == std::end(kDigitsOfLetters)) return {};
    text.Append({IsDigit(c) ? &c : &row->digit, 1});
  }
  return text;
}

bool IsPostcode(const Word& word)
{
  return word.isNumber && word.text.size() == kPostcodeDigits;
}

/** The states whose code or name is a typing error away from some words. */
struct MistypedState
{
  std::string_view code;  ///< empty when there are several or none
  std::size_t count = 0;
  bool IsAmbiguous() const { return count > 0 && code.empty(); }
};

/** The same with a quick test before. */
bool AreOneTypoApart(std::string_view words, std::string_view name)
{
  return words.size() <= name.size() + 1 && name.size() <= words.size() + 1 && IsOneTypoApart(words, name);
}

/** Codes of two letters are too close to everything: they only speak against the others. */
MistypedState StateWithTypo(std::string_view words)
{
  constexpr std::size_t kShortestCode = 3;
  MistypedState found;
  for (const WordRow& row : StateRows()) {
    if (row.abbreviation == kOtherTerritories) continue;
    const bool isCode = AreOneTypoApart(words, row.abbreviation);
    if (!isCode && !AreOneTypoApart(words, row.full)) continue;
    const bool saysLittle = isCode && row.abbreviation.size() < kShortestCode;
    found.code = found.count > 0 || saysLittle ? std::string_view() : row.abbreviation;
    ++found.count;
  }
  return found;
}

/** "N5W", "V1C", "Q1D" */
std::string_view MisreadState(std::string_view word)
{
  const std::string_view state = StateCode(WithLetters(word, 'I').View());
  return state.empty() ? StateCode(WithLetters(word, 'L').View()) : state;
}

/** "UNIT1", "UNIT1A", "SE12"; but "M1LL" and "WE5T" are hardly a marine berth and a warehouse. */
bool IsUnit(std::string_view word)
{
  const std::size_t firstDigit = word.find_first_of("0123456789");
  const std::size_t behindDigits = word.find_last_of("0123456789") + 1;
  const bool mayBeUnit =
      behindDigits == word.size() || (behindDigits + 1 == word.size() && firstDigit >= kFewestLetters);
  return mayBeUnit && ReadCombined(word, Preference::Units).count > 0;
}

/** A word of a name in which digits stand for letters: "SM1THS", "5MITHS". */
bool HasDigitsForLetters(const Word& word)
{
  if (!word.hasDigit || word.isNumber) return false;
  const auto digits = static_cast<std::size_t>(std::count_if(word.text.begin(), word.text.end(), IsDigit));
  const std::size_t letters = word.text.size() - digits;
  return letters >= kFewestLetters && digits < letters && !IsUnit(word.text) && !WithLetters(word.text, 'I').Empty();
}

/** Copies words from one text to the other, each as it is or as it is meant. */
class Rereading
{
 public:
  Rereading(const InputText& words, char one, RepairedText& out)
      : words_(words), one_(one), out_(out), end_(words.Count())
  {
    out_.Clear();
  }

  Departures Run()
  {
    const PlaceWords country = ReadPlaceBefore(words_, 0, end_, {});
    const bool isState = end_ > 2 && !StateWithTypo(words_.Text(end_ - 2, end_)).code.empty();  // "Souht Australia"
    if (country.isCountry && !isState) end_ -= country.count;
    if (end_ < 2) return {};
    FindSurplus();
    FindPostcode();
    FindState();
    FindNames();
    for (std::size_t i = 0; i < end_;) i += Copy(i);
    return departures_;
  }

 private:
  bool EndsInState(std::size_t end) const
  {
    const PlaceWords words = ReadPlaceBefore(words_, 0, end, {});
    return words.count > 0 && !words.place.state.empty() && words.place.postcode.Empty() && words.count < end;
  }

  /** "NSW please ring" */
  void FindSurplus()
  {
    for (std::size_t surplus = 0; surplus <= kMostSurplus && surplus + 1 < end_; ++surplus) {
      if (EndsInState(end_ - surplus)) {
        if (surplus > 0) departures_.Add(Departure::Noise);
        end_ -= surplus;
        return;
      }
      if (words_[end_ - 1 - surplus].hasDigit) return;
    }
  }

  /** "NSW 283O", "283O NSW" */
  void FindPostcode()
  {
    const PlaceWords state = ReadPlaceBefore(words_, 0, end_, {});
    const std::size_t end = state.place.state.empty() ? end_ : end_ - state.count;
    if (end < 2) return;
    placeStart_ = end;
    if (IsPostcode(words_[end - 1])) placeStart_ = end - 1;
    meantPostcode_ = AsPostcode(words_[end - 1]);
    if (meantPostcode_.Empty()) return;
    placeStart_ = postcode_ = end - 1;
    departures_.Add(Departure::LookAlike);
  }

  void FindState()
  {
    const std::size_t end = postcode_ + 1 == end_ || IsPostcode(words_[end_ - 1]) ? end_ - 1 : end_;
    const bool mayEndName = words_[end - 1].text.size() >= kShortestOfName;
    for (std::size_t count = kLongestState; count > 1 && mayEndName; --count)
      if (end > count) TakeState({end - count, end}, StateWithTypo(words_.Text(end - count, end)).code);
    if (!state_.Empty() || EndsInState(end_) || EndsInState(placeStart_) || placeStart_ < 2) return;
    const Word& word = words_[placeStart_ - 1];
    const WordRange range{placeStart_ - 1, placeStart_};
    if (word.hasDigit) return TakeState(range, MisreadState(word.text));
    const bool isBeforePostcode = placeStart_ < end_;
    const MistypedState state = StateWithTypo(word.text);
    if (!isBeforePostcode && !ExpandStreetType(word.text).empty()) return;
    TakeState(range, state.code);
    // What may be several states says nothing, and a postcode behind it says all.
    if (state.IsAmbiguous() && isBeforePostcode && word.text.size() > 1) LeaveStateOut(range);
  }

  void TakeState(WordRange range, std::string_view code)
  {
    if (code.empty() || !state_.Empty()) return;
    departures_.Add(words_.HasDigit(range) ? Departure::LookAlike : Departure::StateTypo);
    meantState_ = code;
    state_ = range;
    placeStart_ = std::min(placeStart_, range.first);
  }

  void LeaveStateOut(WordRange range)
  {
    departures_.Add(Departure::StateTypo);
    state_ = range;
    placeStart_ = range.first;
  }

  /** Names stand behind the last number. */
  void FindNames()
  {
    bool hasNumber = false;
    bool isMisread = false;
    namesStart_ = end_;
    for (std::size_t i = 0; i < placeStart_; ++i) {
      if (!words_[i].hasDigit) continue;
      if (HasDigitsForLetters(words_[i])) {
        isMisread = isMisread || hasNumber;
        continue;
      }
      hasNumber = true;
      isMisread = false;
      namesStart_ = i + 1;
    }
    if (!isMisread) namesStart_ = end_;
    if (isMisread) departures_.Add(Departure::LookAlike);
  }

  /** The number of words that were copied. */
  std::size_t Copy(std::size_t i)
  {
    if (i == state_.first && !state_.Empty()) {
      if (!meantState_.empty()) AppendJoint(out_, words_[i]);
      out_.Append(meantState_);
      return state_.last - state_.first;
    }
    AppendJoint(out_, words_[i]);
    const bool isName = i >= namesStart_ && i < placeStart_ && HasDigitsForLetters(words_[i]);
    if (i == postcode_ && !meantPostcode_.Empty())
      out_.Append(meantPostcode_.View());
    else if (isName)
      out_.Append(WithLetters(words_[i].text, one_).View());
    else
      out_.Append(words_[i].text);
    return 1;
  }

  const InputText& words_;
  char one_;
  RepairedText& out_;
  std::size_t end_;
  std::size_t placeStart_ = 0;  ///< state and postcode
  std::size_t namesStart_ = 0;
  std::size_t postcode_ = kNoIndex;
  ShortText meantPostcode_;
  WordRange state_;
  std::string_view meantState_;
  Departures departures_;
};

void Append(RepairedText& out, const InputText& words, WordRange range)
{
  for (std::size_t i = range.first; i < range.last; ++i) {
    AppendJoint(out, words[i]);
    out.Append(words[i].text);
  }
}

}  // namespace

std::string_view PutRight(const InputText& words, char one, RepairedText& out, Departures& departures)
{
  const Departures done = Rereading(words, one, out).Run();
  departures.Add(done);
  return done.Empty() ? std::string_view() : out.View();
}

std::string_view PutLocalityLast(const InputText& words, RepairedText& out)
{
  std::size_t rest = 1;
  std::size_t numbers = 0;
  const auto isInFirst = [&](std::size_t i) { return i < words.Count() && words[i].before != Joint::Break; };
  if (words.Count() == 0) return {};
  for (std::size_t i = 0; i == 0 || isInFirst(i); rest = ++i) {
    if (words[i].hasDigit && !IsPostcode(words[i])) return {};
    numbers += words[i].hasDigit;
  }
  const bool isAddress = words.HasDigit({rest, words.Count()});
  if (numbers > 1 || numbers == rest || !isAddress) return {};
  out.Clear();
  Append(out, words, {rest, words.Count()});
  Append(out, words, {0, rest});
  return out.View();
}

std::string_view LeaveBracketsOut(std::string_view text, RepairedText& out, std::string_view& inner)
{
  const std::size_t open = text.find('(');
  const std::size_t close = text.find(')', std::min(open, text.size()));
  if (close == std::string_view::npos) return {};
  const std::string_view before = text.substr(0, open);
  inner = text.substr(open + 1, close - open - 1);
  const bool isBehindNumber = std::any_of(before.begin(), before.end(), IsDigit);
  if (!isBehindNumber || std::any_of(inner.begin(), inner.end(), IsDigit)) return {};
  out.Clear();
  out.Append(before);
  out.Append(",");
  out.Append(text.substr(close + 1));
  return out.View();
}

}  // namespace arf
