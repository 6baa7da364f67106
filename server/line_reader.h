/** Cuts what a connection sends into lines, without input or output of its own. */
#ifndef PAFD_LINE_READER_H
#define PAFD_LINE_READER_H

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace pafd {

/**
 * Feed it by receiving into Space() and telling Received() how much came; then take lines until Next() says More.
 * It never holds more than one longest line and what was received with it.
 */
class LineReader
{
 public:
  enum class Found
  {
    Line,
    TooLong,  // a line longer than allowed has ended; its text is gone
    More      // no whole line is there
  };

  /** @param maxLine  the longest line, in bytes, without its end */
  explicit LineReader(std::size_t maxLine);

  /** Where to receive next; never empty. Ends the life of the last line. */
  std::span<char> Space();

  void Received(std::size_t count);

  /** The next line without its line feed and a carriage return before that. Valid until Space is called. */
  Found Next(std::string_view& line);

  /** True when a line has begun that has not ended. */
  bool IsInsideLine() const { return isDraining_ || begin_ != end_; }

 private:
  Found Take(std::size_t lineFeed, std::string_view& line);
  void DropWhenTooLong();

  std::size_t maxLine_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;    // of the line that is being read
  std::size_t scanned_ = 0;  // up to here there is no line feed
  std::size_t end_ = 0;      // of what was received
  bool isDraining_ = false;  // passing over the rest of a line that is too long
};

}  // namespace pafd

#endif
