#include "arf/search/word_index.h"

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

std::optional<std::uint32_t> WordIndex::Find(std::string_view word) const
{
  const std::uint32_t i = PartitionPoint(0, WordCount(), [&](std::uint32_t w) { return Word(w) < word; });
  return i < WordCount() && Word(i) == word ? std::optional(i) : std::nullopt;
}

IndexRange WordIndex::WithPrefix(std::string_view prefix) const
{
  const std::uint32_t first = PartitionPoint(0, WordCount(), [&](std::uint32_t w) { return Word(w) < prefix; });
  const std::uint32_t end = PartitionPoint(first, WordCount() - first,
                                           [&](std::uint32_t w) { return Word(w).substr(0, prefix.size()) == prefix; });
  return {first, end - first};
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
