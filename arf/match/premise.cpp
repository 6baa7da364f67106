#include "arf/match/premise.h"

#include <algorithm>

#include "arf/match/occupancy_words.h"
#include "arf/match/postal_words.h"
#include "arf/tables/level_types.h"
#include "arf/tables/unit_types.h"

namespace arf {
namespace {

constexpr std::size_t kMaxNumberDigits = 9;
constexpr std::size_t kMaxSuffixLetters = 2;

bool IsOrdinalEnding(std::string_view letters)
{
  return letters == "ST" || letters == "ND" || letters == "RD" || letters == "TH";
}

bool IsSingleLetter(const Word& word)
{
  return word.text.size() == 1 && IsUpperLetter(word.text.front());
}

constexpr std::string_view kHouse = "HOUSE";

/** Whether two numbers can be the ends of a range: "12-14", "35D-35F". */
bool IsBefore(const HouseNumber& first, const HouseNumber& last)
{
  return first.number < last.number || (first.number == last.number && first.suffix < last.suffix);
}

bool IsLot(std::string_view word)
{
  return word == "LOT";
}

/** Words that say where an address lies from the number behind them: the number is a neighbour's. */
constexpr std::string_view kBesideWords[] = {"OPP",    "OPPOSITE", "BEHIND", "BESIDE", "NEAR", "NEXT", "ADJACENT",
                                             "ACROSS", "ABOVE",    "BELOW",  "UNDER",  "KM",   "PAST"};
/** Types of units and levels that hardly begin the name of a building. */
constexpr std::string_view kUsualTypes[] = {"UNIT", "FLAT", "APARTMENT", "LEVEL", "FLOOR", "LOT"};
constexpr std::string_view kLinks[] = {"TO", "FROM", "DOOR", "OF"};

template <std::size_t Count>
bool IsOneOf(const std::string_view (&list)[Count], std::string_view word)
{
  return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

/** A letter and a number: "F1" and "UF1" may be the unit F1, "U1" is unit 1. Empty when the word is none. */
std::string_view UnitNameIn(std::string_view word)
{
  const std::string_view name = word.substr(word.size() > 2 && word.front() == 'U' && IsUpperLetter(word[1]) ? 1 : 0);
  HouseNumber number;
  const bool isName =
      name.size() > 1 && name.front() != 'U' && IsUpperLetter(name.front()) && ReadHouseNumber(name.substr(1), number);
  return isName ? name : std::string_view();
}

}  // namespace

bool IsNumberSign(std::string_view word)
{
  return word == "NO" || word == "NUMBER" || word == "NR" || word == "NUM";
}

bool ReadHouseNumber(std::string_view word, HouseNumber& number)
{
  const auto letters = std::find_if_not(word.begin(), word.end(), IsDigit);
  const auto digits = static_cast<std::size_t>(letters - word.begin());
  if (digits == 0 || digits > kMaxNumberDigits || word.size() - digits > kMaxSuffixLetters) return false;
  number.suffix = word.substr(digits);
  if (!std::all_of(letters, word.end(), IsUpperLetter) || IsOrdinalEnding(number.suffix)) return false;
  number.number = 0;
  for (auto digit = word.begin(); digit != letters; ++digit)
    number.number = number.number * 10 + static_cast<std::uint32_t>(*digit - '0');
  return number.number != 0;
}

/** Reads from the street backwards: number, then unit, level and lot in any order, then the rest. */
class PremiseParser
{
 public:
  PremiseParser(const InputText& input, std::size_t first, Preference preference, Premises& result)
      : input_(input), first_(first), preference_(preference), result_(result)
  {
  }

  bool SawAmbiguousType() const { return sawAmbiguous_; }

  void Run(std::size_t end)
  {
    ReadRange(end);
    ReadSpelledRange(end);
    ReadJoinedNumbers(end);
    ReadDetachedSuffix(end);
    ReadSingleNumber(end);
    ReadPrefixedNumber(end);
    ReadLotOnly(end);
    ReadNumberBeforeUnit(end);
    if (!foundNumber_ || sawHouseSign_) ReadElements(Premise{}, end);
  }

