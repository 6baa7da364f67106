/** Request lines for the socket server: a function's name, then each argument behind a TAB. */
#ifndef QXPAF_SRC_REMOTE_REQUEST_H
#define QXPAF_SRC_REMOTE_REQUEST_H

#include <cstddef>
#include <memory>
#include <new>
#include <string_view>

namespace qxpaf {

/** The result when there is no memory for a request that must not be cut. */
inline constexpr int kNoMemoryForRequest = 539;

/** Writes a request into a buffer, cut to its capacity (at least 1) - 1 characters and terminated at any time. */
class RequestWriter
{
 public:
  RequestWriter(char* line, std::size_t capacity);

  template <class... Fields>
  void Write(std::string_view name, const Fields&... fields)
  {
    Append(name);
    (AppendField(fields), ...);
  }

 private:
  void Append(std::string_view text);
  void AppendField(const char* text);  // null counts as empty
  void AppendField(long number);

  char* position_;
  std::size_t capacity_;
};

/** A request that is cut wherever it gets too long for the shortest line that every server takes. */
class Request
{
 public:
  static constexpr std::size_t kLongest = 255;

  template <class... Fields>
  explicit Request(std::string_view name, const Fields&... fields)
  {
    RequestWriter(line_, sizeof line_).Write(name, fields...);
  }

  char* Text() { return line_; }

 private:
  char line_[kLongest + 1];
};

/** A request with texts of any length, never cut. */
class WholeRequest
{
 public:
  template <class... Fields>
  explicit WholeRequest(std::string_view name, const Fields&... fields)
  {
    const std::size_t size = name.size() + (FieldSize(fields) + ... + 1);
    line_.reset(new (std::nothrow) char[size]);
    if (line_ != nullptr) RequestWriter(line_.get(), size).Write(name, fields...);
  }

  /** Null when there was no memory. */
  char* Text() { return line_.get(); }

 private:
  /** Characters that a field takes at most, its TAB included. */
  static std::size_t FieldSize(const char* text);
  static std::size_t FieldSize(long number);

  std::unique_ptr<char[]> line_;
};

/** A text whose TABs would shift the fields behind it: without TABs itself, otherwise cut and with blanks for them. */
class TabFreeText
{
 public:
  static constexpr std::size_t kLongestCopy = 127;

  explicit TabFreeText(const char* text);
  TabFreeText(const TabFreeText&) = delete;
  TabFreeText& operator=(const TabFreeText&) = delete;

  const char* Text() const { return text_; }

 private:
  const char* text_;  // the caller's or copy_
  char copy_[kLongestCopy + 1];
};

/** The texts of the two numbers that a text begins with, with one character of any kind between them. */
class TwoNumbers
{
 public:
  static constexpr std::size_t kLongestNumber = 127;

  /** Null and a text that does not begin with a number give two empty texts. */
  explicit TwoNumbers(const char* text);

  const char* First() const { return first_; }
  const char* Second() const { return second_; }

 private:
  char first_[kLongestNumber + 1] = {};
  char second_[kLongestNumber + 1] = {};
};

}  // namespace qxpaf

#endif
