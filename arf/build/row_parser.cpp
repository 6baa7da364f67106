#include "arf/build/row_parser.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "arf/build/report_writer.h"
#include "arf/build/text_input.h"
#include "arf/format/fold.h"
#include "arf/tables/level_types.h"
#include "arf/tables/postal_types.h"
#include "arf/tables/states.h"
#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"
#include "arf/tables/unit_types.h"

namespace arf {
namespace {

constexpr std::uint32_t kMinDpid = 10000000;
constexpr std::size_t kDpidDigits = 8;
constexpr std::size_t kPostcodeDigits = 4;
constexpr std::size_t kMaxNumberDigits = 9;
constexpr std::size_t kMaxSuffixLength = 4;
constexpr double kUnitsPerDegree = 1e6;

bool IsDigit(char c)
{
  return c >= '0' && c <= '9';
}

bool IsLetter(char c)
{
  return c >= 'A' && c <= 'Z';
}

bool IsDigits(std::string_view text, std::size_t count)
{
  return text.size() == count && std::all_of(text.begin(), text.end(), IsDigit);
}

/** The length of the run at the front of `text` for whose characters `is` holds. */
template <class Is>
std::size_t RunLength(std::string_view text, Is is)
{
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), is) - text.begin());
}

bool IsNumberSuffix(std::string_view text)
{
  const auto fits = [](char c) { return IsLetter(c) || IsDigit(c) || c == '/'; };
  return text.size() <= kMaxSuffixLength && std::all_of(text.begin(), text.end(), fits);
}

std::uint32_t NumberOf(std::string_view digits)
{
  std::uint32_t number = 0;
  for (const char digit : digits) number = number * 10 + static_cast<std::uint32_t>(digit - '0');
  return number;
}

std::string_view Trimmed(std::string_view text)
{
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

}  // namespace

RowParser::RowParser(const ColumnMap& columns)
    : columns_(columns),
      attributeScratch_(columns.Attributes().size()),
      identifier_(columns.AttributePlace(kSourceIdentifier)),
      principal_(columns.AttributePlace(kPrincipalIdentifier)),
      primary_(columns.AttributePlace(kPrimaryIdentifier))
{
}

const ParsedRow* RowParser::Parse(std::span<const std::string_view> fields)
{
  if (fields.size() != columns_.FieldCount()) {
    const RowFault fault = WrongFieldCount(0, fields.size(), columns_.FieldCount());
    fault_ = fault.what;
    reason_ = fault.reason;
    isLeftOut_ = false;
    return nullptr;
  }
  fields_ = fields;
  const bool isGood = IsInUse() && ParseDpid() && ParseLocality() && ParsePlace() && ParseNumbers() && ParseParts() &&
                      ParseCoordinates();
  if (!isGood) return nullptr;
  ParseAttributes();
  return &row_;
}

bool RowParser::IsInUse()
{
  if (!IsEmpty(Column::DateRetired)) return LeaveOut("retired");
  if (!IsAlias()) return true;
  if (!columns_.TakesAliases()) return LeaveOut("an alias of another address");
  const bool hasPrincipal = !Trimmed(columns_.AttributeField(fields_, kPrincipalIdentifier)).empty();
  return hasPrincipal || LeaveOut("an alias of an address that is not said");
}

bool RowParser::IsAlias() const
{
  const std::string_view alias = Trimmed(Raw(Column::AliasPrincipal));
  return alias == "A" || alias == "ALIAS";
}

bool RowParser::LeaveOut(std::string_view reason)
{
  fault_ = reason_ = reason;
  isLeftOut_ = true;
  return false;
}

bool RowParser::ParseDpid()
{
  row_.dpid = 0;
  if (!columns_.Has(Column::Dpid)) return HasSourceIdentifier();
  const std::string_view text = Trimmed(Raw(Column::Dpid));
  if (text.empty()) return Fail(Column::Dpid, "is empty");
  if (!IsDigits(text, kDpidDigits) || NumberOf(text) < kMinDpid) {
    return FailWithValue(Column::Dpid, text, "is not a number from 10000000 to 99999999");
  }
  row_.dpid = NumberOf(text);
  return true;
}

