// Counting the characters of UTF-8 text.
#ifndef QXPAF_SRC_TEXT_UTF8_COUNT_H
#define QXPAF_SRC_TEXT_UTF8_COUNT_H

#include <cstddef>

namespace qxpaf {

// The bytes among n that are no continuation bytes, in the widest blocks that this processor has.
std::size_t CountUtf8Characters(const char* s, std::size_t n);

}  // namespace qxpaf

#endif
