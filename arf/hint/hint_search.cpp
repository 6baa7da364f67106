#include "arf/hint/hint_search.h"

#include <algorithm>
#include <array>

#include "arf/format/partition_point.h"
#include "arf/match/occupancy_words.h"
#include "arf/match/point_search.h"
#include "arf/match/postal_words.h"
#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::size_t kMaxPremiseWords = 12;
constexpr std::size_t kMaxNameWords = 6;
constexpr std::size_t kMaxTypeWords = 3;
constexpr std::size_t kMaxSuffixWords = 2;
constexpr std::size_t kLeastMistyped = 4;  ///< letters; shorter names are too little to see an error in

// What a search looks at before it makes do with what it has; only texts that fit very much come near it.
constexpr std::uint32_t kMaxVisited = 1500;
constexpr std::uint32_t kMaxCompared = 96;
constexpr std::uint32_t kMaxPoints = 20'000;
constexpr std::size_t kLeastScanned = 2;  ///< letters; so many streets begin with fewer that the next one is awaited
constexpr std::size_t kMaxScanned = 400;  ///< streets or localities behind the listed ones

// Ranks: how well a hint fits. The number counts in its lowest two bits.
constexpr std::uint8_t kUnfinishedRank = 4;  ///< the last word is a part of a longer one
constexpr std::uint8_t kSpellingRank = 8;

/** Localities take up to two in five places while streets fit as well. */
std::size_t PlacesKept(std::size_t most)
{
  return std::max<std::size_t>(1, most * 2 / 5);
}

/** The rest of the words from `first` on that have no break between them, at most `most`. */
std::size_t EndOfPart(const InputText& words, std::size_t first, std::size_t most)
{
  std::size_t end = first + 1;
  while (end < words.Count() && end - first < most && words[end].before != Joint::Break) ++end;
  return end;
}

/** Whether a type or suffix begins as it was typed; "CUL DE" begins CUL-DE-SAC. */
bool Begins(std::string_view stored, std::string_view typed)
{
  const auto isSame = [](char a, char b) { return a == b || (a == '-' && b == ' '); };
  return stored.size() >= typed.size() &&
         std::equal(typed.begin(), typed.end(), stored.begin(), [&](char b, char a) { return isSame(a, b); });
}

bool FitsWord(std::string_view stored, std::string_view written, std::string_view full, bool open,
              std::string_view (*abbreviate)(std::string_view))
{
  if (written.empty()) return true;
  if (stored.empty()) return false;
  if (stored == full) return true;
  if (!open) return false;
  return Begins(stored, written) || Begins(abbreviate(stored), written);
}

}  // namespace

bool HintSearch::StreetEnding::Fits(const Street& street) const
{
  return FitsWord(street.type, type, fullType, isTypeOpen, AbbreviateStreetType) &&
         FitsWord(street.suffix, suffix, fullSuffix, isSuffixOpen, AbbreviateStreetSuffix);
}

InputFault HintSearch::Search(std::string_view text, std::string_view place, std::size_t most)
{
  for (HintList* list : {&streets_, &localities_, &hints_}) list->Clear();
  most_ = std::clamp<std::size_t>(most, 1, HintList::kMax);
  visited_ = compared_ = points_ = 0;
  if (const InputFault fault = typed_.Read(text); fault != InputFault::None) return fault;
  if (const InputFault fault = context_.Read(place); fault != InputFault::None) return fault;
  ReadContext();
  if (typed_.Count() > 0 && (!hasContext_ || contextCount_ > 0)) RunPasses();
  Merge();
  return InputFault::None;
}

void HintSearch::ReadContext()
{
  hasContext_ = context_.Count() > 0;
  contextCount_ = hasContext_ ? placeReader_.Read(context_, 0, false, contextPlaces_) : 0;
  if (hasContext_ && contextCount_ == 0) contextCount_ = placeReader_.Read(context_, 0, true, contextPlaces_);
}

/** What needs less to be forgiven comes first; the next pass is made only while nothing has been found. */
void HintSearch::RunPasses()
{
  constexpr Pass kPasses[] = {{},
                              {.unlikely = true},
                              {.streetTypo = true},
                              {.placeTypo = true},
                              {.streetTypo = true, .placeTypo = true},
                              {.anyStreetType = true}};
  for (const Pass& pass : kPasses) {
    if (!IsNothing()) break;
    Run(pass);
  }
  if (pass_.unlikely || pass_.streetTypo || pass_.placeTypo || !MayBeMistyped()) return;
  Run({.streetTypo = true, .sureStart = true});
  Run({.placeTypo = true, .sureStart = true});
}

