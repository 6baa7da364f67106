#include "arf/format/attribute_column.h"

#include <algorithm>
#include <charconv>

#include "arf/format/partition_point.h"

namespace arf {

namespace field = layout::attribute;

AttributeColumn::AttributeColumn(const FileView& view, std::uint32_t column)
    : record_(
          view.Section(layout::SectionId::AttributeColumns).Part(column * std::uint64_t{field::kSize}, field::kSize)),
      data_(view.Section(layout::SectionId::AttributeData)),
      pointCount_(view.pointCount)
{
}

std::string_view AttributeColumn::Value(std::uint32_t ordinal, AttributeText& text) const
{
  const std::uint32_t bits = record_.U32At(field::kBits);
  if (bits == field::kNumbers) return Number(ordinal, text);
  if (bits == field::kDirect) return TextAt(ordinal);
  if (bits == field::kDeltas) return TextAt(DeltaCode(data_.From(record_.U64At(field::kCodesOffset)), ordinal));
  return bits <= 32 ? TextAt(PackedCode(ordinal, bits)) : std::string_view();
}

std::string_view AttributeColumn::TextAt(std::uint64_t index) const
{
  const std::uint32_t count = record_.U32At(field::kValueCount);
  const ByteReader texts = data_.Part(record_.U64At(field::kTextOffset), record_.U64At(field::kTextLength));
  const std::uint64_t offsets = (std::uint64_t{count} + 1) * sizeof(std::uint32_t);
  if (index >= count) return {};
  return TextTable{texts.Part(0, offsets), texts.From(offsets), count}.At(static_cast<std::uint32_t>(index));
}

std::uint32_t AttributeColumn::PackedCode(std::uint32_t ordinal, std::uint32_t bits) const
{
  const ByteReader codes = data_.From(record_.U64At(field::kCodesOffset));
  return static_cast<std::uint32_t>(codes.BitsAt(std::uint64_t{ordinal} * bits, bits));
}

/**
 * The beginnings of the blocks, then the blocks. In a block stand the differences to the code before, from 0, with the
 * sign in the lowest bit; behind a difference of 0 stands for how many more points the code stays the same.
 */
std::uint64_t AttributeColumn::DeltaCode(const ByteReader& blocks, std::uint32_t ordinal) const
{
  const std::uint64_t count = (std::uint64_t{pointCount_} + field::kDeltaBlock - 1) / field::kDeltaBlock;
  const std::uint32_t begin = blocks.U32At(std::uint64_t{ordinal / field::kDeltaBlock} * sizeof(std::uint32_t));
  ByteReader block = blocks.From(count * sizeof(std::uint32_t)).From(begin);
  std::uint64_t code = 0, same = 0;
  for (std::uint32_t i = 0; i <= ordinal % field::kDeltaBlock; ++i) {
    if (same > 0) {
      --same;
      continue;
    }
    const std::uint64_t difference = block.TakeWideVarint();
    code += (difference >> 1) ^ (0 - (difference & 1));
    if (difference == 0) same = block.TakeVarint();
  }
  return code;
}

std::string_view AttributeColumn::Number(std::uint32_t ordinal, AttributeText& text) const
{
  const std::uint32_t count = record_.U32At(field::kValueCount);
  const ByteReader ranges = data_.From(record_.U64At(field::kCodesOffset));
  const std::uint64_t code = DeltaCode(ranges.From(count * std::uint64_t{field::range::kSize}), ordinal);
  const auto fieldOf = [&](std::uint32_t i, std::size_t at) {
    return ranges.U64At(i * std::uint64_t{field::range::kSize} + at);
  };
  const std::uint32_t behind =
      PartitionPoint(0, count, [&](std::uint32_t i) { return fieldOf(i, field::range::kFirstCode) <= code; });
  if (behind == 0) return {};
  const std::string_view front = TextAt(behind - 1);
  if (front.size() > field::kMaxFront) return {};
  char* end = std::copy(front.begin(), front.end(), text.begin());
  const std::uint64_t number =
      code - fieldOf(behind - 1, field::range::kFirstCode) + fieldOf(behind - 1, field::range::kFirstNumber);
  if (number > 0) end = std::to_chars(end, text.data() + text.size(), number - 1).ptr;
  return {text.data(), static_cast<std::size_t>(end - text.data())};
}

}  // namespace arf
