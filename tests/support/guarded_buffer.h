#ifndef QXPAF_TESTS_SUPPORT_GUARDED_BUFFER_H
#define QXPAF_TESTS_SUPPORT_GUARDED_BUFFER_H

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define QXPAF_TESTS_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QXPAF_TESTS_ASAN 1
#endif
#endif
#ifdef QXPAF_TESTS_ASAN
#include <sanitizer/asan_interface.h>
#endif

namespace test_support {

/**
 * An output buffer of exactly some bytes between guard bytes. Under the address sanitizer touching a guard ends the
 * test; otherwise Intact tells whether one was written.
 */
class GuardedBuffer
{
 public:
  static constexpr char kFill = '\xA5';

  explicit GuardedBuffer(std::size_t size) : size_(size), bytes_(RoundUp(kGuard + size + kGuard), kGuardByte)
  {
    std::fill_n(Data(), size, kFill);
    Protect(true);
  }

  ~GuardedBuffer() { Protect(false); }

  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  char* Data() { return bytes_.data() + kGuard; }
  std::size_t Size() const { return size_; }

  /** All bytes of the buffer, zeros included; the buffer starts out filled with kFill. */
  std::string Bytes() { return {Data(), size_}; }

  /** True when no byte before or behind the buffer has changed. */
  bool Intact()
  {
    Protect(false);
    const auto isGuard = [](char c) { return c == kGuardByte; };
    const auto end = bytes_.begin() + static_cast<std::ptrdiff_t>(kGuard + size_);
    const bool intact =
        std::all_of(bytes_.begin(), bytes_.begin() + kGuard, isGuard) && std::all_of(end, bytes_.end(), isGuard);
    Protect(true);
    return intact;
  }

 private:
  static constexpr std::ptrdiff_t kGuard = 32;
  static constexpr char kGuardByte = '\x5C';

  /** The sanitizer protects up to a multiple of eight bytes only. */
  static std::size_t RoundUp(std::size_t size) { return (size + 7) / 8 * 8; }

  void Protect([[maybe_unused]] bool on)
  {
#ifdef QXPAF_TESTS_ASAN
    const auto change = on ? __asan_poison_memory_region : __asan_unpoison_memory_region;
    change(bytes_.data(), kGuard);
    change(Data() + size_, bytes_.size() - kGuard - size_);
#endif
  }

  std::size_t size_;
  std::vector<char> bytes_;
};

}  // namespace test_support

#endif