/** A name that is not finished may begin few names as it stands because it is mistyped. */
bool HintSearch::MayBeMistyped() const
{
  constexpr std::size_t kFew = 3;
  const auto isUnfinished = [](const HintList& list) {
    return list.Empty() || (list[0].rank >= kUnfinishedRank && list[0].rank < kSpellingRank);
  };
  return !IsNothing() && streets_.Count() + localities_.Count() < kFew && isUnfinished(streets_) &&
         isUnfinished(localities_);
}

void HintSearch::Run(const Pass& pass)
{
  pass_ = pass;
  if (!pass.streetTypo && !pass.anyStreetType) {
    SearchLocalities();
    SearchPostal();
  }
  SearchPremises();
}

void HintSearch::SearchPremises()
{
  const bool beginsWithNumber = typed_[0].isNumber && (pass_.streetTypo || pass_.placeTypo);
  if (!beginsWithNumber) SearchStreets(nullptr, 0);
  const std::size_t last = std::min(typed_.Count(), kMaxPremiseWords);
  for (std::size_t end = 1; end <= last; ++end) {
    if (!MayEndPremise(end)) continue;
    const Premises premises(typed_.Words(), {0, end});
    for (const Premise& premise : premises)
      if (IsUsable(premise, end)) SearchStreets(&premise, end);
  }
}

/** A number, "12 A", or a building's name with a comma behind it. */
bool HintSearch::MayEndPremise(std::size_t end) const
{
  const Word& last = typed_[end - 1];
  if (last.hasDigit) return true;
  if (end < typed_.Count() && typed_[end].before == Joint::Break) return true;
  const bool isSuffix = end > 1 && last.text.size() == 1 && typed_[end - 2].isNumber;
  return isSuffix && !typed_.IsOpen({end - 1, end});
}

bool HintSearch::IsUsable(const Premise& premise, std::size_t end) const
{
  if (premise.lenientOnly != pass_.unlikely) return false;
  if (end == typed_.Count())
    return premise.HasNumber() && premise.building.Empty() && !typed_[end - 1].text.starts_with('0');
  if (premise.HasNumber() || !premise.lot.Empty()) return true;
  return typed_[end].before == Joint::Break && !premise.building.Empty() && !typed_.Words().HasDigit(premise.building);
}

void HintSearch::SearchStreets(const Premise* premise, std::size_t first)
{
  Query query;
  query.premise = premise;
  if (first == typed_.Count()) {
    const std::optional<NameSpan> all = streetTree_.All();
    if (!all || pass_.streetTypo || pass_.placeTypo) return;
    query.names = *all;
    return Visit(query);
  }
  for (std::size_t end = EndOfPart(typed_.Words(), first, kMaxNameWords); end > first; --end)
    SearchName(query, {first, end});
}

/** The names that some words may be, each with what stands behind them. */
void HintSearch::SearchName(Query query, WordRange words)
{
  const bool open = typed_.IsOpen(words);
  query.typedName = typed_.Text(words);
  const auto search = [&](const NameSpan& names, Spelling spelling) {
    query.names = names;
    query.spelling = spelling;
    SearchEnding(query, words.last);
  };
  if (pass_.streetTypo) {
    NameTree::Spans spans;
    const bool isLong = query.typedName.size() >= kLeastMistyped;
    const std::size_t count = isLong ? streetTree_.Mistyped(query.typedName, open, spans) : 0;
    for (std::size_t i = 0; i < count; ++i)
      if (!pass_.sureStart || streetTree_.Name(spans[i].first).front() == query.typedName.front())
        search(spans[i], Spelling::Mistyped);
    return;
  }
  const auto find = [&](std::string_view name, Spelling spelling) {
    if (const std::optional<NameSpan> whole = streetTree_.Named(name)) search(*whole, spelling);
    if (!open) return;
    if (const std::optional<NameSpan> begun = streetTree_.Beginning(name)) search(*begun, spelling);
  };
  find(query.typedName, Spelling::AsTyped);
  for (const NameText& other : OtherSpellings(typed_, words)) find(other.View(), Spelling::Other);
}

