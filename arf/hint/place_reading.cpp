#include "arf/hint/place_reading.h"

#include <algorithm>

#include "arf/format/partition_point.h"
#include "arf/hint/alias_range.h"
#include "arf/hint/mistyped_names.h"
#include "arf/tables/states.h"

namespace arf {
namespace {

constexpr std::size_t kMaxTailWords = 6;

/** The names that words from the first on may be with an error; looked up when they are needed. */
class MistypedBeginnings
{
 public:
  MistypedBeginnings(const NameTree& tree, const TypedText& typed, WordRange words)
      : tree_(tree), typed_(typed), words_(words)
  {
  }

  std::span<const NameTree::Found> Found()
  {
    if (!isRead_) count_ = tree_.Mistyped(NameWithin(typed_, words_), found_);
    isRead_ = true;
    return std::span(found_).first(count_);
  }

 private:
  const NameTree& tree_;
  const TypedText& typed_;
  WordRange words_;
  NameTree::FoundList found_;
  std::size_t count_ = 0;
  bool isRead_ = false;
};

}  // namespace

bool Place::Holds(std::uint32_t localityIndex, const Locality& locality) const
{
  if (!written.Fits(locality) || !locality.postcode.starts_with(beginningOfPostcode)) return false;
  const bool stateBegins = beginningOfState.empty() || locality.state.starts_with(beginningOfState) ||
                           StateName(locality.state).starts_with(beginningOfState);
  if (!stateBegins) return false;
  const auto holds = [localityIndex](IndexRange range) { return localityIndex - range.first < range.count; };
  return isAnywhere || std::any_of(ranges.begin(), ranges.begin() + static_cast<std::ptrdiff_t>(rangeCount), holds);
}

void Place::Add(IndexRange range)
{
  isAnywhere = false;
  if (rangeCount > 0) {
    IndexRange& last = ranges[rangeCount - 1];
    if (last.first + last.count == range.first) {
      last.count += range.count;
      return;
    }
  }
  if (rangeCount < kMaxRanges) ranges[rangeCount++] = range;
}

std::size_t PlaceReader::Read(const TypedText& typed, std::size_t first, bool mistyped, std::span<Place> readings) const
{
  readings = readings.first(std::min(readings.size(), kMaxReadings));
  std::size_t count = 0;
  const std::size_t end = typed.Count();
  const std::size_t longest = std::min(end, first + kMaxNameWords);
  MistypedBeginnings beginnings(tree_, typed, {first, longest});
  for (std::size_t nameEnd = longest + 1; nameEnd-- > first && count < readings.size();) {
    if (end - nameEnd > kMaxTailWords || typed.Words().HasInnerBreak({first, nameEnd})) continue;
    Place place;
    if (!ReadTail(typed, nameEnd, place)) continue;
    if (nameEnd == first) {
      if (!mistyped && end > first && AddPostcodes(place)) readings[count++] = place;
      continue;
    }
    place.hasName = true;
    place.isWhole = !typed.IsOpen({first, nameEnd});
    place.typedName = typed.Text({first, nameEnd});
    if (!mistyped)
      count += ReadNames(typed, {first, nameEnd}, place, readings.subspan(count));
    else if (AddMistyped(beginnings.Found(), place))
      readings[count++] = place;
  }
  return count;
}

/** State and postcode, or beginnings of them; true also when there is nothing. */
bool PlaceReader::ReadTail(const TypedText& typed, std::size_t first, Place& place) const
{
  const std::size_t end = typed.Count();
  while (first < end) {
    const bool isLast = first + 1 == end;
    if (typed.IsOpen({first, end}) && (isLast || !typed[first].hasDigit) &&
        ReadOpenWord(typed.Text({first, end}), typed[first].isNumber, place))
      return true;
    const PlaceWords words = ReadPlaceAfter(typed.Words(), first, end, place.written);
    if (words.count == 0) return false;
    place.written.Merge(words.place);
    first += words.count;
  }
  return true;
}

bool PlaceReader::ReadOpenWord(std::string_view word, bool isNumber, Place& place) const
{
  if (isNumber) {
    place.beginningOfPostcode = word;
    return word.size() <= 4 && place.written.postcode.Empty();
  }
  if (!place.written.state.empty()) return false;
  const auto rows = StateRows();
  const bool begins = std::any_of(rows.begin(), rows.end(), [word](const WordRow& row) {
    return row.full.starts_with(word) || row.abbreviation.starts_with(word);
  });
  if (begins) place.beginningOfState = word;
  return begins;
}

/** The localities of the postcodes, where no name says which; false if there are none. */
bool PlaceReader::AddPostcodes(Place& place) const
{
  const std::string_view digits =
      place.written.postcode.Empty() ? place.beginningOfPostcode : place.written.postcode.View();
  if (digits.empty()) return true;
  place.isAnywhere = false;
  place.isWhole = !place.written.postcode.Empty() || digits.size() == 4;
  const std::uint32_t first =
      PartitionPoint(0, data_.PostcodeCount(), [&](std::uint32_t i) { return data_.Postcode(i) < digits; });
  for (std::uint32_t i = first; i < data_.PostcodeCount() && data_.Postcode(i).starts_with(digits); ++i) {
    for (const std::uint32_t locality : data_.LocalitiesOfPostcode(data_.Postcode(i))) place.Add({locality, 1});
    if (place.rangeCount == Place::kMaxRanges) break;
  }
  return place.rangeCount > 0;
}

/** Localities whose names the typed one may be with an error; false if there are none. */
bool PlaceReader::AddMistyped(std::span<const NameTree::Found> found, Place& place) const
{
  place.spelling = Spelling::Mistyped;
  for (const NameTree::Found& name : found)
    if (name.length == place.typedName.size()) AddSpan(name.names, place);
  return place.rangeCount > 0;
}

/** One reading for the name as typed, one for other spellings of it. */
std::size_t PlaceReader::ReadNames(const TypedText& typed, WordRange words, Place& place,
                                   std::span<Place> readings) const
{
  const std::string_view text = place.typedName;
  const bool open = !place.isWhole;
  std::size_t count = 0;
  const auto find = [&](std::string_view name) { return open ? tree_.Beginning(name) : tree_.Named(name); };
  if (const std::optional<NameSpan> span = find(text)) {
    Place asTyped = place;
    asTyped.names = *span;
    if (AddSpan(*span, asTyped)) readings[count++] = asTyped;
  }
  place.spelling = Spelling::Other;
  if (!open && count == 0) {  // "DARWIN" for "DARWIN CITY"
    NameText beginning(text);
    beginning.Append(" ");
    if (const std::optional<NameSpan> span = tree_.Beginning(beginning.View())) AddSpan(*span, place);
  }
  for (const NameText& other : OtherSpellings(typed, words))
    if (const std::optional<NameSpan> span = find(other.View())) AddSpan(*span, place);
  AddAliases(place);
  if (place.rangeCount > 0 && count < readings.size()) readings[count++] = place;
  return count;
}

/** The localities that have the typed name beside their own. */
void PlaceReader::AddAliases(Place& place) const
{
  const IndexRange aliases = AliasesNamed(place.typedName, !place.isWhole, data_.LocalityAliasCount(),
                                          [this](std::uint32_t i) { return data_.LocalityAliasAt(i).key; });
  for (std::uint32_t i = 0; i < aliases.count && place.rangeCount < Place::kMaxRanges; ++i)
    place.Add({data_.LocalityAliasAt(aliases.first + i).locality, 1});
}

/** Localities are sorted by name, so those of neighbouring names are neighbours. */
bool PlaceReader::AddSpan(const NameSpan& span, Place& place) const
{
  if (span.count == 0) return false;
  const std::span<const std::uint32_t> first = data_.LocalitiesNamed(span.first);
  const std::span<const std::uint32_t> last = data_.LocalitiesNamed(span.first + span.count - 1);
  if (first.empty() || last.empty() || last.back() < first.front()) return false;
  place.Add({first.front(), last.back() - first.front() + 1});
  return true;
}

}  // namespace arf
