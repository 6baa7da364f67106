/**
 * Reads a file of lines whose fields are divided by a vertical bar, without quotes, in blocks of whole lines, so that
 * several threads can take them apart.
 */
#ifndef QXPAF_ARF_BUILD_LINE_READER_H
#define QXPAF_ARF_BUILD_LINE_READER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "arf/format/descriptor.h"

namespace arf {

inline constexpr char kFieldDivider = '|';

/** Whole lines of a file. */
struct LineBlock
{
  std::string text;
  std::uint32_t firstLine = 0;  ///< from 1
  std::uint64_t bytesRead = 0;  ///< of the file, this block included
};

class LineReader
{
 public:
  /** A longer line is taken for a file of another kind. */
  static constexpr std::size_t kMaxLineBytes = 1 << 20;

  /** Opens the file and reads its first line; throws BuildError when that fails, or when the file is UTF-16. */
  explicit LineReader(const std::string& path);

  /** The fields of the first line. */
  const std::vector<std::string_view>& Header() const { return headerFields_; }
  /** Gives the next lines; false at the end. Throws BuildError when the file cannot be read or a line is too long. */
  bool Next(LineBlock& block);

  const std::string& Path() const { return path_; }
  std::uint64_t FileSize() const { return fileSize_; }

 private:
  std::size_t ReadInto(char* to, std::size_t size);

  std::string path_;
  Descriptor file_;
  std::uint64_t fileSize_ = 0;
  std::uint64_t bytesRead_ = 0;
  std::uint32_t line_ = 1;
  std::string rest_;  ///< what was read of the line behind the last block
  std::string header_;
  std::vector<std::string_view> headerFields_;
};

/** Takes the next line off the front of a text, without its end (LF or CRLF). */
std::string_view TakeLine(std::string_view& text);

/** The fields of a line. */
void SplitFields(std::string_view line, std::vector<std::string_view>& fields);

}  // namespace arf

#endif
