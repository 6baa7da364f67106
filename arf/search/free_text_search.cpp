#include "arf/search/free_text_search.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <tuple>

#include "arf/match/canonical_words.h"
#include "arf/match/postal_words.h"
#include "arf/tables/level_types.h"
#include "arf/tables/postal_types.h"
#include "arf/tables/states.h"
#include "arf/tables/street_types.h"
#include "arf/tables/unit_types.h"

namespace arf {
namespace {

// Bounds of the work: index words of a prefix, names a word brings, names, localities and streets looked at.
constexpr std::uint32_t kMaxPrefixWords = 16;
constexpr std::size_t kMaxNamesOfWord = 2048;
constexpr std::size_t kMaxLinks = 32768;
constexpr std::size_t kMaxNames = 48;
constexpr std::size_t kMaxLocalities = 128;
constexpr std::size_t kMaxStreetsOfName = 256;
constexpr std::size_t kMaxBuildingPoints = 1024;
constexpr std::size_t kMaxNumberedStreets = 256;
constexpr std::size_t kMaxGroups = 16384;

// Weights.
constexpr int kLeastWeight = 8;
constexpr int kMostRarity = 16;
constexpr int kPostcodeWeight = 20;
constexpr int kTypeWeight = 4;
constexpr int kNumberWeight = 14;
constexpr int kUnitWeight = 8;
constexpr int kPostalWeight = 20;
constexpr int kMissingWord = 4;

constexpr std::size_t kShortestPrefix = 3;
constexpr std::size_t kShortestMistyped = 4;

int WordsIn(std::string_view key)
{
  return key.empty() ? 0 : 1 + static_cast<int>(std::count(key.begin(), key.end(), ' '));
}

bool IsPostcode(const Word& word)
{
  return word.isNumber && word.text.size() == 4;
}

}  // namespace

FreeTextSearch::FreeTextSearch(const Database& database)
    : database_(database), index_(database.Words()), postalLists_(database)
{
}

void FreeTextSearch::Reserve()
{
  links_.reserve(kMaxLinks);
  for (std::vector<NameHit>* hits : {&streets_, &localities_, &buildings_}) hits->reserve(kMaxLinks);
  localityHits_.reserve(kMaxLocalities + 1);
  groups_.reserve(kMaxGroups);
  answered_.reserve(kMaxGroups);
  buildingGroups_.reserve(kMaxGroups);
}

InputFault FreeTextSearch::Start(std::string_view text, PointFilter* filter)
{
  isStarted_ = false;
  atPoint_ = false;
  filter_ = filter;
  const InputFault fault = input_.Read(text);
  if (fault != InputFault::None) return fault;
  Reserve();
  ReadWords();
  CollectNames(Named::Street, streets_);
  CollectNames(Named::Locality, localities_);
  CollectNames(Named::Building, buildings_);
  CollectLocalities();
  FindGroups();
  nextGroup_ = 0;
  isStarted_ = true;
  EnterGroup();
  Advance();
  return InputFault::None;
}

/* Words. */

/** The first kind of postal delivery; a single word that is short for one only with a number behind it. */
void FreeTextSearch::ReadPostalType()
{
  constexpr std::size_t kLongestType = 5;
  postalType_ = {};
  postalWords_ = {};
  const std::size_t count = std::min(input_.Count(), kMaxWords);
  for (std::size_t first = 0; first < count && postalType_.empty(); ++first) {
    if (!MayBeginPostalType(input_[first].text.front())) continue;
    for (std::size_t last = std::min(count, first + kLongestType); last > first && postalType_.empty(); --last) {
      const std::string_view text = input_.Text(first, last), type = ExpandPostalType(text);
      const bool isNumbered = last < count && input_[last].hasDigit;
      if (type.empty() || (text != type && last == first + 1 && !isNumbered)) continue;
      postalType_ = type;
      postalWords_ = {first, last};
    }
  }
}

void FreeTextSearch::ReadWords()
{
  wordCount_ = 0;
  numberCount_ = 0;
  state_ = {};
  ReadPostalType();
  postalMask_ = 0;
  for (std::size_t i = 0; i < input_.Count() && wordCount_ < kMaxWords; ++i) {
    const std::string_view text = input_[i].text;
    if (text.size() <= 3 && StateCode(text) == text && !text.empty()) {
      state_ = StateCode(text);
      continue;
    }
    words_[wordCount_] = {text, ExpandStreetType(text)};
    FindMistyped(wordCount_);
    WeighWord(wordCount_);
    if (input_[i].hasDigit) AddNumber(wordCount_);
    if (i >= postalWords_.first && i < postalWords_.last) postalMask_ |= BitOf(wordCount_, Likeness::Same);
    if (IsPostcode(input_[i]) && !database_.LocalitiesOfPostcode(text).empty())
      words_[wordCount_].weight = std::max(words_[wordCount_].weight, kPostcodeWeight);
    ++wordCount_;
  }
}

/** Digits with up to two letters behind them are a number; anything with a digit may be a unit's. */
void FreeTextSearch::AddNumber(std::size_t word)
{
  if (numberCount_ == kMaxNumbers) return;
  const std::string_view text = words_[word].text;
  WrittenNumber written{0, {}, text, word, {}};
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), written.number);
  const std::string_view rest = text.substr(static_cast<std::size_t>(end - text.data()));
  const bool isNumber =
      fault == std::errc() && rest.size() <= 2 && std::all_of(rest.begin(), rest.end(), IsUpperLetter);
  written.suffix = isNumber ? rest : std::string_view();
  if (!isNumber) written.number = 0;
  PostalNumber box;
  if (!isNumber && !postalType_.empty() && ReadPostalNumber(text, box)) {
    written.number = box.number;
    written.prefix = box.prefix;
    written.suffix = box.suffix;
  }
  numbers_[numberCount_++] = written;
}

