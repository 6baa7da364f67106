/**
 * Finds the address that an input means. An input is read in every way that could make sense, from its end: state and
 * postcode, locality, street, number and unit; each reading is looked up, and a Decision chooses. All memory is in the
 * object itself, so that a search allocates nothing. For one thread at a time.
 */
#ifndef QXPAF_ARF_MATCH_MATCHER_H
#define QXPAF_ARF_MATCH_MATCHER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "arf/match/decision.h"
#include "arf/match/engine.h"
#include "arf/match/input_text.h"
#include "arf/match/reading.h"
#include "arf/match/street_reading.h"

namespace arf {

struct LookupAnswer
{
  Verdict verdict = Verdict::Nothing;
  std::uint32_t ordinal = 0;  ///< when found
  bool changed = false;       ///< found only because a lenient search changed something
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
  /** Addresses that one search looks at before it leaves the question open; no sensible input comes near it. */
  static constexpr std::uint32_t kMaxVisited = 250'000;

  /** The localities that one reading of the last line allows, and the words before it. */
  struct Place
  {
    std::array<std::uint32_t, kMaxPlaces> localities;
    std::size_t count = 0;
    WordRange body;
    std::uint8_t penalty = 0;
    Reading reading;
    std::span<const std::uint32_t> Localities() const { return {localities.data(), count}; }
  };

  /** What is done with every place that the readings of the last line give. */
  using PlaceStep = void (Matcher::*)(const Place&);

  void Search();
  void ForEachPlace(PlaceStep step);
  void ReadLocality(const Tail& tail, std::size_t start, PlaceStep step);
  void TryLocality(const Tail& tail, Place& place, const NameHit& hit, PlaceStep step);
  void TryPostcodeOnly(const Tail& tail);
  void AddLocality(Place& place, std::uint32_t locality);

  void SearchStreets(const Place& place);
  void SearchEnding(const Place& place, const StreetEnding& ending);
  void SearchName(const Place& place, const StreetEnding& ending, std::size_t start, const NameHit& hit);
  void SearchStreet(Reading& reading, const Premises& premises, std::uint32_t street, std::uint8_t penalty);
  void SearchPremise(const Reading& reading, const Street& street, std::uint32_t streetIndex, std::uint8_t penalty);
  void SearchBuilding(const Place& place);
  bool SearchPostal(const Place& place);
  void SearchPostalStreet(const Reading& reading, std::uint32_t street, std::uint8_t penalty);

  void FailWithoutPlace(const Tail& tail);
  void FailPlace(Fault fault, const Place& place, WordRange written);
  void FailStreet(Fault fault, const Reading& reading, std::uint32_t street, std::string_view written);
  bool Worthwhile(Fault fault) const { return !decision_.HasCandidates() && decision_.GoesFurther(fault); }
  bool Strict() const { return rules_ == Rules::Strict; }
  bool Exhausted() const { return visited_ > kMaxVisited; }

  const Engine& engine_;
  const Database& data_;
  InputText input_;
  Decision decision_;
  Rules rules_ = Rules::Strict;
  std::uint32_t visited_ = 0;
  bool sawLocality_ = false;
};

}  // namespace arf

#endif
