#include "arf/tables/cities.h"

#include <algorithm>
#include <iterator>

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

bool IsCity(std::string_view upper, std::string_view state)
{
  return std::any_of(std::begin(kCities), std::end(kCities),
                     [&](const City& city) { return city.name == upper && (state.empty() || city.state == state); });
}

}  // namespace arf