/** Numbers are never mistyped, and what says the type of a street or unit is no name. */
void FreeTextSearch::FindMistyped(std::size_t word)
{
  QueryWord& query = words_[word];
  const bool hasDigit = std::any_of(query.text.begin(), query.text.end(), IsDigit);
  const bool isType =
      !query.streetType.empty() || !ExpandUnitType(query.text).empty() || !ExpandLevelType(query.text).empty();
  if (query.text.size() < kShortestMistyped || hasDigit || isType) return;
  bool isKnown = false;
  ForEachIndexWord(word, [&](std::uint32_t, Likeness likeness) { isKnown = isKnown || likeness == Likeness::Same; });
  if (!isKnown) query.mistypedCount = index_.Mistyped(query.text, query.mistyped);
}

/** Calls `visit` with each word of the index that a written one stands for. */
template <class Visit>
void FreeTextSearch::ForEachIndexWord(std::size_t word, Visit visit) const
{
  const std::string_view text = words_[word].text;
  const std::string_view canonical = CanonicalWord(text);
  bool isFound = false;
  const auto look = [&](std::string_view written) {
    const auto found = index_.Find(written);
    if (found) visit(*found, Likeness::Same);
    isFound = isFound || found;
  };
  look(text);
  if (canonical != text) look(canonical);
  for (const CanonicalRow& row : CanonicalRows())
    if (row.canonical == canonical && row.written != text) look(row.written);
  if (isFound || text.size() < kShortestPrefix) return;
  const IndexRange range = index_.WithPrefix(text);
  for (std::uint32_t i = 0; i < std::min(range.count, kMaxPrefixWords); ++i)
    visit(range.first + i, Likeness::LongerOne);
  for (std::size_t i = 0; i < words_[word].mistypedCount; ++i) visit(words_[word].mistyped[i], Likeness::Mistyped);
}

void FreeTextSearch::WeighWord(std::size_t word)
{
  std::size_t names = 0, mistypedNames = 0;
  bool isPrefix = false;
  ForEachIndexWord(word, [&](std::uint32_t indexWord, Likeness likeness) {
    isPrefix = isPrefix || likeness == Likeness::LongerOne;
    for (const Named kind : {Named::Street, Named::Locality, Named::Building})
      (likeness == Likeness::Mistyped ? mistypedNames : names) += index_.NamesWith(kind, indexWord).size();
  });
  words_[word].weight = RarityWeight(names) / (isPrefix ? 2 : 1);
  words_[word].mistypedWeight = RarityWeight(mistypedNames) / 3;
}

