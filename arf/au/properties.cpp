#include "arf/au/properties.h"

#include <algorithm>
#include <charconv>

#include "arf/au/property_request.h"
#include "arf/au/search_properties.h"
#include "arf/au/version.h"
#include "arf/format/ascii.h"
#include "qxpaf/arf_au.h"

namespace arf {
namespace {

constexpr std::string_view kNotice =
    "Not certified for address matching. Identifiers are those of the data that the database was built from.";

constexpr std::string_view kMintedNotice =
    "Not certified for address matching. Identifiers were minted when the database was built: they are no delivery "
    "point identifiers and must not be printed on mail.";

/** A name, or with an argument behind it the beginning of one, and what answers and takes its value. */
struct Property
{
  std::string_view name;
  bool takesArgument;
  int (*read)(const PropertyRequest& request);
  bool (*write)(std::string_view value, const Database& database, Settings& settings, BoundedText& reason);
};

int ReadDelimiter(const PropertyRequest& request)
{
  if (!request.source.settings) return PAF_AU_ERR_UNKNOWN_PROPERTY;
  request.out << request.source.settings->delimiter;
  return 0;
}

bool WriteDelimiter(std::string_view value, const Database&, Settings& settings, BoundedText& reason)
{
  // What numbers and coordinates are written with cannot divide them.
  const auto isPlain = [](char c) {
    const char lower = LowerAscii(c);
    return c > 0 && c != '\n' && c != '-' && c != '.' && !(lower >= 'a' && lower <= 'z') && !(c >= '0' && c <= '9');
  };
  if (value.size() != 1 || !isPlain(value.front())) {
    reason << "The delimiter must be one ASCII character that is no letter, digit, dash, dot or line feed.";
    return false;
  }
  settings.delimiter = value.front();
  return true;
}

/** Without a searcher, what a new one starts with. */
int ReadOutputFields(const PropertyRequest& request)
{
  const FieldList fields = request.source.settings ? request.source.settings->outputFields : FieldList();
  fields.Write(request.source.database, request.out);
  return 0;
}

bool WriteOutputFields(std::string_view value, const Database& database, Settings& settings, BoundedText& reason)
{
  const std::string_view fault = settings.outputFields.Read(database, value);
  if (!fault.empty()) reason << "Not a list of fields: " << fault << '.';
  return fault.empty();
}

int ReadEngineVersion(const PropertyRequest& request)
{
  request.out << kEngineVersion;
  return 0;
}

int ReadLibVersion(const PropertyRequest& request)
{
  request.out << kLibVersion;
  return 0;
}

int ReadNotice(const PropertyRequest& request)
{
  const Database* database = request.source.database;
  const bool isMinted = database && database->Info(kIdentifiersKey) == kMintedIdentifiers;
  request.out << (isMinted ? kMintedNotice : kNotice);
  return 0;
}

int ReadInfo(const PropertyRequest& request, std::string_view key)
{
  const std::string_view value = request.source.database ? request.source.database->Info(key) : std::string_view();
  if (value.empty()) {
    request.reason << "The database was built without this value.";
    return PAF_AU_ERR_UNKNOWN_PROPERTY;
  }
  request.out << value;
  return 0;
}

int ReadAttribution(const PropertyRequest& request)
{
  return ReadInfo(request, "attribution");
}

int ReadMatchPenalties(const PropertyRequest& request)
{
  if (!request.source.departures) return PAF_AU_ERR_UNKNOWN_PROPERTY;
  AppendDepartures(request.out, *request.source.departures);
  return 0;
}

int ReadPenaltyTable(const PropertyRequest& request)
{
  AppendPenaltyTable(request.out);
  return 0;
}

int ListProperties(const PropertyRequest& request);
int NameByIndex(const PropertyRequest& request);

/** Looked through from the first on; what is asked for every letter of a mailing comes first. */
constexpr Property kProperties[] = {
    {"Barcode:", true, ReadBarcode, nullptr},
    {"Barcode2:", true, ReadBarcode2, nullptr},
    {"Barcode3:", true, ReadBarcode3, nullptr},
    {"BSP:", true, ReadBsp, nullptr},
    {"NPSP:", true, ReadNpsp, nullptr},
    {"Delimiter", false, ReadDelimiter, WriteDelimiter},
    {"OutputFields", false, ReadOutputFields, WriteOutputFields},
    {"PafEngineVersion", false, ReadEngineVersion, nullptr},
    {"PafLibVersion", false, ReadLibVersion, nullptr},
    {"PafVersionInfo", false, ReadVersionInfo, nullptr},
    {"SortPlanDate", false, ReadSortPlanDate, nullptr},
    {"Attribution", false, ReadAttribution, nullptr},
    {"Notice", false, ReadNotice, nullptr},
    {"LatLongSearchRange", false, ReadLatLongSearchRange, WriteLatLongSearchRange},
    {"StateFilter", false, ReadStateFilter, WriteStateFilter},
    {"AddressFilter", false, ReadAddressFilter, WriteAddressFilter},
    {"PointsOfInterest", false, ReadPointsOfInterest, WritePointsOfInterest},
    {"GeographicalCodes", false, ReadGeographicalCodes, WriteGeographicalCodes},
    {"GeographicalCodesFilter", false, ReadGeographicalCodesFilter, WriteGeographicalCodesFilter},
    {"GifCommonMinimumPercent", false, ReadGifCommonMinimumPercent, WriteGifCommonMinimumPercent},
    {"MatchPenalties", false, ReadMatchPenalties, nullptr},
    {"PenaltyTable", false, ReadPenaltyTable, nullptr},
    {"ArfStatus:", true, ReadArfStatus, nullptr},
    {"ArfVersion:", true, ReadArfVersion, nullptr},
    {"PropertyName", true, NameByIndex, nullptr},
};

/** Answers itself, and is no part of its answer. */
constexpr Property kList = {"Properties", false, ListProperties, nullptr};

/** Calls `visit` with the name of each property that has a value with this source. */
template <class Visit>
void ForEachName(const PropertySource& source, Visit visit)
{
  for (const Property& property : kProperties) {
    BoundedText nowhere(nullptr, 0);
    if (!property.takesArgument && property.read({{}, source, nowhere, nowhere}) == 0) visit(property.name);
  }
}

int ListProperties(const PropertyRequest& request)
{
  ForEachName(request.source, [&](std::string_view name) {
    if (request.out.Length() > 0) request.out << ';';
    request.out << name;
  });
  return 0;
}

/** The name with a number from 1; empty when the number is none or too large. */
int NameByIndex(const PropertyRequest& request)
{
  const std::string_view number = request.argument;
  if (number.empty()) return PAF_AU_ERR_UNKNOWN_PROPERTY;
  std::uint32_t index = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), index);
  if (result.ec != std::errc() || result.ptr != number.data() + number.size()) return 0;
  ForEachName(request.source, [&](std::string_view name) {
    if (index > 0 && --index == 0) request.out << name;
  });
  return 0;
}

