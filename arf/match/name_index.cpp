#include "arf/match/name_index.h"

#include <algorithm>
#include <bit>

#include "arf/format/database.h"
#include "arf/match/canonical_words.h"
#include "arf/match/fixed_text.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

/** A word's canonical form within a name: words beside the name are none of its initials ("5 N Shore Rd"). */
std::string_view CanonicalWithin(const InputText& input, WordRange words, std::size_t i)
{
  const Word& word = input[i];
  if (word.text.size() != 1) return word.canonical;
  const bool isInitial = (i > words.first && AreInitials(word.text, input[i - 1].text)) ||
                         (i + 1 < words.last && AreInitials(word.text, input[i + 1].text));
  return isInitial ? word.text : CanonicalWord(word.text);
}

}  // namespace

const NameDictionary kLocalityDictionary = {&Database::LocalityNameCount, &Database::LocalityName,
                                            &Database::FindLocalityName, layout::SectionId::LocalityNameHash,
                                            layout::SectionId::LocalitySignatures};
const NameDictionary kStreetDictionary = {&Database::StreetNameCount, &Database::StreetName, &Database::FindStreetName,
                                          layout::SectionId::StreetNameHash, layout::SectionId::StreetSignatures};
const NameDictionary kBuildingDictionary = {&Database::BuildingNameCount, &Database::BuildingName,
                                            &Database::FindBuildingName, layout::SectionId::BuildingNameHash,
                                            std::nullopt};

NameIndex::NameIndex(const Database& database, const NameDictionary& dictionary)
    : database_(database), dictionary_(dictionary)
{
  const std::span<const std::uint32_t> slots = database.Section(dictionary.hash).Words();
  if (std::has_single_bit(slots.size())) slots_ = slots;
  if (!dictionary.signatures) return;
  const std::span<const std::uint32_t> signatures = database.Section(*dictionary.signatures).Words();
  if (signatures.size() == (database.*dictionary.count)()) signatures_ = signatures;
}

NameHits NameIndex::Find(const InputText& input, WordRange words) const
{
  if (slots_.size() < 2) return FindWithoutTable(input, words);
  NameHits hits;
  const bool hasArticle = words.last - words.first > 1 && IsArticle(input[words.first].text);
  std::uint32_t hash = kHashStart;
  for (std::size_t i = words.first + hasArticle; i < words.last; ++i)
    hash = HashCanonical(hash, CanonicalWithin(input, words, i));
  FindHash(hits, hash, input.Text(words));
  return hits;
}

NameHits NameIndex::FindSpelledOut(const InputText& input, WordRange words) const
{
  NameHits hits;
  if (slots_.size() < 2) return hits;
  for (std::size_t i = words.first; i < words.last; ++i) {
    const std::string_view full = SpelledOutType(input[i].text);
    if (full.empty()) continue;
    FixedText<255> name;
    for (std::size_t j = words.first; j < words.last; ++j) {
      if (j > words.first) name.Append(" ");
      name.Append(i == j ? full : input[j].text);
    }
    NameHits found;
    FindHash(found, CanonicalName(name.View()).Hash(), name.View());
    for (const NameHit& hit : found) hits.Add({hit.name, std::max(hit.fit, NameFit::Variant)});
  }
  return hits;
}

void NameIndex::FindHash(NameHits& hits, std::uint32_t hash, std::string_view written) const
{
  const std::size_t mask = slots_.size() / 2 - 1;
  std::size_t i = hash & mask;
  // A table without a free slot is none of the builder's; the search ends all the same.
  for (std::size_t probes = 0; probes <= mask && slots_[2 * i + 1] != layout::kFreeSlot; ++probes, i = (i + 1) & mask)
    if (slots_[2 * i] == hash) AddIfSame(hits, written, slots_[2 * i + 1]);
}

NameHits NameIndex::FindWithoutTable(const InputText& input, WordRange words) const
{
  NameHits hits;
  if (const auto name = (database_.*dictionary_.find)(input.Text(words))) hits.Add({*name, NameFit::Exact});
  return hits;
}

void NameIndex::AddIfSame(NameHits& hits, std::string_view written, std::uint32_t name) const
{
  const std::string_view stored = Name(name);
  if (stored.empty()) return;
  if (stored == written) return hits.Add({name, NameFit::Exact});
  const CanonicalName a(stored);
  const CanonicalName b(written);
  if (a.View() == b.View()) hits.Add({name, a.HasArticle() == b.HasArticle() ? NameFit::Variant : NameFit::Article});
}

}  // namespace arf
