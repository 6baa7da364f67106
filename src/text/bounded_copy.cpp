#include <cstring>

#include "qxpaf/text/encoding.h"

bool QX_strcpy(char* dst, const char* src, unsigned long size)
{
  if (dst == nullptr || src == nullptr || size == 0) return false;
  const std::size_t length = strnlen(src, size);
  const bool whole = length < size;
  const std::size_t copied = whole ? length : size - 1;
  std::memcpy(dst, src, copied);
  dst[copied] = '\0';
  return whole;
}