  /**
   * Names of buildings may have numbers, or end like a level: "Studio 54", "Cricket Ground". All words are the name, or
   * those before a break are.
   */
  void ReadNamedBuilding(std::size_t end)
  {
    std::size_t nameEnd = end;
    while (nameEnd > first_ + 1 && input_[nameEnd - 1].before != Joint::Break) --nameEnd;
    if (nameEnd-- > first_ + 1 && MayBeName(nameEnd)) ReadBehindName(nameEnd, end);
    if (!MayBeName(end)) return;
    Premise premise;
    premise.building = {first_, end};
    premise.isLastResort = premise.buildingIsBinding = true;
    result_.Add(premise);
  }

 private:
  static bool MayBeInName(const Word& word)
  {
    constexpr std::size_t kShortest = 3;
    if (word.hasDigit || word.text.size() < kShortest || IsNumberSign(word.text)) return false;
    return !IsOneOf(kUsualTypes, ExpandUnitType(word.text)) && !IsOneOf(kUsualTypes, ExpandLevelType(word.text));
  }

  /** Whether the words up to `end` may be a name that is read as something else as well. */
  bool MayBeName(std::size_t end)
  {
    bool hasName = false;
    for (std::size_t i = first_; i < end && !hasName; ++i) hasName = MayBeInName(input_[i]);
    if (!hasName) return false;
    Premise ignored;
    return input_.HasDigit({first_, end}) || TakeElements(ignored, end) < end;
  }

  /** Reads what stands between a building's name and the street. */
  void ReadBehindName(std::size_t nameEnd, std::size_t end)
  {
    Premises behind;
    PremiseParser(input_, nameEnd, preference_, behind).Run(end);
    for (Premise premise : behind) {
      if (!premise.HasNumber() || !premise.building.Empty()) continue;
      premise.building = {first_, nameEnd};
      premise.isLastResort = premise.buildingIsBinding = true;
      result_.Add(premise);
    }
  }

  bool Has(std::size_t position) const { return position > first_; }
  const Word& Before(std::size_t position) const { return input_[position - 1]; }
  bool Joined(std::size_t position, Joint joint) const
  {
    return position > first_ && position < input_.Count() && input_[position].before == joint;
  }

  /** Whether the word before `position` is a lot's number. */
  bool FollowsLot(std::size_t position) const { return LotWords(position) > 0; }
  /** "Lot 5", "Lot No 5": how many words; 0 when they are none. */
  std::size_t LotWords(std::size_t position) const
  {
    if (!Has(position) || !Has(position - 1)) return 0;
    if (IsLot(Before(position - 1).text)) return 2;
    return IsNumberSign(Before(position - 1).text) && Has(position - 2) && IsLot(Before(position - 2).text) ? 3 : 0;
  }

  /** "12-14", "12A-14B"; "3-12" may also stand for "3/12". */
  void ReadRange(std::size_t end)
  {
    if (!Has(end) || !Has(end - 1) || !Joined(end - 1, Joint::Dash)) return;
    HouseNumber first, last;
    if (!ReadHouseNumber(Before(end), last)) return;
    const bool isRange = ReadHouseNumber(Before(end - 1), first) && IsBefore(first, last);
    if (isRange && !FollowsDesignator(end - 2)) ReadLeftOfRange(first, last, end - 2);
    Premise premise;
    SetNumber(premise, last);
    premise.lenientOnly = true;
    premise.departures.Add(Departure::DashPair);
    if (!premise.unit.number.Append(Before(end - 1).text) || !Before(end - 1).hasDigit) return;
    ReadBehindDesignator(premise, end - 2);
  }

