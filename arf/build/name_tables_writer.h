/** The tables by which written names are found: hashes of all names, signatures of localities' and streets' names. */
#ifndef QXPAF_ARF_BUILD_NAME_TABLES_WRITER_H
#define QXPAF_ARF_BUILD_NAME_TABLES_WRITER_H

#include <cstdint>
#include <vector>

#include "arf/build/address_order.h"
#include "arf/build/section_writer.h"

namespace arf {

void WriteNameTables(SectionWriter& writer, const OrderedAddresses& ordered);

/** @param hashes  of the canonical names of a dictionary, in its order */
void WriteNameHash(SectionWriter& writer, layout::SectionId id, const std::vector<std::uint32_t>& hashes);

}  // namespace arf

#endif
