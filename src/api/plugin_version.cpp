#include "api/plugin_version.h"

#include <cstdint>
#include <cstring>

#include "qxpaf/arf_plugin.h"

namespace qxpaf {
namespace {

/** The last versions without each feature; null where no version has it. Countries that are not listed always had both.
 */
struct Row
{
  const char* country;
  const char* gifConcordance;
  const char* addressSearch;
};

constexpr Row kLastVersionWithout[] = {
    {"AU", "5.7.270", "5.8.278"},
    {"NZ", "5.7.270", "5.8.278"},
    {"UK", "5.7.0.11", "5.10.0.14"},
    {"US", nullptr, "5.10.8"},
};

const Row* FindCountry(IArfSearcher& searcher)
{
  IArfDb* const db = searcher.GetArfDb();
  const char* const country = db != nullptr ? db->GetCountry() : nullptr;
  if (country == nullptr) return nullptr;
  for (const Row& row : kLastVersionWithout) {
    if (std::strcmp(row.country, country) == 0) return &row;
  }
  return nullptr;
}

/** Reads the number at p and moves past it and past the one character behind it. Huge numbers stay huge. */
std::uint64_t TakeNumber(const char*& p)
{
  constexpr std::uint64_t kHuge = UINT64_MAX / 16;
  std::uint64_t number = 0;
  for (; *p >= '0' && *p <= '9'; ++p) {
    if (number < kHuge) number = number * 10 + static_cast<std::uint64_t>(*p - '0');
  }
  if (*p != '\0') ++p;
  return number;
}

}  // namespace

int CompareVersions(const char* a, const char* b)
{
  while (*a != '\0' || *b != '\0') {
    const std::uint64_t left = TakeNumber(a);
    const std::uint64_t right = TakeNumber(b);
    if (left != right) return left > right ? 1 : -1;
  }
  return 0;
}

bool HasFeature(IArfSearcher& searcher, Feature feature)
{
  const Row* const row = FindCountry(searcher);
  if (row == nullptr) return true;
  const char* const minimum = feature == Feature::GifConcordance ? row->gifConcordance : row->addressSearch;
  if (minimum == nullptr) return false;
  char version[32] = {};
  if (searcher.GetProperties("PafLibVersion", version, sizeof version) != 0) return false;
  version[sizeof version - 1] = '\0';
  return CompareVersions(version, minimum) > 0;
}

}  // namespace qxpaf
