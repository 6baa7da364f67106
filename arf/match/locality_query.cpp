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

/** Collects what a name, and the state and postcode that belong to it, fit; notes the first name that they do not fit.
 */
void AddNamed(const Engine& engine, const InputText& line, WordRange name, const WrittenPlace& place,
              std::vector<std::uint32_t>& found, Failure& failure)
{
  for (const NameHit& hit : engine.LocalityNames().Find(line, name)) {
    if (hit.fit == NameFit::Article) continue;
    for (const std::uint32_t locality : engine.Data().LocalitiesNamed(hit.name)) {
      AddFitting(engine.Data(), place, locality, found);
      if (failure.fault != Fault::None) continue;
      failure.fault = Fault::PlaceContradicts;
      failure.locality = locality;
      failure.writtenPlace = place.Text();
    }
  }
}

/** State and postcode may stand before the name too: "2000 SYDNEY". */
void AddBehindPlace(const Engine& engine, const InputText& line, std::vector<std::uint32_t>& found, Failure& failure)
{
  for (const Tail& tail : Tails(line)) {
    WordRange name{0, tail.localityEnd};
    WrittenPlace place = tail.place;
    for (;;) {
      const PlaceWords words = ReadPlaceAfter(line, name.first, name.last, place);
      if (words.count == 0) break;
      name.first += words.count;
      place.Merge(words.place);
      if (!name.Empty()) AddNamed(engine, line, name, place, found, failure);
    }
  }
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
    if (!name.Empty()) AddNamed(engine, line, name, tail.place, found, failure);
  }
  if (found.empty()) AddBehindPlace(engine, line, found, failure);
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
