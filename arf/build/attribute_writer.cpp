#include "arf/build/attribute_writer.h"

#include <algorithm>
#include <bit>
#include <string>
#include <utility>
#include <vector>

#include "arf/build/bit_packer.h"
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

std::uint32_t BitsFor(std::uint32_t values)
{
  return static_cast<std::uint32_t>(std::bit_width(values - 1));
}

void PutWide(std::vector<std::uint8_t>& out, std::uint64_t number)
{
  for (; number >= 0x80; number >>= 7) out.push_back(static_cast<std::uint8_t>(number | 0x80));
  out.push_back(static_cast<std::uint8_t>(number));
}

/** Codes in blocks of differences, as the reader describes them. */
class DeltaBlocks
{
 public:
  explicit DeltaBlocks(std::uint32_t points) { begins_.reserve(points / field::kDeltaBlock + 1); }

  void Put(std::uint64_t code)
  {
    if (points_++ % field::kDeltaBlock == 0) {
      FinishRun();
      if (bytes_.size() > UINT32_MAX) throw BuildError("an attribute column is longer than 4 GiB");
      begins_.push_back(static_cast<std::uint32_t>(bytes_.size()));
      before_ = 0;
      isRunning_ = false;
    }
    if (isRunning_ && code == before_) {
      ++run_;
      return;
    }
    FinishRun();
    const std::uint64_t difference = code - before_;
    PutWide(bytes_, (difference << 1) ^ (0 - (difference >> 63)));
    isRunning_ = difference == 0;
    before_ = code;
  }

  std::uint64_t Finish()
  {
    FinishRun();
    isRunning_ = false;
    return bytes_.size() + begins_.size() * sizeof(std::uint32_t);
  }

  void Append(SectionWriter& writer) const
  {
    writer.AppendNumbers(begins_);
    writer.Append(bytes_.data(), bytes_.size());
  }

 private:
  void FinishRun()
  {
    if (isRunning_) PutWide(bytes_, run_);
    run_ = 0;
  }

  std::vector<std::uint32_t> begins_;
  std::vector<std::uint8_t> bytes_;
  std::uint64_t before_ = 0;
  std::uint32_t points_ = 0, run_ = 0;
  bool isRunning_ = false;
};

/** Texts in front of numbers, each with the codes from `firstCode` on for its numbers from `firstNumber` on. */
struct FrontRange
{
  std::uint32_t front = 0;
  std::uint64_t firstNumber = UINT64_MAX, lastNumber = 0;
  std::uint64_t firstCode = 0;
};

/** Writes one column in whichever way is the smallest. */
class ColumnWriter
{
 public:
  ColumnWriter(SectionWriter& writer, const AttributeValues& values, const std::vector<AddressRow>& rows,
               ColumnRecord& record)
      : writer_(writer), values_(values), rows_(rows), record_(record), points_(static_cast<std::uint32_t>(rows.size()))
  {
  }

  void Write()
  {
    FindRanges();
    FindDistinct();
    DeltaBlocks ranks(points_);
    const bool isMostlyDistinct = distinct_.size() > points_ / 2;
    if (!isMostlyDistinct) PutRanks(ranks);
    const std::uint64_t packedSize = std::uint64_t{points_} * BitsFor(Count(distinct_)) / 8;
    const std::uint64_t deltaSize = isMostlyDistinct ? UINT64_MAX / 2 : ranks.Finish();
    const std::uint64_t dictionarySize = distinctLength_ + distinct_.size() * sizeof(std::uint32_t);
    const std::uint64_t directSize = totalLength_ + std::uint64_t{points_} * sizeof(std::uint32_t);
    const std::uint64_t codedSize = dictionarySize + std::min(packedSize, deltaSize);
    if (HasFewRanges()) {
      DeltaBlocks numbers(points_);
      for (const AddressRow& row : rows_) numbers.Put(RangeCode(values_.CodeOf(row.input)));
      if (numbers.Finish() + RangesSize() < std::min(codedSize, directSize)) return AppendNumbers(numbers);
    }
    if (directSize < codedSize) return AppendDirect();
    AppendDistinct();
    deltaSize < packedSize ? AppendDeltas(ranks) : AppendPacked();
  }

 private:
  template <class List>
  static std::uint32_t Count(const List& list)
  {
    return static_cast<std::uint32_t>(list.size());
  }

  void FindRanges()
  {
    const StringPool& fronts = values_.Fronts();
    ranges_.resize(fronts.Count());
    for (const AddressRow& row : rows_) {
      const std::uint64_t code = values_.CodeOf(row.input), number = AttributeValues::NumberOf(code);
      FrontRange& range = ranges_[AttributeValues::FrontOf(code)];
      range.firstNumber = std::min(range.firstNumber, number);
      range.lastNumber = std::max(range.lastNumber, number);
    }
    std::uint64_t next = 0;
    for (const std::uint32_t front : fronts.SortedNumbers()) {
      FrontRange& range = ranges_[front];
      range.front = front;
      range.firstCode = next;
      if (range.firstNumber == UINT64_MAX) continue;
      next += range.lastNumber - range.firstNumber + 1;
      order_.push_back(front);
    }
    codeEnd_ = next;
  }

  /** The different values, sorted by front and number, and the lengths of these and of all values. */
  void FindDistinct()
  {
    std::vector<std::uint64_t> sorted;
    sorted.reserve(rows_.size());
    for (const AddressRow& row : rows_) {
      const std::uint64_t code = values_.CodeOf(row.input);
      sorted.push_back(RangeCode(code));
      totalLength_ += LengthOf(code);
    }
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    sorted.shrink_to_fit();
    distinct_ = std::move(sorted);
    for (std::size_t i = 0, at = 0; i < distinct_.size(); ++i) distinctLength_ += LengthOf(ValueOf(distinct_[i], at));
  }

