/** Writes the sections that hints are found by: trees over the names, with lists of the largest streets and localities.
 */
#ifndef QXPAF_ARF_BUILD_HINT_WRITER_H
#define QXPAF_ARF_BUILD_HINT_WRITER_H

#include "arf/build/address_order.h"
#include "arf/build/section_writer.h"

namespace arf {

void WriteHints(SectionWriter& writer, const AddressTable& table, const OrderedAddresses& ordered);

}  // namespace arf

#endif
