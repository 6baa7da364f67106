#include "unit/arf/build/address_model.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <numeric>
#include <set>
#include <tuple>

#include "arf/format/fold.h"

namespace arf_test {
namespace {

std::uint32_t Below(Random& random, std::uint32_t limit)
{
  return std::uniform_int_distribution<std::uint32_t>(0, limit - 1)(random);
}

bool Chance(Random& random, std::uint32_t oneIn)
{
  return Below(random, oneIn) == 0;
}

template <class List>
std::string Pick(Random& random, const List& list)
{
  return std::string(list[Below(random, static_cast<std::uint32_t>(std::size(list)))]);
}

constexpr std::string_view kSyllables[] = {"BAR", "KIN", "TON",   "MON", "ROS", "O'",
                                           "É",   "ST ", "-HILL", "MAR", "Ü",   "NO"};
constexpr std::string_view kStates[] = {"ACT", "NSW", "NT", "OT", "QLD", "SA", "TAS", "VIC", "WA"};
constexpr std::string_view kStreetTypes[] = {"STREET", "STREET", "ROAD", "AVENUE", "CUL-DE-SAC", "UNHEARD", ""};
constexpr std::string_view kStreetSuffixes[] = {"", "", "", "NORTH", "SOUTH EAST"};
constexpr std::string_view kPostalTypes[] = {"PO BOX", "GPO BOX", "LOCKED BAG", "RMB", "CARE PO"};
constexpr std::string_view kSuffixes[] = {"", "", "", "A", "B", "ZZ"};
constexpr std::string_view kUnitTypes[] = {"UNIT", "UNIT", "UNIT", "SHOP", "MARINE BERTH", ""};
constexpr std::string_view kUnitNumbers[] = {"1", "2", "3", "10", "12A", "G07", "007", "B", "1-3"};
constexpr std::string_view kLevelTypes[] = {"LEVEL", "GROUND", "SUB-BASEMENT"};
constexpr std::string_view kLevelNumbers[] = {"", "1", "2", "10"};
constexpr std::string_view kLots[] = {"1", "12", "3B", "LOT"};
constexpr std::string_view kBuildings[] = {"THE TOWERS", "CAFÉ \"AU LAIT\"", "ST JOHN'S, EAST WING", "B"};

std::string RandomName(Random& random)
{
  std::string name;
  for (std::uint32_t i = 2 + Below(random, 3); i > 0; --i) name += Pick(random, kSyllables);
  return arf::DisplayForm(name + "A");
}

void PutNumbers(Random& random, std::uint32_t number, ModelAddress& address)
{
  address.numberFirst = number;
  address.numberFirstSuffix = Pick(random, kSuffixes);
  if (!Chance(random, 8)) return;
  address.numberLast = number + Below(random, 20);
  address.numberLastSuffix = Pick(random, kSuffixes);
  const bool isSame = address.numberLast == number && address.numberLastSuffix == address.numberFirstSuffix;
  if (isSame) address.numberLast = number + 2;
}

void PutParts(Random& random, ModelAddress& address)
{
  if (Chance(random, 3)) {
    address.unitType = Pick(random, kUnitTypes);
    address.unitNumber = Chance(random, 2) ? std::to_string(1 + Below(random, 400)) : Pick(random, kUnitNumbers);
  }
  if (Chance(random, 10)) {
    address.levelType = Pick(random, kLevelTypes);
    address.levelNumber = Pick(random, kLevelNumbers);
  }
  if (Chance(random, 20)) address.lot = Pick(random, kLots);
  if (Chance(random, 20)) address.building = Pick(random, kBuildings);
}

void PutPlace(Random& random, ModelAddress& address, std::int32_t latitude, std::int32_t longitude)
{
  if (Chance(random, 30)) return;
  const bool isFar = Chance(random, 50);
  const auto spread = isFar ? 30'000'000U : 400U;
  address.latitude = std::clamp(latitude + static_cast<std::int32_t>(Below(random, spread)), -90'000'000, 90'000'000);
  address.longitude =
      std::clamp(longitude + static_cast<std::int32_t>(Below(random, spread)), -180'000'000, 180'000'000);
}

/** What the addresses of one street have in common. */
struct ModelStreet
{
  ModelAddress common;
  std::uint32_t length = 1;
  std::int32_t latitude = 0, longitude = 0;
};

ModelStreet RandomStreet(Random& random, const ModelAddress& locality)
{
  ModelStreet street{locality, 1 + Below(random, 60),
                     -40'000'000 + static_cast<std::int32_t>(Below(random, 30'000'000)),
                     110'000'000 + static_cast<std::int32_t>(Below(random, 50'000'000))};
  if (Chance(random, 12)) {
    street.common.isPostal = true;
    street.common.streetType = Pick(random, kPostalTypes);
    street.length = Chance(random, 8) ? 3000 : 200;
  } else if (!Chance(random, 15)) {
    street.common.streetName = RandomName(random);
    street.common.streetType = Pick(random, kStreetTypes);
    street.common.streetSuffix = Pick(random, kStreetSuffixes);
    if (Chance(random, 30)) street.length = 1500;
  }
  return street;
}

ModelAddress AddressOn(Random& random, const ModelStreet& street, std::uint32_t number)
{
  ModelAddress address = street.common;
  if (address.isPostal) {
    if (address.streetType == "CARE PO") number = 0;
    address.numberFirst = number;
    if (number > 0 && Chance(random, 5)) address.numberPrefix = "C";
    if (number > 0 && Chance(random, 5)) address.numberFirstSuffix = "A";
  } else if (address.streetName.empty()) {
    address.lot = std::to_string(number);
    if (Chance(random, 2)) address.building = Pick(random, kBuildings);
  } else {
    if (!Chance(random, 20)) PutNumbers(random, number, address);
    PutParts(random, address);
  }
  PutPlace(random, address, street.latitude, street.longitude);
  return address;
}

/** DPIDs that are all different, in no order. */
class DpidSource
{
 public:
  explicit DpidSource(Random& random) : random_(random) {}
  std::uint32_t Next()
  {
    for (;;) {
      const std::uint32_t dpid = 10'000'000 + Below(random_, 90'000'000);
      if (used_.insert(dpid).second) return dpid;
    }
  }

