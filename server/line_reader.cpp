#include "line_reader.h"

#include <algorithm>
#include <cstring>

namespace pafd {
namespace {

constexpr std::size_t kUsualSize = 4096;
constexpr std::size_t kSmallestSpace = 512;

}  // namespace

LineReader::LineReader(std::size_t maxLine) : maxLine_(maxLine), buffer_(kUsualSize) {}

std::span<char> LineReader::Space()
{
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    scanned_ -= begin_;
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == 0 && buffer_.size() > kUsualSize) {
    // After one long line the connection is small again.
    buffer_ = std::vector<char>(kUsualSize);
  }
  if (buffer_.size() - end_ < kSmallestSpace) {
    buffer_.resize(buffer_.size() * 2);
  }
  return {buffer_.data() + end_, buffer_.size() - end_};
}

void LineReader::Received(std::size_t count)
{
  end_ += count;
}

LineReader::Found LineReader::Next(std::string_view& line)
{
  const void* found = std::memchr(buffer_.data() + scanned_, '\n', end_ - scanned_);
  if (found != nullptr) {
    return Take(static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data()), line);
  }
  scanned_ = end_;
  DropWhenTooLong();
  return Found::More;
}

LineReader::Found LineReader::Take(std::size_t lineFeed, std::string_view& line)
{
  std::string_view text(buffer_.data() + begin_, lineFeed - begin_);
  begin_ = scanned_ = lineFeed + 1;
  if (!text.empty() && text.back() == '\r') {
    text.remove_suffix(1);
  }
  if (isDraining_ || text.size() > maxLine_) {
    isDraining_ = false;
    return Found::TooLong;
  }
  line = text;
  return Found::Line;
}

void LineReader::DropWhenTooLong()
{
  // One byte more may be the carriage return of a line that just fits.
  if (isDraining_ || end_ - begin_ > maxLine_ + 1) {
    isDraining_ = true;
    begin_ = scanned_ = end_ = 0;
  }
}

}  // namespace pafd
