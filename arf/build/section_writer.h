/**
 * Writes the sections of a database file one after the other, and its header at the end.
 */
#ifndef QXPAF_ARF_BUILD_SECTION_WRITER_H
#define QXPAF_ARF_BUILD_SECTION_WRITER_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "arf/build/output_file.h"
#include "arf/format/checksum.h"
#include "arf/format/file_view.h"
#include "arf/format/layout.h"

namespace arf {

/** What the header says about the file as a whole. */
struct FileCounts
{
  std::uint32_t localities = 0;
  std::uint32_t streets = 0;
  std::uint32_t points = 0;
  std::uint32_t blockPoints = 0;
};

class SectionWriter
{
 public:
  /** Every section is in the file in the end: those that nobody wrote are empty. */
  explicit SectionWriter(OutputFile& file);

  void Begin(layout::SectionId id);
  void Append(const void* data, std::size_t size);
  void Append(std::string_view text) { Append(text.data(), text.size()); }
  void AppendNumber(std::uint32_t number) { Append(&number, sizeof number); }
  void AppendNumbers(const std::vector<std::uint32_t>& numbers)
  {
    Append(numbers.data(), numbers.size() * sizeof(std::uint32_t));
  }
  /** Bytes in the section so far. */
  std::uint64_t Length() const { return entry_.length; }
  void End();

  /** Writes header and section table. Returns the size of the file. */
  std::uint64_t Finish(const FileCounts& counts);

 private:
  void Flush();
  void WriteMissing();

  OutputFile& file_;
  std::uint64_t position_;  ///< in the file, of the buffer's first byte
  std::vector<std::uint8_t> buffer_;
  std::size_t used_ = 0;
  SectionEntry entry_;
  Checksum sum_;
  std::vector<SectionEntry> entries_;
};

}  // namespace arf

#endif
