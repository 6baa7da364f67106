/** A buffer of an exact size between guard bytes, which are checked when it goes away and which the address sanitizer,
    where it is built in, keeps from being read. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_GUARDED_BUFFER_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_GUARDED_BUFFER_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(start, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(start, size) static_cast<void>(0)
#endif

namespace blackbox {

class GuardedBuffer
{
 public:
  static constexpr char kFill = '\x5a';

  /** `size` bytes of the fill pattern. */
  explicit GuardedBuffer(size_t size) : bytes_(size + 2 * kGuard, kGuardByte), size_(size)
  {
    std::fill_n(data(), size, kFill);
    ASAN_POISON_MEMORY_REGION(bytes_.data(), kGuard);
    ASAN_POISON_MEMORY_REGION(data() + size, kGuard);
  }

  /** At least `size` bytes holding a terminated text, for buffers that are read first; longer when the text needs it.
   */
  GuardedBuffer(const std::string& text, size_t size) : GuardedBuffer(std::max(size, text.size() + 1))
  {
    std::memcpy(data(), text.c_str(), text.size() + 1);
  }

  ~GuardedBuffer() { EXPECT_TRUE(GuardsIntact()) << "written outside a buffer of " << size_ << " bytes"; }
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  char* data() { return bytes_.data() + kGuard; }
  int size() const { return static_cast<int>(size_); }

  /** The text up to the terminator; everything when there is none. */
  std::string Text() { return std::string(data(), strnlen(data(), size_)); }
  bool IsTerminated() { return strnlen(data(), size_) < size_; }
  bool IsUntouched() { return IsUntouchedFrom(0); }
  bool IsUntouchedFrom(size_t offset)
  {
    return std::all_of(data() + offset, data() + size_, [](char c) { return c == kFill; });
  }
  std::string Bytes() { return std::string(data(), size_); }

 private:
  static constexpr size_t kGuard = 64;
  static constexpr char kGuardByte = '\x7e';

  bool GuardsIntact()
  {
    ASAN_UNPOISON_MEMORY_REGION(bytes_.data(), bytes_.size());
    const auto guarded = [](char c) { return c == kGuardByte; };
    return std::all_of(bytes_.begin(), bytes_.begin() + kGuard, guarded) &&
           std::all_of(bytes_.end() - kGuard, bytes_.end(), guarded);
  }

  std::vector<char> bytes_;
  size_t size_;
};

}  // namespace blackbox

#endif
