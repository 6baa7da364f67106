/** Making the texts of a CSV file fit for a database. */
#ifndef QXPAF_ARF_BUILD_TEXT_INPUT_H
#define QXPAF_ARF_BUILD_TEXT_INPUT_H

#include <string>
#include <string_view>

namespace arf {

/**
 * UTF-8: sequences that are well formed stay, every other byte is read as Windows-1252 (the five bytes without a
 * character there become U+FFFD). Returns `text` itself when nothing is to be done, else a view of `scratch`.
 */
std::string_view ToUtf8(std::string_view text, std::string& scratch);

/** ToUtf8, then DisplayForm; `text` itself or a view of `scratch`. */
std::string_view ToDisplayForm(std::string_view text, std::string& scratch);

/** ToUtf8, control characters as spaces, none at the ends; `text` itself, a part of it, or a view of `scratch`. */
std::string_view ToPlainText(std::string_view text, std::string& scratch);

}  // namespace arf

#endif
