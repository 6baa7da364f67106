#include "arf/build/csv_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "arf/build/build_error.h"

namespace arf {
namespace {

constexpr std::size_t kReadSize = 1 << 20;
constexpr std::size_t kFieldGrowth = 1 << 14;  // by which the parser's field buffer grows

bool IsBlank(std::string_view text)
{
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/** The length of the first line of `text` with its terminator, a single LF or CR; all of it when there is none. */
std::size_t LineLength(std::string_view text)
{
  const std::size_t feed = std::min(text.find('\n'), text.size());
  const std::size_t end = std::min(text.substr(0, feed).find('\r'), feed);
  return std::min(end + 1, text.size());
}

bool EndsLine(std::string_view piece)
{
  return piece.ends_with('\n') || piece.ends_with('\r');
}

}  // namespace

CsvReader::CsvReader(const std::string& path, char delimiter)
    : path_(path),
      file_(open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      delimiter_(delimiter),
      buffer_(kMaxRowBytes + kReadSize)
{
  struct stat status;
  if (!file_.IsOpen() || fstat(file_.Value(), &status) != 0) throw BuildError(SystemError(path, errno));
  fileSize_ = static_cast<std::uint64_t>(status.st_size);
  StartParser();
  FillBuffer();
  PassByteOrderMark();
}

CsvReader::~CsvReader()
{
  csv_free(&parser_);
}

void CsvReader::StartParser()
{
  if (csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
  csv_set_delim(&parser_, static_cast<unsigned char>(delimiter_));
  csv_set_blk_size(&parser_, kFieldGrowth);
}

/** Reads more behind the later lines of the row, which come to the buffer's front. */
void CsvReader::FillBuffer()
{
  if (!laterLines_.empty()) std::memmove(buffer_.data(), laterLines_.data(), laterLines_.size());
  char* const to = buffer_.data() + laterLines_.size();
  ssize_t got;
  do {
    got = read(file_.Value(), to, kReadSize);
  } while (got < 0 && errno == EINTR);
  if (got < 0) throw BuildError(SystemError(path_, errno));
  laterLines_ = {buffer_.data(), laterLines_.size()};
  rest_ = {to, static_cast<std::size_t>(got)};
  bytesRead_ += rest_.size();
}

void CsvReader::PassByteOrderMark()
{
  if (rest_.starts_with("\xFF\xFE") || rest_.starts_with("\xFE\xFF")) {
    throw BuildError(path_ + ": is UTF-16; save it as UTF-8");
  }
  if (rest_.starts_with("\xEF\xBB\xBF")) rest_.remove_prefix(3);
}

void CsvReader::OnField(void* text, std::size_t length, void* self)
{
  auto* reader = static_cast<CsvReader*>(self);
  reader->texts_.append(static_cast<const char*>(text), length);
  reader->ends_.push_back(reader->texts_.size());
}

void CsvReader::OnRow(int, void* self)
{
  static_cast<CsvReader*>(self)->rowDone_ = true;
}

CsvReader::Result CsvReader::Next()
{
  texts_.clear();
  ends_.clear();
  rowBytes_ = 0;
  rowDone_ = inRow_ = hasLaterLines_ = false;
  laterLines_ = {};
  while (!rowDone_) {
    if (rest_.empty()) FillBuffer();
    if (rest_.empty()) return FinishFile();
    const std::string_view piece = TakePiece();
    if (rowBytes_ > kMaxRowBytes) return GiveUp(Result::TooLong, piece);
    if (!Feed(piece)) return GiveUp(Result::BadQuotes, piece);
    EndFirstLine(piece);
  }
  return DeliverRow();
}

/** What is in the buffer of the current line; it may continue in the next buffer. */
std::string_view CsvReader::TakePiece()
{
  const std::string_view piece = rest_.substr(0, LineLength(rest_));
  rest_.remove_prefix(piece.size());
  if (!inRow_ && !IsBlank(piece)) {
    inRow_ = true;
    rowLine_ = line_;
  }
  if (inRow_) rowBytes_ += piece.size();
  if (hasLaterLines_) {
    const char* const begin = laterLines_.empty() ? piece.data() : laterLines_.data();
    laterLines_ = {begin, laterLines_.size() + piece.size()};
  }
  CountLine(piece);
  return piece;
}

void CsvReader::CountLine(std::string_view piece)
{
  const bool isSecondHalf = afterReturn_ && piece == "\n";  // of CR LF
  afterReturn_ = piece.back() == '\r';
  if (!isSecondHalf && (piece.back() == '\n' || afterReturn_)) ++line_;
}

void CsvReader::EndFirstLine(std::string_view piece)
{
  if (!inRow_ || hasLaterLines_ || !EndsLine(piece)) return;
  hasLaterLines_ = true;
  laterLine_ = line_;
  laterLinesAfterReturn_ = afterReturn_;
}

/** False when the quotes are wrong. */
bool CsvReader::Feed(std::string_view piece)
{
  const std::size_t used = csv_parse(&parser_, piece.data(), piece.size(), OnField, OnRow, this);
  if (used == piece.size()) return true;
  if (csv_error(&parser_) != CSV_EPARSE) throw std::bad_alloc();
  return false;
}

CsvReader::Result CsvReader::FinishFile()
{
  if (csv_fini(&parser_, OnField, OnRow, this) != 0) return GiveUp(Result::BadQuotes, {});
  return rowDone_ ? DeliverRow() : Result::End;
}

/** @param piece  the last that was taken of the row */
CsvReader::Result CsvReader::GiveUp(Result why, std::string_view piece)
{
  csv_free(&parser_);
  StartParser();
  if (hasLaterLines_) {
    GoBackToLaterLines();
  } else {
    PassRestOfLine(piece);
  }
  return why;
}

void CsvReader::PassRestOfLine(std::string_view piece)
{
  while (!EndsLine(piece)) {
    if (rest_.empty()) FillBuffer();
    if (rest_.empty()) return;
    piece = TakePiece();
  }
}

void CsvReader::GoBackToLaterLines()
{
  if (!laterLines_.empty()) rest_ = {laterLines_.data(), laterLines_.size() + rest_.size()};
  line_ = laterLine_;
  afterReturn_ = laterLinesAfterReturn_;
}

CsvReader::Result CsvReader::DeliverRow()
{
  const bool isWholeLine = !hasLaterLines_ || laterLines_.empty();
  if (!isWholeLine && columns_ != 0 && ends_.size() != columns_) return GiveUp(Result::BadQuotes, {});
  if (columns_ == 0) columns_ = ends_.size();
  fields_.clear();
  std::size_t begin = 0;
  for (const std::size_t end : ends_) {
    fields_.push_back(std::string_view(texts_).substr(begin, end - begin));
    begin = end;
  }
  return Result::Row;
}

}  // namespace arf
