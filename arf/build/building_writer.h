/** Writes the buildings' names and the words of all names (arf/format/word_index.h). */
#ifndef QXPAF_ARF_BUILD_BUILDING_WRITER_H
#define QXPAF_ARF_BUILD_BUILDING_WRITER_H

#include "arf/build/address_order.h"
#include "arf/build/address_table.h"
#include "arf/build/section_writer.h"

namespace arf {

void WriteBuildingNames(SectionWriter& writer, const AddressTable& table, const OrderedAddresses& ordered);

}  // namespace arf

#endif
