/** Writes the attribute columns of a database file. */
#ifndef QXPAF_ARF_BUILD_ATTRIBUTE_WRITER_H
#define QXPAF_ARF_BUILD_ATTRIBUTE_WRITER_H

#include "arf/build/address_table.h"
#include "arf/build/build_watch.h"
#include "arf/build/file_strings.h"
#include "arf/build/section_writer.h"

namespace arf {

/**
 * Writes the sections AttributeData and AttributeColumns. The rows are in file order. The memory of values that were
 * written is given back.
 */
void WriteAttributes(SectionWriter& writer, AddressTable& table, FileStrings& strings, const BuildWatch& watch);

}  // namespace arf

#endif
