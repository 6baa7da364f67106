/**
 * Reads a CSV file row by row and knows the line on which each row begins.
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
  /** A row longer than this is taken for a missing closing quote, which would swallow the rest of the file. */
  static constexpr std::size_t kMaxRowBytes = 1 << 20;

  enum class Result
  {
    Row,
    BadQuotes,  ///< the row cannot be taken apart; reading goes on with the next line
    End
  };

  /** Opens the file; throws BuildError when that fails or when it is UTF-16. */
  CsvReader(const std::string& path, char delimiter);
  ~CsvReader();
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  /** The next row that is not blank. Throws BuildError when the file cannot be read or a row is too long. */
  Result Next();

  /** The fields of the row, valid until the next call. Unquoted fields are without white space at their ends. */
  std::span<const std::string_view> Fields() const { return fields_; }
  /** The line, from 1, on which the row (or the one with bad quotes) begins. */
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
  bool Feed(std::string_view piece);
  void PassRestOfLine(std::string_view piece);
  Result FinishFile();
  Result DeliverRow();

  std::string path_;
  Descriptor file_;
  char delimiter_;
  csv_parser parser_{};
  std::vector<char> buffer_;
  std::string_view rest_;  ///< of the buffer
  std::uint64_t bytesRead_ = 0;
  std::uint64_t fileSize_ = 0;
  std::uint32_t line_ = 1;
  std::uint32_t rowLine_ = 1;
  std::size_t rowBytes_ = 0;
  bool inRow_ = false;
  bool rowDone_ = false;
  bool afterReturn_ = false;  ///< the last piece ended with a carriage return
  bool finished_ = false;
  std::string texts_;  ///< the fields of the row, one behind the other
  std::vector<std::size_t> ends_;
  std::vector<std::string_view> fields_;
};

}  // namespace arf

#endif
