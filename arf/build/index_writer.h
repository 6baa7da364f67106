/** Writes the database file of a table of addresses. */
#ifndef QXPAF_ARF_BUILD_INDEX_WRITER_H
#define QXPAF_ARF_BUILD_INDEX_WRITER_H

#include <cstdint>
#include <map>
#include <string>

#include "arf/build/address_order.h"
#include "arf/build/build_watch.h"
#include "arf/build/output_file.h"

namespace arf {

/** Key and value, ascending by key. */
using InfoEntries = std::map<std::string, std::string>;

/** Writes all sections and the header; the values of attributes are gone afterwards. Returns the size of the file. */
std::uint64_t WriteIndex(OutputFile& file, AddressTable& table, const OrderedAddresses& ordered,
                         const InfoEntries& info, const BuildWatch& watch);

}  // namespace arf

#endif
