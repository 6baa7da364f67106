#include "arf/match/locality_query.h"

#include <algorithm>

#include "arf/match/last_line.h"

namespace arf {
namespace {

void AddFitting(const Database& data, const WrittenPlace& place, std::uint32_t locality,
                std::vector<std::uint32_t>& found)
{
  if (place.Fits(data.LocalityAt(locality))) found.push_back(locality);
}

void AddByPlace(const Database& data, const WrittenPlace& place, std::vector<std::uint32_t>& found)
{
  if (!place.postcode.Empty()) {
    for (const std::uint32_t locality : data.LocalitiesOfPostcode(place.postcode.View()))
      AddFitting(data, place, locality, found);
    return;
  }
  for (std::uint32_t locality = 0; locality < data.LocalityCount(); ++locality)
    AddFitting(data, place, locality, found);
}

}  // namespace

Failure FindLocalities(const Engine& engine, const InputText& line, std::vector<std::uint32_t>& found)
{
  const Database& data = engine.Data();
  Failure failure;
  found.clear();
  for (const Tail& tail : Tails(line)) {
    const WordRange name{0, tail.localityEnd};
    if (name.Empty() && !tail.place.Empty()) AddByPlace(data, tail.place, found);
    if (name.Empty()) continue;
    for (const NameHit& hit : engine.LocalityNames().Find(line, name)) {
      if (hit.fit == NameFit::Article) continue;
      for (const std::uint32_t locality : data.LocalitiesNamed(hit.name)) {
        AddFitting(data, tail.place, locality, found);
        if (failure.fault != Fault::None) continue;
        failure.fault = Fault::PlaceContradicts;
        failure.locality = locality;
        failure.writtenPlace = tail.place.Text();
      }
    }
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  if (!found.empty()) return {};
  if (failure.fault == Fault::None) {
    failure.fault = line.Count() == 0 ? Fault::NothingRecognised : Fault::LocalityUnknown;
    failure.written.Append(line.Text(0, line.Count()));
  }
  return failure;
}

}  // namespace arf
