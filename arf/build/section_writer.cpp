#include "arf/build/section_writer.h"

#include <algorithm>
#include <cstring>

namespace arf {
namespace {

constexpr std::size_t kBufferSize = 1 << 20;
static_assert(kBufferSize % Checksum::kStripe == 0 && layout::kAlignment == Checksum::kStripe);

constexpr std::uint64_t kHeaderLength =
    layout::Aligned(layout::header::kSize + layout::kSectionIds * layout::entry::kSize);

template <class Number>
void Put(std::vector<std::uint8_t>& bytes, std::size_t offset, Number number)
{
  std::memcpy(bytes.data() + offset, &number, sizeof number);
}

}  // namespace

SectionWriter::SectionWriter(OutputFile& file) : file_(file), position_(kHeaderLength), buffer_(kBufferSize) {}

void SectionWriter::Begin(layout::SectionId id)
{
  entry_ = {static_cast<std::uint32_t>(id), position_, 0, 0};
  sum_ = {};
}

void SectionWriter::Append(const void* data, std::size_t size)
{
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  entry_.length += size;
  while (size > 0) {
    const std::size_t part = std::min(size, kBufferSize - used_);
    std::memcpy(buffer_.data() + used_, bytes, part);
    used_ += part;
    bytes += part;
    size -= part;
    if (used_ == kBufferSize) Flush();
  }
}

void SectionWriter::Flush()
{
  if (used_ == 0) return;
  sum_.Add(buffer_.data(), used_);
  file_.WriteAt(position_, buffer_.data(), used_);
  position_ += used_;
  used_ = 0;
}

void SectionWriter::End()
{
  const std::size_t padded = static_cast<std::size_t>(layout::Aligned(used_));
  std::memset(buffer_.data() + used_, 0, padded - used_);
  used_ = padded;
  Flush();
  entry_.checksum = sum_.Value();
  entries_.push_back(entry_);
}

void SectionWriter::WriteMissing()
{
  for (std::uint32_t id = 1; id <= layout::kSectionIds; ++id) {
    const auto has = [id](const SectionEntry& entry) { return entry.id == id; };
    if (std::any_of(entries_.begin(), entries_.end(), has)) continue;
    Begin(layout::SectionId{id});
    End();
  }
}

std::uint64_t SectionWriter::Finish(const FileCounts& counts)
{
  namespace field = layout::header;
  WriteMissing();
  std::vector<std::uint8_t> header(kHeaderLength);
  std::copy(layout::kMagic.begin(), layout::kMagic.end(), header.begin());
  Put(header, field::kMajor, layout::kMajorVersion);
  Put(header, field::kMinor, layout::kMinorVersion);
  Put(header, field::kHeaderLength, static_cast<std::uint32_t>(header.size()));
  Put(header, field::kFileSize, position_);
  Put(header, field::kSectionCount, static_cast<std::uint32_t>(entries_.size()));
  Put(header, field::kLocalityCount, counts.localities);
  Put(header, field::kStreetCount, counts.streets);
  Put(header, field::kPointCount, counts.points);
  Put(header, field::kBlockPoints, counts.blockPoints);
  std::size_t at = field::kSize;
  for (const SectionEntry& entry : entries_) {
    Put(header, at + layout::entry::kId, entry.id);
    Put(header, at + layout::entry::kOffset, entry.offset);
    Put(header, at + layout::entry::kLength, entry.length);
    Put(header, at + layout::entry::kChecksum, entry.checksum);
    at += layout::entry::kSize;
  }
  Checksum sum;
  sum.Add(header.data(), header.size());
  Put(header, field::kChecksum, sum.Value());
  file_.WriteAt(0, header.data(), header.size());
  return position_;
}

}  // namespace arf
