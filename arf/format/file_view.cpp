#include "arf/format/file_view.h"

#include <algorithm>
#include <cstring>

#include "arf/format/checksum.h"

namespace arf {
namespace {

using layout::SectionId;

std::string WithCommas(std::uint64_t number)
{
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, 1, ',');
  return digits;
}

Defect Damaged(std::string what)
{
  return {OpenFailure::Damaged, "damaged: " + std::move(what)};
}

/** What a foreign file seems to be, to help whoever named the wrong one. */
std::string Resemblance(ByteReader file)
{
  struct Kind
  {
    std::string_view start, name;
  };
  static constexpr Kind kKinds[] = {
      {"\x7F"
       "ELF",
       "a program or library"},
      {"PK\x03\x04", "a ZIP archive"},
      {"\x1F\x8B", "a gzip archive"},
      {"SQLite format", "an SQLite database"},
      {"\xEF\xBB\xBF", "a text file"},
  };
  const std::string_view text = file.Part(0, std::min<std::size_t>(file.Size(), 64)).Text();
  for (const Kind& kind : kKinds) {
    if (text.starts_with(kind.start)) return std::string(kind.name);
  }
  const auto printable = [](char c) { return (c >= ' ' && c != '\x7F') || c == '\t' || c == '\r' || c == '\n'; };
  return std::all_of(text.begin(), text.end(), printable) ? "a text file" : "";
}

Defect CheckMagic(ByteReader file)
{
  if (file.Size() == 0) return {OpenFailure::NotADatabase, "not an address database: the file is empty"};
  const std::size_t length = std::min(file.Size(), layout::kMagic.size());
  if (std::memcmp(file.Data(), layout::kMagic.data(), length) != 0) {
    const std::string kind = Resemblance(file);
    return {OpenFailure::NotADatabase, "not an address database" + (kind.empty() ? "" : ": looks like " + kind)};
  }
  if (file.Size() < layout::header::kSize) {
    return {OpenFailure::Truncated, "truncated: the file has only " + std::to_string(file.Size()) + " bytes"};
  }
  return {};
}

Defect CheckVersion(ByteReader file)
{
  const unsigned version = file.U16At(layout::header::kMajor);
  if (version == layout::kMajorVersion) return {};
  const std::string relation = version > layout::kMajorVersion ? "newer" : "older";
  return {OpenFailure::WrongVersion, "wrong version: format " + std::to_string(version) + " is " + relation +
                                         " than format " + std::to_string(layout::kMajorVersion) +
                                         ", which this program reads"};
}

Defect CheckSize(ByteReader file)
{
  const std::uint64_t size = file.U64At(layout::header::kFileSize);
  if (size == file.Size()) return {};
  const std::string sizes = "header says " + WithCommas(size) + " bytes, file has " + WithCommas(file.Size());
  if (size > file.Size()) return {OpenFailure::Truncated, "truncated: " + sizes};
  return Damaged(sizes);
}

std::uint64_t HeaderChecksum(ByteReader header)
{
  std::array<std::uint8_t, layout::header::kSize> first;
  static_assert(layout::header::kSize == Checksum::kStripe);
  std::memcpy(first.data(), header.Data(), first.size());
  std::memset(first.data() + layout::header::kChecksum, 0, sizeof(std::uint64_t));
  Checksum sum;
  sum.Add(first.data(), first.size());
  sum.Add(header.Data() + first.size(), header.Size() - first.size());
  return sum.Value();
}

Defect CheckHeaderBytes(ByteReader file)
{
  const std::uint64_t length = file.U32At(layout::header::kHeaderLength);
  const std::uint64_t sections = file.U32At(layout::header::kSectionCount);
  const bool sane = sections <= layout::kMaxSections &&
                    length == layout::Aligned(layout::header::kSize + sections * layout::entry::kSize);
  if (!sane || !file.Holds(0, length)) return Damaged("the header contradicts itself");
  if (HeaderChecksum(file.Part(0, length)) != file.U64At(layout::header::kChecksum)) {
    return Damaged("the checksum of the header differs");
  }
  return {};
}

SectionEntry EntryAt(ByteReader file, std::uint32_t index)
{
  const ByteReader bytes =
      file.Part(layout::header::kSize + std::uint64_t{index} * layout::entry::kSize, layout::entry::kSize);
  return {bytes.U32At(layout::entry::kId), bytes.U64At(layout::entry::kOffset), bytes.U64At(layout::entry::kLength),
          bytes.U64At(layout::entry::kChecksum)};
}

/** Length of a section with the zeros behind it; the table was checked, so the sum cannot wrap. */
std::uint64_t PaddedLength(const SectionEntry& entry)
{
  return layout::Aligned(entry.length);
}

Defect AdoptSection(FileView& view, const SectionEntry& entry)
{
  view.entries.push_back(entry);
  if (entry.id == 0 || entry.id > layout::kSectionIds) return {};
  ByteReader& section = view.sections[entry.id - 1];
  if (section.Data()) return Damaged("there are two sections \"" + SectionLabel(entry.id) + "\"");
  section = view.file.Part(entry.offset, entry.length);
  return {};
}

Defect ReadSectionTable(FileView& view)
{
  const std::uint32_t count = view.file.U32At(layout::header::kSectionCount);
  std::uint64_t expected = view.file.U32At(layout::header::kHeaderLength);
  view.entries.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    const SectionEntry entry = EntryAt(view.file, i);
    const bool inside = entry.offset == expected && view.file.Holds(entry.offset, entry.length) &&
                        view.file.Holds(entry.offset, PaddedLength(entry));
    if (!inside) return Damaged("the section \"" + SectionLabel(entry.id) + "\" is not where it should be");
    if (Defect defect = AdoptSection(view, entry)) return defect;
    expected = entry.offset + PaddedLength(entry);
  }
  return expected == view.file.Size() ? Defect{} : Damaged("the sections do not fill the file");
}

