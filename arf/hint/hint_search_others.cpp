// What is found by other names than those of streets and localities: postal deliveries, buildings, second names; and
// numbers that stand behind their street.
#include <algorithm>

#include "arf/format/partition_point.h"
#include "arf/hint/alias_range.h"
#include "arf/hint/hint_limits.h"
#include "arf/hint/hint_search.h"
#include "arf/tables/postal_types.h"

namespace arf {
namespace {

/** The hint for one address, whose words are all there. */
Hint AddressHint(const Street& street, std::uint32_t ordinal, Spelling spelling)
{
  Hint hint;
  hint.spelling = spelling;
  hint.rank = static_cast<std::uint8_t>(static_cast<unsigned>(spelling) * kSpellingRank);
  hint.count = 1;
  hint.streetSize = street.points.count;
  hint.locality = street.locality;
  hint.street = street.index;
  hint.points = {ordinal, 1};
  hint.own = ordinal;
  return hint;
}

/** Whether a written form of a kind of postal delivery is longer than the text and begins with it. */
bool BeginsForm(const WordRow& row, std::string_view text)
{
  if (row.full.starts_with(text)) return true;
  std::string_view others = row.others;
  while (!others.empty()) {
    const std::size_t end = std::min(others.find('|'), others.size());
    if (others.substr(0, end).starts_with(text)) return true;
    others.remove_prefix(std::min(end + 1, others.size()));
  }
  return false;
}

}  // namespace

/** Streets that have the typed name beside their own, with a type of its own. */
void HintSearch::SearchAliases(Query query, WordRange words)
{
  query.spelling = Spelling::Other;
  query.isUnfinished = false;
  if (data_.StreetAliasCount() == 0 || pass_.anyStreetType || !IsWorthwhile(query)) return;
  const IndexRange aliases = AliasesNamed(query.typedName, typed_.IsOpen(words), data_.StreetAliasCount(),
                                          [this](std::uint32_t i) { return data_.StreetAliasAt(i).key; });
  const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(aliases.count, kMaxScanned));
  for (std::uint32_t i = 0; i < count && !Exhausted(); ++i) {
    const StreetAliasEntry alias = data_.StreetAliasAt(aliases.first + i);
    query.alias = &alias;
    SearchTails(query, {}, words.last);
  }
}

void HintSearch::VisitAlias(const Query& query)
{
  ++visited_;
  if (query.ending.Fits(query.alias->type, query.alias->suffix))
    VisitFitting(query, data_.StreetAt(query.alias->street));
}

/** Boxes and bags; where nothing names a place, those of the largest places. */
void HintSearch::SearchPostal()
{
  const std::size_t most = EndOfPart(typed_.Words(), 0, kMaxNameWords);
  for (std::size_t end = 1; end <= most; ++end) {
    const PostalWords words = ReadPostalAtEnd(typed_.Words(), {0, end});
    if (words.type.empty() || words.start != 0) continue;
    PostalQuery query{words.type, words.number, 0};
    SearchPostal(query, end);
    query.isNumberOpen = !words.number.Empty() && end == typed_.Count() && typed_.IsOpen(words.number);
    if (query.isNumberOpen && streets_.Empty()) SearchPostal(query, end);
  }
  if (!pass_.placeTypo && MayBeginPostalType(typed_[0].text.front())) SearchPostalTypes(most);
}

void HintSearch::SearchPostal(const PostalQuery& query, std::size_t placeStart)
{
  if (placeStart < typed_.Count()) {
    for (const Place& place : tails_.Places(placeStart, pass_.placeTypo)) VisitPostal(query, place);
    return;
  }
  for (std::size_t i = 0; i < contextCount_; ++i) VisitPostal(query, contextPlaces_[i]);
  if (!hasContext_) VisitPostal(query, {});
}

