#include "arf/hint/tail_reading.h"

#include <algorithm>

#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

constexpr std::size_t kMaxTypeWords = 3;
constexpr std::size_t kMaxSuffixWords = 2;

/** Whether a type or suffix begins as it was typed; "CUL DE" begins CUL-DE-SAC. */
bool Begins(std::string_view stored, std::string_view typed)
{
  const auto isSame = [](char a, char b) { return a == b || (a == '-' && b == ' '); };
  return stored.size() >= typed.size() &&
         std::equal(typed.begin(), typed.end(), stored.begin(), [&](char b, char a) { return isSame(a, b); });
}

/** Whether a full form or abbreviation of a table begins with the text; both begin with the same letter. */
bool BeginsAnyOf(std::span<const WordRow> rows, std::string_view typed)
{
  const auto row = std::lower_bound(rows.begin(), rows.end(), typed.front(),
                                    [](const WordRow& r, char letter) { return r.full.front() < letter; });
  const auto end = std::find_if(row, rows.end(), [&](const WordRow& r) { return r.full.front() != typed.front(); });
  return std::any_of(row, end,
                     [&](const WordRow& r) { return Begins(r.full, typed) || Begins(r.abbreviation, typed); });
}

bool FitsWord(std::string_view stored, std::string_view written, std::string_view full, bool open,
              std::string_view (*abbreviate)(std::string_view))
{
  if (written.empty()) return true;
  if (stored.empty()) return false;
  if (stored == full) return true;
  if (!open) return false;
  return Begins(stored, written) || Begins(abbreviate(stored), written);
}

}  // namespace

bool TypedEnding::Fits(std::string_view streetType, std::string_view streetSuffix) const
{
  return FitsWord(streetType, type, fullType, isTypeOpen, AbbreviateStreetType) &&
         FitsWord(streetSuffix, suffix, fullSuffix, isSuffixOpen, AbbreviateStreetSuffix);
}

/** Puts together the readings from one word on: type, suffix, both or none, each with what follows it. */
class TailReader::Collector
{
 public:
  Collector(TailReader& reader, bool mistyped, std::span<TypedTail> tails)
      : reader_(reader), typed_(*reader.typed_), mistyped_(mistyped), tails_(tails)
  {
  }

  std::size_t Run(std::size_t first)
  {
    Add({}, first);
    const std::size_t last = std::min(typed_.Count(), first + kMaxTypeWords);
    for (std::size_t end = first + 1; end <= last && typed_[end - 1].before != Joint::Break; ++end) {
      TypedEnding ending;
      ending.type = typed_.Text({first, end});
      ending.fullType = ExpandStreetType(ending.type);
      ending.isTypeOpen = typed_.IsOpen({first, end});
      const bool mayBegin = ending.isTypeOpen && BeginsAnyOf(StreetTypeRows(), ending.type);
      if (ending.fullType.empty() && !mayBegin) continue;
      Add(ending, end);
      AddSuffixes(ending, end);
    }
    AddSuffixes({}, first);
    return count_;
  }

 private:
  void AddSuffixes(TypedEnding ending, std::size_t first)
  {
    const std::size_t last = std::min(typed_.Count(), first + kMaxSuffixWords);
    for (std::size_t end = first + 1; end <= last && typed_[end - 1].before != Joint::Break; ++end) {
      ending.suffix = typed_.Text({first, end});
      ending.fullSuffix = ExpandStreetSuffix(ending.suffix);
      ending.isSuffixOpen = typed_.IsOpen({first, end});
      const bool mayBegin = ending.isSuffixOpen && BeginsAnyOf(StreetSuffixRows(), ending.suffix);
      if (!ending.fullSuffix.empty() || mayBegin) Add(ending, end);
    }
  }

  /** Adds a reading whose place begins with the word `first`, if there is one. */
  void Add(const TypedEnding& ending, std::size_t first)
  {
    TypedTail tail{ending, first < typed_.Count(), {}};
    if (tail.hasPlace) tail.places = reader_.Places(first, mistyped_);
    const bool isReading = tail.hasPlace ? !tail.places.empty() : !mistyped_;
    if (isReading && count_ < tails_.size()) tails_[count_++] = tail;
  }

  TailReader& reader_;
  const TypedText& typed_;
  bool mistyped_;
  std::span<TypedTail> tails_;
  std::size_t count_ = 0;
};

void TailReader::Start(const TypedText& typed)
{
  typed_ = &typed;
  places_.Clear();
  tails_.Clear();
}

std::span<const Place> TailReader::Places(std::size_t first, bool mistyped)
{
  if (const auto known = places_.Find(first, mistyped)) return *known;
  return places_.Keep(first, mistyped, placeReader_.Read(*typed_, first, mistyped, places_.Room()));
}

std::span<const TypedTail> TailReader::Read(std::size_t first, bool mistyped)
{
  if (const auto known = tails_.Find(first, mistyped)) return *known;
  return tails_.Keep(first, mistyped, Collector(*this, mistyped, tails_.Room()).Run(first));
}

}  // namespace arf
