/** One attribute column of a database file. */
#ifndef QXPAF_ARF_FORMAT_ATTRIBUTE_COLUMN_H
#define QXPAF_ARF_FORMAT_ATTRIBUTE_COLUMN_H

#include <cstdint>
#include <string_view>

#include "arf/format/database.h"
#include "arf/format/file_view.h"

namespace arf {

class AttributeColumn
{
 public:
  AttributeColumn(const FileView& view, std::uint32_t column);

  std::uint32_t Name() const { return record_.U32At(layout::attribute::kName); }
  /** A point's value: a part of the file, or of `text`. */
  std::string_view Value(std::uint32_t ordinal, AttributeText& text) const;

 private:
  std::string_view TextAt(std::uint64_t index) const;
  std::uint32_t PackedCode(std::uint32_t ordinal, std::uint32_t bits) const;
  std::uint64_t DeltaCode(const ByteReader& blocks, std::uint32_t ordinal) const;
  std::string_view Number(std::uint32_t ordinal, AttributeText& text) const;

  ByteReader record_;
  ByteReader data_;
  std::uint32_t pointCount_;
};

}  // namespace arf

#endif