/** A kind of delivery without a number, with a place behind it or not; without one it may be unfinished. */
void HintSearch::SearchPostalTypes(std::size_t most)
{
  for (std::size_t end = most; end > 0; --end) {
    const WordRange words{0, end};
    const bool isNumbered = end < typed_.Count() && typed_[end].hasDigit && typed_[end].before != Joint::Break;
    if (isNumbered || typed_.Words().HasDigit(words)) continue;
    const std::string_view text = typed_.Text(words);
    const std::string_view type = ExpandPostalType(text);
    // A single word that is short for a kind may as well be a name: BOX HILL.
    const bool mayHavePlace = text == type || text.find(' ') != std::string_view::npos;
    if (!type.empty() && PostalTypeTakesNumber(type) && (end == typed_.Count() || mayHavePlace))
      return SearchPostal({type, {}, mayHavePlace ? std::uint8_t{0} : kUnsureRank}, end);
    if (end < typed_.Count() || !typed_.IsOpen(words) || text.size() < kLeastScanned) continue;
    for (const WordRow& row : PostalTypeRows())
      if (BeginsForm(row, text)) SearchPostal({row.full, {}, kUnsureRank}, end);
  }
}

void HintSearch::VisitPostal(const PostalQuery& query, const Place& place)
{
  if (place.isAnywhere) return VisitLargestPostal(query, place);
  for (const IndexRange range : place.Ranges()) {
    for (std::uint32_t i = 0; i < range.count && !Exhausted(); ++i) {
      ++visited_;
      const Locality locality = data_.LocalityAt(range.first + i);
      if (!place.Holds(range.first + i, locality) || !IsInContext(range.first + i, locality)) continue;
      const IndexRange kinds = data_.PostalStreetsOf(locality);
      for (std::uint32_t kind = kinds.first; kind - kinds.first < kinds.count && !Exhausted(); ++kind) {
        ++visited_;
        const Street street = data_.StreetAt(kind);
        if (street.type == query.type) AddPostal(query, street, place.spelling);
      }
    }
  }
}

void HintSearch::VisitLargestPostal(const PostalQuery& query, const Place& place)
{
  for (std::size_t kind = 0; kind < postalLists_.Count(); ++kind) {
    for (const std::uint32_t index : postalLists_.At(kind)) {
      ++visited_;
      const Street street = data_.StreetAt(index);
      if (!street.isPostal || street.type != query.type || streets_.Count() >= most_ || Exhausted()) break;
      const Locality locality = data_.LocalityAt(street.locality);
      if (place.Holds(street.locality, locality) && IsInContext(street.locality, locality))
        AddPostal(query, street, place.spelling);
    }
  }
}

void HintSearch::AddPostal(const PostalQuery& query, const Street& street, Spelling spelling)
{
  if (query.number.Empty() && PostalTypeTakesNumber(query.type)) return AddPostalStreet(query, street, spelling);
  PostalNumber number;
  if (!ReadPostalNumber(typed_.Text(query.number), number)) return;
  ++compared_;
  if (query.isNumberOpen) return AddPostalNumbers(number, street, spelling);
  PointCursor cursor = data_.PointsNumbered(street, number.number);
  for (Point point; points_ < kMaxPoints && cursor.Next(point); ++points_) {
    if (point.numberPrefix != number.prefix || point.numberFirstSuffix != number.suffix) continue;
    return streets_.Add(AddressHint(street, point.ordinal, spelling));
  }
}

/** All that a place has of a kind. */
void HintSearch::AddPostalStreet(const PostalQuery& query, const Street& street, Spelling spelling)
{
  if (street.points.count == 0) return;
  Hint hint = AddressHint(street, street.points.first, spelling);
  hint.rank = static_cast<std::uint8_t>(hint.rank + query.rank);
  hint.count = street.points.count;
  if (hint.count > 1) {
    hint.kind = HintKind::Street;
    hint.points = {};
    hint.own = kNoIndex;
  }
  streets_.Add(hint);
}

/** The boxes whose numbers begin with the one that was typed. */
void HintSearch::AddPostalNumbers(const PostalNumber& begun, const Street& street, Spelling spelling)
{
  if (!begun.suffix.empty()) return;
  std::size_t room = most_ - std::min(most_, streets_.Count());
  PointCursor cursor = data_.Points(street);
  for (Point point; room > 0 && points_ < kMaxPoints && cursor.Next(point); ++points_) {
    std::uint32_t number = point.numberFirst;
    while (number > begun.number) number /= 10;
    if (number != begun.number || number == 0 || point.numberPrefix != begun.prefix) continue;
    Hint hint = AddressHint(street, point.ordinal, spelling);
    hint.rank = static_cast<std::uint8_t>(hint.rank + kUnfinishedRank);
    streets_.Add(hint);
    --room;
  }
}

