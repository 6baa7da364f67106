#include "arf/format/word_index.h"

#include <algorithm>

#include "arf/format/partition_point.h"

namespace arf {
namespace {

constexpr std::uint64_t kNumber = sizeof(std::uint32_t);

/** Takes the parts of the section off its front. After one that does not fit nothing fits. */
class PartTaker
{
 public:
  explicit PartTaker(ByteReader section) : rest_(section) {}

  ByteReader Take(std::uint64_t length)
  {
    fits_ = fits_ && rest_.Holds(0, length);
    if (!fits_) return {};
    const ByteReader part = rest_.Part(0, length);
    rest_ = rest_.From(length);
    return part;
  }
  std::span<const std::uint32_t> TakeNumbers(std::uint64_t count) { return Take(count * kNumber).Words(); }
  /** Texts are filled up with zeros to a multiple of four bytes. */
  TextTable TakeTexts(std::uint32_t count)
  {
    TextTable table;
    table.offsets = Take((std::uint64_t{count} + 1) * kNumber);
    const std::uint64_t length = table.offsets.U32At(std::uint64_t{count} * kNumber);
    table.bytes = Take((length + kNumber - 1) / kNumber * kNumber);
    table.count = fits_ ? count : 0;
    return table;
  }
  bool Fits() const { return fits_; }

 private:
  ByteReader rest_;
  bool fits_ = true;
};

/** Writes a word with an error put right. What it gives is good until the next call. */
class MistypedWord
{
 public:
  explicit MistypedWord(std::string_view word) : word_(word) {}

  std::string_view Without(std::size_t at) { return Write(at, {}, at + 1); }
  std::string_view With(std::size_t at, char letter) { return Write(at, {&letter, 1}, at); }
  std::string_view Replaced(std::size_t at, char letter) { return Write(at, {&letter, 1}, at + 1); }
  std::string_view Swapped(std::size_t at)
  {
    const char swapped[] = {word_[at + 1], word_[at]};
    return Write(at, {swapped, 2}, at + 2);
  }

 private:
  /** The word up to `at`, other letters, and the word from `rest` on. */
  std::string_view Write(std::size_t at, std::string_view letters, std::size_t rest)
  {
    auto end = std::copy_n(word_.begin(), at, text_.begin());
    end = std::copy(letters.begin(), letters.end(), end);
    end = std::copy(word_.begin() + static_cast<std::ptrdiff_t>(rest), word_.end(), end);
    return {text_.data(), static_cast<std::size_t>(end - text_.begin())};
  }

  std::string_view word_;
  std::array<char, WordIndex::kLongestMistyped + 1> text_;
};

}  // namespace

WordIndex::WordIndex(ByteReader section)
{
  if (!section.Holds(0, 2 * kNumber)) return;
  PartTaker parts(section);
  const std::span<const std::uint32_t> counts = parts.TakeNumbers(2);
  const auto takeLists = [&](std::uint32_t count) {
    Lists lists;
    lists.starts = parts.TakeNumbers(std::uint64_t{count} + 1);
    if (!lists.starts.empty()) lists.numbers = parts.TakeNumbers(lists.starts.back());
    return lists;
  };
  const TextTable words = parts.TakeTexts(counts[0]);
  const TextTable buildings = parts.TakeTexts(counts[1]);
  const Lists points = takeLists(counts[1]);
  std::array<Lists, kNamedKinds> names;
  for (Lists& lists : names) lists = takeLists(counts[0]);
  if (!parts.Fits()) return;
  words_ = words;
  buildings_ = buildings;
  points_ = points;
  names_ = names;
}

std::span<const std::uint32_t> WordIndex::Lists::At(std::uint32_t i) const
{
  if (std::size_t{i} + 1 >= starts.size()) return {};
  const std::uint32_t begin = starts[i], end = starts[i + 1];
  return begin <= end && end <= numbers.size() ? numbers.subspan(begin, end - begin) : std::span<const std::uint32_t>();
}

/** The first word of a range that is not before `word`; the range's end when all are. */
std::uint32_t WordIndex::FirstFrom(IndexRange range, std::string_view word) const
{
  return PartitionPoint(range.first, range.count, [&](std::uint32_t w) { return Word(w) < word; });
}

std::optional<std::uint32_t> WordIndex::Find(std::string_view word) const
{
  const std::uint32_t i = FirstFrom({0, WordCount()}, word);
  return i < WordCount() && Word(i) == word ? std::optional(i) : std::nullopt;
}

IndexRange WordIndex::WithPrefix(std::string_view prefix) const
{
  return WithPrefix({0, WordCount()}, prefix);
}

IndexRange WordIndex::WithPrefix(IndexRange range, std::string_view prefix) const
{
  const std::uint32_t first = FirstFrom(range, prefix);
  const std::uint32_t end = PartitionPoint(first, range.first + range.count - first,
                                           [&](std::uint32_t w) { return Word(w).substr(0, prefix.size()) == prefix; });
  return {first, end - first};
}

std::size_t WordIndex::Mistyped(std::string_view word, std::span<std::uint32_t> found) const
{
  if (word.size() > kLongestMistyped) return 0;
  MistypedWord tried(word);
  std::size_t count = 0;
  IndexRange range{0, WordCount()};  // of the words that begin as the given one does up to the error
  const auto take = [&](IndexRange among, std::string_view candidate) {
    const std::uint32_t i = FirstFrom(among, candidate);
    if (i == among.first + among.count || Word(i) != candidate || candidate == word || count == found.size()) return;
    if (std::find(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(count), i) ==
        found.begin() + static_cast<std::ptrdiff_t>(count))
      found[count++] = i;
  };
  for (std::size_t at = 0; at <= word.size() && range.count > 0; ++at) {
    range = WithPrefix(range, word.substr(0, at));
    if (at < word.size()) take(range, tried.Without(at));
    if (at + 1 < word.size()) take(range, tried.Swapped(at));
    for (char letter = 'A'; letter <= 'Z' && range.count > 0; ++letter) {
      const std::string_view longer = tried.With(at, letter);
      const IndexRange next = WithPrefix(range, longer.substr(0, at + 1));
      if (next.count == 0) continue;
      take(next, longer);
      if (at < word.size()) take(next, tried.Replaced(at, letter));
    }
  }
  return count;
}

std::span<const std::uint32_t> WordIndex::NamesWith(Named kind, std::uint32_t word) const
{
  return names_[static_cast<std::size_t>(kind)].At(word);
}

std::span<const std::uint32_t> WordIndex::PointsOf(std::uint32_t building) const
{
  return points_.At(building);
}

}  // namespace arf
