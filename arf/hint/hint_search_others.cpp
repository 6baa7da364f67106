// What is found by other names than those of streets and localities: postal deliveries, buildings, second names; and
// numbers that stand behind their street.
#include <algorithm>

#include "arf/format/partition_point.h"
#include "arf/hint/alias_range.h"
#include "arf/hint/hint_limits.h"
#include "arf/hint/hint_search.h"

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
    if (end < typed_.Count()) {
      for (const Place& place : tails_.Places(end, pass_.placeTypo)) VisitPostal(words, place);
      continue;
    }
    for (std::size_t i = 0; i < contextCount_; ++i) VisitPostal(words, contextPlaces_[i]);
    if (!hasContext_) VisitPostal(words, {});
  }
}

void HintSearch::VisitPostal(const PostalWords& words, const Place& place)
{
  if (place.isAnywhere) return VisitLargestPostal(words, place);
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

void HintSearch::VisitLargestPostal(const PostalWords& words, const Place& place)
{
  if (words.number.Empty()) return;
  for (std::size_t kind = 0; kind < postalLists_.Count(); ++kind) {
    for (const std::uint32_t index : postalLists_.At(kind)) {
      ++visited_;
      const Street street = data_.StreetAt(index);
      if (!street.isPostal || street.type != words.type || streets_.Count() >= most_ || Exhausted()) break;
      const Locality locality = data_.LocalityAt(street.locality);
      if (place.Holds(street.locality, locality) && IsInContext(street.locality, locality))
        AddPostal(words, street, place.spelling);
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
    return streets_.Add(AddressHint(street, point.ordinal, spelling));
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
