/** A CSV file row by row, each with the text it has in the file. */
#ifndef PAF_TOOL_CSV_ROWS_H
#define PAF_TOOL_CSV_ROWS_H

#include <csv.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "arf/format/descriptor.h"

namespace tool {

/** Valid until the next row is read. */
struct CsvRow
{
  std::string_view text;            ///< as in the file, without the line end
  std::uint64_t line = 0;           ///< on which it begins, from 1
  std::vector<std::string> fields;  ///< without quotes; those that are not quoted without white space at their ends
  std::string fault;                ///< why the row cannot be taken apart; empty when it can
};

/**
 * Reads rows whose number of fields is that of the first row. Blank lines are passed over, but
 * behind a first row of one field each is a row with an empty one.
 *
 * A row that goes over several lines and turns out to be broken is given up after its first line, so that a quote
 * that nobody closed takes no other row with it.
 */
class CsvRows
{
 public:
  /** A row longer than this is taken for one whose closing quote is missing. */
  static constexpr std::size_t kMaxRowBytes = 64 * 1024;

  /** Throws Failure when the file cannot be opened. */
  CsvRows(std::string path, char delimiter);
  ~CsvRows();
  CsvRows(const CsvRows&) = delete;
  CsvRows& operator=(const CsvRows&) = delete;

  /** Reads the row that names the columns; throws Failure when there is none, or when it is broken. */
  CsvRow Header();

  /** The next row; false at the end of the file. Throws Failure when the file cannot be read. */
  bool Next(CsvRow& row);

  /** Goes on at a place where Offset and Line once were. */
  void Seek(std::uint64_t offset, std::uint64_t line);

  /** The place behind the last row, in bytes, and the number of the line there. */
  std::uint64_t Offset() const { return offset_; }
  std::uint64_t Line() const { return line_; }

  /** The file's size in bytes, 0 when it has none, as a pipe. */
  std::uint64_t Size() const { return size_; }
  /** When the file was changed, in nanoseconds. */
  std::int64_t Modified() const { return modified_; }
  /** True when lines end with CR LF. */
  bool HasReturns() const { return hasReturns_; }

 private:
  std::string_view LineAt(std::size_t from);
  bool ReadMore();
  bool TakeBlankRow(CsvRow& row);
  bool Parse(CsvRow& row);
  bool ParseLine(std::string_view line, CsvRow& row);
  void ResetParser();
  void Consume(std::size_t bytes);
  void DropConsumed();
  void PassBlankLines();
  void CheckEncoding();

  std::string path_;
  arf::Descriptor file_;
  csv_parser parser_{};
  std::string buffer_;
  std::size_t position_ = 0;  ///< of the next row in the buffer
  std::uint64_t offset_ = 0;
  std::uint64_t line_ = 1;
  std::uint64_t size_ = 0;
  std::int64_t modified_ = 0;
  std::size_t columns_ = 0;  ///< 0 until the header is read
  bool hasReturns_ = false;
  bool rowEnded_ = false;
};

/** A field as it is written into a row. */
void AppendCsvField(std::string& text, std::string_view field, char delimiter);

}  // namespace tool

#endif
