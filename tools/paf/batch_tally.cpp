#include "batch_tally.h"

#include <numeric>
#include <string>

#include "qxpaf/arf_au.h"

namespace tool {
namespace {

constexpr std::array<std::string_view, kOutcomes> kNames = {
    "matched",        "corrected",        "primary point", "ambiguous", "no such number",
    "no such street", "no such locality", "not found",     "refused",   "broken row"};

}  // namespace

std::string_view NameOf(Outcome outcome)
{
  return kNames[static_cast<std::size_t>(outcome)];
}

bool IsFound(Outcome outcome)
{
  return outcome <= Outcome::PrimaryPoint;
}

Outcome OutcomeOf(int status, int findStatus)
{
  if (status == 0) {
    switch (findStatus) {
      case PAF_AU_FIND_CHANGED:
        return Outcome::Corrected;
      case PAF_AU_FIND_PRIMARY_POINT:
        return Outcome::PrimaryPoint;
      default:
        return Outcome::Matched;
    }
  }
  switch (findStatus) {
    case PAF_AU_FIND_SEVERAL:
      return Outcome::Ambiguous;
    case PAF_AU_FIND_NO_NUMBER:
      return Outcome::NoNumber;
    case PAF_AU_FIND_NO_STREET:
      return Outcome::NoStreet;
    case PAF_AU_FIND_NO_LOCALITY:
      return Outcome::NoLocality;
    case PAF_AU_FIND_NOT_SEARCHED:
      return Outcome::Refused;
    default:
      return Outcome::NotFound;
  }
}

void Tally::Add(const Tally& other)
{
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    counts_[i] += other.counts_[i];
  }
}

std::uint64_t Tally::Total() const
{
  return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0});
}

bool Tally::AllFound() const
{
  std::uint64_t found = 0;
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    found += IsFound(static_cast<Outcome>(i)) ? counts_[i] : 0;
  }
  return found == Total();
}

Json Tally::ToJson() const
{
  Json json = Json::object();
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    json[std::string(kNames[i])] = counts_[i];
  }
  return json;
}

Tally Tally::FromJson(const Json& json)
{
  Tally tally;
  for (std::size_t i = 0; i < kOutcomes; ++i) {
    tally.counts_[i] = json.at(std::string(kNames[i])).get<std::uint64_t>();
  }
  return tally;
}

}  // namespace tool