/** An identifier can be made only from one of the source. */
bool RowParser::HasSourceIdentifier()
{
  const std::string_view text = columns_.AttributeField(fields_, kSourceIdentifier);
  if (!Trimmed(text).empty()) return true;
  fault_ = reason_ = std::string(kSourceIdentifier) + ": is empty";
  isLeftOut_ = false;
  return false;
}

bool RowParser::ParseLocality()
{
  if (IsEmpty(Column::Locality)) return Fail(Column::Locality, "is empty");
  if (IsEmpty(Column::State)) return Fail(Column::State, "is empty");
  if (!Name(Column::Locality, row_.locality) || !Text(Column::State, row_.state)) return false;
  const std::string_view code = StateCode(MatchKey(row_.state));
  if (code.empty()) return FailWithValue(Column::State, row_.state, "is not a state or territory");
  row_.state = code;
  return ParsePostcode();
}

bool RowParser::ParsePostcode()
{
  row_.postcode = Trimmed(Raw(Column::Postcode));
  if (row_.postcode.empty()) return Fail(Column::Postcode, "is empty");
  if (IsDigits(row_.postcode, kPostcodeDigits)) return true;
  const bool isShort = IsDigits(row_.postcode, kPostcodeDigits - 1);
  return FailWithValue(Column::Postcode, row_.postcode,
                       isShort ? "is not four digits (a leading zero may be lost)" : "is not four digits");
}

bool RowParser::ParsePlace()
{
  row_.isPostal = !IsEmpty(Column::PostalType);
  if (row_.isPostal) return ParsePostalDelivery();
  if (!IsEmpty(Column::PostalNumber)) return Fail(Column::PostalNumber, "is given without postal_type");
  return ParseStreet();
}

bool RowParser::ParseStreet()
{
  if (!Type(Column::StreetType, ExpandStreetType, row_.streetType)) return false;
  if (!Type(Column::StreetSuffix, ExpandStreetSuffix, row_.streetSuffix)) return false;
  if (!IsEmpty(Column::StreetName)) return Name(Column::StreetName, row_.streetName);
  row_.streetName = {};
  for (const Column column :
       {Column::StreetType, Column::StreetSuffix, Column::NumberFirst, Column::NumberFirstSuffix}) {
    if (!IsEmpty(column)) return Fail(column, "is given without street_name");
  }
  if (!IsEmpty(Column::Lot) || !IsEmpty(Column::Building)) return true;
  return Fail(Column::StreetName, "is empty, and so are postal_type, lot and building");
}

bool RowParser::ParsePostalDelivery()
{
  row_.streetName = row_.streetSuffix = {};
  for (const Column column : {Column::StreetName, Column::StreetType, Column::StreetSuffix, Column::NumberFirst,
                              Column::NumberFirstSuffix, Column::NumberLast, Column::NumberLastSuffix}) {
    if (!IsEmpty(column)) return Fail(column, "is given beside postal_type");
  }
  return Type(Column::PostalType, ExpandPostalType, row_.streetType);
}

bool RowParser::ParseNumbers()
{
  row_.numberPrefix = {};
  if (row_.isPostal) return ParsePostalNumber();
  return ParseNumber(Column::NumberFirst, Column::NumberFirstSuffix, row_.numberFirst, row_.numberFirstSuffix) &&
         ParseNumber(Column::NumberLast, Column::NumberLastSuffix, row_.numberLast, row_.numberLastSuffix) &&
         CheckRange();
}

/** Letters, digits, letters; blanks and hyphens between them do not count. */
bool RowParser::ParsePostalNumber()
{
  row_.numberFirst = row_.numberLast = 0;
  row_.numberFirstSuffix = row_.numberLastSuffix = {};
  std::string_view text;
  if (!Text(Column::PostalNumber, text)) return false;
  postalNumber_.clear();
  std::copy_if(text.begin(), text.end(), std::back_inserter(postalNumber_),
               [](char c) { return c != ' ' && c != '-'; });
  const std::string_view number = postalNumber_;
  if (number.empty()) {
    const bool isNeeded = !ExpandPostalType(row_.streetType).empty() && PostalTypeTakesNumber(row_.streetType);
    return !isNeeded || Fail(Column::PostalNumber, "is empty");
  }
  const std::size_t prefix = RunLength(number, IsLetter);
  const std::size_t digits = RunLength(number.substr(prefix), IsDigit);
  row_.numberPrefix = number.substr(0, prefix);
  row_.numberFirst = digits <= kMaxNumberDigits ? NumberOf(number.substr(prefix, digits)) : 0;
  row_.numberFirstSuffix = number.substr(prefix + digits);
  const bool fits = row_.numberFirst > 0 && IsNumberSuffix(row_.numberPrefix) && IsNumberSuffix(row_.numberFirstSuffix);
  return fits || FailWithValue(Column::PostalNumber, text, "is not the number of a postal delivery");
}

