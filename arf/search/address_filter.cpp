#include "arf/search/address_filter.h"

#include <algorithm>

namespace arf {
namespace {

/** Whether a list separated by ";" has an entry. */
bool Lists(std::string_view list, std::string_view entry)
{
  while (!list.empty())
    if (TakeListEntry(list) == entry) return true;
  return false;
}

}  // namespace

PointFilter* AddressFilter::Configure(const SearchSettings& settings)
{
  settings_ = settings;
  street_ = {};
  codeCount_ = 0;
  std::string_view rest = settings.geographicalCodesApply ? settings_.geographicalCodes.View() : std::string_view();
  while (!rest.empty() && codeCount_ < kMaxCodes) {
    const WrittenCode written = SplitCode(TakeListEntry(rest));
    if (written.kind.empty()) continue;
    Code code{{}, written.code, false, static_cast<std::uint32_t>(codeCount_)};
    if (const auto kind = FindCodeKind(database_, written.kind)) {
      code.kind = *kind;
      code.isKnown = true;
      for (std::size_t i = codeCount_; i-- > 0;)
        if (codes_[i].kind.source == kind->source && codes_[i].kind.column == kind->column)
          code.group = codes_[i].group;
    }
    codes_[codeCount_++] = code;
  }
  const bool takesAll = settings.states.Empty() && settings.addressKinds == kAllAddressKinds &&
                        !settings.namedBuildingsOnly && codeCount_ == 0;
  return takesAll ? nullptr : this;
}

void AddressFilter::EnterStreet(std::uint32_t ordinal)
{
  street_ = database_.StreetAt(database_.StreetOf(ordinal));
  locality_ = database_.LocalityAt(street_.locality);
  takesStreet_ = TakesStreet();
}

bool AddressFilter::TakesStreet() const
{
  if (!settings_.states.Empty() && !Lists(settings_.states.View(), locality_.state)) return false;
  if (street_.isPostal) return (settings_.addressKinds & kPostalAddress) != 0;
  if (street_.name.empty()) return (settings_.addressKinds & kPlaceAddress) != 0;
  return (settings_.addressKinds & (kStreetAddress | kUnitAddress)) != 0;
}

bool AddressFilter::Takes(std::uint32_t ordinal)
{
  const bool isSameStreet = ordinal >= street_.points.first && ordinal - street_.points.first < street_.points.count;
  if (!isSameStreet) EnterStreet(ordinal);
  return takesStreet_ && TakesCodes(ordinal) && TakesPoint(ordinal);
}

bool AddressFilter::TakesPoint(std::uint32_t ordinal) const
{
  constexpr unsigned kInStreets = kStreetAddress | kUnitAddress;
  const unsigned kinds = settings_.addressKinds & kInStreets;
  const bool asksUnit = !street_.isPostal && !street_.name.empty() && kinds != kInStreets;
  if (!asksUnit && !settings_.namedBuildingsOnly) return true;
  const Point point = database_.PointAt(ordinal);
  if (settings_.namedBuildingsOnly && point.building.empty()) return false;
  const bool isUnit = !point.unitType.empty() || !point.unitNumber.empty() || !point.levelType.empty();
  return !asksUnit || (kinds & (isUnit ? kUnitAddress : kStreetAddress)) != 0;
}

/** Of each kind that codes were given for, one must be the point's. */
bool AddressFilter::TakesCodes(std::uint32_t ordinal) const
{
  for (std::uint32_t group = 0; group < codeCount_; ++group) {
    bool isGroup = false, fits = false;
    CodeText text;
    for (std::size_t i = group; i < codeCount_ && !fits; ++i) {
      if (codes_[i].group != group) continue;
      isGroup = true;
      fits = codes_[i].isKnown &&
             IsSameCode(codes_[i].kind, codes_[i].code, CodeOf(database_, codes_[i].kind, ordinal, locality_, text));
    }
    if (isGroup && !fits) return false;
  }
  return true;
}

}  // namespace arf