/** Type, suffix or both may stand behind the name. */
void HintSearch::SearchEnding(Query query, std::size_t first)
{
  if (!pass_.anyStreetType) SearchPlaces(query, first);
  const std::size_t last = std::min(typed_.Count(), first + kMaxTypeWords);
  for (std::size_t end = first + 1; end <= last && typed_[end - 1].before != Joint::Break; ++end) {
    Query typed = query;
    StreetEnding& ending = typed.ending;
    ending.type = typed_.Text({first, end});
    ending.fullType = ExpandStreetType(ending.type);
    ending.isTypeOpen = typed_.IsOpen({first, end});
    if (ending.fullType.empty() && !ending.isTypeOpen) continue;
    if (pass_.anyStreetType) {
      ending = {};
      typed.spelling = std::max(typed.spelling, Spelling::Other);
    }
    SearchPlaces(typed, end);
    SearchSuffix(typed, end);
  }
  if (!pass_.anyStreetType) SearchSuffix(query, first);
}

void HintSearch::SearchSuffix(Query query, std::size_t first)
{
  const std::size_t last = std::min(typed_.Count(), first + kMaxSuffixWords);
  for (std::size_t end = first + 1; end <= last && typed_[end - 1].before != Joint::Break; ++end) {
    StreetEnding& ending = query.ending;
    ending.suffix = typed_.Text({first, end});
    ending.fullSuffix = ExpandStreetSuffix(ending.suffix);
    ending.isSuffixOpen = typed_.IsOpen({first, end});
    if (!ending.fullSuffix.empty() || ending.isSuffixOpen) SearchPlaces(query, end);
  }
}

void HintSearch::SearchPlaces(Query query, std::size_t first)
{
  if (first == typed_.Count()) {
    if (!pass_.placeTypo) Visit(query);
    return;
  }
  const std::size_t count = placeReader_.Read(typed_, first, pass_.placeTypo, places_);
  const Spelling spelling = query.spelling;
  for (std::size_t i = 0; i < count; ++i) {
    query.place = &places_[i];
    query.spelling = std::max(spelling, places_[i].spelling);
    Visit(query);
  }
}

/** Goes to the streets by the way that leaves the fewest: the place typed, the place given, or the names alone. */
void HintSearch::Visit(const Query& query)
{
  if (query.place && !query.place->isAnywhere) return VisitPlace(query, *query.place);
  bool hasVisited = false;
  for (std::size_t i = 0; i < contextCount_; ++i) {
    if (contextPlaces_[i].isAnywhere) continue;
    VisitPlace(query, contextPlaces_[i]);
    hasVisited = true;
  }
  if (!hasVisited) VisitLargest(query);
}

void HintSearch::VisitLargest(const Query& query)
{
  const std::size_t before = streets_.Count();
  for (const std::uint32_t street : query.names.largest) {
    VisitStreet(query, street);
    if (streets_.Count() >= before + most_ || Exhausted()) return;
  }
  if (query.names.largest.empty()) return VisitPostings(query, kMaxVisited);
  const bool isFiltered = query.premise || query.place || hasContext_ || !query.ending.type.empty();
  const bool isWorthwhile = query.typedName.size() >= kLeastScanned && streets_.Count() < most_;
  if (isFiltered && isWorthwhile) VisitPostings(query, kMaxScanned);
}

void HintSearch::VisitPostings(const Query& query, std::size_t most)
{
  // Every name has a street, unless the file was tampered with.
  const std::size_t names = std::min<std::size_t>(query.names.count, most);
  for (std::uint32_t i = 0; i < names; ++i) {
    for (const std::uint32_t street : data_.StreetsNamed(query.names.first + i)) {
      if (most-- == 0 || Exhausted()) return;
      VisitStreet(query, street);
    }
  }
}

/** Localities that follow each other have streets that follow each other. */
void HintSearch::VisitPlace(const Query& query, const Place& place)
{
  constexpr std::uint32_t kFewNames = 8;
  for (const IndexRange range : place.Ranges()) {
    if (range.count == 0 || Exhausted()) return;
    if (query.names.count > kFewNames) {
      for (std::uint32_t i = 0; i < range.count && !Exhausted(); ++i)
        VisitLocality(query, data_.LocalityAt(range.first + i));
      continue;
    }
    const std::uint32_t first = data_.LocalityAt(range.first).streets.first;
    const IndexRange last = data_.LocalityAt(range.first + range.count - 1).streets;
    const std::uint32_t end = last.first + last.count;
    if (end > first) VisitNamesIn(query, {first, end - first});
  }
}