  /** "12 to 14" */
  void ReadSpelledRange(std::size_t end)
  {
    if (!Has(end) || !Has(end - 1) || !Has(end - 2) || Before(end - 1).text != "TO") return;
    HouseNumber first, last;
    if (!ReadHouseNumber(Before(end), last) || !ReadHouseNumber(Before(end - 2), first) || !IsBefore(first, last))
      return;
    if (!FollowsDesignator(end - 3)) ReadLeftOfRange(first, last, end - 3);
  }

  /** "6 & 8", "6 and 8": two houses that may be one address; the second is never a house whose unit is the first. */
  void ReadJoinedNumbers(std::size_t end)
  {
    const std::size_t start = end - std::min(end, Has(end) && Before(end).afterAnd ? std::size_t{2} : std::size_t{3});
    HouseNumber first, last;
    if (start < first_ || end < start + 2 || !ReadHouseNumber(Before(end), last)) return;
    const bool isJoined = Before(end).afterAnd || (end == start + 3 && Before(end - 1).text == "AND");
    if (!isJoined || !ReadHouseNumber(input_[start], first) || !IsBefore(first, last)) return;
    Premise premise;
    premise.lenientOnly = true;
    premise.departures.Add(Departure::JoinedNumbers);
    if (!FollowsDesignator(start)) ReadLeftOfRange(first, last, start, premise);
  }

  void ReadLeftOfRange(const HouseNumber& first, const HouseNumber& last, std::size_t start, Premise premise = {})
  {
    SetNumber(premise, first);
    premise.numberLast = last.number;
    premise.numberLastSuffix = last.suffix;
    ReadLeftOfNumber(premise, start);
  }

  bool ReadHouseNumber(const Word& word, HouseNumber& number) const { return arf::ReadHouseNumber(word.text, number); }

  /** "12 A", "12-A" */
  void ReadDetachedSuffix(std::size_t end)
  {
    if (!Has(end) || !Has(end - 1) || !IsSingleLetter(Before(end))) return;
    const Joint joint = input_[end - 1].before;
    if ((joint != Joint::Space && joint != Joint::Dash) || !Before(end - 1).isNumber) return;
    HouseNumber number;
    if (!ReadHouseNumber(Before(end - 1), number)) return;
    Premise premise;
    SetNumber(premise, number);
    premise.numberFirstSuffix = Before(end).text;
    premise.departures.Add(Departure::DetachedSuffix);
    ReadLeftOfNumber(premise, end - 2);
  }

  void ReadSingleNumber(std::size_t end)
  {
    HouseNumber number;
    if (!Has(end) || Joined(end - 1, Joint::Dash) || !ReadHouseNumber(Before(end), number)) return;
    if (FollowsLot(end) || FollowsDesignator(end - 1)) return;
    Premise premise;
    SetNumber(premise, number);
    ReadLeftOfNumber(premise, end - 1);
  }

  /** "G12": some towns number so. */
  void ReadPrefixedNumber(std::size_t end)
  {
    if (!Has(end) || Joined(end - 1, Joint::Dash) || FollowsLot(end) || Designator(end - 1).count > 0) return;
    const std::string_view word = Before(end).text;
    const auto letters =
        static_cast<std::size_t>(std::find_if_not(word.begin(), word.end(), IsUpperLetter) - word.begin());
    HouseNumber number;
    if (letters == 0 || letters > kMaxSuffixLetters || !arf::ReadHouseNumber(word.substr(letters), number)) return;
    Premise premise;
    premise.numberFirst = number.number;
    premise.numberFirstSuffix = number.suffix;
    premise.numberPrefix = word.substr(0, letters);
    ReadElements(premise, end - 1);
  }

  /**
   * "Unit 12 Smith St" has a unit but no number; "House 12 Smith St" has one. A type that ends a longer text is part of
   * a name ("Town Hall 483"), and so is one that a comma separates from the number.
   */
  bool FollowsDesignator(std::size_t number)
  {
    if (!Has(number) || input_[number].before != Joint::Space) return false;
    const OccupancyWords words = Designator(number);
    if (words.count == 0 || StandsAlone(words.type) || words.type == kHouse) return false;
    const bool hasOwnNumber = ReadOccupancyBefore(input_, first_, number, preference_).count > words.count;
    if (hasOwnNumber) return false;  // "2nd Floor 12"
    return !IsInName(number - words.count);
  }

