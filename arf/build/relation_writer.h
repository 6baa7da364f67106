/** Writes what streets and localities have to do with others: their other names, and the neighbours of localities. */
#ifndef QXPAF_ARF_BUILD_RELATION_WRITER_H
#define QXPAF_ARF_BUILD_RELATION_WRITER_H

#include <cstdint>
#include <vector>

#include "arf/build/address_order.h"
#include "arf/build/address_table.h"
#include "arf/build/file_strings.h"
#include "arf/build/section_writer.h"

namespace arf {

/** Writes the sections StreetAliases, LocalityAliases and Neighbours. Aliases of what has no addresses are left out. */
void WriteRelations(SectionWriter& writer, const AddressTable& table, const OrderedAddresses& ordered,
                    FileStrings& strings);

/**
 * The neighbours of each locality, nearest first: those with addresses in the same cells of a grid of some 500 metres,
 * then of 2 and 8 kilometres until there are enough. No more than layout::kMaxNeighbours each.
 */
std::vector<std::vector<std::uint32_t>> FindNeighbours(const AddressTable& table);

}  // namespace arf

#endif