/** Takes a table of texts from the front of `bytes`; false when its offsets do not fit. */
bool TakeTexts(ByteReader bytes, std::uint32_t count, TextTable& table)
{
  const std::uint64_t offsets = (std::uint64_t{count} + 1) * sizeof(std::uint32_t);
  if (!bytes.Holds(0, offsets)) return false;
  table = {bytes.Part(0, offsets), bytes.From(offsets), count};
  return true;
}

struct Shape
{
  SectionId id;
  std::uint64_t recordSize;
  std::uint64_t count;  ///< kAny: any whole number of records
};
constexpr std::uint64_t kAny = UINT64_MAX;

Defect CheckShape(const FileView& view, const Shape& shape)
{
  const ByteReader& section = view.Section(shape.id);
  const std::string label = SectionLabel(static_cast<std::uint32_t>(shape.id));
  if (!section.Data()) return Damaged("the section \"" + label + "\" is missing");
  const bool fits =
      shape.count == kAny ? section.Size() % shape.recordSize == 0 : section.Size() == shape.recordSize * shape.count;
  return fits ? Defect{} : Damaged("the section \"" + label + "\" has the wrong length");
}

Defect CheckLengths(const FileView& view)
{
  const std::uint64_t samples =
      (std::uint64_t{view.pointCount} + layout::kStreetSampling - 1) / layout::kStreetSampling;
  const Shape shapes[] = {
      {SectionId::Info, layout::kInfoEntrySize, kAny},
      {SectionId::Strings, 1, kAny},
      {SectionId::Localities, layout::locality::kSize, view.localityCount},
      {SectionId::LocalityNames, layout::name::kSize, kAny},
      {SectionId::LocalityPostings, sizeof(std::uint32_t), kAny},
      {SectionId::Postcodes, layout::name::kSize, kAny},
      {SectionId::PostcodePostings, sizeof(std::uint32_t), kAny},
      {SectionId::StreetClasses, layout::street_class::kSize, kAny},
      {SectionId::Streets, layout::street::kSize, view.streetCount},
      {SectionId::StreetNames, layout::name::kSize, kAny},
      {SectionId::StreetPostings, sizeof(std::uint32_t), kAny},
      {SectionId::Points, 1, kAny},
      {SectionId::PointStreets, sizeof(std::uint32_t), samples},
      {SectionId::Dpids, layout::PackedSize(view.pointCount, layout::kDpidBits), 1},
      {SectionId::DpidIndex, sizeof(std::uint32_t), kAny},
      {SectionId::AttributeColumns, layout::attribute::kSize, kAny},
      {SectionId::AttributeData, 1, kAny},
  };
  static_assert(std::size(shapes) == layout::kRequiredSections);
  for (const Shape& shape : shapes) {
    if (Defect defect = CheckShape(view, shape)) return defect;
  }
  return {};
}

