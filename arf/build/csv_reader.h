/**
 * Reads a CSV file row by row and knows the line on which each row begins.
 *
 * Behind a row that cannot be taken apart or is too long, reading goes on with its second line, so that a quote that
 * nobody closed takes no other row with it. For such a one is also taken what goes over several lines and has another
 * number of fields than the first row.
 */
#ifndef QXPAF_ARF_BUILD_CSV_READER_H
#define QXPAF_ARF_BUILD_CSV_READER_H

#include <csv.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "arf/format/descriptor.h"

namespace arf {

class CsvReader
{
 public:
  /** A row longer than this is taken for one whose closing quote is missing. */
  static constexpr std::size_t kMaxRowBytes = 1 << 20;

  enum class Result
  {
    Row,
    BadQuotes,  ///< the row cannot be taken apart
    TooLong,    ///< the row has more than kMaxRowBytes
    End
  };

  /** Opens the file; throws BuildError when that fails or when it is UTF-16. */
  CsvReader(const std::string& path, char delimiter);
  ~CsvReader();
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  /** The next row that is not blank. Throws BuildError when the file cannot be read. */
  Result Next();

  /** The fields of the row, valid until the next call. Unquoted fields are without white space at their ends. */
  std::span<const std::string_view> Fields() const { return fields_; }
  /** The line, from 1, on which the row, broken or not, begins. */
  std::uint32_t Line() const { return rowLine_; }

  std::uint64_t BytesRead() const { return bytesRead_; }
  std::uint64_t FileSize() const { return fileSize_; }

 private:
  static void OnField(void* text, std::size_t length, void* self);
  static void OnRow(int terminator, void* self);

  void StartParser();
  void FillBuffer();
  void PassByteOrderMark();
  std::string_view TakePiece();
  void CountLine(std::string_view piece);
  void EndFirstLine(std::string_view piece);
  bool Feed(std::string_view piece);
  Result FinishFile();
  Result GiveUp(Result why, std::string_view piece);
  void PassRestOfLine(std::string_view piece);
  void GoBackToLaterLines();
  Result DeliverRow();

  std::string path_;
  Descriptor file_;
  char delimiter_;
  csv_parser parser_{};
  std::vector<char> buffer_;
  std::string_view laterLines_;  ///< of the row, those behind its first, as far as they were taken; in the buffer
  std::string_view rest_;        ///< of the buffer, behind `laterLines_`
  std::uint64_t bytesRead_ = 0;
  std::uint64_t fileSize_ = 0;
  std::uint32_t line_ = 1;
  std::uint32_t rowLine_ = 1;
  std::size_t rowBytes_ = 0;
  std::size_t columns_ = 0;  ///< of the first row; 0 before it
  bool inRow_ = false;
  bool rowDone_ = false;
  bool hasLaterLines_ = false;          ///< the row's first line was taken whole
  bool afterReturn_ = false;            ///< the last piece ended with a carriage return
  std::uint32_t laterLine_ = 1;         ///< what `line_` was behind the first line
  bool laterLinesAfterReturn_ = false;  ///< and `afterReturn_`
  std::string texts_;                   ///< the fields of the row, one behind the other
  std::vector<std::size_t> ends_;
  std::vector<std::string_view> fields_;
};

}  // namespace arf

#endif
