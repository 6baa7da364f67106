/**
 * Rows that are another way to say an address. They have the attribute principal_identifier, which is the
 * source_identifier of the address that they say.
 */
#ifndef QXPAF_ARF_BUILD_ADDRESS_ALIASES_H
#define QXPAF_ARF_BUILD_ADDRESS_ALIASES_H

#include <cstdint>
#include <vector>

#include "arf/build/address_table.h"
#include "arf/build/report_writer.h"

namespace arf {

/** Two rows, by their places. */
struct AddressAlias
{
  std::uint32_t alias = 0;
  std::uint32_t principal = kNoIndex;  ///< kNoIndex where no row has the identifier
};

/** All rows that are aliases, ascending. */
std::vector<AddressAlias> FindAliases(const AddressTable& table);

/**
 * Leaves out aliases of rows that are not there or are aliases themselves; the report has them. Afterwards every alias
 * has a principal. Attributes of related addresses that are empty throughout are removed. The rows are in the order of
 * the input.
 */
void DropBrokenAliases(AddressTable& table, ReportWriter& report);

}  // namespace arf

#endif