bool DpidIndexFits(const FileView& view)
{
  const ByteReader& index = view.Section(SectionId::DpidIndex);
  const std::uint64_t lowBits = index.U32At(layout::dpid_index::kLowBits);
  const std::uint64_t buckets = index.U32At(layout::dpid_index::kBucketCount);
  if (lowBits > layout::dpid_index::kMaxLowBits) return false;
  if (buckets != (layout::dpid_index::kMaxDpid >> lowBits) + 1) return false;
  const std::uint32_t bits = layout::BitsForNumbersTo(view.pointCount);
  return index.Size() == layout::dpid_index::kNumbers + layout::PackedSize(buckets + 1 + view.pointCount, bits);
}

}  // namespace

std::string SectionLabel(std::uint32_t id)
{
  if (id == 0 || id > layout::kSectionIds) return "section " + std::to_string(id);
  return std::string(layout::kSectionNames[id - 1]);
}

Defect ReadHeader(ByteReader file, FileView& view)
{
  for (const auto check : {CheckMagic, CheckVersion, CheckSize, CheckHeaderBytes}) {
    if (Defect defect = check(file)) return defect;
  }
  view.file = file;
  view.localityCount = file.U32At(layout::header::kLocalityCount);
  view.streetCount = file.U32At(layout::header::kStreetCount);
  view.pointCount = file.U32At(layout::header::kPointCount);
  view.blockPoints = file.U32At(layout::header::kBlockPoints);
  return ReadSectionTable(view);
}

Defect VerifySections(const FileView& view, std::uint64_t longest)
{
  for (const SectionEntry& entry : view.entries) {
    if (entry.length > longest) continue;
    Checksum sum;
    sum.Add(view.file.Data() + entry.offset, static_cast<std::size_t>(PaddedLength(entry)));
    if (sum.Value() != entry.checksum) {
      return Damaged("the checksum of the section \"" + SectionLabel(entry.id) + "\" differs");
    }
  }
  return {};
}

Defect CheckStructure(FileView& view)
{
  if (view.blockPoints == 0 || view.blockPoints > PointCursor::kMaxBlockPoints) {
    return Damaged("the header gives blocks of " + std::to_string(view.blockPoints) + " points");
  }
  if (Defect defect = CheckLengths(view)) return defect;
  const ByteReader& strings = view.Section(SectionId::Strings);
  const std::uint32_t count = strings.U32At(0);
  if (!TakeTexts(strings.From(sizeof count), count, view.strings)) {
    return Damaged("the section \"strings\" is shorter than its table");
  }
  const std::size_t columns = view.Section(SectionId::AttributeColumns).Size() / layout::attribute::kSize;
  if (columns > layout::attribute::kMaxColumns) return Damaged("there are too many attribute columns");
  if (!DpidIndexFits(view)) return Damaged("the section \"dpid index\" contradicts itself");
  return {};
}

}  // namespace arf
