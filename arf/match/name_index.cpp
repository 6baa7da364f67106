#include "arf/match/name_index.h"

#include <bit>

#include "arf/format/database.h"
#include "arf/match/canonical_words.h"

namespace arf {

NameIndex::NameIndex(const Database& database, NameCountMember count, NameMember name)
    : database_(database), name_(name)
{
  const std::uint32_t names = (database.*count)();
  slots_.resize(std::bit_ceil(std::size_t{names} * 2 + 1));
  for (std::uint32_t i = 0; i < names; ++i) Insert(CanonicalName((database.*name)(i)).Hash(), i);
}

void NameIndex::Insert(std::uint32_t hash, std::uint32_t name)
{
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = hash & mask;
  while (slots_[i].name != UINT32_MAX) i = (i + 1) & mask;
  slots_[i] = {hash, name};
}

NameHits NameIndex::Find(const InputText& input, WordRange words) const
{
  NameHits hits;
  const bool hasArticle = words.last - words.first > 1 && IsArticle(input[words.first].text);
  std::uint32_t hash = kHashStart;
  for (std::size_t i = words.first + hasArticle; i < words.last; ++i) hash = HashCanonical(hash, input[i].canonical);
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hash & mask; slots_[i].name != UINT32_MAX; i = (i + 1) & mask)
    if (slots_[i].hash == hash) AddIfSame(hits, input.Text(words), slots_[i].name);
  return hits;
}

void NameIndex::AddIfSame(NameHits& hits, std::string_view written, std::uint32_t name) const
{
  const std::string_view stored = (database_.*name_)(name);
  if (stored == written) return hits.Add({name, NameFit::Exact});
  const CanonicalName a(stored);
  const CanonicalName b(written);
  if (a.View() == b.View()) hits.Add({name, a.HasArticle() == b.HasArticle() ? NameFit::Variant : NameFit::Article});
}

}  // namespace arf