/** The weight of a word that so many names have. */
int FreeTextSearch::RarityWeight(std::size_t names) const
{
  if (names == 0) return 0;
  const std::size_t all =
      std::size_t{database_.StreetNameCount()} + database_.LocalityNameCount() + index_.BuildingCount();
  return kLeastWeight + std::min(kMostRarity, static_cast<int>(std::bit_width(all / names)));
}

int FreeTextSearch::Weight(WordMask words) const
{
  int weight = 0;
  for (std::size_t i = 0; i < wordCount_; ++i) {
    if ((words & BitOf(i, Likeness::Same)) != 0)
      weight += words_[i].weight;
    else if ((words & BitOf(i, Likeness::Mistyped)) != 0)
      weight += words_[i].mistypedWeight;
  }
  return weight;
}

/* Names. */

std::string_view FreeTextSearch::NameOf(Named kind, std::uint32_t id) const
{
  switch (kind) {
    case Named::Street:
      return database_.StreetName(id);
    case Named::Locality:
      return database_.LocalityName(id);
    case Named::Building:
      return index_.Building(id);
  }
  return {};
}

/** The names of a kind that collect most weight. */
void FreeTextSearch::CollectNames(Named kind, std::vector<NameHit>& hits)
{
  links_.clear();
  for (std::size_t word = 0; word < wordCount_; ++word) {
    ForEachIndexWord(word, [&](std::uint32_t indexWord, Likeness likeness) {
      const std::span<const std::uint32_t> names = index_.NamesWith(kind, indexWord);
      const std::size_t count = std::min({names.size(), kMaxNamesOfWord, kMaxLinks - links_.size()});
      for (const std::uint32_t id : names.first(count)) links_.push_back({id, BitOf(word, likeness), 0, 0});
    });
  }
  std::sort(links_.begin(), links_.end(), [](const NameHit& a, const NameHit& b) { return a.id < b.id; });
  hits.clear();
  for (const NameHit& link : links_) {
    if (hits.empty() || hits.back().id != link.id) hits.push_back(link);
    hits.back().words |= link.words;
  }
  for (NameHit& hit : hits) {
    hit.missing = std::max(0, WordsIn(NameOf(kind, hit.id)) - std::popcount(Written(hit.words)));
    hit.score = Weight(hit.words) - kMissingWord * hit.missing;
  }
  const std::size_t kept = std::min(hits.size(), kMaxNames);
  std::partial_sort(
      hits.begin(), hits.begin() + static_cast<std::ptrdiff_t>(kept), hits.end(),
      [](const NameHit& a, const NameHit& b) { return a.score > b.score || (a.score == b.score && a.id < b.id); });
  hits.resize(kept);
}

void FreeTextSearch::CollectLocalities()
{
  localityHits_.clear();
  for (const NameHit& name : localities_)
    for (const std::uint32_t index : database_.LocalitiesNamed(name.id)) AddLocality(index, name.words, name.missing);
  for (std::size_t word = 0; word < wordCount_; ++word)
    for (const std::uint32_t index : database_.LocalitiesOfPostcode(words_[word].text))
      AddLocality(index, BitOf(word, Likeness::Same), 0);
}

void FreeTextSearch::AddLocality(std::uint32_t index, WordMask words, int missing)
{
  if (IsOtherState(database_.LocalityState(index))) return;
  const auto known = std::find_if(localityHits_.begin(), localityHits_.end(),
                                  [index](const LocalityHit& hit) { return hit.locality == index; });
  if (known != localityHits_.end())
    known->words |= words;
  else if (localityHits_.size() < kMaxLocalities)
    localityHits_.push_back({index, words, missing});
}

/* Groups. */

void FreeTextSearch::FindGroups()
{
  groups_.clear();
  buildingGroups_.clear();
  AddPostal();
  for (const NameHit& name : streets_) AddStreetsOfLocalities(name);
  int best = 0;
  for (const Group& group : groups_) best = std::max(best, group.score);
  for (const NameHit& name : streets_) AddStreetsAnywhere(name, best);
  MergeStreets();
  AddNumbers();
  for (const NameHit& name : buildings_) AddBuilding(name);
  AddLocalities();
  RankGroups();
}

