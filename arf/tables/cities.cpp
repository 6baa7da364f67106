#include "arf/tables/cities.h"

namespace arf {
namespace {

struct City
{
  std::string_view name;
  std::string_view state;
};

constexpr City kCities[] = {
    {"ADELAIDE", "SA"},       {"ALBURY", "NSW"},     {"BALLARAT", "VIC"},    {"BENDIGO", "VIC"},
    {"BRISBANE", "QLD"},      {"BUNBURY", "WA"},     {"CAIRNS", "QLD"},      {"CANBERRA", "ACT"},
    {"CENTRAL COAST", "NSW"}, {"DARWIN", "NT"},      {"GEELONG", "VIC"},     {"GOLD COAST", "QLD"},
    {"HOBART", "TAS"},        {"LAUNCESTON", "TAS"}, {"MACKAY", "QLD"},      {"MELBOURNE", "VIC"},
    {"NEWCASTLE", "NSW"},     {"PERTH", "WA"},       {"ROCKHAMPTON", "QLD"}, {"SUNSHINE COAST", "QLD"},
    {"SYDNEY", "NSW"},        {"TOOWOOMBA", "QLD"},  {"TOWNSVILLE", "QLD"},  {"WAGGA WAGGA", "NSW"},
    {"WOLLONGONG", "NSW"},
};

}  // namespace

std::string_view CityAtEnd(std::string_view upper, std::string_view state)
{
  if (upper.empty()) return {};
  for (const City& city : kCities) {
    if (upper.back() != city.name.back() || !upper.ends_with(city.name)) continue;
    if (!state.empty() && city.state != state) continue;
    const std::size_t before = upper.size() - city.name.size();
    if (before == 0 || upper[before - 1] == ' ') return city.name;
  }
  return {};
}

}  // namespace arf
