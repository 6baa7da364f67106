/** Writes the identifiers of the points, and the index that finds points by them. */
#ifndef QXPAF_ARF_BUILD_DPID_WRITER_H
#define QXPAF_ARF_BUILD_DPID_WRITER_H

#include <vector>

#include "arf/build/address_table.h"
#include "arf/build/section_writer.h"

namespace arf {

/** Writes the sections Dpids and DpidIndex. The rows are in file order, and no two have the same identifier. */
void WriteDpids(SectionWriter& writer, const std::vector<AddressRow>& rows);

}  // namespace arf

#endif