void FreeTextSearch::AddStreetsOfLocalities(const NameHit& name)
{
  for (const LocalityHit& hit : localityHits_) {
    const IndexRange streets = database_.StreetsOf(database_.LocalityStreets(hit.locality), name.id);
    for (std::uint32_t i = 0; i < streets.count; ++i) AddStreet(streets.first + i, name, &hit);
  }
}

/** Whatever else of a street was written, it would be left out beside a group with the best score. */
void FreeTextSearch::AddStreetsAnywhere(const NameHit& name, int bestScore)
{
  constexpr int kMostFurther = kTypeWeight + kNumberWeight + kUnitWeight;
  if ((name.score + kMostFurther) * 2 < bestScore) return;
  const std::span<const std::uint32_t> streets = database_.StreetsNamed(name.id);
  for (const std::uint32_t index : streets.first(std::min(streets.size(), kMaxStreetsOfName)))
    AddStreet(index, name, nullptr);
}

void FreeTextSearch::AddStreet(std::uint32_t index, const NameHit& name, const LocalityHit* locality)
{
  if (groups_.size() >= kMaxGroups / 4) return;
  const Street street = database_.StreetAt(index);
  if (street.points.count == 0) return;
  if (!locality && IsOtherState(database_.LocalityState(street.locality))) return;
  const WordMask words = name.words | (locality ? locality->words : 0);
  Group group;
  group.score = Weight(words) - kMissingWord * (name.missing + (locality ? locality->missing : 0));
  for (std::size_t i = 0; i < wordCount_; ++i) {
    if ((Written(words) >> i & 1U) != 0 || words_[i].streetType.empty() || words_[i].streetType != street.type)
      continue;
    group.score += kTypeWeight;
    break;
  }
  group.count = street.points.count;
  group.index = index;
  groups_.push_back(group);
}

void FreeTextSearch::AddPostal()
{
  if (postalType_.empty()) return;
  for (const LocalityHit& hit : localityHits_) {
    const IndexRange kinds = database_.PostalStreetsOf(database_.LocalityAt(hit.locality));
    for (std::uint32_t i = kinds.first; i - kinds.first < kinds.count; ++i) AddPostalStreet(i, &hit);
  }
  for (std::size_t kind = 0; kind < postalLists_.Count(); ++kind)
    for (const std::uint32_t index : postalLists_.At(kind)) AddPostalStreet(index, nullptr);
}

void FreeTextSearch::AddPostalStreet(std::uint32_t index, const LocalityHit* locality)
{
  const Street street = database_.StreetAt(index);
  if (!street.isPostal || street.type != postalType_) return;
  const std::size_t before = groups_.size();
  AddStreet(index, {kNoIndex, postalMask_, 0, 0}, locality);
  if (groups_.size() > before) groups_.back().score += kPostalWeight;
}

/** A street that was found with and without its locality counts once, with the better score. */
void FreeTextSearch::MergeStreets()
{
  std::sort(groups_.begin(), groups_.end(), [](const Group& a, const Group& b) {
    return a.index < b.index || (a.index == b.index && a.score > b.score);
  });
  const auto end =
      std::unique(groups_.begin(), groups_.end(), [](const Group& a, const Group& b) { return a.index == b.index; });
  groups_.erase(end, groups_.end());
}

void FreeTextSearch::AddNumbers()
{
  if (numberCount_ == 0) return;
  Sort();
  const std::size_t count = std::min(groups_.size(), kMaxNumberedStreets);
  for (std::size_t i = 0; i < count; ++i) AddNumbersOf(i);
}

/**
 * Adds the groups of a street's points that have a written number. The last written number is the likeliest to be that
 * of the house.
 */
void FreeTextSearch::AddNumbersOf(std::size_t place)
{
  const Street street = database_.StreetAt(groups_[place].index);
  for (std::size_t i = numberCount_; i-- > 0;) {
    const Fit fit = FitOf(street, i);
    if (fit == kAnyNumber) continue;
    groups_[place].bestFit = fit;
    groups_[place].number = static_cast<std::uint8_t>(i);
    Group group = groups_[place];
    group.fit = kNumberFits;
    group.score += kNumberWeight;
    groups_.push_back(group);
    if (fit == kNumberFits) return;
    group.fit = kUnitFits;
    group.score += kUnitWeight;
    groups_.push_back(group);
    return;
  }
}

