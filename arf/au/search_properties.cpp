#include "arf/au/search_properties.h"

#include "arf/format/ascii.h"
#include "qxpaf/arf_au.h"

namespace arf {
namespace {

template <class Append>
int ReadSetting(const PropertyRequest& request, Append append)
{
  if (!request.source.settings) return PAF_AU_ERR_UNKNOWN_PROPERTY;
  append(request.source.settings->search);
  return 0;
}

std::string_view Truth(bool value)
{
  return value ? "True" : "False";
}

bool IsTaken(std::string_view fault, BoundedText& reason)
{
  reason << fault;
  return fault.empty();
}

}  // namespace

int ReadLatLongSearchRange(const PropertyRequest& request)
{
  return ReadSetting(request, [&](const SearchSettings& search) { request.out << search.rangeText.View(); });
}

int ReadStateFilter(const PropertyRequest& request)
{
  return ReadSetting(request, [&](const SearchSettings& search) { request.out << search.states.View(); });
}

int ReadAddressFilter(const PropertyRequest& request)
{
  return ReadSetting(request, [&](const SearchSettings& search) {
    if (search.addressKinds == kAllAddressKinds) return;
    for (unsigned kind = 1; kind < kAllAddressKinds; kind <<= 1) {
      if ((search.addressKinds & kind) == 0) continue;
      if (request.out.Length() > 0) request.out << ';';
      request.out << AddressKindName(kind);
    }
  });
}

int ReadPointsOfInterest(const PropertyRequest& request)
{
  return ReadSetting(request, [&](const SearchSettings& search) { request.out << Truth(search.namedBuildingsOnly); });
}

int ReadGeographicalCodes(const PropertyRequest& request)
{
  return ReadSetting(request, [&](const SearchSettings& search) { request.out << search.geographicalCodes.View(); });
}

int ReadGeographicalCodesFilter(const PropertyRequest& request)
{
  return ReadSetting(request,
                     [&](const SearchSettings& search) { request.out << Truth(search.geographicalCodesApply); });
}

int ReadGifCommonMinimumPercent(const PropertyRequest& request)
{
  return ReadSetting(request, [&](const SearchSettings& search) { request.out << search.minimumPercent; });
}

bool WriteLatLongSearchRange(std::string_view value, const Database&, Settings& settings, BoundedText& reason)
{
  return IsTaken(SetRange(Trimmed(value), settings.search), reason);
}

bool WriteStateFilter(std::string_view value, const Database& database, Settings& settings, BoundedText& reason)
{
  return IsTaken(SetStates(value, database, settings.search), reason);
}

bool WriteAddressFilter(std::string_view value, const Database&, Settings& settings, BoundedText& reason)
{
  return IsTaken(SetAddressKinds(value, settings.search), reason);
}

bool WritePointsOfInterest(std::string_view value, const Database&, Settings& settings, BoundedText& reason)
{
  return IsTaken(SetNamedBuildingsOnly(Trimmed(value), settings.search), reason);
}

bool WriteGeographicalCodes(std::string_view value, const Database& database, Settings& settings, BoundedText& reason)
{
  return IsTaken(SetGeographicalCodes(value, database, settings.search), reason);
}

bool WriteGeographicalCodesFilter(std::string_view value, const Database&, Settings& settings, BoundedText& reason)
{
  return IsTaken(SetGeographicalCodesApply(Trimmed(value), settings.search), reason);
}

bool WriteGifCommonMinimumPercent(std::string_view value, const Database&, Settings& settings, BoundedText& reason)
{
  return IsTaken(SetMinimumPercent(Trimmed(value), settings.search), reason);
}

}  // namespace arf
