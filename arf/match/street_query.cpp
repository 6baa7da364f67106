#include "arf/match/street_query.h"

#include <algorithm>

#include "arf/match/last_line.h"
#include "arf/match/point_search.h"
#include "arf/match/street_reading.h"

namespace arf {
namespace {

constexpr std::size_t kLongestStreetName = 8;   // words
constexpr std::uint32_t kMaxVisited = 250'000;  // streets and addresses

class StreetQuery
{
 public:
  StreetQuery(const Engine& engine, const InputText& text) : engine_(engine), data_(engine.Data()), text_(text) {}

  bool Run()
  {
    const Tails tails(text_);
    return std::any_of(tails.begin(), tails.end(), [this](const Tail& tail) { return FindBefore(tail); });
  }

 private:
  bool FindBefore(const Tail& tail)
  {
    const StreetEndings endings(text_, {0, tail.localityEnd});
    return std::any_of(endings.begin(), endings.end(),
                       [&](const StreetEnding& ending) { return FindEnding(tail.place, ending); });
  }

  bool FindEnding(const WrittenPlace& place, const StreetEnding& ending)
  {
    std::size_t start = ending.nameEnd - std::min(kLongestStreetName, ending.nameEnd);
    for (; start < ending.nameEnd; ++start) {
      if (!MayStartName(text_, 0, start)) continue;
      for (const NameHit& hit : engine_.StreetNames().Find(text_, {start, ending.nameEnd}))
        if (hit.fit != NameFit::Article && FindNamed(place, ending, start, hit.name)) return true;
    }
    return false;
  }

  bool FindNamed(const WrittenPlace& place, const StreetEnding& ending, std::size_t start, std::uint32_t name)
  {
    const Premises premises(text_, {0, start});
    for (const std::uint32_t index : data_.StreetsNamed(name)) {
      if (++visited_ > kMaxVisited) return false;
      const Street street = data_.StreetAt(index);
      if (street.type != ending.type || street.suffix != ending.suffix) continue;
      if (!place.Empty() && !place.Fits(data_.LocalityAt(street.locality))) continue;
      if (HasPremise(street, premises)) return true;
    }
    return false;
  }

  bool HasPremise(const Street& street, const Premises& premises)
  {
    return std::any_of(premises.begin(), premises.end(), [&](const Premise& premise) {
      if (premise.lenientOnly || visited_ > kMaxVisited) return false;
      if (premise.IsEmpty()) return true;
      const PointSearch search = SearchPoints(data_, text_, street, premise, Rules::Strict);
      visited_ += search.visited;
      return !search.found.Empty() || !search.units.Empty();
    });
  }

  const Engine& engine_;
  const Database& data_;
  const InputText& text_;
  std::uint32_t visited_ = 0;
};

}  // namespace

bool NamesStreet(const Engine& engine, const InputText& text)
{
  return StreetQuery(engine, text).Run();
}

}  // namespace arf
