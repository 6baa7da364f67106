/** Writes the tree over the places of the points (arf/spatial/spatial_tree.h). */
#ifndef QXPAF_ARF_BUILD_SPATIAL_WRITER_H
#define QXPAF_ARF_BUILD_SPATIAL_WRITER_H

#include "arf/build/address_order.h"
#include "arf/build/address_table.h"
#include "arf/build/section_writer.h"

namespace arf {

/**
 * Rows are in file order, so that their places are ordinals. Points without coordinates, and other ways to say an
 * address, are left out.
 */
void WriteSpatial(SectionWriter& writer, const AddressTable& table, const OrderedAddresses& ordered);

}  // namespace arf

#endif