  /** "Lot 5 Smith Street" */
  void ReadLotOnly(std::size_t end)
  {
    if (!FollowsLot(end)) return;
    Premise premise;
    if (!Before(end).hasDigit || !premise.lot.Append(Before(end).text)) return;
    foundNumber_ = true;
    ReadElements(premise, end - LotWords(end));
  }

  /** "27 Rear Smith St", "112 (Lot 3) Smith St" */
  void ReadNumberBeforeUnit(std::size_t end)
  {
    Premise premise;
    const std::size_t position = TakeElements(premise, end);
    HouseNumber number;
    if (position == end || !Has(position) || Joined(position, Joint::Slash)) return;
    if (!ReadHouseNumber(Before(position), number)) return;
    if (FollowsLot(position) || Designator(position - 1).count > 0) return;
    premise.departures.Add(Departure::UnitBehindStreet);
    if (!Joined(position - 1, Joint::Dash)) {
      SetNumber(premise, number);
      return ReadLeftOfNumber(premise, position - 1);
    }
    HouseNumber first;
    if (!Has(position - 1) || !ReadHouseNumber(Before(position - 1), first) || !IsBefore(first, number)) return;
    SetNumber(premise, first);
    premise.numberLast = number.number;
    premise.numberLastSuffix = number.suffix;
    ReadLeftOfNumber(premise, position - 2);
  }

  void SetNumber(Premise& premise, const HouseNumber& number)
  {
    foundNumber_ = true;
    premise.numberFirst = number.number;
    premise.numberFirstSuffix = number.suffix;
  }

  /** @param start  the position of the number */
  void ReadLeftOfNumber(Premise premise, std::size_t start)
  {
    if (IsPostalNumber(start)) return;
    if (Joined(start, Joint::Slash)) return ReadSlashed(premise, start);
    std::size_t position = start;
    const bool hasLink = IsLinkOf(position);
    if (hasLink) {
      if (!Before(position - 1).hasDigit) ReadPassedOver(premise, position);
      --position;
    }
    if (Has(position) && IsHouseSign(position)) {
      sawHouseSign_ = true;  // some registers have the houses of a settlement as units without a number
      --position;
    } else if (Has(position) && IsNumberSign(Before(position).text)) {
      --position;
    }
    ReadElements(premise, position);
    if (!input_[start].afterAnd) ReadBarePair(premise, position, hasLink);
  }

  /** "Unit 3 of 12", "3 of 12", "Rear of 12" */
  bool IsLinkOf(std::size_t position) const
  {
    if (!Has(position) || !Has(position - 1) || Before(position).text != "OF") return false;
    return Before(position - 1).hasDigit || ReadOccupancyBefore(input_, first_, position - 1, preference_).count > 0;
  }

  /** "Rear of 12" where there is nothing but 12. */
  void ReadPassedOver(Premise premise, std::size_t position)
  {
    premise.building = {first_, position};
    premise.isLastResort = true;
    result_.Add(premise);
  }

  /** Whether the number is that of a box or bag before a street: "PO Box 12 Smith St" is no house. */
  bool IsPostalNumber(std::size_t number)
  {
    if (Designator(number).count > 0) return false;  // "LB" is a lobby too
    const std::size_t type = PostalTypeBefore(input_, first_, number);
    if (type == number) return false;
    const bool isBox = number - type == 1 && input_[type].text == "BOX";  // may end a name, "Juke Box"
    return !isBox || !IsInName(type);
  }

  /** "House 12", but not the end of "Opera House 12" and "House, 12". */
  bool IsHouseSign(std::size_t position) const
  {
    return Before(position).text == kHouse && Joined(position, Joint::Space) && !IsInName(position - 1);
  }