bool Means(const Property& property, std::string_view name)
{
  return EqualIgnoringCase(property.takesArgument ? name.substr(0, property.name.size()) : name, property.name);
}

const Property* FindProperty(std::string_view name)
{
  if (Means(kList, name)) return &kList;
  const auto property = std::find_if(std::begin(kProperties), std::end(kProperties),
                                     [name](const Property& row) { return Means(row, name); });
  return property == std::end(kProperties) ? nullptr : property;
}

}  // namespace

int ReadProperty(std::string_view name, const PropertySource& source, BoundedText& out, BoundedText& reason)
{
  const Property* property = FindProperty(name);
  if (!property) return PAF_AU_ERR_UNKNOWN_PROPERTY;
  const std::string_view argument = property->takesArgument ? name.substr(property->name.size()) : std::string_view();
  return property->read({argument, source, out, reason});
}

int WriteProperty(std::string_view name, std::string_view value, const Database& database, Settings& settings,
                  BoundedText& reason)
{
  const Property* property = FindProperty(name);
  if (property && property->write)
    return property->write(value, database, settings, reason) ? 0 : PAF_AU_ERR_PROPERTY_VALUE;
  reason << (property ? "The property \"" : "There is no property \"") << name
         << (property ? "\" can only be read." : "\".");
  return property ? PAF_AU_ERR_READ_ONLY_PROPERTY : PAF_AU_ERR_UNKNOWN_PROPERTY;
}

}  // namespace arf
