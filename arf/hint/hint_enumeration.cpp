#include "arf/hint/hint_enumeration.h"

#include <algorithm>

#include "arf/hint/premise_search.h"
#include "arf/match/address_text.h"

namespace arf {

InputFault HintEnumeration::StartHints(std::string_view text, std::string_view place, std::size_t most)
{
  addressesOnly_ = false;
  return Start(text, place, most);
}

InputFault HintEnumeration::StartAddresses(std::string_view text, std::string_view place)
{
  addressesOnly_ = true;
  return Start(text, place, SIZE_MAX);
}

InputFault HintEnumeration::Start(std::string_view text, std::string_view place, std::size_t most)
{
  Reset();
  const InputFault fault = search_.Search(text, place, std::min(most, HintList::kMax));
  if (fault != InputFault::None) return fault;
  left_ = most;
  started_ = true;
  Advance();
  return InputFault::None;
}

void HintEnumeration::Reset()
{
  atHint_ = started_ = false;
  nextHint_ = left_ = 0;
  parts_ = Parts::None;
}

void HintEnumeration::Advance()
{
  atHint_ = left_ > 0 && (NextPart() || NextHint());
  if (atHint_) --left_;
}

/** The next hint of the search; of addresses, the first one behind the next hint. */
bool HintEnumeration::NextHint()
{
  const std::span<const Hint> hints = search_.Hints();
  const bool hasStreets = std::any_of(hints.begin(), hints.end(), [](const Hint& h) { return h.street != kNoIndex; });
  while (nextHint_ < hints.size()) {
    const Hint& hint = hints[nextHint_++];
    // The streets that were found may be some of a locality's.
    if (addressesOnly_ && hasStreets && hint.kind == HintKind::Locality) continue;
    if (addressesOnly_ || hints.size() == 1) Open(hint);
    if (addressesOnly_ && !NextPart()) continue;
    if (!addressesOnly_) current_ = hint;
    return true;
  }
  return false;
}

void HintEnumeration::Open(const Hint& hint)
{
  opened_ = hint;
  hasBefore_ = false;
  rest_ = hint.kind == HintKind::Street ? data_.StreetAt(hint.street).points : hint.points;
  parts_ = Parts::Addresses;
  if (addressesOnly_) return;
  if (hint.kind == HintKind::Address) parts_ = Parts::None;
  if (hint.kind == HintKind::Street) parts_ = Parts::Numbers;
  if (hint.kind != HintKind::Locality) return;
  parts_ = Parts::Streets;
  rest_ = data_.LocalityStreets(hint.locality);
}

bool HintEnumeration::NextPart()
{
  switch (parts_) {
    case Parts::Streets:
      return NextStreet();
    case Parts::Numbers:
      return NextNumber();
    case Parts::Addresses:
      return NextAddress();
    case Parts::None:
      break;
  }
  return false;
}

/** Streets without a name have no text that would find them again, unless they are boxes or bags. */
bool HintEnumeration::NextStreet()
{
  for (; rest_.count > 0; ++rest_.first, --rest_.count) {
    const Street street = data_.StreetAt(rest_.first);
    const bool hasText = street.nameIndex != kNoIndex || street.isPostal;
    if (!hasText || street.points.count == 0) continue;
    current_ = Hint();
    current_.kind = street.points.count == 1 ? HintKind::Address : HintKind::Street;
    current_.count = street.points.count;
    current_.locality = street.locality;
    current_.street = street.index;
    current_.points = street.points;
    if (current_.kind == HintKind::Address) current_.own = street.points.first;
    ++rest_.first;
    --rest_.count;
    return true;
  }
  return false;
}

/** Numbers of a street; what has no number stands alone. */
bool HintEnumeration::NextNumber()
{
  PremiseHit hit;
  Point first;
  Point last;
  for (; rest_.count > 0; ++rest_.first, --rest_.count) {
    const Point point = data_.PointAt(rest_.first);
    if (hit.count == 0 && !HasNumberedText(point)) continue;
    if (hit.count > 0 && !BelongsTo(point, last)) break;
    if (hit.count == 0) first = point;
    AddPoint(hit, point, hit.count == 0 ? nullptr : &last);
    last = point;
  }
  if (hit.count == 0) return false;
  current_ = HintAt(first);
  current_.kind = hit.count > 1 ? HintKind::Building : HintKind::Address;
  current_.count = hit.count;
  current_.points = {hit.first, hit.points};
  current_.own = hit.Own();
  return true;
}

/** Whether an address reads otherwise than its street does. */
bool HintEnumeration::HasNumberedText(const Point& point) const
{
  return point.numberFirst != 0 || IsInside(point) || !point.lot.empty() || !point.building.empty();
}

/** Addresses one by one, without repetitions and without the one that reads as the opened number itself. */
bool HintEnumeration::NextAddress()
{
  while (rest_.count > 0) {
    const Point point = data_.PointAt(rest_.first);
    ++rest_.first;
    --rest_.count;
    const bool isRepeated = hasBefore_ && point.street == before_.street && ReadsTheSame(point, before_);
    const bool isOpened = !addressesOnly_ && !IsInside(point) && point.building.empty();
    before_ = point;
    hasBefore_ = true;
    if (isRepeated || isOpened) continue;
    current_ = HintAt(point);
    return true;
  }
  return false;
}

Hint HintEnumeration::HintAt(const Point& point) const
{
  Hint hint;
  hint.spelling = opened_.spelling;
  hint.count = 1;
  hint.locality = data_.StreetAt(point.street).locality;
  hint.street = point.street;
  hint.points = {point.ordinal, 1};
  hint.own = point.ordinal;
  return hint;
}

void AppendHintText(BoundedText& text, const Database& database, const Hint& hint)
{
  if (hint.kind == HintKind::Address) return AppendAddress(text, database, hint.own);
  if (hint.kind != HintKind::Locality) {
    const Street street = database.StreetAt(hint.street);
    if (street.isPostal) AppendStreet(text, street);
    if (hint.kind == HintKind::Building) AppendNumber(text.Gap(), database.PointAt(hint.points.first));
    if (!street.isPostal) AppendStreet(text, street);
    text << ',';
  }
  AppendLocality(text, database.LocalityAt(hint.locality));
}

}  // namespace arf
