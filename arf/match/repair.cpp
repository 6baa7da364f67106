#include "arf/match/repair.h"

#include <algorithm>
#include <array>

#include "arf/match/last_line.h"
#include "arf/match/postal_words.h"
#include "arf/match/premise.h"
#include "arf/tables/postal_types.h"
#include "arf/tables/states.h"
#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::size_t kPostcodeDigits = 4;
constexpr std::size_t kLongestHouseNumber = 6;  // digits
constexpr std::size_t kShortestStuckName = 3;   // letters behind or before digits
constexpr std::size_t kShortestStuckType = 4;   // letters of a type stuck to a name; the common short forms are below

constexpr std::string_view kCommonTypes[] = {"ST", "RD", "AVE", "CRT", "CRES", "TCE", "PDE", "HWY", "BVD"};
constexpr std::string_view kPhoneWords[] = {"PH",  "PHONE", "TEL",   "TELEPHONE", "MOB", "MOBILE",
                                            "FAX", "REF",   "ORDER", "M",         "T",   "P"};

/** What says that the words behind are a place beside the address. */
constexpr std::string_view kBesideWords[] = {"OFF", "NEAR", "OPP", "OPPOSITE", "BEHIND", "BESIDE", "NEXT", "ADJACENT"};

constexpr std::string_view kVia = "VIA";

/** A number that companies put behind their names. */
struct CompanyNumber
{
  std::string_view word;
  std::size_t digits;
};
constexpr CompanyNumber kCompanyNumbers[] = {{"ABN", 11}, {"ACN", 9}};

