/**
 * Finds the names of one dictionary of a database (localities or streets) by what somebody wrote: exactly, by words
 * that are written in several ways, by missing or additional spaces, and with or without an article. Made once for each
 * open database; eight bytes an entry, at most twice as many entries as names.
 */
#ifndef QXPAF_ARF_MATCH_NAME_INDEX_H
#define QXPAF_ARF_MATCH_NAME_INDEX_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "arf/match/input_text.h"

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

/** The two dictionaries differ in the members of Database only, hence pointers to members. */
class Database;
using NameCountMember = std::uint32_t (Database::*)() const;
using NameMember = std::string_view (Database::*)(std::uint32_t) const;

class NameIndex
{
 public:
  /** @param database  must outlive the index */
  NameIndex(const Database& database, NameCountMember count, NameMember name);

  NameHits Find(const InputText& input, WordRange words) const;

 private:
  struct Slot
  {
    std::uint32_t hash = 0;
    std::uint32_t name = UINT32_MAX;  ///< UINT32_MAX: free
  };
  void AddIfSame(NameHits& hits, std::string_view written, std::uint32_t name) const;
  void Insert(std::uint32_t hash, std::uint32_t name);

  const Database& database_;
  NameMember name_;
  std::vector<Slot> slots_;  ///< open addressing, linear probing; a power of two, at most half full
};

}  // namespace arf

#endif