/** Digits, with letters in front of and behind them. */
bool RowParser::ParseNumber(Column column, Column suffixColumn, std::uint32_t& number, std::string_view& suffix)
{
  std::string_view text;
  if (!Text(column, text) || !Text(suffixColumn, suffix)) return false;
  number = 0;
  if (!IsNumberSuffix(suffix)) return FailWithValue(suffixColumn, suffix, "is not a number's suffix");
  const std::string_view prefix = text.substr(0, RunLength(text, IsLetter));
  const std::string_view behind = Trimmed(text.substr(prefix.size()));
  const std::size_t digits = RunLength(behind, IsDigit);
  const std::string_view rest = Trimmed(behind.substr(digits));
  const bool restFits = rest.empty() || (IsLetter(rest[0]) && IsNumberSuffix(rest));
  const bool prefixFits = IsNumberSuffix(prefix) && (prefix.empty() || TakePrefix(column, prefix));
  if (digits > kMaxNumberDigits || !restFits || !prefixFits || (digits == 0 && !text.empty())) {
    return FailWithValue(column, text, "is not a number");
  }
  number = NumberOf(behind.substr(0, digits));
  if (!rest.empty() && !suffix.empty()) {
    return FailWithValue(column, text, "has a suffix of its own beside " + std::string(NameOf(suffixColumn)));
  }
  if (!rest.empty()) suffix = rest;
  return number > 0 || suffix.empty() || Fail(suffixColumn, "is given without a number");
}

/** The first number's prefix holds for the whole range: the last one bears the same or none. */
bool RowParser::TakePrefix(Column column, std::string_view prefix)
{
  if (column == Column::NumberFirst) row_.numberPrefix = prefix;
  return row_.numberPrefix == prefix;
}

/** A range has an end above its beginning, or the same number with another suffix; an end that says nothing goes. */
bool RowParser::CheckRange()
{
  if (row_.numberLast == 0) return true;
  if (row_.numberFirst == 0) return Fail(Column::NumberLast, "is given without number_first");
  if (row_.numberLast < row_.numberFirst) {
    return FailWithValue(Column::NumberLast, std::to_string(row_.numberLast), "is less than number_first");
  }
  if (row_.numberLast == row_.numberFirst && row_.numberLastSuffix == row_.numberFirstSuffix) {
    row_.numberLast = 0;
    row_.numberLastSuffix = {};
  }
  return true;
}

bool RowParser::ParseParts()
{
  return Type(Column::UnitType, ExpandUnitType, row_.unitType) && Text(Column::UnitNumber, row_.unitNumber) &&
         Type(Column::LevelType, ExpandLevelType, row_.levelType) && Text(Column::LevelNumber, row_.levelNumber) &&
         Text(Column::Lot, row_.lot) &&
         Text(IsEmpty(Column::Building) ? Column::SiteName : Column::Building, row_.building);
}

bool RowParser::ParseCoordinates()
{
  row_.latitude = row_.longitude = kNoCoordinate;
  const bool hasLatitude = !IsEmpty(Column::Latitude), hasLongitude = !IsEmpty(Column::Longitude);
  if (!hasLatitude && !hasLongitude) return true;
  if (!hasLatitude) return Fail(Column::Latitude, "is empty, although longitude is not");
  if (!hasLongitude) return Fail(Column::Longitude, "is empty, although latitude is not");
  return ParseDegrees(Column::Latitude, 90, row_.latitude) && ParseDegrees(Column::Longitude, 180, row_.longitude);
}

bool RowParser::ParseDegrees(Column column, double limit, std::int32_t& degrees)
{
  const std::string_view text = Trimmed(Raw(column));
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool isNumber = error == std::errc() && end == text.data() + text.size() && std::isfinite(value);
  if (!isNumber) return FailWithValue(column, text, "is not a number of degrees");
  if (std::abs(value) > limit) return FailWithValue(column, text, "is out of range");
  degrees = static_cast<std::int32_t>(std::lround(value * kUnitsPerDegree));
  return true;
}