  /** "3/12", "U3/12", "Level 2/12", "4-6/35D", "Unit 3 / 12" */
  void ReadSlashed(const Premise& number, std::size_t start)
  {
    const Word& word = Before(start);
    if (OccupancyWords combined = Noted(ReadCombined(word.text, preference_)); combined.count > 0) {
      Premise premise = number;
      if (Take(premise, combined)) ReadElements(premise, start - 1);
    }
    Premise premise = number;
    Identifier& identifier = premise.unit.number;
    std::size_t position = start - 1;
    const bool isPair = Joined(position, Joint::Dash) && Before(position).hasDigit && word.hasDigit;
    const bool fits = isPair ? identifier.Append(Before(position).text) && identifier.Append("-") : true;
    if (!fits || !identifier.Append(word.text)) return;
    if (!word.hasDigit && !IsSingleLetter(word)) return;
    if (isPair) --position;
    ReadBehindDesignator(premise, position);
  }

  /**
   * The designator before an identifier that is set already, and what is left of it. The end of a name may look like a
   * designator ("Town Hall, 1/135"); behind a comma it is none, otherwise it may be either.
   */
  void ReadBehindDesignator(const Premise& identified, std::size_t position)
  {
    OccupancyWords words = Designator(position);
    if (words.count > 0 && ReadOccupancyBefore(input_, first_, position, preference_).count > words.count)
      words = {};  // "2nd Floor 3/12"
    const bool inName = words.count > 0 && IsInName(position - words.count);
    if (words.count > 0 && !(inName && input_[position].before == Joint::Break)) {
      Premise premise = identified;
      SetType(premise, words);
      ReadElements(premise, position - words.count);
    }
    if (words.count > 0 && !inName) return;
    Premise premise = identified;
    if (inName) premise.departures.Add(Departure::TypeInName);
    ReadElements(premise, position);
  }

  /** Gives the unit its type, which may turn it into a level or a lot. */
  static void SetType(Premise& premise, const OccupancyWords& words)
  {
    premise.unit.type = words.type;
    if (IsLot(words.type)) {
      premise.lot = premise.unit.number;
      premise.unit = {};
    } else if (words.isLevel) {
      premise.level = premise.unit;
      premise.unit = {};
    }
  }

  /** Whether the words from `start` on continue a text that is no number, so that they may be part of a name. */
  bool IsInName(std::size_t start) const
  {
    return start > first_ && input_[start].before != Joint::Break && !Before(start).hasDigit;
  }

  /** "3 12 Smith St", where nothing says that 3 is a unit, unlike "#3 12" and "3 of 12" (`isSaid`). */
  void ReadBarePair(Premise premise, std::size_t position, bool isSaid)
  {
    if (premise.unit.Written() || !Has(position) || !Before(position).hasDigit) return;
    if (MayBeUnitName(position) && UnitNameIn(Before(position).text) == Before(position).text)
      return;  // is read already
    if (FollowsLot(position) || ReadOccupancyBefore(input_, first_, position, preference_).count > 1) return;
    if (!premise.unit.number.Append(Before(position).text)) return;
    if (!isSaid && !Before(position).afterHash) {
      premise.lenientOnly = true;
      premise.departures.Add(Departure::BarePair);
    }
    ReadElements(premise, position - 1);
  }

  /** Units, levels and lots before `position`, then the rest. */
  void ReadElements(const Premise& premise, std::size_t position)
  {
    if (IsUnitLetter(premise, position)) return ReadUnitNamed(premise, Before(position).text, position);
    const bool mayBeWhole =
        premise.HasNumber() && !premise.unit.Written() && preference_ == Preference::Units && MayBeUnitName(position);
    if (mayBeWhole) ReadUnitNamed(premise, UnitNameIn(Before(position).text), position);
    ReadElementsAndRest(premise, position);
  }