/** Names of buildings, perhaps with a place behind them. */
void HintSearch::SearchBuildings()
{
  if (wordIndex_.BuildingCount() == 0 || typed_[0].isNumber) return;
  for (std::size_t end = EndOfPart(typed_.Words(), 0, kMaxNameWords); end > 0; --end) {
    if (end == typed_.Count()) VisitBuildings({0, end}, nullptr);
    if (end < typed_.Count())
      for (const Place& place : tails_.Places(end, false)) VisitBuildings({0, end}, &place);
  }
}

void HintSearch::VisitBuildings(WordRange words, const Place* place)
{
  const std::string_view typed = typed_.Text(words);
  if (typed.size() < kLeastScanned) return;
  const std::uint32_t count = wordIndex_.BuildingCount();
  const bool isFull = streets_.Count() >= most_ && streets_[most_ - 1].rank <= kUnfinishedRank;
  const bool open = typed_.IsOpen(words);
  for (std::uint32_t i = PartitionPoint(0, count, [&](std::uint32_t b) { return wordIndex_.Building(b) < typed; });
       i < count && buildings_ < kMaxBuildings; ++i) {
    const std::string_view name = wordIndex_.Building(i);
    const bool isWhole = name == typed;
    if (!name.starts_with(typed) || (isFull && !isWhole)) return;
    ++buildings_;
    if (!isWhole && !open && name[typed.size()] != ' ') continue;
    const std::span<const std::uint32_t> points = wordIndex_.PointsOf(i);
    for (const std::uint32_t point : points.first(std::min(points.size(), kMaxBuildingPoints)))
      AddBuildingPoint(point, isWhole, place);
  }
}

void HintSearch::AddBuildingPoint(std::uint32_t ordinal, bool isWhole, const Place* place)
{
  const std::uint32_t index = data_.StreetOf(ordinal);
  if (index == kNoIndex) return;
  const Street street = data_.StreetAt(index);
  const Locality locality = data_.LocalityAt(street.locality);
  if ((place && !place->Holds(street.locality, locality)) || !IsInContext(street.locality, locality)) return;
  Spelling spelling = place ? place->spelling : Spelling::AsTyped;
  if (place && !isWhole) spelling = std::max(spelling, Spelling::Other);
  Hint hint = AddressHint(street, ordinal, spelling);
  if (!isWhole) hint.rank = static_cast<std::uint8_t>(hint.rank + kUnfinishedRank);
  streets_.Add(hint);
}

/** Writes the text anew with its first number in front, unless that may be a postcode; false if it stays as it is. */
bool HintSearch::TurnNumberToFront()
{
  const std::size_t count = typed_.Count();
  std::size_t first = 0;
  while (first < count && !typed_[first].hasDigit) ++first;
  if (first == 0 || first == count || !IsDigit(typed_[first].text.front()) || typed_[first].text.front() == '0')
    return false;
  const std::string_view street = typed_.Text({0, first});
  if (street.size() < kLeastTurned || !data_.LocalitiesOfPostcode(typed_[first].text).empty()) return false;
  FixedText<512> turned;
  bool fits = turned.Append(typed_[first].text);
  std::size_t last = first + 1;
  for (; last < count && (typed_[last].before == Joint::Slash || typed_[last].before == Joint::Dash); ++last)
    fits = turned.Append(typed_[last].before == Joint::Slash ? "/" : "-") && turned.Append(typed_[last].text) && fits;
  const bool open = typed_.IsOpen({last, count});
  fits = turned.Append(" ") && turned.Append(street) && turned.Append(" ") && fits;
  if (last < count) fits = turned.Append(", ") && turned.Append(typed_.Text({last, count})) && fits;
  if (last < count && !open) turned.Append(" ");
  if (!fits || typed_.Read(turned.View()) != InputFault::None) return false;
  StartText();
  return true;
}

}  // namespace arf