void RowParser::ParseAttributes()
{
  const std::vector<ColumnMap::Attribute>& attributes = columns_.Attributes();
  row_.attributes.resize(attributes.size());
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    const std::size_t field = attributes[i].field;
    row_.attributes[i] =
        field < fields_.size() ? ToPlainText(fields_[field], attributeScratch_[i]) : std::string_view();
  }
  if (columns_.IsRegister()) ClearOwnIdentifiers();
}

/** Registers may give addresses that are their own principal or primary one the identifier of themselves. */
void RowParser::ClearOwnIdentifiers()
{
  std::vector<std::string_view>& attributes = row_.attributes;
  if (principal_ < attributes.size() && !IsAlias()) attributes[principal_] = {};
  if (primary_ < attributes.size() && attributes[primary_] == attributes[identifier_]) attributes[primary_] = {};
}

bool RowParser::IsEmpty(Column column) const
{
  return Raw(column).find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/** The display form of a column's text. */
bool RowParser::Text(Column column, std::string_view& text)
{
  text = ToDisplayForm(Raw(column), scratch_[static_cast<std::size_t>(column)]);
  return text.size() <= kMaxNameLength || Fail(column, "is longer than " + std::to_string(kMaxNameLength) + " bytes");
}

/** A name that can be searched for. */
bool RowParser::Name(Column column, std::string_view& name)
{
  if (!Text(column, name)) return false;
  char first[4];
  return MatchKey(name, first) > 0 || FailWithValue(column, name, "has neither a letter nor a digit");
}

/** The full form of a type, or the text as it is when the tables do not know it. */
bool RowParser::Type(Column column, Expand expand, std::string_view& type)
{
  if (!Text(column, type)) return false;
  if (type.empty()) return true;
  char key[kMaxNameLength];
  const std::string_view full = expand({key, MatchKey(type, key)});
  if (!full.empty()) {
    type = full;
    return true;
  }
  unknown_.Add(column, type);
  return true;
}

bool RowParser::Fail(Column column, const std::string& what)
{
  fault_ = reason_ = std::string(NameOf(column)) + ": " + what;
  isLeftOut_ = false;
  return false;
}

bool RowParser::FailWithValue(Column column, std::string_view value, const std::string& what)
{
  static constexpr std::size_t kShown = 40;
  std::string shown;
  ToUtf8(value, shown);
  if (shown.empty()) shown = value;
  if (shown.size() > kShown) {
    std::size_t end = kShown;
    while (end > 0 && (shown[end] & 0xC0) == 0x80) --end;  // between two characters
    shown.replace(end, std::string::npos, "…");
  }
  Fail(column, "\"" + shown + "\" " + what);
  reason_ = std::string(NameOf(column)) + ": " + what;
  return false;
}

void UnknownTypes::Add(Column column, std::string_view type, std::uint64_t rows)
{
  auto& types = rows_[static_cast<std::size_t>(column)];
  if (const auto seen = types.find(type); seen != types.end()) {
    seen->second += rows;
  } else if (types.size() < kMaxTypes) {
    types.emplace(type, rows);
  }
}

void UnknownTypes::Add(const UnknownTypes& other)
{
  for (std::size_t column = 0; column < kColumns; ++column) {
    for (const auto& [type, rows] : other.rows_[column]) Add(Column(column), type, rows);
  }
}

std::vector<std::string> UnknownTypes::Warnings() const
{
  static constexpr std::size_t kShown = 10;
  std::vector<std::string> warnings;
  for (std::size_t column = 0; column < kColumns; ++column) {
    if (rows_[column].empty()) continue;
    std::string warning(kColumnNames[column]);
    warning += ": not in the tables, kept as written:";
    std::size_t shown = 0;
    for (const auto& [type, rows] : rows_[column]) {
      if (shown++ < kShown) warning += (shown > 1 ? ", " : " ") + type + " (" + std::to_string(rows) + ")";
    }
    if (shown > kShown) warning += " and " + std::to_string(shown - kShown) + " more";
    warnings.push_back(warning);
  }
  return warnings;
}

}  // namespace arf
