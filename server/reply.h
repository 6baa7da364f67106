/** Reply lines: their shapes and their limits. */
#ifndef PAFD_REPLY_H
#define PAFD_REPLY_H

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace pafd {

/** What a reply line is made of, TABs between the parts. */
enum class Shape
{
  Number,   // a status
  Value,    // a number that is no status
  Open,     // status, Id
  Text,     // status, text; with a status that is not 0 the text is a message
  InPlace,  // as Text; the request's last text is in the buffer when the call begins
  Record1,  // status, number, text
  Record2,  // status, number, number, text
  List      // status, then numbers when it is 0
};

inline constexpr std::size_t kLongestNumber = 63;
inline constexpr std::size_t kLongestOpen = 255;
inline constexpr std::size_t kLongestReply = 1023;

/** The buffer size that calls are told: a text that fits it fits a reply behind "0" and a TAB. */
inline constexpr int kTextSize = static_cast<int>(kLongestReply) - 2 + 1;

/** The most numbers of a List that fit 255 characters behind the status, and so the client's buffer. */
inline constexpr std::size_t kMostValues = 20;

/** What a call answered. */
struct Answer
{
  int status = 0;
  int id = 0;
  std::array<long, 2> numbers{};
  std::array<int, kMostValues> values{};
  int valueCount = 0;
  std::string message;       // of a Text whose status is not 0
  std::vector<char> buffer;  // at least kTextSize bytes and one behind them; the call writes the text here

  char* Text() { return buffer.data(); }

  /** Back to nothing, with `text` in the buffer and room for an answer. */
  void Reset(const std::string& text);
};

/** Writes the reply line with its line feed. Line feeds inside become TABs; what is too long is cut. */
void WriteReply(const Answer& answer, Shape shape, std::string& line);

/** Writes a reply that is only a status. */
void WriteStatus(int status, std::string& line);

}  // namespace pafd

#endif
