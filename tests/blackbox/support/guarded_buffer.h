/** A buffer of an exact size, with texts, whose guards are checked when it goes away. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_GUARDED_BUFFER_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_GUARDED_BUFFER_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "support/guarded_buffer.h"

namespace blackbox {

class GuardedBuffer
{
 public:
  static constexpr char kFill = test_support::GuardedBuffer::kFill;

  /** `size` bytes of the fill pattern. */
  explicit GuardedBuffer(size_t size) : buffer_(size) {}

  /** At least `size` bytes holding a terminated text, for buffers that are read first; longer when the text needs it.
   */
  GuardedBuffer(const std::string& text, size_t size) : GuardedBuffer(std::max(size, text.size() + 1))
  {
    std::memcpy(data(), text.c_str(), text.size() + 1);
  }

  ~GuardedBuffer() { EXPECT_TRUE(buffer_.Intact()) << "written outside a buffer of " << buffer_.Size() << " bytes"; }
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  char* data() { return buffer_.Data(); }
  int size() const { return static_cast<int>(buffer_.Size()); }

  /** The text up to the terminator; everything when there is none. */
  std::string Text() { return std::string(data(), Length()); }
  bool IsTerminated() { return Length() < buffer_.Size(); }
  bool IsUntouched() { return IsUntouchedFrom(0); }
  bool IsUntouchedFrom(size_t offset)
  {
    return std::all_of(data() + offset, data() + buffer_.Size(), [](char c) { return c == kFill; });
  }
  std::string Bytes() { return buffer_.Bytes(); }

 private:
  size_t Length() { return strnlen(data(), buffer_.Size()); }

  test_support::GuardedBuffer buffer_;
};

}  // namespace blackbox

#endif
