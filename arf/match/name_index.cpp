#include "arf/match/name_index.h"

#include <algorithm>
#include <bit>

#include "arf/format/database.h"
#include "arf/match/canonical_words.h"
#include "arf/match/fixed_text.h"
#include "arf/tables/street_types.h"

namespace arf {
namespace {

/**
 * What a word of a name may stand for: the street type that it is short for, or a compass point where it looked like an
 * initial beside the name ("5 N Shore Rd").
 */
std::string_view SpelledOut(const Word& word)
{
  if (word.text.size() > 1) return SpelledOutType(word.text);
  const std::string_view canonical = CanonicalWord(word.text);
  return canonical == word.canonical ? std::string_view() : canonical;
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

/** @param written  gives the name as written; called only where one of the data has the hash */
template <class Written>
NameHits NameIndex::FindHash(std::uint32_t hash, const Written& written) const
{
  NameHits hits;
  const std::size_t mask = slots_.size() / 2 - 1;
  std::size_t i = hash & mask;
  // A table without a free slot is none of the builder's; the search ends all the same.
  for (std::size_t probes = 0; probes <= mask && slots_[2 * i + 1] != layout::kFreeSlot; ++probes, i = (i + 1) & mask)
    if (slots_[2 * i] == hash) AddIfSame(hits, written(), slots_[2 * i + 1]);
  return hits;
}

NameHits NameIndex::Find(const InputText& input, WordRange words) const
{
  if (slots_.size() < 2) return FindWithoutTable(input.Text(words));
  const bool hasArticle = words.last - words.first > 1 && IsArticle(input[words.first].text);
  std::uint32_t hash = kHashStart;
  for (std::size_t i = words.first + hasArticle; i < words.last; ++i) hash = HashCanonical(hash, input[i].canonical);
  return FindHash(hash, [&] { return input.Text(words); });
}

NameHits NameIndex::Find(std::string_view key) const
{
  if (slots_.size() < 2) return FindWithoutTable(key);
  return FindHash(CanonicalName(key).Hash(), [key] { return key; });
}

NameHits NameIndex::FindSpelledOut(const InputText& input, WordRange words, std::size_t end) const
{
  NameHits hits;
  if (slots_.size() < 2) return hits;
  for (std::size_t i = words.first; i < end; ++i) {
    const std::string_view full = SpelledOut(input[i]);
    if (full.empty()) continue;
    FixedText<255> name;
    for (std::size_t j = words.first; j < words.last; ++j) {
      if (j > words.first) name.Append(" ");
      name.Append(i == j ? full : input[j].text);
    }
    const std::uint32_t hash = CanonicalName(name.View()).Hash();
    for (const NameHit& hit : FindHash(hash, [&] { return name.View(); }))
      hits.Add({hit.name, std::max(hit.fit, NameFit::Variant)});
  }
  return hits;
}

NameHits NameIndex::FindWithoutTable(std::string_view written) const
{
  NameHits hits;
  if (const auto name = (database_.*dictionary_.find)(written)) hits.Add({*name, NameFit::Exact});
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
