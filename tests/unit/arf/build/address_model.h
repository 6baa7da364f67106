/**
 * Random addresses as plain structures, the CSV file that says them, and the order that a database gives them: the slow
 * and obvious twin of builder and reader.
 */
#ifndef QXPAF_TESTS_UNIT_ARF_BUILD_ADDRESS_MODEL_H
#define QXPAF_TESTS_UNIT_ARF_BUILD_ADDRESS_MODEL_H

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace arf_test {

/** An address in the forms that a database keeps. */
struct ModelAddress
{
  std::uint32_t dpid = 0;
  std::string locality, state, postcode;
  bool isPostal = false;
  std::string streetName, streetType, streetSuffix;  ///< of a postal delivery, streetType is its kind
  std::uint32_t numberFirst = 0, numberLast = 0;
  std::string numberPrefix, numberFirstSuffix, numberLastSuffix;
  std::string unitType, unitNumber, levelType, levelNumber, lot, building;
  std::optional<std::int32_t> latitude, longitude;  ///< in millionths of a degree
  std::vector<std::string> attributes;
};

struct Model
{
  std::vector<std::string> attributeNames;  ///< ascending
  std::vector<ModelAddress> addresses;
};

using Random = std::mt19937;

/** Localities with streets of very different lengths, postal boxes, and addresses without a street. */
Model RandomModel(Random& random, std::size_t count);

/** One house: 1 FIRST STREET, ALPHA NSW 2000. */
ModelAddress PlainAddress(std::uint32_t dpid);

/** CSV with the columns in a random order and random line ends; every value in one of the ways it may be written. */
std::string ToCsv(const Model& model, Random& random);

/** Sorts as the header of the database says. */
void SortAsDatabase(Model& model);

/** Whether `a` comes before `b` where runs of digits count by value. */
bool ComesNaturallyBefore(std::string_view a, std::string_view b);

bool SameLocality(const ModelAddress& a, const ModelAddress& b);
bool SameStreet(const ModelAddress& a, const ModelAddress& b);

}  // namespace arf_test

#endif