void HintSearch::VisitNamesIn(const Query& query, IndexRange streets)
{
  for (std::uint32_t i = 0; i < query.names.count; ++i) {
    const std::span<const std::uint32_t> postings = data_.StreetsNamed(query.names.first + i);
    auto posting = std::lower_bound(postings.begin(), postings.end(), streets.first);
    for (; posting != postings.end() && *posting - streets.first < streets.count && !Exhausted(); ++posting)
      VisitStreet(query, *posting);
  }
}

/** The streets of a locality are sorted by name, behind those without one. */
void HintSearch::VisitLocality(const Query& query, const Locality& locality)
{
  ++visited_;
  const auto rank = [this](std::uint32_t street) { return data_.StreetAt(street).nameIndex + 1; };
  const IndexRange all = locality.streets;
  const std::uint32_t first =
      PartitionPoint(all.first, all.count, [&](std::uint32_t street) { return rank(street) < query.names.first + 1; });
  const std::uint32_t lastRank = query.names.first + query.names.count;
  for (std::uint32_t street = first; street - all.first < all.count && !Exhausted(); ++street) {
    if (rank(street) > lastRank) return;
    VisitStreet(query, street);
  }
}

bool HintSearch::Exhausted() const
{
  return visited_ >= kMaxVisited || compared_ >= kMaxCompared || points_ >= kMaxPoints;
}

void HintSearch::VisitStreet(const Query& query, std::uint32_t index)
{
  ++visited_;
  const Street street = data_.StreetAt(index);
  if (street.points.count == 0 || !query.ending.Fits(street)) return;
  if (query.place || hasContext_) {
    const Locality locality = data_.LocalityAt(street.locality);
    if (query.place && !query.place->Holds(street.locality, locality)) return;
    if (!IsInContext(street.locality, locality)) return;
  }
  if (query.premise)
    AddPremises(query, street);
  else
    AddStreet(query, street);
}

bool HintSearch::IsInContext(std::uint32_t index, const Locality& locality) const
{
  const auto end = contextPlaces_.begin() + static_cast<std::ptrdiff_t>(contextCount_);
  return !hasContext_ ||
         std::any_of(contextPlaces_.begin(), end, [&](const Place& p) { return p.Holds(index, locality); });
}

void HintSearch::AddPremises(const Query& query, const Street& street)
{
  ++compared_;
  const PremiseHits found = SearchPremise(data_, typed_, street, *query.premise, kMaxPoints - points_);
  points_ += found.visited;
  Hint hint;
  hint.spelling = query.spelling;
  hint.streetSize = street.points.count;
  hint.locality = street.locality;
  hint.street = street.index;
  if (found.count > 0) hint.rank = RankOf(query, data_.StreetName(street.nameIndex), found.fit);
  for (std::size_t i = 0; i < found.count; ++i) {
    const PremiseHit& hit = found.hits[i];
    hint.kind = hit.count > 1 ? HintKind::Building : HintKind::Address;
    hint.count = hit.count;
    hint.points = {hit.first, hit.points};
    hint.own = hit.Own();
    streets_.Add(hint);
  }
}

void HintSearch::AddStreet(const Query& query, const Street& street)
{
  Hint hint;
  hint.kind = HintKind::Street;
  hint.spelling = query.spelling;
  hint.rank = RankOf(query, data_.StreetName(street.nameIndex), NumberFit::Same);
  hint.count = hint.streetSize = street.points.count;
  hint.locality = street.locality;
  hint.street = street.index;
  if (hint.count == 1) {
    hint.kind = HintKind::Address;
    hint.points = street.points;
    hint.own = street.points.first;
  }
  streets_.Add(hint);
}

std::uint8_t HintSearch::RankOf(const Query& query, std::string_view name, NumberFit fit) const
{
  const bool isWhole = query.spelling == Spelling::AsTyped && name == query.typedName;
  const unsigned spelling = static_cast<unsigned>(query.spelling) * kSpellingRank;
  const unsigned unfinished = isWhole || name.size() <= query.typedName.size() ? 0U : kUnfinishedRank;
  return static_cast<std::uint8_t>(spelling + unfinished + static_cast<unsigned>(fit));
}

/** Boxes and bags, once something says where. */
void HintSearch::SearchPostal()
{
  const std::size_t most = EndOfPart(typed_.Words(), 0, kMaxNameWords);
  for (std::size_t end = 1; end <= most; ++end) {
    const PostalWords words = ReadPostalAtEnd(typed_.Words(), {0, end});
    if (words.type.empty() || words.start != 0) continue;
    if (end == typed_.Count()) {
      for (std::size_t i = 0; i < contextCount_; ++i) VisitPostal(words, contextPlaces_[i]);
      continue;
    }
    const std::size_t count = placeReader_.Read(typed_, end, pass_.placeTypo, places_);
    for (std::size_t i = 0; i < count; ++i) VisitPostal(words, places_[i]);
  }
}

