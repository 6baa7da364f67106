#include "unit/arf/match/random_addresses.h"

#include <algorithm>
#include <cctype>

#include "arf/tables/level_types.h"
#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"
#include "arf/tables/unit_types.h"

namespace arf_test {
namespace {

constexpr const char* kPlaces[] = {"MELBOURNE",     "RICHMOND",         "MOUNT ISA",      "ST KILDA",
                                   "THE GAP",       "SURFERS PARADISE", "VICTORIA POINT", "BURWOOD",
                                   "PARK ORCHARDS", "O'CONNOR",         "LAKE GARDENS",   "PERTH"};
constexpr const char* kDirections[] = {"", "", "", "EAST ", "NORTH ", "PORT ", "UPPER "};
constexpr const char* kStates[] = {"NSW", "VIC", "QLD", "SA", "WA", "TAS", "NT", "ACT"};
constexpr const char* kNames[] = {"KING",
                                  "GEORGE",
                                  "PARK",
                                  "AVENUE",
                                  "THIRD",
                                  "1ST",
                                  "THE ESPLANADE",
                                  "O'SULLIVAN",
                                  "ST KILDA",
                                  "MT ISA",
                                  "BUL BUL",
                                  "MC DONALD",
                                  "STATION",
                                  "GREAT NORTHERN",
                                  "LITTLE COLLINS",
                                  "VICTORIA",
                                  "WEST",
                                  "THE",
                                  "BROADWAY",
                                  "ST GEORGES",
                                  "BAY",
                                  "LEVEL",
                                  "UNITY",
                                  "LOTUS",
                                  "MALLEE",
                                  "ALBERT",
                                  "BRUNSWICK",
                                  "FLINDERS",
                                  "ESPERANÇA",
                                  "OLD SOUTH",
                                  "SEVENTEEN MILE ROCKS",
                                  "HIGH",
                                  "CHURCH",
                                  "QUEEN",
                                  "SHORT"};
constexpr const char* kTypes[] = {"STREET", "STREET",  "STREET", "ROAD",  "ROAD",     "AVENUE", "LANE",       "COURT",
                                  "PARADE", "TERRACE", "DRIVE",  "PLACE", "CRESCENT", "WAY",    "CUL-DE-SAC", ""};
constexpr const char* kUnits[] = {"UNIT", "UNIT", "UNIT", "UNIT", "APARTMENT", "SHOP", "FLAT", "SUITE"};
constexpr const char* kBuildings[] = {"OPERA COURT", "HARBOUR VIEW", "TOWN HALL", "GARDEN HOUSE", "THE TERRACES"};
constexpr const char* kPostal[] = {"PO BOX", "PO BOX", "GPO BOX", "LOCKED BAG", "RMB"};

using Random = std::mt19937;

std::size_t Below(Random& random, std::size_t count)
{
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

bool Chance(Random& random, int percent)
{
  return static_cast<int>(Below(random, 100)) < percent;
}

template <std::size_t Count>
std::string Any(Random& random, const char* const (&list)[Count])
{
  return list[Below(random, Count)];
}

std::string Number(Random& random, std::size_t most)
{
  return std::to_string(1 + Below(random, most));
}

RandomAddress RandomStreet(Random& random)
{
  RandomAddress street;
  if (Chance(random, 5)) {
    street.postalType = Any(random, kPostal);
    return street;
  }
  street.streetName = Any(random, kNames);
  street.streetType = Any(random, kTypes);
  if (Chance(random, 12)) {
    const auto rows = arf::StreetSuffixRows();
    street.streetSuffix = rows[Below(random, rows.size())].full;
  }
  return street;
}

void AddUnits(Random& random, const RandomAddress& building, std::vector<RandomAddress>& addresses)
{
  const std::size_t count = 1 + Below(random, 8);
  for (std::size_t i = 1; i <= count; ++i) {
    RandomAddress unit = building;
    unit.unitType = Any(random, kUnits);
    unit.unitNumber = Chance(random, 10) ? "G0" + std::to_string(i) : std::to_string(i);
    if (Chance(random, 15)) {
      unit.levelType = "LEVEL";
      unit.levelNumber = Number(random, 9);
    }
    addresses.push_back(unit);
  }
  if (Chance(random, 70)) addresses.push_back(building);
}

void AddPremises(Random& random, const RandomAddress& street, std::vector<RandomAddress>& addresses)
{
  RandomAddress premise = street;
  if (Chance(random, 4) && street.postalType.empty()) {
    premise.lot = Number(random, 40);
    addresses.push_back(premise);
    return;
  }
  premise.number =
      Number(random, 400) + (Chance(random, 10) ? std::string(1, static_cast<char>('A' + Below(random, 4))) : "");
  if (!street.postalType.empty()) {
    addresses.push_back(premise);
    return;
  }
  if (Chance(random, 10))
    premise.numberLast = std::to_string(std::stoi(premise.number) + 2 + 2 * static_cast<int>(Below(random, 4)));
  if (Chance(random, 4)) premise.building = Any(random, kBuildings);
  if (Chance(random, 20))
    AddUnits(random, premise, addresses);
  else
    addresses.push_back(premise);
}

std::string Lower(std::string text)
{
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return text;
}

/** Puts words behind each other with single spaces. */
void Append(std::string& text, const std::string& words)
{
  if (!text.empty() && !words.empty()) text += ' ';
  text += words;
}

std::string NumberOf(const RandomAddress& address)
{
  return address.number + (address.numberLast.empty() ? "" : "-" + address.numberLast);
}

std::string PlaceOf(const RandomAddress& address)
{
  return address.locality + " " + address.state + " " + address.postcode;
}

}  // namespace

std::vector<RandomAddress> RandomAddresses(Random& random, std::size_t count)
{
  std::vector<RandomAddress> addresses;
  while (addresses.size() < count) {
    RandomAddress place;
    place.locality = Any(random, kDirections) + Any(random, kPlaces);
    place.state = Any(random, kStates);
    place.postcode = std::to_string(2000 + Below(random, 3));
    for (std::size_t streets = 1 + Below(random, 30); streets > 0; --streets) {
      RandomAddress street = RandomStreet(random);
      street.locality = place.locality;
      street.state = place.state;
      street.postcode = place.postcode;
      for (std::size_t premises = 1 + Below(random, 40); premises > 0; --premises)
        AddPremises(random, street, addresses);
    }
  }
  std::uint32_t dpid = 30'000'000;
  for (RandomAddress& address : addresses) address.dpid = dpid++;
  return addresses;
}

std::string ToCsv(const std::vector<RandomAddress>& addresses)
{
  std::string csv =
      "dpid,building,unit_type,unit_number,level_type,level_number,lot,number_first,number_last,street_name,"
      "street_type,street_suffix,postal_type,postal_number,locality,state,postcode\n";
  for (const RandomAddress& a : addresses) {
    const bool isPostal = !a.postalType.empty();
    const std::string fields[] = {std::to_string(a.dpid),
                                  a.building,
                                  a.unitType,
                                  a.unitNumber,
                                  a.levelType,
                                  a.levelNumber,
                                  a.lot,
                                  isPostal ? "" : a.number,
                                  a.numberLast,
                                  a.streetName,
                                  a.streetType,
                                  a.streetSuffix,
                                  a.postalType,
                                  isPostal ? a.number : "",
                                  a.locality,
                                  a.state,
                                  a.postcode};
    for (const std::string& field : fields) csv += field + ",";
    csv.back() = '\n';
  }
  return csv;
}

std::string WrittenForm(const RandomAddress& a)
{
  std::string text = a.building.empty() ? "" : a.building + ",";
  const bool slashed = a.unitType == "UNIT" && a.levelNumber.empty();
  if (!a.unitNumber.empty() && !slashed) Append(text, a.unitType + " " + a.unitNumber);
  if (!a.levelNumber.empty()) Append(text, a.levelType + " " + a.levelNumber);
  if (!a.lot.empty()) Append(text, "LOT " + a.lot);
  if (!a.postalType.empty()) Append(text, a.postalType);
  Append(text, (slashed ? a.unitNumber + "/" : "") + NumberOf(a));
  Append(text, a.streetName);
  Append(text, a.streetType);
  Append(text, a.streetSuffix);
  return text + ", " + PlaceOf(a);
}

std::string SlashedForm(const RandomAddress& a)
{
  RandomAddress untyped = a;
  untyped.unitType = "UNIT";
  untyped.levelType.clear();
  untyped.levelNumber.clear();
  return WrittenForm(untyped);
}

std::string AbbreviatedForm(const RandomAddress& a)
{
  std::string text = a.building;
  if (!a.unitNumber.empty()) Append(text, std::string(arf::AbbreviateUnitType(a.unitType)) + " " + a.unitNumber);
  if (!a.levelNumber.empty()) Append(text, std::string(arf::AbbreviateLevelType(a.levelType)) + " " + a.levelNumber);
  if (!a.lot.empty()) Append(text, "LOT " + a.lot);
  Append(text, a.postalType);
  Append(text, NumberOf(a));
  Append(text, a.streetName);
  Append(text, std::string(arf::AbbreviateStreetType(a.streetType)));
  Append(text, std::string(arf::AbbreviateStreetSuffix(a.streetSuffix)));
  Append(text, PlaceOf(a));
  return Lower(text);
}

}  // namespace arf_test
