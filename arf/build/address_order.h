/**
 * Brings the addresses of a build into the order of the file.
 */
#ifndef QXPAF_ARF_BUILD_ADDRESS_ORDER_H
#define QXPAF_ARF_BUILD_ADDRESS_ORDER_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "arf/build/address_aliases.h"
#include "arf/build/address_table.h"
#include "arf/build/string_pool.h"

namespace arf {

/** Distinct texts, ascending, and what bears each: the range from firstPosting[i] to firstPosting[i + 1]. */
struct SortedDictionary
{
  std::vector<std::uint32_t> texts;  ///< numbers in a pool
  std::vector<std::uint32_t> firstPosting;
  std::vector<std::uint32_t> postings;  ///< ascending within a text
};

/** A table in file order. Its own lists were sorted in place; the numbers in them refer to the new places. */
struct OrderedAddresses
{
  StringPool keys;                              ///< match keys of the names
  std::vector<std::uint32_t> partOrder;         ///< the part numbers of details are places in this list of parts
  std::vector<std::uint32_t> localityKeys;      ///< of each locality: index in localityNames
  std::vector<std::uint32_t> streetKeys;        ///< of each street: index in streetNames, or kNoIndex
  std::vector<std::uint32_t> firstStreets;      ///< of each locality
  std::vector<std::uint32_t> firstRows;         ///< of each street
  SortedDictionary localityNames, streetNames;  ///< texts are numbers of `keys`
  SortedDictionary postcodes;                   ///< texts are numbers of AddressTable::names
  std::vector<AddressAlias> aliases;            ///< ascending
};

/** Compares runs of digits by value and everything else by bytes; equal texts only are equivalent. */
bool NaturallyBefore(std::string_view a, std::string_view b);

OrderedAddresses Order(AddressTable& table);

}  // namespace arf

#endif
