#include "arf/search/search_settings.h"

#include <charconv>
#include <cmath>

#include "arf/format/ascii.h"
#include "arf/format/fold.h"
#include "arf/search/code_list.h"
#include "arf/tables/states.h"

namespace arf {
namespace {

struct KindRow
{
  std::string_view name;
  unsigned kind;
};

constexpr KindRow kKinds[] = {
    {"Street", kStreetAddress},
    {"Unit", kUnitAddress},
    {"Postal", kPostalAddress},
    {"Place", kPlaceAddress},
};

bool ReadTruth(std::string_view text, bool& value)
{
  const bool isTrue = EqualIgnoringCase(text, "True");
  if (isTrue || EqualIgnoringCase(text, "False")) {
    value = isTrue;
    return true;
  }
  return false;
}

constexpr std::string_view kTruth = "The value is True or False.";

/** A state as the data writes it; empty where neither the tables nor the data know it. */
std::string_view StateOf(std::string_view written, const Database& database)
{
  char key[64];
  const std::size_t length = MatchKey(written.substr(0, sizeof key), key);
  const std::string_view upper(key, length);
  if (const std::string_view code = StateCode(upper); !code.empty()) return code;
  for (std::uint32_t i = 0; i < database.LocalityCount(); ++i)
    if (database.LocalityState(i) == upper) return database.LocalityState(i);
  return {};
}

}  // namespace

std::string_view SetRange(std::string_view text, SearchSettings& settings)
{
  double metres = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), metres);
  const bool isNumber = fault == std::errc() && end == text.data() + text.size() && std::isfinite(metres);
  if (!isNumber || metres < 0) return "The range is a number of metres, 0 or more.";
  FixedText<32> kept;
  if (!kept.Append(text)) return "The range has too many digits.";
  settings.rangeText = kept;
  settings.rangeMetres = metres;
  return {};
}

std::string_view SetStates(std::string_view text, const Database& database, SearchSettings& settings)
{
  FixedText<64> states;
  while (!text.empty()) {
    const std::string_view entry = TakeListEntry(text);
    if (entry.empty()) continue;
    const std::string_view state = StateOf(entry, database);
    if (state.empty()) return "A state of the list is not known; write codes as NSW;VIC.";
    if (!states.Empty()) states.Append(";");
    if (!states.Append(state)) return "The list of states is too long.";
  }
  settings.states = states;
  return {};
}

std::string_view SetAddressKinds(std::string_view text, SearchSettings& settings)
{
  unsigned kinds = 0;
  while (!text.empty()) {
    const std::string_view entry = TakeListEntry(text);
    if (entry.empty()) continue;
    unsigned kind = 0;
    for (const KindRow& row : kKinds)
      if (EqualIgnoringCase(row.name, entry)) kind = row.kind;
    if (kind == 0) return "The kinds of addresses are Street, Unit, Postal and Place.";
    kinds |= kind;
  }
  settings.addressKinds = kinds == 0 ? kAllAddressKinds : kinds;
  return {};
}

std::string_view AddressKindName(unsigned kind)
{
  for (const KindRow& row : kKinds)
    if (row.kind == kind) return row.name;
  return {};
}

std::string_view SetNamedBuildingsOnly(std::string_view text, SearchSettings& settings)
{
  return ReadTruth(text, settings.namedBuildingsOnly) ? std::string_view() : kTruth;
}

std::string_view SetGeographicalCodes(std::string_view text, const Database& database, SearchSettings& settings)
{
  std::size_t count = 0;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view entry = TakeListEntry(rest);
    if (entry.empty()) continue;
    const WrittenCode written = SplitCode(entry);
    if (written.kind.empty() || written.code.empty()) return "A code is written as MeshBlock=11205670000.";
    if (!FindCodeKind(database, written.kind)) return "The data has no codes of one of these kinds.";
    if (++count > kMaxCodes) return "There are more than 64 codes.";
  }
  FixedText<1024> kept;
  if (!kept.Append(text)) return "The codes are longer than 1,024 bytes.";
  settings.geographicalCodes = kept;
  return {};
}

std::string_view MissingCodeKind(const SearchSettings& settings, const Database& database)
{
  std::string_view rest = settings.geographicalCodesApply ? settings.geographicalCodes.View() : std::string_view();
  while (!rest.empty()) {
    const WrittenCode written = SplitCode(TakeListEntry(rest));
    if (!written.kind.empty() && !FindCodeKind(database, written.kind)) return written.kind;
  }
  return {};
}

std::string_view SetGeographicalCodesApply(std::string_view text, SearchSettings& settings)
{
  return ReadTruth(text, settings.geographicalCodesApply) ? std::string_view() : kTruth;
}

std::string_view SetMinimumPercent(std::string_view text, SearchSettings& settings)
{
  std::uint32_t percent = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), percent);
  if (fault != std::errc() || end != text.data() + text.size() || percent > 100)
    return "The value is a whole number from 0 to 100.";
  settings.minimumPercent = percent;
  return {};
}

}  // namespace arf
