/**
 * Finds the address that an input means. An input is read in every way that could make sense, from its end: state and
 * postcode, locality, street, number and unit; each reading is looked up, and a Decision chooses. A lenient search that
 * finds nothing as it was written then takes localities and streets with names like those written, after that words
 * that are no part of an address out of the text, and at last reads it as misread. All memory is in the object itself,
 * so that a search allocates nothing. For one thread at a time.
 */
#ifndef QXPAF_ARF_MATCH_MATCHER_H
#define QXPAF_ARF_MATCH_MATCHER_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "arf/match/corner_words.h"
#include "arf/match/decision.h"
#include "arf/match/engine.h"
#include "arf/match/input_text.h"
#include "arf/match/name_likeness.h"
#include "arf/match/occupancy_words.h"
#include "arf/match/reading.h"
#include "arf/match/repair.h"
#include "arf/match/street_meeting.h"
#include "arf/match/street_reading.h"

namespace arf {

struct LookupAnswer
{
  Verdict verdict = Verdict::Nothing;
  std::uint32_t ordinal = 0;  ///< when found
  bool changed = false;       ///< found only because a lenient search changed something
  bool primaryPoint = false;  ///< the building was found, the unit or level written is not in the data
  Departures departures;      ///< when found: in what the answer differs from the text
};

class Matcher
{
 public:
  /** @param engine  must outlive the matcher */
  explicit Matcher(const Engine& engine) : engine_(engine), data_(engine.Data()) {}

  LookupAnswer Lookup(std::string_view text, Rules rules);

  /** Why the last Lookup found nothing. */
  const Failure& LastFailure() const { return decision_.Deepest(); }
  /** How the last Lookup read its input; valid until the next one. */
  const Reading& LastReading() const { return decision_.Chosen(); }
  const InputText& Input() const { return input_; }

 private:
  static constexpr std::size_t kMaxPlaces = 32;
  static constexpr std::size_t kMaxSurroundings = 192;
  static constexpr std::uint32_t kMaxAliases = 16;  ///< of one name
  /** Addresses that one search looks at before it leaves the question open; no sensible input comes near it. */
  static constexpr std::uint32_t kMaxVisited = 250'000;
  /** Names that one search compares by their signatures. */
  static constexpr std::uint32_t kMaxCompared = 1'000'000;

  /** The localities that one reading of the last line allows, and the words before it. */
  struct Place
  {
    std::array<std::uint32_t, kMaxSurroundings> localities;
    std::size_t count = 0;
    WordRange body;
    Departures departures;
    Reading reading;
    bool isNamed = false;        ///< the words are the name of some locality, perhaps of another
    bool ownsDirection = false;  ///< the word before the locality's belongs to its name, and is no suffix of a street
    std::span<const std::uint32_t> Localities() const { return {localities.data(), count}; }
  };

  /** A unit or level that was written behind the street. */
  struct Trailing
  {
    Occupancy part;
    bool isLevel = false;
  };

  /** Streets that words at a corner may mean, all at the same cost. */
  struct CornerStreets
  {
    std::array<std::uint32_t, 4> streets;
    std::size_t count = 0;
    unsigned sum = 0;
    void Add(std::uint32_t street, unsigned withSum);
  };

  enum class Stage : std::uint8_t
  {
    AsWritten,  ///< names and types as they stand; faults are noted
    Alike       ///< a number must confirm everything else
  };

  /** What of the text was found in the data as it is written. */
  struct Seen
  {
    bool locality = false;
    bool street = false;  ///< name and type, in a locality as written
    bool number = false;  ///< there
  };

  /** Some streets, each once. */
  class StreetSet
  {
   public:
    /** False when there is no room for it; addresses in so many streets are several in any case. */
    bool Add(std::uint32_t street)
    {
      if (std::find(begin(), end(), street) != end()) return true;
      if (count_ == streets_.size()) return false;
      streets_[count_++] = street;
      return true;
    }
    const std::uint32_t* begin() const { return streets_.data(); }
    const std::uint32_t* end() const { return streets_.data() + count_; }

   private:
    std::array<std::uint32_t, 64> streets_;
    std::size_t count_ = 0;
  };

  /** What is done with every place that the readings of the last line give. */
  using PlaceStep = void (Matcher::*)(const Place&);

  void Search();
  void SearchBuildings();
  void ForEachPlace(PlaceStep step);
  void ReadLocality(const Tail& tail, std::size_t start, PlaceStep step);
  void ReadKnownLocality(const Tail& tail, WordRange words, std::span<const std::uint32_t> named,
                         const Departures& departures, PlaceStep step);
  void TryLocality(const WrittenPlace& written, Place& place, std::span<const std::uint32_t> named, PlaceStep step);
  bool IsLocality(const WrittenPlace& written, const NameHits& hits) const;
  void AddLocality(Place& place, std::uint32_t locality);
  LookupAnswer Answer();
  bool AreOneAddress(const PointSet& points) const;

