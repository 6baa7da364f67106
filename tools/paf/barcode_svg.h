/** A 4-state barcode drawn to scale, ready for print. */
#ifndef PAF_TOOL_BARCODE_SVG_H
#define PAF_TOOL_BARCODE_SVG_H

#include <string>
#include <string_view>

namespace tool {

/**
 * The bars ('0' full, '1' ascender, '2' descender, '3' tracker) as an SVG document in millimetres, quiet zone included,
 * at the middle of the measures that the post office allows.
 *
 * @param title  what the drawing is, as its accessible name
 */
std::string BarcodeSvg(std::string_view bars, const std::string& title);

/** Writes a file under a temporary name beside its own and renames it when it is complete. Throws Failure. */
void WriteWholeFile(const std::string& path, const std::string& contents);

}  // namespace tool

#endif