FreeTextSearch::Fit FreeTextSearch::FitOf(const Street& street, std::size_t number) const
{
  constexpr int kMostPoints = 512;
  if (numbers_[number].number == 0) return kAnyNumber;
  Fit best = kAnyNumber;
  Point point;
  PointCursor cursor = database_.PointsNumbered(street, numbers_[number].number);
  for (int i = 0; i < kMostPoints && best != kUnitFits && cursor.Next(point); ++i)
    best = std::max(best, FitOf(point, number));
  return best;
}

FreeTextSearch::Fit FreeTextSearch::FitOf(const Point& point, std::size_t number) const
{
  const WrittenNumber& written = numbers_[number];
  const bool isFirst = point.numberFirst == written.number;
  const bool isInRange = point.numberFirst <= written.number && written.number <= point.numberLast;
  if ((!isFirst && !isInRange) || point.numberPrefix != written.prefix) return kAnyNumber;
  if (!written.suffix.empty() && written.suffix != point.numberFirstSuffix &&
      (written.number != point.numberLast || written.suffix != point.numberLastSuffix))
    return kAnyNumber;
  const bool hasUnit = number > 0 && !point.unitNumber.empty() && point.unitNumber == numbers_[number - 1].text;
  return hasUnit ? kUnitFits : kNumberFits;
}

void FreeTextSearch::AddBuilding(const NameHit& name)
{
  const std::span<const std::uint32_t> points = index_.PointsOf(name.id);
  const std::size_t count = std::min(points.size(), kMaxBuildingPoints);
  for (std::size_t begin = 0, end = 0; begin < count; begin = end) {
    const std::uint32_t street = database_.StreetOf(points[begin]);
    if (street == kNoIndex) return;
    const IndexRange range = database_.StreetAt(street).points;
    for (end = begin + 1; end < count && points[end] > points[begin] && points[end] - range.first < range.count;
         ++end) {
    }
    AddBuildingPoints(name, {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end - begin)});
  }
}

/** What a building's boxes weigh more when they are of the kind, or one has the number, that was written. */
int FreeTextSearch::PostalWeight(const NameHit& name, IndexRange points, const Street& street) const
{
  if (!street.isPostal || street.type != postalType_) return 0;
  const std::span<const std::uint32_t> all = index_.PointsOf(name.id);
  for (std::uint32_t i = 0; i < points.count; ++i)
    for (std::size_t number = 0; number < numberCount_; ++number)
      if (numbers_[number].number != 0 && FitOf(database_.PointAt(all[points.first + i]), number) != kAnyNumber)
        return kPostalWeight + kNumberWeight;
  return kPostalWeight;
}

/** @param points  places in the building's list, of points in one street */
void FreeTextSearch::AddBuildingPoints(const NameHit& name, IndexRange points)
{
  if (groups_.size() >= kMaxGroups / 2) return;
  const Street street = database_.StreetAt(database_.StreetOf(index_.PointsOf(name.id)[points.first]));
  if (IsOtherState(database_.LocalityState(street.locality))) return;
  WordMask words = name.words;
  for (const NameHit& other : streets_)
    if (other.id == street.nameIndex) words |= other.words;
  for (const LocalityHit& hit : localityHits_)
    if (hit.locality == street.locality) words |= hit.words;
  const int postalWeight = PostalWeight(name, points, street);
  if (postalWeight > 0) words |= postalMask_;
  Group group;
  group.kind = Kind::Building;
  group.score = Weight(words) - kMissingWord * name.missing + postalWeight;
  group.count = points.count;
  group.index = name.id;
  group.points = points;
  group.street = street.index;
  groups_.push_back(group);
}

void FreeTextSearch::AddLocalities()
{
  for (const LocalityHit& hit : localityHits_) {
    Group group;
    group.kind = Kind::Locality;
    group.score = Weight(hit.words) - kMissingWord * hit.missing;
    group.index = hit.locality;
    const IndexRange streets = database_.LocalityStreets(hit.locality);
    if (streets.count == 0) continue;
    const IndexRange first = database_.StreetAt(streets.first).points;
    const IndexRange last = database_.StreetAt(streets.first + streets.count - 1).points;
    group.count = last.first + last.count - first.first;
    groups_.push_back(group);
  }
}

