/**
 * A database file taken apart into its sections: check once, then trust.
 *
 * What checking promises. Opening takes three steps:
 *
 *  1. ReadHeader: the magic, the format version, the size, the header's checksum and the section table. Afterwards the
 *     sections cover the file from the header to its end without gap or overlap, each inside it.
 *  2. VerifySections: the checksum of every section, known or not, or of the short ones only. Afterwards their bytes
 *     are those that the builder wrote. This is the only step that reads everything, and it is separate from the others
 * so that it can be put off.
 *  3. CheckStructure: that the sections this reader needs are there and as long as the counts in the header demand, and
 *     that tables inside a section fit into it. Costs some twenty comparisons, whatever the size of the file.
 *
 * What it leaves to later calls. No step looks at the records themselves: string numbers, postings, offsets of streets
 * and the coded points are taken as they are. Checksums keep accidents away, not malice; so every access through a
 * FileView is tested against the ends of its section (ByteReader), indexes out of range read as nothing, and a walk
 * over points is bounded by counts that the header fixes. A hostile file can give wrong answers; it cannot make the
 * reader leave the file, run without end or allocate.
 */
#ifndef QXPAF_ARF_FORMAT_FILE_VIEW_H
#define QXPAF_ARF_FORMAT_FILE_VIEW_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "arf/format/byte_reader.h"
#include "arf/format/database.h"
#include "arf/format/layout.h"

namespace arf {

/** An entry of the section table. */
struct SectionEntry
{
  std::uint32_t id = 0;
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
  std::uint64_t checksum = 0;
};

/** A table of texts: count + 1 ascending offsets, then the bytes. */
struct TextTable
{
  ByteReader offsets;
  ByteReader bytes;
  std::uint32_t count = 0;

  std::string_view At(std::uint32_t index) const
  {
    if (index >= count) return {};
    const std::uint32_t begin = offsets.U32At(std::uint64_t{index} * 4);
    const std::uint32_t end = offsets.U32At(std::uint64_t{index} * 4 + 4);
    return end >= begin ? bytes.Part(begin, end - begin).Text() : std::string_view();
  }
};

struct FileView
{
  ByteReader file;
  std::uint32_t localityCount = 0;
  std::uint32_t streetCount = 0;
  std::uint32_t pointCount = 0;
  std::uint32_t blockPoints = 1;
  std::vector<SectionEntry> entries;
  std::array<ByteReader, layout::kSectionIds> sections;
  TextTable strings;

  const ByteReader& Section(layout::SectionId id) const { return sections[static_cast<std::size_t>(id) - 1]; }
  /** The identifier of a point that there is. */
  std::uint32_t Dpid(std::uint32_t ordinal) const
  {
    const ByteReader& dpids = Section(layout::SectionId::Dpids);
    return static_cast<std::uint32_t>(dpids.BitsAt(std::uint64_t{ordinal} * layout::kDpidBits, layout::kDpidBits));
  }
  /** String 0 is the empty one. */
  std::string_view String(std::uint32_t number) const { return number == 0 ? std::string_view() : strings.At(number); }
};

/** What is wrong with a file, without its name. */
struct Defect
{
  OpenFailure failure = OpenFailure::None;
  std::string what;
  explicit operator bool() const { return failure != OpenFailure::None; }
};

Defect ReadHeader(ByteReader file, FileView& view);
/** Verifies the checksums of the sections that are no longer than `longest`. */
Defect VerifySections(const FileView& view, std::uint64_t longest);
Defect CheckStructure(FileView& view);

/** "streets", or "section 77" for one that this reader does not know. */
std::string SectionLabel(std::uint32_t id);

}  // namespace arf

#endif