template <std::size_t Count>
bool IsOneOf(const std::string_view (&list)[Count], std::string_view word)
{
  return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

bool IsGap(char c)
{
  return c == ' ' || c == ',' || c == ';' || c == '(' || c == ')' || c == '<' || c == '>' || (c >= '\t' && c <= '\r');
}

bool IsLink(std::string_view token)
{
  return token.find('@') != std::string_view::npos || token.find("://") != std::string_view::npos ||
         token.substr(0, 4) == "www.";
}

bool MayHaveLink(std::string_view text)
{
  constexpr auto kNone = std::string_view::npos;
  return text.find('@') != kNone || text.find(':') != kNone || text.find("www.") != kNone;
}

/** The characters before the next gap. */
std::string_view FirstToken(std::string_view text)
{
  return text.substr(0, static_cast<std::size_t>(std::find_if(text.begin(), text.end(), IsGap) - text.begin()));
}

/** Whether a token says that the next one is an e-mail or web address: "Email", "E-mail:". */
bool IsLinkLabel(std::string_view token)
{
  constexpr std::string_view kLabels[] = {"EMAIL", "E-MAIL", "MAIL", "WEB", "WEBSITE", "E", "W"};
  std::array<char, 8> upper{};
  if (!token.empty() && token.back() == ':') token.remove_suffix(1);
  if (token.size() > upper.size()) return false;
  std::transform(token.begin(), token.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return IsOneOf(kLabels, std::string_view(upper.data(), token.size()));
}

/** Whether the next token of a text that begins with gaps is an e-mail or web address. */
bool IsBeforeLink(std::string_view text)
{
  const auto start = std::find_if_not(text.begin(), text.end(), IsGap);
  return IsLink(FirstToken(text.substr(static_cast<std::size_t>(start - text.begin()))));
}

/** Copies a text without its e-mail and web addresses and what announces them; false when it has none. */
bool RemoveLinks(std::string_view text, RepairedText& out)
{
  if (!MayHaveLink(text)) return false;
  bool found = false;
  out.Clear();
  while (!text.empty()) {
    const std::string_view token = FirstToken(text);
    text.remove_prefix(token.size());
    if (IsLink(token) || (IsLinkLabel(token) && IsBeforeLink(text)))
      found = true;
    else
      out.Append(token);
    if (text.empty()) break;
    out.Append(text.substr(0, 1));
    text.remove_prefix(1);
  }
  return found;
}

/** A word in which letters and digits are stuck together. */
struct StuckWord
{
  std::string_view first;
  std::string_view second;
  bool IsOne() const { return !first.empty(); }
};

/** "12SMITH", "RICHMOND3121", "POBOX12"; ordinals and numbers with a letter or two are as they should be. */
StuckWord TakeDigitsApart(std::string_view word, StuckLetter letter)
{
  auto at = static_cast<std::size_t>(std::find_if_not(word.begin(), word.end(), IsDigit) - word.begin());
  const bool takesLetter = letter == StuckLetter::OfNumber && at > 0 && at + kShortestStuckName < word.size();
  if (takesLetter) ++at;
  const std::string_view behind = word.substr(at);
  if (at > 0) {
    const bool isName = behind.size() >= kShortestStuckName && std::none_of(behind.begin(), behind.end(), IsDigit);
    return isName ? StuckWord{word.substr(0, at), behind} : StuckWord{};
  }
  const auto digits = static_cast<std::size_t>(std::find_if(word.begin(), word.end(), IsDigit) - word.begin());
  const std::string_view number = word.substr(digits);
  const std::string_view name = word.substr(0, digits);
  const bool isNumber = !number.empty() && std::all_of(number.begin(), number.end(), IsDigit);
  const bool isPostcode = isNumber && number.size() == kPostcodeDigits;
  const bool mayBe = isPostcode || (isNumber && !ExpandPostalType(name).empty());
  return digits >= kShortestStuckName && mayBe ? StuckWord{name, number} : StuckWord{};
}

/** "SMITHSTREET", "SMITHST" */
StuckWord TakeTypeApart(std::string_view word)
{
  for (std::size_t name = kShortestStuckName; name < word.size(); ++name) {
    const std::string_view type = word.substr(name);
    const bool isType =
        type.size() >= kShortestStuckType ? ExpandStreetType(type) == type : IsOneOf(kCommonTypes, type);
    if (isType) return {word.substr(0, name), type};
  }
  return {};
}

/** Copies words from one text to the other, with what they are to lose or to gain. */
class WordRepair
{
 public:
  WordRepair(const InputText& words, RepairChoice choice, RepairedText& out) : words_(words), choice_(choice), out_(out)
  {
    out_.Clear();
  }

  void Run()
  {
    const std::size_t end = AddressEnd();
    isNoise_ = end < words_.Count();
    const WordRange numberBehind = NumberBehindStreet(end);
    const std::size_t street = numberBehind.Empty() ? end : PartOf(numberBehind.first - 1);
    for (std::size_t i = 0; i < end;) {
      if (i == street)
        for (std::size_t number = numberBehind.first; number < numberBehind.last; ++number) Copy(words_[number]);
      if (i == numberBehind.first && !numberBehind.Empty()) {
        movedNumber_ = true;
        i = numberBehind.last;
        continue;
      }
      const std::size_t noise = NoiseAt(i, end);
      if (noise > 0) {
        isNoise_ = true;
        afterNoise_ = true;
        i += noise;
        continue;
      }
      nextIsType_ = i + 1 < end && IsType(i + 1);
      Copy(words_[i++]);
    }
  }

  bool LeftOut() const { return isNoise_; }
  bool TookApart() const { return tookApart_; }
  bool MovedNumber() const { return movedNumber_; }

 private:
  bool IsState(std::size_t i) const { return i < words_.Count() && !StateCode(words_[i].text).empty(); }
  bool IsPostcode(std::size_t i) const
  {
    return i < words_.Count() && words_[i].isNumber && words_[i].text.size() == kPostcodeDigits;
  }

  bool IsType(std::size_t i) const { return words_[i].text.size() > 1 && !ExpandStreetType(words_[i].text).empty(); }

  /** Whether the words before `i` may end a street: "Street", "Street West". */
  bool EndsStreet(std::size_t i) const
  {
    return IsType(i - 1) || (i > 2 && IsType(i - 2) && !ExpandStreetSuffix(words_[i - 1].text).empty());
  }

  /** A state that is not the beginning of a name, as in "Victoria Park". */
  bool IsStateAlone(std::size_t i, std::size_t end) const
  {
    constexpr std::size_t kLongestCode = 3;
    const bool goesOn = i + 1 < end && words_[i + 1].before != Joint::Break && !words_[i + 1].hasDigit;
    return IsState(i) && (words_[i].text.size() <= kLongestCode || !goesOn);
  }

  /** The number of "Smith Street 12, Sydney" or "Smith Street 12-14, Sydney" when there is no other before it. */
  WordRange NumberBehindStreet(std::size_t end) const
  {
    std::size_t i = 0;
    while (i < end && !words_[i].hasDigit) ++i;
    HouseNumber number;
    const bool isRange =
        i + 1 < end && words_[i + 1].before == Joint::Dash && ReadHouseNumber(words_[i + 1].text, number);
    const std::size_t next = i + 1 + isRange;
    const bool isBehind = i > 1 && next < end && EndsStreet(i) && !words_[next].hasDigit && !IsState(next) &&
                          words_[i].before == Joint::Space && ReadHouseNumber(words_[i].text, number);
    return isBehind ? WordRange{i, next} : WordRange{};
  }

  /** Where the words between breaks begin that word `i` is one of. */
  std::size_t PartOf(std::size_t i) const
  {
    while (words_[i].before != Joint::Break) --i;
    return i;
  }

  /** Behind the last pair of state and postcode, when nothing with digits follows. */
  std::size_t AddressEnd() const
  {
    for (std::size_t i = words_.Count(); i-- > 1;) {
      if ((IsPostcode(i) && IsState(i - 1)) || (IsState(i) && IsPostcode(i - 1))) return i + 1;
      if (words_[i].hasDigit && PhoneAt(i, words_.Count()) == 0) break;
    }
    return words_.Count();
  }

  std::size_t NoiseAt(std::size_t i, std::size_t end) const
  {
    if (const std::size_t count = std::max(CompanyNumberAt(i, end), DetourAt(i, end)); count > 0) return count;
    if (const std::size_t count = NumberedNameAt(i, end); count > 0) return count;
    std::size_t number = i;
    while (number < end && number < i + 2 && IsOneOf(kPhoneWords, words_[number].text)) ++number;
    const std::size_t count = number < end ? PhoneAt(number, end) : 0;
    return count > 0 ? number - i + count : 0;
  }

  /** "7-Eleven,": a name that begins with a number, where a number of its own follows for the house. */
  std::size_t NumberedNameAt(std::size_t first, std::size_t end) const
  {
    if (!words_[first].isNumber || words_[first].before != Joint::Break || first + 2 >= end) return 0;
    const Word& name = words_[first + 1];
    if (name.before != Joint::Dash || name.hasDigit || name.text.size() < kShortestStuckName || IsType(first + 1))
      return 0;
    std::size_t i = first + 2;
    while (i < end && words_[i].before != Joint::Break && !words_[i].hasDigit && !IsType(i)) ++i;
    return i < end && words_[i].before == Joint::Break && words_[i].hasDigit ? i - first : 0;
  }

  /** "ABN 12 345 678 901" */
  std::size_t CompanyNumberAt(std::size_t first, std::size_t end) const
  {
    for (const auto& [word, digits] : kCompanyNumbers) {
      if (words_[first].text != word) continue;
      std::size_t length = 0;
      for (std::size_t i = first + 1; i < end && words_[i].isNumber && length < digits; ++i) {
        length += words_[i].text.size();
        if (length == digits) return i + 1 - first;
      }
    }
    return 0;
  }

  /** "via Bundaberg"; "(off the highway)", ", near the park,", up to the next break, state or postcode. */
  std::size_t DetourAt(std::size_t first, std::size_t end) const
  {
    const bool isVia = words_[first].text == kVia;
    const bool isBeside = IsOneOf(kBesideWords, words_[first].text);
    if (!sawNumber_ || (!isVia && !isBeside)) return 0;
    if (isBeside && words_[first].before != Joint::Break) return StreetBesideAt(first, end);
    const bool stopsAtBreak = !isVia || choice_.detour == Detour::ToBreak;
    std::size_t i = first + 1;
    while (i < end && !words_[i].hasDigit && !IsStateAlone(i, end) &&
           (!stopsAtBreak || words_[i].before != Joint::Break))
      ++i;
    if (i == first + 1) return 0;
    if (isVia && choice_.detour == Detour::WordOnly) return MayPrecedeLocality(first) ? 1 : 0;
    return i - first;
  }

  /** Behind a street, "near High St" without brackets: up to the next break or, where there is none, to a type. */
  std::size_t StreetBesideAt(std::size_t first, std::size_t end) const
  {
    if (!EndsStreet(first)) return 0;
    std::size_t type = 0;
    std::size_t i = first + 1;
    for (; i < end && !words_[i].hasDigit && !IsStateAlone(i, end) && words_[i].before != Joint::Break; ++i)
      if (i > first + 1 && type == 0 && IsType(i)) type = i + 1 - first;
    const bool isBeforePlace = i < end && words_[i].before == Joint::Break && !words_[i].hasDigit && !IsState(i);
    return isBeforePlace && i > first + 1 ? i - first : type;
  }

  /** Whether "via" is no street's name, as in "12 Via Roma". */
  bool MayPrecedeLocality(std::size_t via) const
  {
    return !words_[via - 1].hasDigit || !ReadPostalAtEnd(words_, {0, via}).type.empty();
  }

  /** How many words from `first` on make a telephone number, or one that is too long for a house. */
  std::size_t PhoneAt(std::size_t first, std::size_t end) const
  {
    if (!words_[first].isNumber) return 0;
    if (words_[first].text.size() > kLongestHouseNumber) return 1;
    std::array<char, 12> digits{};
    std::size_t length = 0;
    for (std::size_t i = first; i < end && words_[i].isNumber; ++i) {
      if (length + words_[i].text.size() > digits.size()) return 0;
      std::copy(words_[i].text.begin(), words_[i].text.end(), digits.begin() + static_cast<std::ptrdiff_t>(length));
      length += words_[i].text.size();
      if (i > first && IsPhone({digits.data(), length}, words_[first].text)) return i + 1 - first;
    }
    return 0;
  }

  /** "03 9123 4567", "0412 345 678", "61 3 9123 4567", "1300 123 456" */
  static bool IsPhone(std::string_view digits, std::string_view first)
  {
    constexpr std::size_t kNational = 10;
    constexpr std::size_t kInternational = 11;
    if (digits.size() == kInternational) return first == "61" || first == "614";
    if (digits.size() != kNational) return false;
    const bool isArea = first.size() == 2 && first[0] == '0' && first[1] >= '2' && first[1] <= '8';
    return isArea || first.substr(0, 2) == "04" || first == "1300" || first == "1800";
  }

  void Copy(const Word& word)
  {
    if (!afterNoise_)
      AppendJoint(out_, word);
    else if (!out_.Empty())
      out_.Append(", ");
    afterNoise_ = false;
    StuckWord parts = word.hasDigit && !word.isNumber ? TakeDigitsApart(word.text, choice_.letter) : StuckWord{};
    if (parts.IsOne()) {
      tookApart_ = true;
      out_.Append(parts.first);
      out_.Append(" ");
      sawNumber_ = sawNumber_ || IsDigit(parts.first.front());
      return CopyName(parts.second);
    }
    CopyName(word.text);
    sawNumber_ = sawNumber_ || word.hasDigit;
  }

  /** The first name behind a number may have its type stuck to it. */
  void CopyName(std::string_view word)
  {
    const bool hasDigit = std::any_of(word.begin(), word.end(), IsDigit);
    const bool mayBeStuck = sawNumber_ && !tookTypeApart_ && !hasDigit && !nextIsType_;
    const StuckWord parts = mayBeStuck && ExpandStreetType(word).empty() ? TakeTypeApart(word) : StuckWord{};
    if (!parts.IsOne()) {
      out_.Append(word);
      return;
    }
    tookApart_ = tookTypeApart_ = true;
    out_.Append(parts.first);
    out_.Append(" ");
    out_.Append(parts.second);
  }

  const InputText& words_;
  RepairChoice choice_;
  RepairedText& out_;
  bool isNoise_ = false;
  bool afterNoise_ = false;
  bool tookApart_ = false;
  bool movedNumber_ = false;
  bool tookTypeApart_ = false;
  bool sawNumber_ = false;
  bool nextIsType_ = false;
};

}  // namespace

bool HasDetour(const InputText& words)
{
  for (std::size_t i = 0; i < words.Count(); ++i)
    if (words[i].text == kVia) return true;
  return false;
}

std::string_view Repair(std::string_view text, RepairChoice choice, InputText& words, RepairBuffer& buffer,
                        Departures& departures)
{
  const bool hasLinks = RemoveLinks(text, buffer.withoutLinks);
  if (hasLinks && words.Read(buffer.withoutLinks.View()) != InputFault::None) return {};
  WordRepair repair(words, choice, buffer.repaired);
  repair.Run();
  if (hasLinks || repair.LeftOut()) departures.Add(Departure::Noise);
  if (repair.TookApart()) departures.Add(Departure::RunTogether);
  if (repair.MovedNumber()) departures.Add(Departure::NumberBehind);
  return departures.Empty() ? std::string_view() : buffer.repaired.View();
}

}  // namespace arf
