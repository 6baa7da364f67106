/** Writes tables of texts, as the strings of a file and the values of an attribute are kept. */
#ifndef QXPAF_ARF_BUILD_TEXT_TABLE_WRITER_H
#define QXPAF_ARF_BUILD_TEXT_TABLE_WRITER_H

#include <cstdint>
#include <string_view>

#include "arf/build/build_error.h"
#include "arf/build/section_writer.h"

namespace arf {

/**
 * Appends count + 1 offsets, from 0 to the length of all texts, and the texts. Throws BuildError when they do not fit
 * into 4 GiB.
 *
 * @param textAt  gives text i; called twice for each.
 */
template <class TextAt>
void AppendTexts(SectionWriter& writer, std::uint32_t count, TextAt textAt)
{
  std::uint64_t end = 0;
  writer.AppendNumber(0);
  for (std::uint32_t i = 0; i < count; ++i) {
    end += textAt(i).size();
    if (end > UINT32_MAX) throw BuildError("the texts of one table are longer than 4 GiB");
    writer.AppendNumber(static_cast<std::uint32_t>(end));
  }
  for (std::uint32_t i = 0; i < count; ++i) writer.Append(std::string_view(textAt(i)));
}

}  // namespace arf

#endif
