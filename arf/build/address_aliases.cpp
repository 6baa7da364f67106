#include "arf/build/address_aliases.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>

namespace arf {
namespace {

const AttributeValues* ValuesOf(const AddressTable& table, std::string_view name)
{
  const auto column = std::find_if(table.attributes.begin(), table.attributes.end(),
                                   [name](const AttributeTable& attribute) { return attribute.name == name; });
  return column == table.attributes.end() ? nullptr : &column->values;
}

}  // namespace

std::vector<AddressAlias> FindAliases(const AddressTable& table)
{
  std::vector<AddressAlias> aliases;
  const AttributeValues* principals = ValuesOf(table, kPrincipalIdentifier);
  const AttributeValues* identifiers = ValuesOf(table, kSourceIdentifier);
  if (!principals || !identifiers || principals->IsEmpty()) return aliases;
  std::unordered_map<std::uint64_t, std::uint32_t> places;  // of identifiers that aliases name
  std::vector<std::optional<std::uint64_t>> wanted;         // by each alias
  std::string text;
  for (std::uint32_t place = 0; place < table.rows.size(); ++place) {
    const std::uint32_t input = table.rows[place].input;
    if (principals->CodeOf(input) == 0) continue;
    aliases.push_back({place, kNoIndex});
    wanted.push_back(identifiers->FindCode(principals->TextOf(input, text)));
    if (wanted.back()) places.emplace(*wanted.back(), kNoIndex);
  }
  for (std::uint32_t place = 0; place < table.rows.size(); ++place) {
    const auto named = places.find(identifiers->CodeOf(table.rows[place].input));
    if (named != places.end() && named->second == kNoIndex) named->second = place;
  }
  for (std::size_t i = 0; i < aliases.size(); ++i) {
    if (wanted[i]) aliases[i].principal = places[*wanted[i]];
  }
  return aliases;
}

void DropBrokenAliases(AddressTable& table, ReportWriter& report)
{
  const std::vector<AddressAlias> aliases = FindAliases(table);
  std::vector<bool> isAlias(table.rows.size()), keep(table.rows.size(), true);
  for (const AddressAlias& link : aliases) isAlias[link.alias] = true;
  bool isAnyDropped = false;
  for (const AddressAlias& link : aliases) {
    const bool isThere = link.principal != kNoIndex;
    if (isThere && !isAlias[link.principal]) continue;
    const char* reason = isThere ? "an alias of another alias" : "an alias of an address that is not there";
    report.AddSkipped("input", {table.rows[link.alias].line, reason, reason});
    keep[link.alias] = false;
    isAnyDropped = true;
  }
  if (isAnyDropped) table.Keep(keep);
  std::erase_if(table.attributes, [](const AttributeTable& attribute) {
    const bool isRelation = attribute.name == kPrincipalIdentifier || attribute.name == kPrimaryIdentifier;
    return isRelation && attribute.values.IsEmpty();
  });
}

}  // namespace arf
