/** How much work one search for hints does at most, and how hints are ranked; for the files of HintSearch only. */
#ifndef QXPAF_ARF_HINT_HINT_LIMITS_H
#define QXPAF_ARF_HINT_HINT_LIMITS_H

#include <cstddef>
#include <cstdint>

#include "arf/match/input_text.h"

namespace arf {

// What a search looks at before it makes do with what it has; only texts that fit very much come near it.
inline constexpr std::uint32_t kMaxVisited = 1500;
inline constexpr std::uint32_t kMaxCompared = 96;
inline constexpr std::uint32_t kMaxPoints = 20'000;
inline constexpr std::size_t kLeastScanned = 2;       ///< letters; too many streets begin with fewer
inline constexpr std::size_t kLeastTurned = 3;        ///< letters of a street that its number may stand behind
inline constexpr std::size_t kMaxScanned = 400;       ///< streets or localities behind the listed ones, and other names
inline constexpr std::uint32_t kMaxBuildings = 24;    ///< names of buildings
inline constexpr std::size_t kMaxBuildingPoints = 4;  ///< addresses of one of them

// Ranks: how well a hint fits. The number counts in its lowest two bits.
inline constexpr std::uint8_t kUnfinishedRank = 4;  ///< the last word is a part of a longer one
inline constexpr std::uint8_t kUnsureRank = 7;      ///< a kind of delivery of which only a part is there
inline constexpr std::uint8_t kSpellingRank = 8;

/** The rest of the words from `first` on that have no break between them, at most `most`. */
inline std::size_t EndOfPart(const InputText& words, std::size_t first, std::size_t most)
{
  std::size_t end = first + 1;
  while (end < words.Count() && end - first < most && words[end].before != Joint::Break) ++end;
  return end;
}

}  // namespace arf

#endif
