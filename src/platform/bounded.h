/** The library's own ways to copy text into buffers of a known size. Nothing else writes into a caller's buffer. */
#ifndef QXPAF_SRC_PLATFORM_BOUNDED_H
#define QXPAF_SRC_PLATFORM_BOUNDED_H

#include <climits>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace qxpaf {

/** Bytes of a buffer whose size came through the C interface as a signed int; below 1 is none. */
inline std::size_t Capacity(int size)
{
  return size < 1 ? 0 : static_cast<std::size_t>(size);
}

/** The size of a buffer for `length` characters and their terminator. */
inline int SizeForLength(int length)
{
  return length < INT_MAX ? length + 1 : length;
}

/** Copies text, cut to capacity - 1 bytes, and terminates it. Writes nothing when the capacity is 0. */
inline void CopyCut(char* out, std::size_t capacity, std::string_view text)
{
  if (capacity == 0) return;
  const std::size_t length = text.size() < capacity ? text.size() : capacity - 1;
  std::memcpy(out, text.data(), length);
  out[length] = '\0';
}

/** Copies text whole with its terminator if it fits. @return false, with the buffer unchanged, if it does not */
inline bool CopyWhole(char* out, std::size_t capacity, std::string_view text)
{
  if (text.size() >= capacity) return false;
  CopyCut(out, capacity, text);
  return true;
}

}  // namespace qxpaf

#endif
