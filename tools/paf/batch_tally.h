/** How the rows of a batch came out. */
#ifndef PAF_TOOL_BATCH_TALLY_H
#define PAF_TOOL_BATCH_TALLY_H

#include <array>
#include <cstdint>
#include <string_view>

#include "json.h"

namespace tool {

enum class Outcome
{
  Matched,
  Corrected,
  PrimaryPoint,
  Ambiguous,
  NoNumber,
  NoStreet,
  NoLocality,
  NotFound,
  Refused,
  BrokenRow
};
inline constexpr std::size_t kOutcomes = 10;

/** "no such street": what the user reads. */
std::string_view NameOf(Outcome outcome);

/** True when an address was found. */
bool IsFound(Outcome outcome);

/** What a lookup's status and find status mean together. */
Outcome OutcomeOf(int status, int findStatus);

/** Counts outcomes. */
class Tally
{
 public:
  void Count(Outcome outcome) { ++counts_[static_cast<std::size_t>(outcome)]; }
  void Add(const Tally& other);

  std::uint64_t Of(Outcome outcome) const { return counts_[static_cast<std::size_t>(outcome)]; }
  std::uint64_t Total() const;
  bool AllFound() const;

  /** An object with a member for every outcome. */
  Json ToJson() const;
  static Tally FromJson(const Json& json);

 private:
  std::array<std::uint64_t, kOutcomes> counts_{};
};

}  // namespace tool

#endif
