/** What a client chooses for searches by place and for enumerations. */
#ifndef QXPAF_ARF_SEARCH_SEARCH_SETTINGS_H
#define QXPAF_ARF_SEARCH_SEARCH_SETTINGS_H

#include <cstdint>
#include <string_view>

#include "arf/format/database.h"
#include "arf/match/fixed_text.h"

namespace arf {

/** The kinds that addresses are divided into. */
enum AddressKind : unsigned
{
  kStreetAddress = 1,  ///< a house or building in a street
  kUnitAddress = 2,    ///< a unit or level of one
  kPostalAddress = 4,  ///< a postal box or bag
  kPlaceAddress = 8,   ///< known by a lot or a building's name only
  kAllAddressKinds = 15
};

struct SearchSettings
{
  FixedText<32> rangeText{"100"};  ///< metres, as it was set
  double rangeMetres = 100;
  FixedText<64> states;  ///< codes separated by ";"; empty for all
  unsigned addressKinds = kAllAddressKinds;
  bool namedBuildingsOnly = false;
  FixedText<1024> geographicalCodes;  ///< "MeshBlock=…;Postcode=…", as it was set; empty for all
  bool geographicalCodesApply = true;
  std::uint32_t minimumPercent = 0;  ///< of concordances
};

// Each takes a setting from a text, and returns what is wrong with it, a sentence; empty when it was taken.
std::string_view SetRange(std::string_view text, SearchSettings& settings);
std::string_view SetStates(std::string_view text, const Database& database, SearchSettings& settings);
std::string_view SetAddressKinds(std::string_view text, SearchSettings& settings);
std::string_view SetNamedBuildingsOnly(std::string_view text, SearchSettings& settings);
std::string_view SetGeographicalCodes(std::string_view text, const Database& database, SearchSettings& settings);
std::string_view SetGeographicalCodesApply(std::string_view text, SearchSettings& settings);
std::string_view SetMinimumPercent(std::string_view text, SearchSettings& settings);

/** The first kind of the geographical codes that apply which a database does not have; empty when there is none. */
std::string_view MissingCodeKind(const SearchSettings& settings, const Database& database);

/** The name of one kind, as SetAddressKinds reads it. */
std::string_view AddressKindName(unsigned kind);

}  // namespace arf

#endif
