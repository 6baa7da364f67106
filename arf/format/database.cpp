#include "arf/format/database.h"

#include <algorithm>
#include <array>
#include <new>

#include "arf/format/attribute_column.h"
#include "arf/format/file_bytes.h"
#include "arf/format/file_view.h"
#include "arf/format/fold.h"
#include "arf/format/partition_point.h"
#include "arf/format/word_index.h"

namespace arf {

using layout::SectionId;

struct Database::Impl
{
  FileBytes bytes;
  FileView view;
  WordIndex words{{}};
};

namespace {

/** The bytes of record `index` of a section of equal records; empty when there is none. */
ByteReader Record(const ByteReader& section, std::uint64_t index, std::uint64_t size)
{
  return section.Part(index * size, size);
}

/** A field of the record behind `index`, or `total` behind the last one: where the range of `index` ends. */
std::uint32_t EndOf(const ByteReader& section, std::uint64_t index, std::uint64_t size, std::size_t field,
                    std::size_t total)
{
  const ByteReader next = Record(section, index + 1, size);
  return next.Data() ? next.U32At(field) : static_cast<std::uint32_t>(total);
}

/** The range [first, end), cut to `total`. */
IndexRange RangeOf(std::uint32_t first, std::uint32_t end, std::uint32_t total)
{
  end = std::min(end, total);
  return first < end ? IndexRange{first, end - first} : IndexRange{};
}

/** A sorted dictionary of texts, each with the indexes of what bears it. */
class Dictionary
{
 public:
  Dictionary(const FileView& view, SectionId texts, SectionId postings)
      : view_(view), entries_(view.Section(texts)), postings_(view.Section(postings).Words())
  {
  }

  std::uint32_t Count() const { return static_cast<std::uint32_t>(entries_.Size() / layout::name::kSize); }

  std::string_view Text(std::uint32_t n) const
  {
    return view_.String(entries_.U32At(std::uint64_t{n} * layout::name::kSize + layout::name::kText));
  }

  std::span<const std::uint32_t> Postings(std::uint32_t n) const
  {
    const ByteReader entry = Record(entries_, n, layout::name::kSize);
    if (!entry.Data()) return {};
    const auto total = static_cast<std::uint32_t>(postings_.size());
    const std::uint32_t end = EndOf(entries_, n, layout::name::kSize, layout::name::kFirstPosting, total);
    const IndexRange range = RangeOf(entry.U32At(layout::name::kFirstPosting), end, total);
    return postings_.subspan(range.first, range.count);
  }

  std::optional<std::uint32_t> Find(std::string_view text) const
  {
    const std::uint32_t n = PartitionPoint(0, Count(), [&](std::uint32_t i) { return Text(i) < text; });
    if (n == Count() || Text(n) != text) return std::nullopt;
    return n;
  }

  std::optional<std::uint32_t> FindFolded(std::string_view name) const
  {
    std::array<char, kMaxNameLength> key;
    return Find({key.data(), MatchKey(name, key)});
  }

