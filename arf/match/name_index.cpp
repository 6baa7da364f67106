#include "arf/match/name_index.h"

#include <bit>

#include "arf/format/database.h"
#include "arf/match/canonical_words.h"

namespace arf {

NameIndex::NameIndex(const Database& database, NameCountMember count, NameMember name)
    : database_(database), name_(name) {
  const std::uint32_t names = (database.*count)();
  slots_.resize(std::bit_ceil(std::size_t{names} * 2 + 1));
  for (std::uint32_t i = 0; i < names; ++i) Insert(CanonicalName((database.*name)(i)).Hash(), i);
}

void NameIndex::Insert(std::uint32_t hash, std::uint32_t name) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = hash & mask;
  while (slots_[i].name != UINT32_MAX) i = (i + 1) & mask;
  slots_[i] = {hash, name};
}

NameHits NameIndex::Find(std::string_view key) const {
  NameHits hits;
  const CanonicalName written(key);
  const std::uint32_t hash = written.Hash();
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hash & mask; slots_[i].name != UINT32_MAX; i = (i + 1) & mask) {
    if (slots_[i].hash != hash) continue;
    const std::string_view stored = (database_.*name_)(slots_[i].name);
    if (stored == key) {
      hits.Add({slots_[i].name, NameFit::Exact});
      continue;
    }
    const CanonicalName canonical(stored);
    if (canonical.View() != written.View()) continue;
    const bool sameArticle = canonical.HasArticle() == written.HasArticle();
    hits.Add({slots_[i].name, sameArticle ? NameFit::Variant : NameFit::Article});
  }
  return hits;
}

}  // namespace arf
