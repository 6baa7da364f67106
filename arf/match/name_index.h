/**
 * Finds the names of one dictionary of a database (localities, streets, buildings) by what somebody wrote: exactly, by
 * words that are written in several ways, by missing or additional spaces, and with or without an article; and by names
 * with typing errors. A view of tables that the builder put into the file, so making one costs nothing; without those
 * tables names are found word for word only.
 */
#ifndef QXPAF_ARF_MATCH_NAME_INDEX_H
#define QXPAF_ARF_MATCH_NAME_INDEX_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "arf/format/layout.h"
#include "arf/match/input_text.h"
#include "arf/match/name_signature.h"

namespace arf {

/** How well a written name fits a name of the data, best first. */
enum class NameFit : std::uint8_t
{
  Exact,    ///< word for word
  Variant,  ///< spaces, or words that have two written forms, differ
  Article   ///< one of the two has "THE" in front
};

struct NameHit
{
  std::uint32_t name = 0;  ///< index in the dictionary
  NameFit fit = NameFit::Exact;
};

/** At most kMax hits; a written form that stands for more names than that is of no use. */
class NameHits
{
 public:
  static constexpr std::size_t kMax = 6;
  void Add(NameHit hit)
  {
    if (count_ < kMax) hits_[count_++] = hit;
  }
  const NameHit* begin() const { return hits_.data(); }
  const NameHit* end() const { return hits_.data() + count_; }
  bool Empty() const { return count_ == 0; }

 private:
  std::array<NameHit, kMax> hits_{};
  std::size_t count_ = 0;
};

/** The dictionaries differ in the members of Database and the sections only, hence pointers to members. */
class Database;
struct NameDictionary
{
  std::uint32_t (Database::*count)() const;
  std::string_view (Database::*name)(std::uint32_t) const;
  std::optional<std::uint32_t> (Database::*find)(std::string_view) const;
  layout::SectionId hash;
  std::optional<layout::SectionId> signatures;
};
extern const NameDictionary kLocalityDictionary;
extern const NameDictionary kStreetDictionary;
extern const NameDictionary kBuildingDictionary;

class NameIndex
{
 public:
  /** @param database  must outlive the index */
  NameIndex(const Database& database, const NameDictionary& dictionary);

  NameHits Find(const InputText& input, WordRange words) const;
  /** @param key  upper case, single-spaced */
  NameHits Find(std::string_view key) const;
  /** With one of the words before `end`, which is a street type's short form, written out: "The Pde", "High St Rd". */
  NameHits FindSpelledOut(const InputText& input, WordRange words, std::size_t end) const;

  std::string_view Name(std::uint32_t name) const { return (database_.*dictionary_.name)(name); }
  /** One for each name of the dictionary; empty when the file has none. */
  std::span<const std::uint32_t> Signatures() const { return signatures_; }

 private:
  template <class Written>
  NameHits FindHash(std::uint32_t hash, const Written& written) const;
  NameHits FindWithoutTable(std::string_view written) const;
  void AddIfSame(NameHits& hits, std::string_view written, std::uint32_t name) const;

  const Database& database_;
  const NameDictionary& dictionary_;
  std::span<const std::uint32_t> slots_;  ///< pairs of hash and name; open addressing, linear probing
  std::span<const std::uint32_t> signatures_;
};

}  // namespace arf

#endif