  void SearchStreets(const Place& place);
  void SearchStreetsOf(const Place& place);
  void SearchUnitBehind(const Place& place, const OccupancyWords& unit);
  void SearchBehindBuilding(const Place& place);
  void SearchEnding(const Place& place, const StreetEnding& ending);
  void SearchSpelledOut(const Place& place, const StreetEnding& ending);
  void SearchName(const Place& place, const StreetEnding& ending, std::size_t start, const NameHit& hit);
  void SearchAliases(const Place& place, const StreetEnding& ending, std::size_t start);
  void SearchStreet(Reading& reading, const Premises& premises, std::uint32_t street, const Departures& departures);
  void SearchPremise(const Reading& reading, const Street& street, const Departures& departures);
  void SearchBuilding(const Place& place);
  void SearchBuildingIn(const Place& place, const Reading& reading, const NameHits& names, std::uint32_t locality);
  void AddStreetsOfBuilding(std::uint32_t name, std::uint32_t locality, StreetSet& streets) const;
  NameHits BuildingsNamed(WordRange words) const;
  bool IsBuilding(WordRange words) const;
  bool MayBeMeant(const Premise& premise) const;
  bool SearchPostal(const Place& place);
  void SearchPostalBeforeStreet(const Place& place);
  void SearchPostalStreet(const Reading& reading, std::uint32_t street, const Departures& departures);
  static bool AddTrailing(const Trailing& trailing, Premise& premise);

  // A lenient search beyond what was written; matcher_lenient.cpp.
  void SearchOtherWordings();
  void ReadOtherWordings(const Tail& tail, WordRange words);
  bool EndsName(const Tail& tail, std::size_t start) const;
  void SearchLeniently();
  void SearchRepaired(std::string_view text, Stage last);
  void SearchRepaired(std::string_view text, Stage last, Detour detour);
  void SearchLongerNames();
  void SearchWithoutCity();
  void SearchBeforeCity(const Tail& tail, Stage last);
  void SearchLocalityFirst(std::string_view text);
  void SearchMisread(std::string_view text);
  void SearchMeant(std::string_view meant, const Departures& departures, Stage last);
  void EndMeant(std::string_view text, const Seen& seen);
  bool IsLeftOut(std::string_view inner);
  void ReadLocalityLeniently(const Tail& tail, std::size_t start);
  void TryNames(const WrittenPlace& written, Place& place);
  void TryOtherWordings(const WrittenPlace& written, Place& place);
  void TryKnownName(const WrittenPlace& written, Place& place, const NameHit& hit);
  void TryLikeNames(const WrittenPlace& written, Place& place);
  void TryLikeNamesAnywhere(const WrittenPlace& written, Place& place, const WrittenName& name);
  void TryLikeName(const WrittenPlace& written, Place& place, const WrittenName& name, std::uint32_t stored);
  void TryNamesThatContain(const WrittenPlace& written, Place& place);
  IndexRange LocalityNamesFrom(std::string_view text) const;
  std::uint32_t LocalityAround(const Tail& tail) const;
  void TryLocalities(const WrittenPlace& written, Place& place, std::span<const std::uint32_t> localities,
                     const Departures& departures);
  bool HasNamesakeOfPostcode(const WrittenPlace& written, std::span<const std::uint32_t> localities) const;
  void TrySurroundings(const WrittenPlace& written, const Place& place);
  void TryWithoutLocality(const Tail& tail);
  void SearchLikeNames(const Place& place, const StreetEnding& ending, std::size_t start);
  void SearchLikeNamesIn(const Place& place, const StreetEnding& ending, Reading& reading, const WrittenName& written,
                         std::uint32_t locality, std::optional<Premises>& premises);
  std::optional<Departures> CompareType(const Place& place, const StreetEnding& ending, const Street& street,
                                        IndexRange sameName) const;
  bool HasSuffixed(const Street& street, IndexRange sameName) const;
  bool StateFits(const WrittenPlace& written, std::uint32_t locality) const;
  bool IsConvincing(const Departures& departures) const;

  // Corners of two streets; matcher_corner.cpp.
  void SearchCorners();
  void SearchCorner(const Place& place);
  void SearchCornerNumber(const Place& place, const CornerWords& words);
  CornerStreets FindCornerStreets(const Place& place, WordRange words, std::string_view sharedType);
  void DescribeCorner(const Place& place, const CornerWords& words);
  Failure FailureOfCorner(const Place& place, const CornerWords& words);
  void TakeNearest(const CornerStreets& a, const CornerStreets& b, std::optional<Meeting>& nearest, Failure& failure);

  void DescribeBody(WordRange body, Reading& reading) const;
  void FailWithoutPlace(const Tail& tail);
  void BlameLargest();
  void FailPlace(Fault fault, const Place& place, WordRange written);
  void FailStreet(Fault fault, const Reading& reading, std::uint32_t street, std::string_view written);
  void FailAlias(const Reading& reading, std::uint32_t street, std::uint32_t alias);
  bool Worthwhile(Fault fault) const
  {
    return !quiet_ && stage_ == Stage::AsWritten && !decision_.HasCandidates() && decision_.GoesFurther(fault);
  }
  bool Strict() const { return rules_ == Rules::Strict; }
  bool Exhausted() const { return visited_ > kMaxVisited; }

  const Engine& engine_;
  const Database& data_;
  InputText input_;
  Decision decision_;
  Rules rules_ = Rules::Strict;
  Stage stage_ = Stage::AsWritten;
  Departures repaired_;  ///< what was done to the text as a whole
  Trailing trailing_;
  bool mayBeWorded_ = false;  ///< some words have other wordings
  bool quiet_ = false;        ///< faults are those of the text as it was written
  std::uint32_t visited_ = 0;
  std::uint32_t compared_ = 0;
  Seen seen_;
  bool isBehindBuilding_ = false;           ///< streets may begin at any word but the first
  bool isAtCorner_ = false;                 ///< places are searched for two streets
  CornerStreets* cornerStreets_ = nullptr;  ///< takes the streets that are found instead of a search for numbers
  StreetMeetings meetings_;
  RepairBuffer repairBuffer_;
};

}  // namespace arf

#endif