  /** "F1", unless "Unit" or "Lot" stands before it. */
  bool MayBeUnitName(std::size_t position)
  {
    return Has(position) && !UnitNameIn(Before(position).text).empty() && !FollowsLot(position) &&
           Designator(position - 1).count == 0;
  }

  /** "A 12": a letter alone before the number; the last of several words is an initial ("J Smith B, 12"). */
  bool IsUnitLetter(const Premise& premise, std::size_t position) const
  {
    return premise.HasNumber() && !premise.unit.Written() && Has(position) && IsSingleLetter(Before(position)) &&
           Joined(position, Joint::Space) && !IsInName(position - 1);
  }

  /** The word before `position` says the unit's name. */
  void ReadUnitNamed(Premise premise, std::string_view name, std::size_t position)
  {
    if (premise.unit.number.Append(name)) ReadElementsAndRest(premise, position - 1);
  }

  /** "opposite 12", "next door to 12" */
  bool IsBeside(std::size_t position) const
  {
    if (position < input_.Count() && input_[position].before == Joint::Break) return false;
    while (Has(position) && IsOneOf(kLinks, Before(position).text)) --position;
    return Has(position) && IsOneOf(kBesideWords, Before(position).text);
  }

  void ReadElementsAndRest(Premise premise, std::size_t position)
  {
    const bool isBeside = premise.HasNumber() && IsBeside(position);
    position = TakeElements(premise, position);
    const std::size_t restEnd = position;
    // A building's name may stand between the unit and the number.
    std::size_t behindDigits = position;
    while (behindDigits > first_ && !Before(behindDigits).hasDigit) --behindDigits;
    if (behindDigits > first_ && behindDigits < position) {
      Premise withUnit = premise;
      const std::size_t left = TakeElements(withUnit, behindDigits);
      if (left == first_) {
        withUnit.building = {behindDigits, restEnd};
        result_.Add(withUnit);
        return;
      }
    }
    premise.building = {first_, restEnd};
    premise.buildingIsBinding = behindDigits > first_ || isBeside;
    result_.Add(premise);
  }

  std::size_t TakeElements(Premise& premise, std::size_t position)
  {
    for (;;) {
      const std::size_t lotWords = LotWords(position);
      if (lotWords > 0 && premise.lot.Empty() && premise.lot.Append(Before(position).text)) {
        position -= lotWords;
        continue;
      }
      const OccupancyWords words = Noted(ReadOccupancyBefore(input_, first_, position, preference_));
      if (words.count == 0 || !Take(premise, words)) return position;
      position -= words.count;
    }
  }

  /** False, and nothing changed, when the premise has another such part already or the number is too long for one. */
  static bool Take(Premise& premise, const OccupancyWords& words)
  {
    Occupancy& part = words.isLevel ? premise.level : premise.unit;
    Identifier number;
    const bool isSame = part.type.empty() && !part.number.Empty() && part.number.View() == words.number;
    if ((part.Written() && !isSame) || !number.Append(words.number)) return false;
    part = {words.type, number};
    return true;
  }

  OccupancyWords Designator(std::size_t end) { return Noted(ReadDesignator(input_, first_, end, preference_)); }
  OccupancyWords Noted(const OccupancyWords& words)
  {
    sawAmbiguous_ = sawAmbiguous_ || (words.count > 0 && words.isAmbiguous);
    return words;
  }

  const InputText& input_;
  std::size_t first_;
  Preference preference_;
  bool sawAmbiguous_ = false;
  bool foundNumber_ = false;
  bool sawHouseSign_ = false;
  Premises& result_;
};

Premises::Premises(const InputText& input, WordRange words)
{
  PremiseParser units(input, words.first, Preference::Units, *this);
  units.Run(words.last);
  if (units.SawAmbiguousType()) PremiseParser(input, words.first, Preference::Levels, *this).Run(words.last);
  units.ReadNamedBuilding(words.last);
}

}  // namespace arf