  std::size_t LengthOf(std::uint64_t code) const
  {
    std::size_t length = values_.Fronts().At(AttributeValues::FrontOf(code)).size();
    const std::uint64_t number = AttributeValues::NumberOf(code);
    if (number == 0) return length;
    for (std::uint64_t rest = number - 1; length += 1, rest >= 10;) rest /= 10;
    return length;
  }

  std::uint64_t RangeCode(std::uint64_t code) const
  {
    const FrontRange& range = ranges_[AttributeValues::FrontOf(code)];
    return range.firstCode + AttributeValues::NumberOf(code) - range.firstNumber;
  }

  /** The value that has a range code; `at` is a place in the order of fronts that is not behind its front. */
  std::uint64_t ValueOf(std::uint64_t rangeCode, std::size_t& at) const
  {
    while (at + 1 < order_.size() && ranges_[order_[at + 1]].firstCode <= rangeCode) ++at;
    const FrontRange& range = ranges_[order_[at]];
    return AttributeValues::Code(range.front, rangeCode - range.firstCode + range.firstNumber);
  }

  bool HasFewRanges() const
  {
    constexpr std::size_t kMostRanges = 4096;
    const auto fits = [&](std::uint32_t front) { return values_.Fronts().At(front).size() <= field::kMaxFront; };
    return order_.size() <= kMostRanges && codeEnd_ < (std::uint64_t{1} << 60) &&
           std::all_of(order_.begin(), order_.end(), fits);
  }

  std::uint64_t RangesSize() const
  {
    std::uint64_t size = 0;
    for (const std::uint32_t front : order_) {
      size += values_.Fronts().At(front).size() + sizeof(std::uint32_t) + field::range::kSize;
    }
    return size;
  }

  std::uint32_t RankOf(std::uint64_t rangeCode) const
  {
    return static_cast<std::uint32_t>(std::lower_bound(distinct_.begin(), distinct_.end(), rangeCode) -
                                      distinct_.begin());
  }

  /** Calls `put` with the rank of each row's value. Values often are those of the row before. */
  template <class Put>
  void ForEachRank(Put put) const
  {
    std::uint64_t lastCode = UINT64_MAX;
    std::uint32_t lastRank = 0;
    for (const AddressRow& row : rows_) {
      const std::uint64_t code = RangeCode(values_.CodeOf(row.input));
      if (code != lastCode) lastRank = RankOf(lastCode = code);
      put(lastRank);
    }
  }

  void PutRanks(DeltaBlocks& blocks) const
  {
    ForEachRank([&](std::uint32_t rank) { blocks.Put(rank); });
  }

  void AppendNumbers(const DeltaBlocks& numbers)
  {
    record_.bits = field::kNumbers;
    record_.valueCount = Count(order_);
    AppendTexts(writer_, record_.valueCount, [&](std::uint32_t i) { return values_.Fronts().At(order_[i]); });
    EndTexts();
    for (const std::uint32_t front : order_) {
      for (const std::uint64_t number : {ranges_[front].firstCode, ranges_[front].firstNumber}) {
        writer_.Append(&number, sizeof number);
      }
    }
    numbers.Append(writer_);
  }

  void AppendDirect()
  {
    record_.bits = field::kDirect;
    record_.valueCount = points_;
    AppendTexts(writer_, points_, [&](std::uint32_t i) { return values_.TextOf(rows_[i].input, text_); });
    EndTexts();
  }

  void AppendDistinct()
  {
    record_.valueCount = Count(distinct_);
    std::size_t at = 0;
    AppendTexts(writer_, record_.valueCount, [&](std::uint32_t rank) {
      if (rank == 0) at = 0;
      return std::string_view(values_.TextOfCode(ValueOf(distinct_[rank], at), text_));
    });
    EndTexts();
  }

  void EndTexts()
  {
    record_.textLength = writer_.Length() - record_.textOffset;
    record_.codesOffset = writer_.Length();
  }

  void AppendDeltas(const DeltaBlocks& ranks)
  {
    record_.bits = field::kDeltas;
    ranks.Append(writer_);
  }

  void AppendPacked()
  {
    record_.bits = BitsFor(record_.valueCount);
    BitPacker packer(writer_, record_.bits);
    ForEachRank([&](std::uint32_t rank) { packer.Put(rank); });
    packer.Finish();
  }

  SectionWriter& writer_;
  const AttributeValues& values_;
  const std::vector<AddressRow>& rows_;
  ColumnRecord& record_;
  std::uint32_t points_;
  std::vector<FrontRange> ranges_;    ///< of each front
  std::vector<std::uint32_t> order_;  ///< the fronts that are used, sorted
  std::uint64_t codeEnd_ = 0;
  std::vector<std::uint64_t> distinct_;  ///< range codes, ascending
  std::uint64_t distinctLength_ = 0, totalLength_ = 0;
  std::string text_;
};

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

void WriteAttributes(SectionWriter& writer, AddressTable& table, FileStrings& strings, const BuildWatch& watch)
{
  std::vector<ColumnRecord> records;
  writer.Begin(layout::SectionId::AttributeData);
  for (AttributeTable& column : table.attributes) {
    watch.Reached(BuildPhase::Writing, table.rows.size(), table.rows.size());
    ColumnRecord& record = records.emplace_back();
    record.name = strings.Add(column.name);
    record.textOffset = writer.Length();
    ColumnWriter(writer, column.values, table.rows, record).Write();
    column.values = AttributeValues();
  }
  writer.End();
  writer.Begin(layout::SectionId::AttributeColumns);
  for (const ColumnRecord& record : records) AppendRecord(writer, record);
  writer.End();
}

}  // namespace arf
