#include "faults/file_surgery.h"

#include <algorithm>

#include "arf/format/checksum.h"

namespace arf_test {
namespace {

namespace layout = arf::layout;

std::size_t SectionCount(const Bytes& bytes)
{
  const std::size_t room =
      bytes.size() < layout::header::kSize ? 0 : (bytes.size() - layout::header::kSize) / layout::entry::kSize;
  return std::min<std::size_t>(Get<std::uint32_t>(bytes, layout::header::kSectionCount), room);
}

std::size_t EntryAt(std::size_t index)
{
  return layout::header::kSize + index * layout::entry::kSize;
}

struct Section
{
  std::uint32_t id;
  Bytes content;
};

std::vector<Section> TakeApart(const Bytes& bytes)
{
  std::vector<Section> sections;
  for (std::size_t i = 0; i < SectionCount(bytes); ++i) {
    const auto offset = static_cast<std::ptrdiff_t>(Get<std::uint64_t>(bytes, EntryAt(i) + layout::entry::kOffset));
    const auto length = static_cast<std::ptrdiff_t>(Get<std::uint64_t>(bytes, EntryAt(i) + layout::entry::kLength));
    sections.push_back(
        {Get<std::uint32_t>(bytes, EntryAt(i)), Bytes(bytes.begin() + offset, bytes.begin() + offset + length)});
  }
  return sections;
}

Bytes PutTogether(const Bytes& original, const std::vector<Section>& sections)
{
  Bytes bytes(original.begin(), original.begin() + layout::header::kSize);
  bytes.resize(layout::Aligned(EntryAt(sections.size())));
  Put(bytes, layout::header::kHeaderLength, static_cast<std::uint32_t>(bytes.size()));
  Put(bytes, layout::header::kSectionCount, static_cast<std::uint32_t>(sections.size()));
  for (std::size_t i = 0; i < sections.size(); ++i) {
    Put(bytes, EntryAt(i), sections[i].id);
    Put(bytes, EntryAt(i) + layout::entry::kOffset, std::uint64_t{bytes.size()});
    Put(bytes, EntryAt(i) + layout::entry::kLength, std::uint64_t{sections[i].content.size()});
    bytes.insert(bytes.end(), sections[i].content.begin(), sections[i].content.end());
    bytes.resize(layout::Aligned(bytes.size()));
  }
  Put(bytes, layout::header::kFileSize, std::uint64_t{bytes.size()});
  Reseal(bytes);
  return bytes;
}

}  // namespace

std::size_t EntryOf(const Bytes& bytes, SectionId id)
{
  for (std::size_t i = 0; i < SectionCount(bytes); ++i) {
    if (Get<std::uint32_t>(bytes, EntryAt(i)) == static_cast<std::uint32_t>(id)) return EntryAt(i);
  }
  return 0;
}

std::size_t OffsetOf(const Bytes& bytes, SectionId id)
{
  return Get<std::uint64_t>(bytes, EntryOf(bytes, id) + layout::entry::kOffset);
}

std::size_t LengthOf(const Bytes& bytes, SectionId id)
{
  return Get<std::uint64_t>(bytes, EntryOf(bytes, id) + layout::entry::kLength);
}

void ResealHeader(Bytes& bytes)
{
  const std::uint32_t length = Get<std::uint32_t>(bytes, layout::header::kHeaderLength);
  if (length > bytes.size() || length % layout::kAlignment != 0) return;
  Put(bytes, layout::header::kChecksum, std::uint64_t{0});
  arf::Checksum sum;
  sum.Add(bytes.data(), length);
  Put(bytes, layout::header::kChecksum, sum.Value());
}

void Reseal(Bytes& bytes)
{
  for (std::size_t i = 0; i < SectionCount(bytes); ++i) {
    const auto offset = Get<std::uint64_t>(bytes, EntryAt(i) + layout::entry::kOffset);
    const auto length = Get<std::uint64_t>(bytes, EntryAt(i) + layout::entry::kLength);
    if (offset > bytes.size() || length > bytes.size() - offset) continue;
    const std::uint64_t padded = layout::Aligned(length);
    if (padded > bytes.size() - offset) continue;
    arf::Checksum sum;
    sum.Add(bytes.data() + offset, padded);
    Put(bytes, EntryAt(i) + layout::entry::kChecksum, sum.Value());
  }
  ResealHeader(bytes);
}

Bytes WithSection(const Bytes& bytes, SectionId id, const Bytes& content)
{
  std::vector<Section> sections = TakeApart(bytes);
  for (Section& section : sections) {
    if (section.id == static_cast<std::uint32_t>(id)) section.content = content;
  }
  return PutTogether(bytes, sections);
}

Bytes WithExtraSection(const Bytes& bytes, std::uint32_t id, const Bytes& content)
{
  std::vector<Section> sections = TakeApart(bytes);
  sections.push_back({id, content});
  return PutTogether(bytes, sections);
}

}  // namespace arf_test
