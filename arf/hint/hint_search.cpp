#include "arf/hint/hint_search.h"

#include <algorithm>

#include "arf/format/partition_point.h"
#include "arf/hint/hint_limits.h"
#include "arf/match/occupancy_words.h"
#include "arf/match/point_search.h"

namespace arf {
namespace {

/** Localities take up to two in five places while streets fit as well. */
std::size_t PlacesKept(std::size_t most)
{
  return std::max<std::size_t>(1, most * 2 / 5);
}

}  // namespace

InputFault HintSearch::Search(std::string_view text, std::string_view place, std::size_t most)
{
  for (HintList* list : {&streets_, &localities_, &hints_}) list->Clear();
  most_ = std::clamp<std::size_t>(most, 1, HintList::kMax);
  visited_ = compared_ = points_ = buildings_ = 0;
  if (const InputFault fault = typed_.Read(text); fault != InputFault::None) return fault;
  if (const InputFault fault = context_.Read(place); fault != InputFault::None) return fault;
  StartText();
  ReadContext();
  if (typed_.Count() > 0 && (!hasContext_ || contextCount_ > 0)) RunPasses();
  Merge();
  return InputFault::None;
}

/** Forgets what was read of the text before. */
void HintSearch::StartText()
{
  tails_.Start(typed_);
  mistypedNames_.Clear();
  for (std::optional<Premises>& premises : premises_) premises.reset();
}

void HintSearch::ReadContext()
{
  hasContext_ = context_.Count() > 0;
  contextCount_ = hasContext_ ? tails_.Reader().Read(context_, 0, false, contextPlaces_) : 0;
  if (hasContext_ && contextCount_ == 0) contextCount_ = tails_.Reader().Read(context_, 0, true, contextPlaces_);
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
  if (IsNothing() && TurnNumberToFront()) return Run({.isTurned = true});
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
  if (!pass.streetTypo && !pass.anyStreetType && !pass.isTurned) {
    SearchLocalities();
    SearchPostal();
  }
  SearchPremises();
  if (!pass.streetTypo && !pass.placeTypo && !pass.anyStreetType && !pass.isTurned) SearchBuildings();
}

void HintSearch::SearchPremises()
{
  const bool beginsWithNumber = typed_[0].isNumber && (pass_.streetTypo || pass_.placeTypo);
  if (!beginsWithNumber) SearchStreets(nullptr, 0);
  const std::size_t last = std::min(typed_.Count(), kMaxPremiseWords);
  for (std::size_t end = 1; end <= last; ++end) {
    if (!MayEndPremise(end)) continue;
    if (!premises_[end]) premises_[end].emplace(typed_.Words(), WordRange{0, end});
    for (const Premise& premise : *premises_[end])
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
    if (!all || pass_.streetTypo || pass_.placeTypo || pass_.isTurned) return;
    query.names = *all;
    return Visit(query);
  }
  const std::size_t last = EndOfPart(typed_.Words(), first, kMaxNameWords);
  if (pass_.streetTypo) return SearchMistypedNames(query, {first, last});
  for (std::size_t end = last; end > first; --end) SearchName(query, {first, end});
}

/** The names that some words may be, each with what stands behind them. */
void HintSearch::SearchName(Query query, WordRange words)
{
  query.typedName = typed_.Text(words);
  const bool open = typed_.IsOpen(words);
  const auto find = [&](std::string_view name, Spelling spelling) {
    query.spelling = pass_.isTurned ? Spelling::Other : spelling;
    query.isUnfinished = false;
    if (!IsWorthwhile(query)) return;
    if (const std::optional<NameSpan> whole = streetTree_.Named(name)) SearchTails(query, *whole, words.last);
    query.isUnfinished = true;
    if (!open || !IsWorthwhile(query)) return;
    if (const std::optional<NameSpan> begun = streetTree_.Beginning(name)) SearchTails(query, *begun, words.last);
  };
  find(query.typedName, Spelling::AsTyped);
  SearchAliases(query, words);
  for (const NameText& other : OtherSpellings(typed_, words)) find(other.View(), Spelling::Other);
}

/** Whether there is room for a hint that fits as well as a reading allows. */
bool HintSearch::IsWorthwhile(const Query& query) const
{
  const unsigned best =
      static_cast<unsigned>(query.spelling) * kSpellingRank + (query.isUnfinished ? kUnfinishedRank : 0U);
  return streets_.Count() < most_ || streets_[most_ - 1].rank >= best;
}

/** The same for names with a typing error, which may end with any of the words. */
void HintSearch::SearchMistypedNames(Query query, WordRange words)
{
  query.spelling = Spelling::Mistyped;
  for (std::size_t end = words.last; end > words.first; --end) {
    query.typedName = typed_.Text({words.first, end});
    // Whichever is known already comes first.
    if (!pass_.placeTypo && tails_.Read(end, false).empty()) continue;
    for (const NameTree::Found& found : mistypedNames_.Of(streetTree_, typed_, words, pass_.sureStart))
      if (found.length == query.typedName.size()) SearchTails(query, found.names, end);
  }
}

void HintSearch::SearchTails(const Query& query, const NameSpan& names, std::size_t first)
{
  Query named = query;
  named.names = names;
  for (const TypedTail& tail : tails_.Read(first, pass_.placeTypo)) SearchTail(named, tail);
}

void HintSearch::SearchTail(Query query, const TypedTail& tail)
{
  if (pass_.anyStreetType) {
    if (tail.ending.type.empty()) return;
    query.spelling = std::max(query.spelling, Spelling::Other);
    query.ending.suffix = tail.ending.suffix;
    query.ending.fullSuffix = tail.ending.fullSuffix;
    query.ending.isSuffixOpen = tail.ending.isSuffixOpen;
  } else {
    query.ending = tail.ending;
  }
  if (!tail.hasPlace) return Visit(query);
  const Spelling spelling = query.spelling;
  for (const Place& place : tail.places) {
    query.place = &place;
    query.spelling = std::max(spelling, place.spelling);
    Visit(query);
  }
}

/** Goes to the streets by the way that leaves the fewest: the place typed, the place given, or the names alone. */
void HintSearch::Visit(const Query& query)
{
  if (!IsWorthwhile(query)) return;
  if (query.alias) return VisitAlias(query);
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
    const std::uint32_t first = data_.LocalityStreets(range.first).first;
    const IndexRange last = data_.LocalityStreets(range.first + range.count - 1);
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
  if (query.ending.Fits(street.type, street.suffix)) VisitFitting(query, street);
}

void HintSearch::VisitFitting(const Query& query, const Street& street)
{
  if (street.points.count == 0) return;
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
  if (found.count > 0) hint.rank = RankOf(query, street, found.fit);
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
  hint.rank = RankOf(query, street, NumberFit::Same);
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

std::uint8_t HintSearch::RankOf(const Query& query, const Street& street, NumberFit fit) const
{
  const std::string_view name = query.alias ? query.alias->key : data_.StreetName(street.nameIndex);
  const bool isWhole = query.spelling == Spelling::AsTyped && name == query.typedName;
  const unsigned spelling = static_cast<unsigned>(query.spelling) * kSpellingRank;
  const unsigned unfinished = isWhole || name.size() <= query.typedName.size() ? 0U : kUnfinishedRank;
  return static_cast<std::uint8_t>(spelling + unfinished + static_cast<unsigned>(fit));
}

void HintSearch::SearchLocalities()
{
  for (const Place& place : tails_.Places(0, pass_.placeTypo)) AddLocalities(place);
}

void HintSearch::AddLocalities(const Place& place)
{
  const std::optional<NameSpan> all = tails_.Reader().Tree().All();
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