void FreeTextSearch::Sort()
{
  const auto rank = [](const Group& g) {
    return std::tuple(-g.score, g.kind, ~g.count, g.index, g.points.first, static_cast<int>(kUnitFits) - g.fit);
  };
  std::sort(groups_.begin(), groups_.end(), [&](const Group& a, const Group& b) { return rank(a) < rank(b); });
}

/** Groups with less than half of the best score are no answers. */
void FreeTextSearch::RankGroups()
{
  Sort();
  const int best = groups_.empty() ? 0 : groups_.front().score;
  std::erase_if(groups_, [best](const Group& group) { return group.score <= 0 || group.score * 2 < best; });
  answered_.clear();
  for (std::size_t i = 0; i < groups_.size(); ++i) {
    const Group& group = groups_[i];
    if (group.kind == Kind::Street) answered_.push_back({group.index, group.fit, group.number});
    if (group.kind == Kind::Building) buildingGroups_.push_back(static_cast<std::uint32_t>(i));
  }
  std::sort(answered_.begin(), answered_.end());
}

/* The walk over the groups. */

void FreeTextSearch::EnterGroup()
{
  cursor_ = {};
  localityStreets_ = {};
  nextBuildingPoint_ = 0;
  if (nextGroup_ == groups_.size()) return;
  const Group& group = groups_[nextGroup_];
  if (group.kind == Kind::Locality) localityStreets_ = database_.LocalityStreets(group.index);
  if (group.kind != Kind::Street) return;
  const Street street = database_.StreetAt(group.index);
  cursor_ = group.fit == kAnyNumber ? database_.Points(street)
                                    : database_.PointsNumbered(street, numbers_[group.number].number);
}

void FreeTextSearch::Advance()
{
  atPoint_ = false;
  while (!atPoint_ && nextGroup_ < groups_.size()) {
    if (!NextInGroup()) {
      ++nextGroup_;
      EnterGroup();
      continue;
    }
    atPoint_ = TakesInGroup(groups_[nextGroup_]) && (!filter_ || filter_->Takes(point_.ordinal));
  }
}

bool FreeTextSearch::NextInGroup()
{
  const Group& group = groups_[nextGroup_];
  if (group.kind == Kind::Building) {
    const std::span<const std::uint32_t> points = index_.PointsOf(group.index);
    if (nextBuildingPoint_ == group.points.count) return false;
    point_ = database_.PointAt(points[group.points.first + nextBuildingPoint_++]);
    return true;
  }
  while (!cursor_.Next(point_)) {
    if (localityStreets_.count == 0) return false;
    const std::uint32_t street = localityStreets_.first++;
    --localityStreets_.count;
    const AnsweredStreet* answered = FindAnswered(street);
    if (!answered || answered->least != kAnyNumber) cursor_ = database_.Points(database_.StreetAt(street));
  }
  return true;
}

/** Whether the point belongs to no other group. */
bool FreeTextSearch::TakesInGroup(const Group& group) const
{
  if (group.kind == Kind::Building) return true;
  if (IsInBuilding(point_.ordinal, point_.street)) return false;
  if (group.kind == Kind::Locality) {
    const AnsweredStreet* answered = FindAnswered(point_.street);
    return !answered || FitOf(point_, answered->number) < answered->least;
  }
  return group.bestFit == kAnyNumber || FitOf(point_, group.number) == group.fit;
}

bool FreeTextSearch::IsInBuilding(std::uint32_t ordinal, std::uint32_t street) const
{
  return std::any_of(buildingGroups_.begin(), buildingGroups_.end(), [&](std::uint32_t place) {
    const Group& group = groups_[place];
    if (group.street != street) return false;
    const std::span<const std::uint32_t> all = index_.PointsOf(group.index);
    const auto begin = all.begin() + group.points.first;
    return std::binary_search(begin, begin + group.points.count, ordinal);
  });
}

/** Null where the street has no groups; otherwise what its groups answer altogether. */
const FreeTextSearch::AnsweredStreet* FreeTextSearch::FindAnswered(std::uint32_t street) const
{
  const auto found = std::lower_bound(answered_.begin(), answered_.end(), AnsweredStreet{street, kAnyNumber, 0});
  return found != answered_.end() && found->street == street ? &*found : nullptr;
}

}  // namespace arf
