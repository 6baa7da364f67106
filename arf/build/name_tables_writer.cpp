#include "arf/build/name_tables_writer.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "arf/match/canonical_words.h"
#include "arf/match/name_signature.h"

namespace arf {
namespace {

using layout::SectionId;

void WriteTables(SectionWriter& writer, const OrderedAddresses& ordered, const SortedDictionary& dictionary,
                 SectionId hash, SectionId signatures)
{
  std::vector<std::uint32_t> hashes;
  std::vector<std::uint32_t> letters;
  hashes.reserve(dictionary.texts.size());
  letters.reserve(dictionary.texts.size());
  for (const std::uint32_t key : dictionary.texts) {
    const CanonicalName name(ordered.keys.At(key));
    hashes.push_back(name.Hash());
    letters.push_back(NameSignature(name.View()).Bits());
  }
  WriteNameHash(writer, hash, hashes);
  writer.Begin(signatures);
  writer.AppendNumbers(letters);
  writer.End();
}

}  // namespace

/** Writes pairs of hash and name, at most half of them in use, so that every search meets a free one soon. */
void WriteNameHash(SectionWriter& writer, SectionId id, const std::vector<std::uint32_t>& hashes)
{
  const std::size_t slots = std::bit_ceil(hashes.size() * 2 + 1);
  std::vector<std::uint32_t> table(2 * slots, layout::kFreeSlot);
  for (std::size_t name = 0; name < hashes.size(); ++name) {
    std::size_t slot = hashes[name] & (slots - 1);
    while (table[2 * slot + 1] != layout::kFreeSlot) slot = (slot + 1) & (slots - 1);
    table[2 * slot] = hashes[name];
    table[2 * slot + 1] = static_cast<std::uint32_t>(name);
  }
  writer.Begin(id);
  writer.AppendNumbers(table);
  writer.End();
}

void WriteNameTables(SectionWriter& writer, const OrderedAddresses& ordered)
{
  WriteTables(writer, ordered, ordered.localityNames, SectionId::LocalityNameHash, SectionId::LocalitySignatures);
  WriteTables(writer, ordered, ordered.streetNames, SectionId::StreetNameHash, SectionId::StreetSignatures);
}

}  // namespace arf
