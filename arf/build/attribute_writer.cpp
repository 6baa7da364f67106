#include "arf/build/attribute_writer.h"

#include <array>
#include <bit>
#include <vector>

#include "arf/build/text_table_writer.h"

namespace arf {
namespace {

namespace field = layout::attribute;

struct ColumnRecord
{
  std::uint32_t name = 0;
  std::uint32_t bits = 0;
  std::uint32_t valueCount = 0;
  std::uint64_t textLength = 0;
  std::uint64_t textOffset = 0;
  std::uint64_t codesOffset = 0;
};

/** Packs codes of a fixed width, the first into the lowest bits. */
class BitPacker
{
 public:
  BitPacker(SectionWriter& writer, std::uint32_t bits) : writer_(writer), bits_(bits) {}

  void Put(std::uint32_t code)
  {
    word_ |= std::uint64_t{code} << used_;
    used_ += bits_;
    if (used_ < 32) return;
    writer_.AppendNumber(static_cast<std::uint32_t>(word_));
    word_ >>= 32;
    used_ -= 32;
  }

  /** Writes what is left and the zeros that let a reader load eight bytes at any code. */
  void Finish()
  {
    const std::array<std::uint8_t, field::kCodesPadding> padding{};
    writer_.AppendNumber(static_cast<std::uint32_t>(word_));
    writer_.Append(padding.data(), padding.size());
  }

 private:
  SectionWriter& writer_;
  std::uint32_t bits_;
  std::uint64_t word_ = 0;
  std::uint32_t used_ = 0;
};

std::uint32_t BitsFor(std::uint32_t values)
{
  return static_cast<std::uint32_t>(std::bit_width(values - 1));
}

/** Whether a column is smaller with a value for each point than with a dictionary and codes. */
bool IsSmallerDirect(const AttributeColumn& column, const std::vector<AddressRow>& rows)
{
  std::uint64_t distinct = 0, all = 0;
  for (std::uint32_t i = 0; i < column.values.Count(); ++i) distinct += column.values.At(i).size();
  for (const AddressRow& row : rows) all += column.values.At(column.codes[row.input]).size();
  const std::uint64_t entries = column.values.Count();
  const std::uint64_t codes = std::uint64_t{rows.size()} * BitsFor(column.values.Count()) / 8;
  return all + rows.size() * sizeof(std::uint32_t) < distinct + entries * sizeof(std::uint32_t) + codes;
}

void AppendDirect(SectionWriter& writer, const AttributeColumn& column, const std::vector<AddressRow>& rows,
                  ColumnRecord& record)
{
  record.bits = field::kDirect;
  record.valueCount = static_cast<std::uint32_t>(rows.size());
  AppendTexts(writer, record.valueCount,
              [&](std::uint32_t ordinal) { return column.values.At(column.codes[rows[ordinal].input]); });
  record.textLength = writer.Length() - record.textOffset;
}

void AppendDictionary(SectionWriter& writer, const AttributeColumn& column, const std::vector<AddressRow>& rows,
                      ColumnRecord& record)
{
  const std::vector<std::uint32_t> order = column.values.SortedNumbers();
  const std::vector<std::uint32_t> ranks = Inverse(order);
  record.valueCount = column.values.Count();
  record.bits = BitsFor(record.valueCount);
  AppendTexts(writer, record.valueCount, [&](std::uint32_t rank) { return column.values.At(order[rank]); });
  record.textLength = writer.Length() - record.textOffset;
  record.codesOffset = writer.Length();
  BitPacker packer(writer, record.bits);
  for (const AddressRow& row : rows) packer.Put(ranks[column.codes[row.input]]);
  packer.Finish();
}

void AppendRecord(SectionWriter& writer, const ColumnRecord& record)
{
  writer.AppendNumber(record.name);
  writer.AppendNumber(record.bits);
  writer.AppendNumber(record.valueCount);
  writer.AppendNumber(0);
  for (const std::uint64_t number : {record.textLength, record.textOffset, record.codesOffset}) {
    writer.Append(&number, sizeof number);
  }
}

}  // namespace

void WriteAttributes(SectionWriter& writer, const AddressTable& table, FileStrings& strings, const BuildWatch& watch)
{
  std::vector<ColumnRecord> records;
  writer.Begin(layout::SectionId::AttributeData);
  for (const AttributeColumn& column : table.attributes) {
    watch.Reached(BuildPhase::Writing, table.rows.size(), table.rows.size());
    ColumnRecord& record = records.emplace_back();
    record.name = strings.Add(column.name);
    record.textOffset = writer.Length();
    const bool isDirect = IsSmallerDirect(column, table.rows);
    (isDirect ? AppendDirect : AppendDictionary)(writer, column, table.rows, record);
  }
  writer.End();
  writer.Begin(layout::SectionId::AttributeColumns);
  for (const ColumnRecord& record : records) AppendRecord(writer, record);
  writer.End();
}

}  // namespace arf
