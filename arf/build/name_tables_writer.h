/** The tables by which written names are found: the hashes and the signatures of localities' and streets' names. */
#ifndef QXPAF_ARF_BUILD_NAME_TABLES_WRITER_H
#define QXPAF_ARF_BUILD_NAME_TABLES_WRITER_H

#include "arf/build/address_order.h"
#include "arf/build/section_writer.h"

namespace arf {

void WriteNameTables(SectionWriter& writer, const OrderedAddresses& ordered);

}  // namespace arf

#endif
