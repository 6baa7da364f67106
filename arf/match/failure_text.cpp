#include "arf/match/failure_text.h"

#include <algorithm>

#include "arf/match/address_text.h"
#include "arf/match/input_text.h"

namespace arf {
namespace {

constexpr std::uint32_t kListed = 4;  // of a list, the rest is counted

/** A list of some things of which only the first are written: "A, B and 12 more". */
class ListText
{
 public:
  ListText(BoundedText& text, std::string_view separator) : text_(text), separator_(separator) {}

  /** Whether the next thing is to be written; it is counted in any case. */
  bool Next()
  {
    if (++count_ > kListed) return false;
    if (count_ > 1) text_ << separator_;
    return true;
  }
  void Finish(std::uint32_t total)
  {
    if (total > kListed) text_ << " and " << total - kListed << " more";
  }
  void Finish() { Finish(count_); }
  std::uint32_t Count() const { return count_; }

 private:
  BoundedText& text_;
  std::string_view separator_;
  std::uint32_t count_ = 0;
};

void AppendStreetOf(BoundedText& text, const Database& database, const Street& street)
{
  AppendStreet(text, street);
  text << ',';
  AppendLocality(text, database.LocalityAt(street.locality));
}

/** "; it is part of 138-144.", false when no range holds the number. */
bool AppendRangesAround(BoundedText& text, const Database& database, const Street& street, std::uint32_t number)
{
  ListText list(text, ",");
  PointCursor cursor = database.PointsNumbered(street, number);
  std::uint32_t listedFirst = 0;
  for (Point point; number != 0 && cursor.Next(point);) {
    if (point.numberLast == 0 || point.numberFirst == listedFirst) continue;
    if (list.Count() == 0) text << "; it is part of";
    if (list.Next()) AppendNumber(text.Gap(), point);
    listedFirst = point.numberFirst;
  }
  list.Finish();
  if (list.Count() > 0) text << '.';
  return list.Count() > 0;
}

/** "; numbers there run from 1 to 812." */
void AppendNumberRange(BoundedText& text, const Database& database, const Street& street)
{
  std::uint32_t lowest = UINT32_MAX;
  std::uint32_t highest = 0;
  PointCursor cursor = database.Points(street);
  for (Point point; cursor.Next(point);) {
    if (point.numberFirst == 0) continue;
    lowest = std::min(lowest, point.numberFirst);
    highest = std::max({highest, point.numberFirst, point.numberLast});
  }
  if (highest == 0)
    text << "; no address there has a number.";
  else if (lowest == highest)
    text << "; the only number there is " << lowest << '.';
  else
    text << "; numbers there run from " << lowest << " to " << highest << '.';
}

void AppendNumberFailure(BoundedText& text, const Database& database, const Failure& failure)
{
  const Street street = database.StreetAt(failure.street);
  if (failure.fault == Fault::NumberMissing) {
    text << "No number was written for";
  } else {
    text << "No number";
    text.Word(failure.written.View()) << " in";
  }
  AppendStreetOf(text, database, street);
  if (!AppendRangesAround(text, database, street, failure.number)) AppendNumberRange(text, database, street);
}

/** "No UNIT 99 at 12 GEORGE STREET, SYDNEY NSW 2000; there are the building and UNIT 1, UNIT 2 and 4 more." */
void AppendUnitFailure(BoundedText& text, const Database& database, const Failure& failure)
{
  const Street street = database.StreetAt(failure.street);
  text << "No";
  text.Word(failure.written.View()) << " at " << failure.number;
  AppendStreetOf(text, database, street);
  text << "; there is";
  ListText list(text, ",");
  bool sawBuilding = false;  // may have several addresses, told apart by suffixes, lots or nothing
  PointCursor cursor = database.PointsNumbered(street, failure.number);
  for (Point point; cursor.Next(point);) {
    const bool isOccupancy =
        !(point.unitNumber.empty() && point.unitType.empty() && point.levelNumber.empty() && point.levelType.empty());
    const bool isLot = !isOccupancy && !point.lot.empty();
    const bool isBuilding = !isOccupancy && !isLot;
    if ((isBuilding && sawBuilding) || !list.Next()) continue;
    sawBuilding = sawBuilding || isBuilding;
    if (isBuilding)
      text << " the building";
    else if (isLot)
      text << " LOT " << point.lot;
    else
      AppendOccupancy(text, point);
  }
  list.Finish();
  text << '.';
}

/** "12-14 GEORGE STREET, SYDNEY NSW 2000 is another way to write 1 SMITH STREET, SYDNEY NSW 2000." */
void AppendAliasFailure(BoundedText& text, const Database& database, std::uint32_t alias)
{
  AppendAddress(text, database, alias);
  text << " is another way to write";
  AppendAddress(text, database, database.PrincipalOf(alias));
  text << '.';
}

void AppendStreetFailure(BoundedText& text, const Database& database, const Failure& failure)
{
  const Locality locality = database.LocalityAt(failure.locality);
  text << '"' << failure.written.View() << "\" was not found in";
  AppendLocality(text, locality);
  if (failure.fault == Fault::StreetTypeDiffers) {
    text << "; there is";
    ListText list(text, ",");
    const IndexRange streets = database.StreetsOf(locality.streets, database.StreetAt(failure.street).nameIndex);
    for (std::uint32_t i = streets.first; i < streets.first + streets.count; ++i)
      if (list.Next()) AppendStreet(text, database.StreetAt(i));
    list.Finish();
  }
  text << '.';
}

/** "\"FOO ST\" was not found in SYDNEY NSW 2000; GEORGE STREET is there." */
void AppendCornerStreetUnknown(BoundedText& text, const Database& database, const Failure& failure)
{
  const bool areBoth = !failure.written.Empty() && !failure.otherWritten.Empty();
  if (areBoth) text << "Neither ";
  text << '"' << (failure.written.Empty() ? failure.otherWritten : failure.written).View() << '"';
  if (areBoth) text << " nor \"" << failure.otherWritten.View() << '"';
  text << (areBoth ? " was found in" : " was not found in");
  AppendLocality(text, database.LocalityAt(failure.locality));
  if (failure.street != kNoIndex) {
    text << ';';
    AppendStreet(text, database.StreetAt(failure.street));
    text << " is there";
  }
  text << '.';
}

void AppendNumberAndStreet(BoundedText& text, const Point& point, const Street& street)
{
  AppendNumber(text.Gap(), point);
  AppendStreet(text, street);
}

/** "GEORGE STREET and PITT STREET meet near 1 GEORGE STREET and 2 PITT STREET, SYDNEY NSW 2000; …" */
void AppendCorner(BoundedText& text, const Database& database, const Failure& failure)
{
  const Street street = database.StreetAt(failure.street), other = database.StreetAt(failure.otherStreet);
  AppendStreet(text, street);
  text << " and";
  AppendStreet(text, other);
  if (failure.points.count == 2) {
    text << " meet near";
    AppendNumberAndStreet(text, database.PointAt(failure.points.ordinals[0]), street);
    text << " and";
    AppendNumberAndStreet(text, database.PointAt(failure.points.ordinals[1]), other);
  } else if (failure.fault == Fault::CornerWritten) {
    text << " are both there, but their corner is no address";
  }
  text << ',';
  AppendLocality(text, database.LocalityAt(failure.locality));
  if (failure.fault == Fault::CornerApart) text << " do not come near each other";
  text << "; write a number and one of the streets.";
}

/** "SYDNEY is NSW 2000, not VIC 3000." */
void AppendPlaceFailure(BoundedText& text, const Database& database, const Failure& failure)
{
  const Locality locality = database.LocalityAt(failure.locality);
  text << locality.name << " is";
  ListText list(text, ",");
  for (const std::uint32_t other : database.LocalitiesNamed(locality.nameIndex)) {
    const Locality known = database.LocalityAt(other);
    if (list.Next()) text.Word(known.state).Word(known.postcode);
  }
  list.Finish();
  text << ", not";
  text.Word(failure.writtenPlace.View()) << '.';
}

void AppendUnknownLocality(BoundedText& text, const Database& database, const Failure& failure)
{
  text << "No locality was recognised";
  if (!failure.written.Empty()) text << " in \"" << failure.written.View() << '"';
  if (!failure.writtenPlace.Empty()) text << " for " << failure.writtenPlace.View();
  if (failure.locality != kNoIndex) {
    text << "; there is";
    AppendLocality(text, database.LocalityAt(failure.locality));
  }
  text << '.';
}

/** "3 addresses fit: …", or localities. */
void AppendSeveral(BoundedText& text, const Database& database, const Failure& failure)
{
  const bool areAddresses = failure.fault == Fault::SeveralAddresses;
  const PointSet& points = failure.points;
  if (areAddresses && points.count == 1)
    text << "Only this is there:";
  else
    text << points.count << (areAddresses ? " addresses fit:" : " localities fit:");
  ListText list(text, ";");
  for (std::size_t i = 0; i < std::min<std::size_t>(points.count, PointSet::kKept) && list.Next(); ++i) {
    if (areAddresses)
      AppendAddress(text, database, points.ordinals[i]);
    else
      AppendLocality(text, database.LocalityAt(points.ordinals[i]));
  }
  list.Finish(points.count);
  text << '.';
}

}  // namespace

void AppendFailure(BoundedText& text, const Database& database, const Failure& failure)
{
  switch (failure.fault) {
    case Fault::None:
      return;
    case Fault::NothingRecognised:
      text << "Neither a locality nor a street was recognised.";
      return;
    case Fault::TooLong:
      text << "The text has more than " << std::uint32_t{kMaxInputBytes} << " bytes or "
           << std::uint32_t{kMaxInputWords} << " words.";
      return;
    case Fault::LocalityUnknown:
      return AppendUnknownLocality(text, database, failure);
    case Fault::PlaceContradicts:
      return AppendPlaceFailure(text, database, failure);
    case Fault::StreetMissing:
      text << "No street was written for";
      AppendLocality(text, database.LocalityAt(failure.locality));
      text << '.';
      return;
    case Fault::StreetUnknown:
    case Fault::StreetTypeDiffers:
      return AppendStreetFailure(text, database, failure);
    case Fault::NumberMissing:
    case Fault::NumberUnknown:
      return AppendNumberFailure(text, database, failure);
    case Fault::UnitUnknown:
      return AppendUnitFailure(text, database, failure);
    case Fault::AliasWritten:
      return AppendAliasFailure(text, database, failure.number);
    case Fault::CornerStreetUnknown:
      return AppendCornerStreetUnknown(text, database, failure);
    case Fault::CornerApart:
    case Fault::CornerWritten:
      return AppendCorner(text, database, failure);
    case Fault::SeveralAddresses:
    case Fault::SeveralLocalities:
      return AppendSeveral(text, database, failure);
  }
}

}  // namespace arf
