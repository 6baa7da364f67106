#include "arf/match/name_likeness.h"

#include <algorithm>
#include <cstring>

#include "arf/match/input_text.h"
#include "qxpaf/text/fuzzy.h"
#include "qxpaf/text/phonetic.h"

namespace arf {
namespace {

constexpr std::size_t kShortestMistyped = 4;  // letters, of the longer of the two names
constexpr std::size_t kLongestShort = 5;      // of the longer
constexpr std::size_t kShortestTwoTypos = 7;  // of the shorter
constexpr std::size_t kShortestSound = 4;     // of the shorter
constexpr int kMostSoundErrors = 3;

/** Another digit is another name. */
bool HaveSameDigits(std::string_view a, std::string_view b)
{
  for (;;) {
    a.remove_prefix(static_cast<std::size_t>(std::find_if(a.begin(), a.end(), IsDigit) - a.begin()));
    b.remove_prefix(static_cast<std::size_t>(std::find_if(b.begin(), b.end(), IsDigit) - b.begin()));
    if (a.empty() || b.empty() || a.front() != b.front()) return a.empty() && b.empty();
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
}

}  // namespace

WrittenName::WrittenName(std::string_view key) : name_(key), signature_(name_.View()), sound_{}
{
  if (IsComparable()) Metaphone(sound_.data(), name_.Terminated(), kSoundLength);
}

Likeness WrittenName::Compare(std::string_view storedKey) const
{
  const CanonicalName stored(storedKey);
  const std::size_t shorter = std::min(name_.View().size(), stored.View().size());
  const std::size_t longer = std::max(name_.View().size(), stored.View().size());
  if (longer + 1 < kShortestMistyped || longer > kLongest) return Likeness::None;
  const int errors = CompareStrings2(name_.Terminated(), stored.Terminated(), kMostSoundErrors, false);
  if (errors <= 0 || errors > kMostSoundErrors || !HaveSameDigits(name_.View(), stored.View())) return Likeness::None;
  const auto soundsAlike = [&] {
    Sound sound{};
    Metaphone(sound.data(), stored.Terminated(), kSoundLength);
    return sound_[0] != '\0' && std::strcmp(sound.data(), sound_.data()) == 0;
  };
  if (longer < kShortestMistyped) return errors == 1 && soundsAlike() ? Likeness::Sound : Likeness::None;
  if (errors == 1) return longer <= kLongestShort ? Likeness::OneTypoShort : Likeness::OneTypo;
  if (shorter >= kShortestSound && soundsAlike()) return Likeness::Sound;
  return errors == 2 && shorter >= kShortestTwoTypos ? Likeness::TwoTypos : Likeness::None;
}

}  // namespace arf
