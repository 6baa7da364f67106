/** Random addresses and the ways in which people write them. */
#ifndef QXPAF_TESTS_UNIT_ARF_MATCH_RANDOM_ADDRESSES_H
#define QXPAF_TESTS_UNIT_ARF_MATCH_RANDOM_ADDRESSES_H

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace arf_test {

struct RandomAddress
{
  std::uint32_t dpid = 0;
  std::string building, unitType, unitNumber, levelType, levelNumber, lot;
  std::string number, numberLast;  ///< with their suffixes: "12A", "14"
  std::string streetName, streetType, streetSuffix, postalType;
  std::string locality, state, postcode;
};

/** Addresses with every part that addresses have, in localities and streets whose names are easily confused. */
std::vector<RandomAddress> RandomAddresses(std::mt19937& random, std::size_t count);

/** As a CSV file for the builder. */
std::string ToCsv(const std::vector<RandomAddress>& addresses);

/** "OPERA COURT, UNIT 3 LEVEL 2, 12A-14 KING STREET WEST, EAST MELBOURNE VIC 3002", units with "3/" where they can. */
std::string WrittenForm(const RandomAddress& address);

/** The written form of a unit of any type as "3/12A-14"; what people write may stand for any of them. */
std::string SlashedForm(const RandomAddress& address);

/** "opera court unit 3 l 2 12a-14 king st w east melbourne vic 3002" */
std::string AbbreviatedForm(const RandomAddress& address);

}  // namespace arf_test

#endif
