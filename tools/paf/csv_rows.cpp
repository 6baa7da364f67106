#include "csv_rows.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "exit_code.h"
#include "interruption.h"

namespace tool {
namespace {

constexpr std::size_t kReadSize = 256 * 1024;
constexpr std::size_t kMaxLineBytes = 16 * 1024 * 1024;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/** A delimiter is not blank, even where it is white space. */
bool IsBlank(std::string_view line, unsigned char delimiter)
{
  return std::all_of(line.begin(), line.end(), [delimiter](unsigned char c) {
    return c != delimiter && (c == ' ' || c == '\t' || c == '\r' || c == '\n');
  });
}

std::string_view WithoutLineEnd(std::string_view text)
{
  if (text.ends_with('\n')) text.remove_suffix(1);
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

/** Only a line feed ends a row; the carriage return in front of it is white space. */
int IsRowEnd(unsigned char c)
{
  return c == '\n' ? 1 : 0;
}

int IsSpace(unsigned char c)
{
  return c == ' ' || c == '\t' || c == '\r' ? 1 : 0;
}

/** What the parser's callbacks write to. */
struct Target
{
  std::vector<std::string>& fields;
  bool& rowEnded;
};

void OnField(void* text, std::size_t length, void* target)
{
  static_cast<Target*>(target)->fields.emplace_back(static_cast<const char*>(text), length);
}

void OnRow(int, void* target)
{
  static_cast<Target*>(target)->rowEnded = true;
}

std::uint64_t LineFeeds(std::string_view text)
{
  return static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

CsvRows::CsvRows(std::string path, char delimiter)
    : path_(std::move(path)), file_(open(path_.c_str(), O_RDONLY | O_CLOEXEC))
{
  struct stat status = {};
  if (!file_.IsOpen() || fstat(file_.Value(), &status) != 0) {
    throw Failure(path_ + ": " + std::strerror(errno));
  }
  size_ = static_cast<std::uint64_t>(status.st_size);
  modified_ = std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec;
  if (csv_init(&parser_, CSV_STRICT) != 0) {
    throw std::bad_alloc();
  }
  csv_set_delim(&parser_, static_cast<unsigned char>(delimiter));
  csv_set_space_func(&parser_, IsSpace);
  csv_set_term_func(&parser_, IsRowEnd);
}

CsvRows::~CsvRows()
{
  csv_free(&parser_);
}

CsvRow CsvRows::Header()
{
  CheckEncoding();
  CsvRow header;
  if (!Next(header)) {
    throw Failure(path_ + ": is empty; its first row must name the columns");
  }
  if (!header.fault.empty()) {
    throw Failure(path_ + ":" + std::to_string(header.line) + ": the row of column names is broken: " + header.fault);
  }
  if (header.text.find('\r') != std::string_view::npos) {
    throw Failure(path_ + ": the lines end with carriage returns alone; write it with line feeds");
  }
  columns_ = header.fields.size();
  hasReturns_ = buffer_.compare(position_ - std::min<std::size_t>(position_, 2), 2, "\r\n") == 0;
  return header;
}

void CsvRows::CheckEncoding()
{
  while (buffer_.size() < kByteOrderMark.size() && ReadMore()) {
  }
  if (buffer_.starts_with("\xFF\xFE") || buffer_.starts_with("\xFE\xFF")) {
    throw Failure(path_ + ": is UTF-16; save it as UTF-8");
  }
  if (buffer_.starts_with(kByteOrderMark)) {
    Consume(kByteOrderMark.size());
  }
}

bool CsvRows::Next(CsvRow& row)
{
  DropConsumed();
  PassBlankLines();
  if (LineAt(position_).empty()) {
    return false;
  }
  row.line = line_;
  if (TakeBlankRow(row)) {
    return true;
  }
  if (!Parse(row)) {
    ResetParser();
    row.fields.clear();
    const std::string_view line = LineAt(position_);
    row.text = WithoutLineEnd(line);
    Consume(line.size());
  }
  return true;
}

void CsvRows::DropConsumed()
{
  if (position_ >= kReadSize) {
    buffer_.erase(0, position_);
    position_ = 0;
  }
}

void CsvRows::PassBlankLines()
{
  if (columns_ == 1) {
    return;
  }
  for (std::string_view line = LineAt(position_); !line.empty() && IsBlank(line, csv_get_delim(&parser_));
       line = LineAt(position_)) {
    Consume(line.size());
  }
}

/** The parser passes over blank lines, so that rows of one empty field are taken without it. */
bool CsvRows::TakeBlankRow(CsvRow& row)
{
  const std::string_view line = LineAt(position_);
  if (columns_ != 1 || !IsBlank(line, csv_get_delim(&parser_))) {
    return false;
  }
  row.fault.clear();
  row.fields.assign(1, "");
  row.text = WithoutLineEnd(line);
  Consume(line.size());
  return true;
}

/** Takes the row at the position apart and moves behind it; false, with the fault, when it is broken. */
bool CsvRows::Parse(CsvRow& row)
{
  row.fields.clear();
  row.fault.clear();
  rowEnded_ = false;
  std::size_t length = 0;
  while (!rowEnded_) {
    const std::string_view line = LineAt(position_ + length);
    length += line.size();
    if (line.empty() || length > kMaxRowBytes) {
      row.fault = line.empty() ? "a closing quote is missing" : "the row is too long, or a closing quote is missing";
      return false;
    }
    if (!ParseLine(line, row)) {
      row.fault = "a quote stands where none can be";
      return false;
    }
  }
  if (columns_ != 0 && row.fields.size() != columns_) {
    row.fault = std::to_string(row.fields.size()) + (row.fields.size() == 1 ? " field" : " fields") + " instead of " +
                std::to_string(columns_);
    return false;
  }
  row.text = WithoutLineEnd(std::string_view(buffer_).substr(position_, length));
  Consume(length);
  return true;
}

/** False when the quotes are wrong. */
bool CsvRows::ParseLine(std::string_view line, CsvRow& row)
{
  Target target{row.fields, rowEnded_};
  const auto feed = [&](std::string_view text) {
    const std::size_t used = csv_parse(&parser_, text.data(), text.size(), OnField, OnRow, &target);
    if (used != text.size() && csv_error(&parser_) != CSV_EPARSE) {
      throw std::bad_alloc();
    }
    return used == text.size();
  };
  return feed(line) && (line.ends_with('\n') || feed("\n"));
}

void CsvRows::ResetParser()
{
  csv_fini(&parser_, nullptr, nullptr, nullptr);
}

/** The line that begins at a place in the buffer, with its end; empty at the end of the file. */
std::string_view CsvRows::LineAt(std::size_t from)
{
  std::size_t searched = from;
  while (true) {
    const std::size_t feed = buffer_.find('\n', searched);
    if (feed != std::string::npos) {
      return std::string_view(buffer_).substr(from, feed + 1 - from);
    }
    searched = buffer_.size();
    if (searched - from > kMaxLineBytes) {
      throw Failure(path_ + ":" + std::to_string(line_) + ": a line of more than 16 MiB; is that a CSV file?");
    }
    if (!ReadMore()) {
      return std::string_view(buffer_).substr(from);
    }
  }
}

bool CsvRows::ReadMore()
{
  const std::size_t size = buffer_.size();
  buffer_.resize(size + kReadSize);
  ssize_t got = 0;
  do {
    got = read(file_.Value(), buffer_.data() + size, kReadSize);
  } while (got < 0 && errno == EINTR && !IsInterrupted());
  const int error = errno;
  buffer_.resize(size + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  if (got < 0) {
    throw Failure(path_ + ": " + std::strerror(error));
  }
  return got > 0;
}

void CsvRows::Consume(std::size_t bytes)
{
  line_ += LineFeeds(std::string_view(buffer_).substr(position_, bytes));
  position_ += bytes;
  offset_ += bytes;
}

void CsvRows::Seek(std::uint64_t offset, std::uint64_t line)
{
  if (lseek(file_.Value(), static_cast<off_t>(offset), SEEK_SET) < 0) {
    throw Failure(path_ + ": " + std::strerror(errno));
  }
  buffer_.clear();
  position_ = 0;
  offset_ = offset;
  line_ = line;
}

void AppendCsvField(std::string& text, std::string_view field, char delimiter)
{
  const auto isEdgeSpace = [](char c) { return c == ' ' || c == '\t'; };
  const bool plain =
      field.find_first_of("\"\r\n") == std::string_view::npos && field.find(delimiter) == std::string_view::npos;
  if (field.empty() || (plain && !isEdgeSpace(field.front()) && !isEdgeSpace(field.back()))) {
    text += field;
    return;
  }
  const std::size_t begin = text.size();
  text.resize(begin + 2 * field.size() + 2);
  text.resize(begin + csv_write(text.data() + begin, text.size() - begin, field.data(), field.size()));
}

}  // namespace tool