 private:
  const FileView& view_;
  const ByteReader& entries_;
  std::span<const std::uint32_t> postings_;
};

Dictionary LocalityNames(const FileView& view)
{
  return {view, SectionId::LocalityNames, SectionId::LocalityPostings};
}

Dictionary StreetNames(const FileView& view)
{
  return {view, SectionId::StreetNames, SectionId::StreetPostings};
}

Dictionary Postcodes(const FileView& view)
{
  return {view, SectionId::Postcodes, SectionId::PostcodePostings};
}

IndexRange StreetsOfLocality(const FileView& view, std::uint32_t locality)
{
  namespace field = layout::locality;
  const ByteReader& section = view.Section(SectionId::Localities);
  const ByteReader record = Record(section, locality, field::kSize);
  if (!record.Data()) return {};
  const std::uint32_t end = EndOf(section, locality, field::kSize, field::kFirstStreet, view.streetCount);
  return RangeOf(record.U32At(field::kFirstStreet), end, view.streetCount);
}

std::uint32_t FirstPointOf(const FileView& view, std::uint32_t street)
{
  const std::uint64_t at = std::uint64_t{street} * layout::street::kSize;
  return view.Section(SectionId::Streets).U32At(at + layout::street::kFirstPoint);
}

std::uint32_t NameIndexOf(const FileView& view, std::uint32_t street)
{
  const std::uint64_t at = std::uint64_t{street} * layout::street::kSize;
  return view.Section(SectionId::Streets).U32At(at + layout::street::kNameIndex);
}

/** The street that holds a point: the last whose first point is not behind it, between two samples. */
std::uint32_t StreetOfPoint(const FileView& view, std::uint32_t ordinal)
{
  const std::span<const std::uint32_t> samples = view.Section(SectionId::PointStreets).Words();
  const std::uint32_t sample = ordinal / layout::kStreetSampling;
  const std::uint32_t low = std::min(samples[sample], view.streetCount);
  const std::uint32_t last = sample + 1 < samples.size() ? samples[sample + 1] : view.streetCount;
  const std::uint32_t high = std::clamp(last, low, view.streetCount);
  const auto isBefore = [&](std::uint32_t street) { return FirstPointOf(view, street) <= ordinal; };
  // The next sample's street may itself begin before the ordinal, so it is in the running.
  const std::uint32_t end = high < view.streetCount ? high + 1 : high;
  const std::uint32_t behind = PartitionPoint(low, end - low, isBefore);
  return behind == 0 ? 0 : behind - 1;
}

std::uint32_t RecordCount(const ByteReader& section, std::size_t size)
{
  return static_cast<std::uint32_t>(std::min<std::size_t>(section.Size() / size, kNoIndex));
}

/** The place of the first address alias whose ordinal is not below `ordinal`. */
std::uint32_t FirstAliasFrom(const FileView& view, std::uint64_t ordinal)
{
  namespace field = layout::address_alias;
  const ByteReader& section = view.Section(SectionId::AddressAliases);
  return PartitionPoint(0, RecordCount(section, field::kSize), [&](std::uint32_t i) {
    return section.U32At(std::uint64_t{i} * field::kSize + field::kAlias) < ordinal;
  });
}

/** The range of ascending keys that are the match key of a name. */
template <class KeyAt>
IndexRange KeyRange(std::string_view name, std::uint32_t count, KeyAt keyAt)
{
  std::array<char, kMaxNameLength> room;
  const std::string_view key(room.data(), MatchKey(name, room));
  const std::uint32_t first = PartitionPoint(0, count, [&](std::uint32_t i) { return keyAt(i) < key; });
  const std::uint32_t end = PartitionPoint(first, count - first, [&](std::uint32_t i) { return keyAt(i) <= key; });
  return RangeOf(first, end, count);
}

/** With Verification::Quick, sections beyond this are taken as they are. */
constexpr std::uint64_t kQuicklyVerified = 1 << 20;

Defect Check(ByteReader file, FileView& view, Verification verification)
{
  if (Defect defect = ReadHeader(file, view)) return defect;
  const std::uint64_t longest = verification == Verification::Whole ? UINT64_MAX : kQuicklyVerified;
  if (Defect defect = VerifySections(view, longest)) return defect;
  return CheckStructure(view);
}

}  // namespace

Database::Database(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

Database::~Database() = default;

std::unique_ptr<Database> Database::Open(const std::string& directory, OpenMode mode, OpenResult& result,
                                         Verification verification)
{
  const bool divided = directory.empty() || directory.back() == '/';
  const std::string path = directory + (divided ? "" : "/") + kDatabaseFileName;
  result = {};
  FileBytes bytes = FileBytes::Acquire(path, mode, result);
  if (result.failure != OpenFailure::None) return nullptr;
  std::unique_ptr<Database> database =
      OpenBytes({bytes.Bytes().Data(), bytes.Bytes().Size()}, path, result, verification);
  if (!database) return nullptr;
  bytes.SettleInto(mode);
  database->impl_->bytes = std::move(bytes);
  return database;
}

std::unique_ptr<Database> Database::OpenBytes(std::span<const std::uint8_t> bytes, const std::string& name,
                                              OpenResult& result, Verification verification)
{
  result = {};
  try {
    auto impl = std::make_unique<Impl>();
    const Defect defect = Check({bytes.data(), bytes.size()}, impl->view, verification);
    if (!defect) {
      impl->words = WordIndex(impl->view.Section(SectionId::BuildingNames));
      return std::unique_ptr<Database>(new Database(std::move(impl)));
    }
    Refuse(result, defect.failure, name, defect.what);
  } catch (const std::bad_alloc&) {
    Refuse(result, OpenFailure::OutOfMemory, name, "not enough memory");
  }
  return nullptr;
}

std::uint32_t Database::LocalityCount() const
{
  return impl_->view.localityCount;
}

std::uint32_t Database::StreetCount() const
{
  return impl_->view.streetCount;
}

std::uint32_t Database::PointCount() const
{
  return impl_->view.pointCount;
}

Locality Database::LocalityAt(std::uint32_t index) const
{
  namespace field = layout::locality;
  const FileView& view = impl_->view;
  const ByteReader& section = view.Section(SectionId::Localities);
  const ByteReader record = Record(section, index, field::kSize);
  if (!record.Data()) return {};
  return {view.String(record.U32At(field::kName)), view.String(record.U32At(field::kState)),
          view.String(record.U32At(field::kPostcode)), StreetsOfLocality(view, index), record.U32At(field::kNameIndex)};
}

std::uint32_t Database::BuildingNameCount() const
{
  return impl_->words.BuildingCount();
}

std::string_view Database::BuildingName(std::uint32_t n) const
{
  return impl_->words.Building(n);
}

std::optional<std::uint32_t> Database::FindBuildingName(std::string_view name) const
{
  std::array<char, kMaxNameLength> room;
  const std::string_view key(room.data(), MatchKey(name, room));
  const std::uint32_t count = BuildingNameCount();
  const std::uint32_t n = PartitionPoint(0, count, [&](std::uint32_t i) { return BuildingName(i) < key; });
  return n < count && BuildingName(n) == key ? std::optional(n) : std::nullopt;
}

const WordIndex& Database::Words() const
{
  return impl_->words;
}

std::string_view Database::LocalityState(std::uint32_t locality) const
{
  namespace field = layout::locality;
  const ByteReader record = Record(impl_->view.Section(SectionId::Localities), locality, field::kSize);
  return record.Data() ? impl_->view.String(record.U32At(field::kState)) : std::string_view();
}

IndexRange Database::LocalityStreets(std::uint32_t locality) const
{
  return StreetsOfLocality(impl_->view, locality);
}

std::uint32_t Database::LocalityNameIndex(std::uint32_t locality) const
{
  namespace field = layout::locality;
  const ByteReader record = Record(impl_->view.Section(SectionId::Localities), locality, field::kSize);
  return record.Data() ? record.U32At(field::kNameIndex) : kNoIndex;
}

Street Database::StreetAt(std::uint32_t index) const
{
  Street street;
  ReadStreet(index, street);
  return street;
}

/** In place, as copies of what was just written are slow. @param street  without contents */
void Database::ReadStreet(std::uint32_t index, Street& street) const
{
  namespace field = layout::street;
  const FileView& view = impl_->view;
  const ByteReader& section = view.Section(SectionId::Streets);
  const ByteReader record = Record(section, index, field::kSize);
  if (!record.Data()) return;
  const ByteReader kind =
      Record(view.Section(SectionId::StreetClasses), record.U32At(field::kClass), layout::street_class::kSize);
  const std::uint32_t end = EndOf(section, index, field::kSize, field::kFirstPoint, view.pointCount);
  street.index = index;
  street.locality = record.U32At(field::kLocality);
  street.name = view.String(record.U32At(field::kName));
  street.type = view.String(kind.U32At(layout::street_class::kType));
  street.suffix = view.String(kind.U32At(layout::street_class::kSuffix));
  street.isPostal = kind.U32At(layout::street_class::kIsPostal) != 0;
  street.points = RangeOf(record.U32At(field::kFirstPoint), end, view.pointCount);
  street.nameIndex = record.U32At(field::kNameIndex);
  street.dataOffset = record.U32At(field::kDataOffset);
}

Point Database::PointAt(std::uint32_t ordinal) const
{
  Street street;
  return PointAt(ordinal, street);
}

Point Database::PointAt(std::uint32_t ordinal, Street& street) const
{
  Point point;
  street = {};
  if (ordinal >= PointCount()) return point;
  ReadStreet(StreetOfPoint(impl_->view, ordinal), street);
  PointCursor cursor = Points(street);
  if (cursor.Seek(ordinal - street.points.first)) cursor.Fill(point);
  return point;
}

std::uint32_t Database::DpidOf(std::uint32_t ordinal) const
{
  return ordinal < PointCount() ? impl_->view.Dpid(ordinal) : 0;
}

std::uint32_t Database::StreetOf(std::uint32_t ordinal) const
{
  return ordinal < PointCount() ? StreetOfPoint(impl_->view, ordinal) : kNoIndex;
}

PointCursor Database::Points(const Street& street) const
{
  const FileView& view = impl_->view;
  const std::uint64_t end = std::uint64_t{street.points.first} + street.points.count;
  if (end > view.pointCount) return {};
  return {view, view.Section(SectionId::Points).From(street.dataOffset), street.index, street.points};
}

PointCursor Database::PointsNumbered(const Street& street, std::uint32_t number) const
{
  PointCursor cursor = Points(street);
  cursor.wanted_ = number;
  return cursor;
}

PointCursor Database::PointsNamed(const Street& street) const
{
  PointCursor cursor = Points(street);
  cursor.onlyNamed_ = true;
  return cursor;
}

std::optional<std::uint32_t> Database::FindDpid(std::uint32_t dpid) const
{
  namespace field = layout::dpid_index;
  if (dpid > field::kMaxDpid) return std::nullopt;
  const ByteReader& section = impl_->view.Section(SectionId::DpidIndex);
  const ByteReader numbers = section.From(field::kNumbers);
  const std::uint32_t bits = layout::BitsForNumbersTo(PointCount());
  const auto numberAt = [&](std::uint64_t i) { return static_cast<std::uint32_t>(numbers.BitsAt(i * bits, bits)); };
  const std::uint64_t firstOrdinal = std::uint64_t{section.U32At(field::kBucketCount)} + 1;
  const auto ordinalAt = [&](std::uint32_t i) { return numberAt(firstOrdinal + i); };
  const std::uint32_t bucket = dpid >> section.U32At(field::kLowBits);
  IndexRange range = RangeOf(numberAt(bucket), numberAt(std::uint64_t{bucket} + 1), PointCount());
  constexpr std::uint32_t kFew = 16;  // are compared side by side, which is quicker than one after the other
  if (range.count > kFew) {
    const auto isBefore = [&](std::uint32_t i) { return DpidOf(ordinalAt(i)) < dpid; };
    range = {PartitionPoint(range.first, range.count, isBefore), 1};
  }
  std::uint32_t found = kNoIndex;
  for (std::uint32_t i = 0; i < range.count; ++i) {
    const std::uint32_t ordinal = ordinalAt(range.first + i);
    if (DpidOf(ordinal) == dpid) found = ordinal;
  }
  return found < PointCount() ? std::optional(found) : std::nullopt;
}

std::uint32_t Database::LocalityNameCount() const
{
  return LocalityNames(impl_->view).Count();
}

std::string_view Database::LocalityName(std::uint32_t n) const
{
  return LocalityNames(impl_->view).Text(n);
}

std::span<const std::uint32_t> Database::LocalitiesNamed(std::uint32_t n) const
{
  return LocalityNames(impl_->view).Postings(n);
}

std::optional<std::uint32_t> Database::FindLocalityName(std::string_view name) const
{
  return LocalityNames(impl_->view).FindFolded(name);
}

std::uint32_t Database::PostcodeCount() const
{
  return Postcodes(impl_->view).Count();
}

std::string_view Database::Postcode(std::uint32_t n) const
{
  return Postcodes(impl_->view).Text(n);
}

std::span<const std::uint32_t> Database::LocalitiesOfPostcode(std::string_view postcode) const
{
  const Dictionary postcodes = Postcodes(impl_->view);
  const std::optional<std::uint32_t> n = postcodes.Find(postcode);
  return n ? postcodes.Postings(*n) : std::span<const std::uint32_t>();
}

std::uint32_t Database::StreetNameCount() const
{
  return StreetNames(impl_->view).Count();
}

std::string_view Database::StreetName(std::uint32_t n) const
{
  return StreetNames(impl_->view).Text(n);
}

std::span<const std::uint32_t> Database::StreetsNamed(std::uint32_t n) const
{
  return StreetNames(impl_->view).Postings(n);
}

std::optional<std::uint32_t> Database::FindStreetName(std::string_view name) const
{
  return StreetNames(impl_->view).FindFolded(name);
}

std::uint32_t Database::StreetNameIndex(std::uint32_t street) const
{
  return street < impl_->view.streetCount ? NameIndexOf(impl_->view, street) : kNoIndex;
}

IndexRange Database::StreetsOf(const IndexRange& localityStreets, std::string_view name) const
{
  const std::optional<std::uint32_t> n = FindStreetName(name);
  return n ? StreetsOf(localityStreets, *n) : IndexRange{};
}

/** Looks among the streets of the name: few of them lie side by side, a locality's records far apart. */
IndexRange Database::StreetsOf(const IndexRange& localityStreets, std::uint32_t nameIndex) const
{
  const std::span<const std::uint32_t> named = StreetsNamed(nameIndex);
  const std::uint32_t first = localityStreets.first;
  const std::uint32_t end = first + localityStreets.count;
  const auto begin = std::lower_bound(named.begin(), named.end(), first);
  if (begin == named.end() || *begin >= end) return {};
  const auto count = std::lower_bound(begin, named.end(), end) - begin;
  return RangeOf(*begin, std::min(end, *begin + static_cast<std::uint32_t>(count)), impl_->view.streetCount);
}

IndexRange Database::PostalStreetsOf(const Locality& locality) const
{
  const IndexRange all =
      RangeOf(locality.streets.first, locality.streets.first + locality.streets.count, impl_->view.streetCount);
  const std::uint32_t end =
      PartitionPoint(all.first, all.count, [&](std::uint32_t street) { return StreetAt(street).isPostal; });
  return RangeOf(all.first, end, impl_->view.streetCount);
}

std::span<const std::uint32_t> Database::NeighboursOf(std::uint32_t locality) const
{
  const std::span<const std::uint32_t> words = impl_->view.Section(SectionId::Neighbours).Words();
  const std::size_t starts = std::size_t{LocalityCount()} + 1;
  if (locality >= LocalityCount() || words.size() < starts) return {};
  const std::span<const std::uint32_t> list = words.subspan(starts);
  const IndexRange range = RangeOf(words[locality], words[locality + 1], static_cast<std::uint32_t>(list.size()));
  return list.subspan(range.first, std::min<std::size_t>(range.count, layout::kMaxNeighbours));
}

std::uint32_t Database::StreetAliasCount() const
{
  return RecordCount(impl_->view.Section(SectionId::StreetAliases), layout::street_alias::kSize);
}

StreetAliasEntry Database::StreetAliasAt(std::uint32_t index) const
{
  namespace field = layout::street_alias;
  const FileView& view = impl_->view;
  const ByteReader record = Record(view.Section(SectionId::StreetAliases), index, field::kSize);
  if (!record.Data()) return {};
  return {view.String(record.U32At(field::kKey)), view.String(record.U32At(field::kName)),
          view.String(record.U32At(field::kType)), view.String(record.U32At(field::kSuffix)),
          record.U32At(field::kStreet)};
}

IndexRange Database::StreetAliasesNamed(std::string_view name) const
{
  return KeyRange(name, StreetAliasCount(), [this](std::uint32_t i) { return StreetAliasAt(i).key; });
}

std::uint32_t Database::LocalityAliasCount() const
{
  return RecordCount(impl_->view.Section(SectionId::LocalityAliases), layout::locality_alias::kSize);
}

LocalityAliasEntry Database::LocalityAliasAt(std::uint32_t index) const
{
  namespace field = layout::locality_alias;
  const FileView& view = impl_->view;
  const ByteReader record = Record(view.Section(SectionId::LocalityAliases), index, field::kSize);
  if (!record.Data()) return {};
  return {view.String(record.U32At(field::kKey)), view.String(record.U32At(field::kName)),
          record.U32At(field::kLocality)};
}

IndexRange Database::LocalityAliasesNamed(std::string_view name) const
{
  return KeyRange(name, LocalityAliasCount(), [this](std::uint32_t i) { return LocalityAliasAt(i).key; });
}

std::uint32_t Database::AddressAliasCount() const
{
  return RecordCount(impl_->view.Section(SectionId::AddressAliases), layout::address_alias::kSize);
}

std::uint32_t Database::AddressAliasCount(const IndexRange& points) const
{
  const std::uint64_t end = std::uint64_t{points.first} + points.count;
  const std::uint32_t first = FirstAliasFrom(impl_->view, points.first), behind = FirstAliasFrom(impl_->view, end);
  return std::min(std::max(first, behind) - first, points.count);
}

std::uint32_t Database::PrincipalOf(std::uint32_t alias) const
{
  namespace field = layout::address_alias;
  const ByteReader& section = impl_->view.Section(SectionId::AddressAliases);
  if (section.Size() == 0) return kNoIndex;
  const ByteReader record = Record(section, FirstAliasFrom(impl_->view, alias), field::kSize);
  const std::uint32_t principal = record.U32At(field::kPrincipal);
  const bool isIt = record.Data() && record.U32At(field::kAlias) == alias && principal < PointCount();
  return isIt && principal != alias ? principal : kNoIndex;
}

std::uint32_t Database::AttributeCount() const
{
  return static_cast<std::uint32_t>(impl_->view.Section(SectionId::AttributeColumns).Size() / layout::attribute::kSize);
}

std::string_view Database::AttributeName(std::uint32_t column) const
{
  return impl_->view.String(AttributeColumn(impl_->view, column).Name());
}

std::optional<std::uint32_t> Database::FindAttribute(std::string_view name) const
{
  for (std::uint32_t column = 0; column < AttributeCount(); ++column) {
    if (AttributeName(column) == name) return column;
  }
  return std::nullopt;
}

std::string_view Database::AttributeOf(std::uint32_t ordinal, std::uint32_t column, AttributeText& text) const
{
  if (ordinal >= PointCount() || column >= AttributeCount()) return {};
  return AttributeColumn(impl_->view, column).Value(ordinal, text);
}

std::string_view Database::Info(std::string_view key) const
{
  for (std::uint32_t i = 0; i < InfoCount(); ++i) {
    const InfoEntry entry = InfoAt(i);
    if (entry.key == key) return entry.value;
  }
  return {};
}

std::uint32_t Database::InfoCount() const
{
  return static_cast<std::uint32_t>(impl_->view.Section(SectionId::Info).Size() / layout::kInfoEntrySize);
}

InfoEntry Database::InfoAt(std::uint32_t index) const
{
  const ByteReader record = Record(impl_->view.Section(SectionId::Info), index, layout::kInfoEntrySize);
  return {impl_->view.String(record.U32At(0)), impl_->view.String(record.U32At(sizeof(std::uint32_t)))};
}

ByteReader Database::Section(SectionId id) const
{
  return impl_->view.Section(id);
}

std::uint64_t Database::FileSize() const
{
  return impl_->view.file.Size();
}

std::uint32_t Database::SectionCount() const
{
  return static_cast<std::uint32_t>(impl_->view.entries.size());
}

SectionInfo Database::SectionAt(std::uint32_t index) const
{
  if (index >= SectionCount()) return {};
  const SectionEntry& entry = impl_->view.entries[index];
  const bool known = entry.id > 0 && entry.id <= layout::kSectionIds;
  return {entry.id, known ? layout::kSectionNames[entry.id - 1] : std::string_view(), entry.offset, entry.length};
}

}  // namespace arf
