/**
 * Corrects a last line: finds the one locality that is meant by a name, a state and a postcode in any order, of which
 * one may be missing or wrong, or by a name whose words were said otherwise, or with one typing error.
 */
#ifndef QXPAF_ARF_MATCH_LAST_LINE_FIXER_H
#define QXPAF_ARF_MATCH_LAST_LINE_FIXER_H

#include <cstdint>

#include "arf/match/decision.h"
#include "arf/match/engine.h"
#include "arf/match/input_text.h"

namespace arf {

struct LastLineAnswer
{
  Verdict verdict = Verdict::Nothing;
  std::uint32_t locality = 0;  ///< when found
  bool changed = false;        ///< something that was written was replaced
};

class LastLineFixer
{
 public:
  /** @param engine  must outlive the fixer */
  explicit LastLineFixer(const Engine& engine) : engine_(engine), data_(engine.Data()) {}

  LastLineAnswer Fix(std::string_view text);

  const Failure& LastFailure() const { return failure_; }
  /** How the last text was read; valid until the next one. */
  const Reading& LastReading() const { return reading_; }
  const InputText& Input() const { return input_; }

 private:
  /** A name with what stands before and behind it taken as state, postcode and country. */
  struct Line
  {
    WordRange name;
    WrittenPlace place;
  };

  void Collect();
  void CollectFrom(const Line& line);
  void CollectName(const Line& line);
  void CollectOtherWordings(const Line& line);
  void CollectHits(const Line& line, const NameHits& hits, const Departures& departures);
  void CollectPostcode(const Line& line);
  void CollectTypos(const Line& line);
  void CollectTypo(const Line& line, std::string_view written, std::uint32_t name);
  void Add(const Line& line, std::uint32_t locality, const Departures& departures);
  LastLineAnswer Answer();

  const Engine& engine_;
  const Database& data_;
  InputText input_;
  PointSet candidates_;  ///< places of localities, not of addresses
  Failure failure_;
  Reading reading_;
};

}  // namespace arf

#endif