 private:
  Random& random_;
  std::set<std::uint32_t> used_;
};

void PutAttributes(Random& random, ModelAddress& address)
{
  // One column of few values, one that is often empty, one with a value of its own for every address.
  address.attributes = {"mesh " + std::to_string(Below(random, 37)), Chance(random, 4) ? "Ja, \"ß\"" : "",
                        "GA" + std::to_string(address.dpid)};
}

std::string Quoted(std::string_view text)
{
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

std::string Field(Random& random, const std::string& text)
{
  const bool needsQuotes = text.find_first_of(",\"\r\n") != std::string::npos;
  return needsQuotes || Chance(random, 10) ? Quoted(text) : text;
}

std::string LowerAscii(std::string text)
{
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

/** Another way to write a text whose display form it is. */
std::string AnyWriting(Random& random, std::string text)
{
  if (Chance(random, 4)) text = LowerAscii(text);
  const std::size_t blank = text.find(' ');
  if (blank != std::string::npos && Chance(random, 6)) text.insert(blank, " \n");
  return text;
}

std::string NumberText(std::uint32_t number)
{
  return number == 0 ? "" : std::to_string(number);
}

std::string Degrees(const std::optional<std::int32_t>& value)
{
  if (!value) return "";
  char text[32];
  std::snprintf(text, sizeof text, "%.6f", *value / 1e6);
  return text;
}

std::string AnyStreetType(Random& random, const std::string& type)
{
  if (type == "STREET" && Chance(random, 3)) return Chance(random, 2) ? "St." : "ST";
  if (type == "AVENUE" && Chance(random, 3)) return Chance(random, 2) ? "AVE" : "Av";
  return AnyWriting(random, type);
}

std::vector<std::pair<std::string, std::string>> Fields(Random& random, const ModelAddress& a,
                                                        const std::vector<std::string>& attributeNames)
{
  const bool isStreet = !a.isPostal;
  std::vector<std::pair<std::string, std::string>> fields = {
      {"dpid", std::to_string(a.dpid)},
      {"locality", AnyWriting(random, a.locality)},
      {"state", AnyWriting(random, a.state)},
      {"postcode", a.postcode},
      {"street_name", AnyWriting(random, a.streetName)},
      {"street_type", isStreet ? AnyStreetType(random, a.streetType) : ""},
      {"street_suffix", AnyWriting(random, a.streetSuffix)},
      {"number_first", isStreet ? NumberText(a.numberFirst) : ""},
      {"number_first_suffix", isStreet ? a.numberFirstSuffix : ""},
      {"number_last", NumberText(a.numberLast)},
      {"number_last_suffix", a.numberLastSuffix},
      {"postal_type", isStreet ? "" : AnyWriting(random, a.streetType)},
      {"postal_number", isStreet ? "" : a.numberPrefix + NumberText(a.numberFirst) + a.numberFirstSuffix},
      {"unit_type", AnyWriting(random, a.unitType)},
      {"unit_number", a.unitNumber},
      {"level_type", AnyWriting(random, a.levelType)},
      {"level_number", a.levelNumber},
      {"lot", a.lot},
      {"building", AnyWriting(random, a.building)},
      {"latitude", Degrees(a.latitude)},
      {"longitude", Degrees(a.longitude)}};
  for (std::size_t i = 0; i < attributeNames.size(); ++i) fields.emplace_back(attributeNames[i], a.attributes[i]);
  return fields;
}

/** Runs of digits without leading zeros, and single other bytes, each marked as what it is. */
std::vector<std::string> NaturalTokens(std::string_view text)
{
  std::vector<std::string> tokens;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t end = i;
    while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
    if (end == i) {
      tokens.emplace_back(1, text[i++]);
      continue;
    }
    std::string digits(text.substr(i, end - i));
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    // Twenty places are enough for every number here; they make the order of bytes that of values.
    tokens.push_back(std::string(21 - digits.size(), '0') + digits);
    i = end;
  }
  return tokens;
}

auto NaturalOrder(std::string_view text)
{
  return std::pair(NaturalTokens(text), std::string(text));
}

auto LocalityOrder(const ModelAddress& a)
{
  return std::tuple(arf::MatchKey(a.locality), a.locality, a.state, a.postcode);
}

auto StreetOrder(const ModelAddress& a)
{
  const int kind = a.isPostal ? 0 : a.streetName.empty() ? 1 : 2;
  return std::tuple(kind, arf::MatchKey(a.streetName), a.streetName, a.streetType, a.streetSuffix);
}

auto PointOrder(const ModelAddress& a)
{
  return std::tuple(a.numberFirst, NaturalOrder(a.numberPrefix), NaturalOrder(a.numberFirstSuffix), a.numberLast,
                    NaturalOrder(a.numberLastSuffix), NaturalOrder(a.unitNumber), NaturalOrder(a.unitType),
                    NaturalOrder(a.levelNumber), NaturalOrder(a.levelType), NaturalOrder(a.lot),
                    NaturalOrder(a.building), a.dpid);
}

}  // namespace

bool ComesNaturallyBefore(std::string_view a, std::string_view b)
{
  return NaturalOrder(a) < NaturalOrder(b);
}

ModelAddress PlainAddress(std::uint32_t dpid)
{
  ModelAddress address;
  address.dpid = dpid;
  address.locality = "ALPHA";
  address.state = "NSW";
  address.postcode = "2000";
  address.streetName = "FIRST";
  address.streetType = "STREET";
  address.numberFirst = 1;
  return address;
}

Model RandomModel(Random& random, std::size_t count)
{
  Model model;
  model.attributeNames = {"mesh_block", "note", "pid"};
  DpidSource dpids(random);
  while (model.addresses.size() < count) {
    ModelAddress locality;
    locality.locality = RandomName(random);
    locality.state = Pick(random, kStates);
    locality.postcode = std::to_string(2000 + Below(random, 300));
    for (std::uint32_t streets = 1 + Below(random, 20); streets > 0; --streets) {
      const ModelStreet street = RandomStreet(random, locality);
      std::uint32_t number = 0;
      for (std::uint32_t i = 0; i < street.length && model.addresses.size() < count; ++i) {
        if (number == 0 || !Chance(random, 3)) number += 1 + Below(random, 3);
        ModelAddress& address = model.addresses.emplace_back(AddressOn(random, street, number));
        address.dpid = dpids.Next();
        PutAttributes(random, address);
      }
    }
  }
  return model;
}

std::string ToCsv(const Model& model, Random& random)
{
  ModelAddress names;
  names.attributes = model.attributeNames;
  std::vector<std::size_t> columns(Fields(random, names, model.attributeNames).size());
  std::iota(columns.begin(), columns.end(), std::size_t{0});
  std::shuffle(columns.begin(), columns.end(), random);
  std::vector<std::size_t> rows(model.addresses.size());
  std::iota(rows.begin(), rows.end(), std::size_t{0});
  std::shuffle(rows.begin(), rows.end(), random);
  const std::string lineEnd = Chance(random, 2) ? "\r\n" : "\n";
  std::string csv = Chance(random, 2) ? "\xEF\xBB\xBF" : "";
  const auto addRow = [&](const ModelAddress& address, bool isHeader) {
    const auto fields = Fields(random, address, model.attributeNames);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const auto& [name, value] = fields[columns[i]];
      if (i > 0) csv += ',';
      csv += Field(random, !isHeader ? value : Chance(random, 2) ? arf::DisplayForm(name) : name);
    }
    csv += lineEnd;
  };
  addRow(names, true);
  for (const std::size_t row : rows) addRow(model.addresses[row], false);
  return csv;
}

void SortAsDatabase(Model& model)
{
  std::vector<std::size_t> order(model.addresses.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  using Key = decltype(std::tuple(LocalityOrder({}), StreetOrder({}), PointOrder({})));
  std::vector<Key> keys;
  keys.reserve(order.size());
  for (const ModelAddress& a : model.addresses) keys.emplace_back(LocalityOrder(a), StreetOrder(a), PointOrder(a));
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
  std::vector<ModelAddress> sorted;
  sorted.reserve(order.size());
  for (const std::size_t i : order) sorted.push_back(std::move(model.addresses[i]));
  model.addresses = std::move(sorted);
}

bool SameLocality(const ModelAddress& a, const ModelAddress& b)
{
  return LocalityOrder(a) == LocalityOrder(b);
}

bool SameStreet(const ModelAddress& a, const ModelAddress& b)
{
  return SameLocality(a, b) && StreetOrder(a) == StreetOrder(b);
}

}  // namespace arf_test
