/** Lays an address out in lines, as people write and read it. */
#ifndef QXPAF_ARF_PRINT_ADDRESS_LAYOUT_H
#define QXPAF_ARF_PRINT_ADDRESS_LAYOUT_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "arf/format/database.h"
#include "arf/match/bounded_text.h"

namespace arf {

/** How; the defaults are title case with the last line in upper case, full forms, as many lines as there are. */
struct LayoutOptions
{
  bool upper = false;         ///< everything in upper case
  bool lastLineUpper = true;  ///< the last line in upper case
  bool abbreviate = false;    ///< "St", "U 3", "PO Box" instead of "Street", "Unit 3"
  bool oneLine = false;       ///< all lines as one, separated by ", "
  std::size_t maxLines = 0;   ///< 0: no limit
  std::size_t maxWidth = 0;   ///< characters a line; 0: no limit

  /** Reads the bits PAF_AU_FORMAT_… of a format option; other bits do not count. */
  static LayoutOptions Of(long formatOption);
};

/** An address of the database. False when it does not fit the lines that the options allow. */
bool LayOutAddress(const Database& database, std::uint32_t ordinal, const LayoutOptions& options, char separator,
                   BoundedText& out);

/**
 * A text that no address of the database is: its own words in lines, a comma or line break ending a line. False when it
 * does not fit.
 */
bool LayOutText(std::string_view text, const LayoutOptions& options, char separator, BoundedText& out);

}  // namespace arf

#endif