void HintSearch::VisitPostal(const PostalWords& words, const Place& place)
{
  for (const IndexRange range : place.Ranges()) {
    for (std::uint32_t i = 0; i < range.count && !Exhausted(); ++i) {
      ++visited_;
      const Locality locality = data_.LocalityAt(range.first + i);
      if (!place.Holds(range.first + i, locality) || !IsInContext(range.first + i, locality)) continue;
      const IndexRange kinds = data_.PostalStreetsOf(locality);
      for (std::uint32_t kind = kinds.first; kind - kinds.first < kinds.count && !Exhausted(); ++kind) {
        ++visited_;
        const Street street = data_.StreetAt(kind);
        if (street.type == words.type) AddPostal(words, street, place.spelling);
      }
    }
  }
}

void HintSearch::AddPostal(const PostalWords& words, const Street& street, Spelling spelling)
{
  PostalNumber number;
  if (!ReadPostalNumber(typed_.Text(words.number), number)) return;
  ++compared_;
  PointCursor cursor = data_.PointsNumbered(street, number.number);
  for (Point point; points_ < kMaxPoints && cursor.Next(point); ++points_) {
    if (point.numberPrefix != number.prefix || point.numberFirstSuffix != number.suffix) continue;
    Hint hint;
    hint.spelling = spelling;
    hint.rank = static_cast<std::uint8_t>(static_cast<unsigned>(spelling) * kSpellingRank);
    hint.count = 1;
    hint.streetSize = street.points.count;
    hint.locality = street.locality;
    hint.street = street.index;
    hint.points = {point.ordinal, 1};
    hint.own = point.ordinal;
    return streets_.Add(hint);
  }
}

void HintSearch::SearchLocalities()
{
  const std::size_t count = placeReader_.Read(typed_, 0, pass_.placeTypo, places_);
  for (std::size_t i = 0; i < count; ++i) AddLocalities(places_[i]);
}

void HintSearch::AddLocalities(const Place& place)
{
  const std::optional<NameSpan> all = placeReader_.Tree().All();
  std::span<const std::uint32_t> largest = place.names.largest;
  if (place.isAnywhere && all) largest = all->largest;
  for (const std::uint32_t locality : largest) AddLocality(place, locality);
  if (!largest.empty() && !localities_.Empty()) return;
  std::size_t left = kMaxScanned;
  for (const IndexRange range : place.Ranges())
    for (std::uint32_t i = 0; i < range.count && left > 0; ++i, --left) AddLocality(place, range.first + i);
}

void HintSearch::AddLocality(const Place& place, std::uint32_t index)
{
  ++visited_;
  const Locality locality = data_.LocalityAt(index);
  if (locality.streets.count == 0 || !place.Holds(index, locality) || !IsInContext(index, locality)) return;
  const Street first = data_.StreetAt(locality.streets.first);
  const Street last = data_.StreetAt(locality.streets.first + locality.streets.count - 1);
  Hint hint;
  hint.kind = HintKind::Locality;
  hint.spelling = place.spelling;
  const bool isWhole = place.isWhole || data_.LocalityName(locality.nameIndex) == place.typedName;
  hint.rank = static_cast<std::uint8_t>(static_cast<unsigned>(place.spelling) * kSpellingRank +
                                        (isWhole ? 0U : kUnfinishedRank));
  hint.points = {first.points.first, last.points.first + last.points.count - first.points.first};
  hint.count = hint.points.count;
  hint.locality = index;
  if (hint.count > 0) localities_.Add(hint);
}

/** Puts both lists into one. */
void HintSearch::Merge()
{
  const bool localitiesFit = !localities_.Empty() && !streets_.Empty() && localities_[0].rank <= streets_[0].rank;
  const std::size_t free = most_ - std::min(most_, streets_.Count());
  const std::size_t kept = std::min(localities_.Count(), std::max(free, localitiesFit ? PlacesKept(most_) : 0));
  const std::size_t streetCount = std::min(streets_.Count(), most_ - kept);
  for (std::size_t i = 0; i < streetCount; ++i) hints_.Add(streets_[i]);
  for (std::size_t i = 0; i < kept; ++i) hints_.Add(localities_[i]);
}

}  // namespace arf
