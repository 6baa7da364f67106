/**
 * Distinct texts with numbers. Number 0 is the empty text; the others count up in the order of their first use.
 */
#ifndef QXPAF_ARF_BUILD_STRING_POOL_H
#define QXPAF_ARF_BUILD_STRING_POOL_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace arf {

class StringPool
{
 public:
  StringPool();

  /** The number of a text, which is added when it is new. Texts are shorter than 4 GiB. */
  std::uint32_t Intern(std::string_view text);
  /** The number of a text, if it is there. */
  std::optional<std::uint32_t> Find(std::string_view text) const;
  std::string_view At(std::uint32_t number) const { return {entries_[number].text, entries_[number].length}; }
  std::uint32_t Count() const { return static_cast<std::uint32_t>(entries_.size()); }

  /** All numbers, sorted by the bytes of their texts. */
  std::vector<std::uint32_t> SortedNumbers() const;
  /** The place of each number's text in that order. */
  std::vector<std::uint32_t> Ranks() const;

 private:
  struct Entry
  {
    const char* text = nullptr;
    std::uint32_t length = 0;
    std::uint32_t hash = 0;
  };

  const char* Keep(std::string_view text);
  void Grow();
  std::size_t SlotOf(std::string_view text, std::uint32_t hash) const;

  std::vector<Entry> entries_;
  std::vector<std::uint32_t> slots_;  ///< entry numbers by hash, open addressing; kFree where none
  std::vector<std::unique_ptr<char[]>> chunks_;
  std::size_t chunkLeft_ = 0;
  char* chunkNext_ = nullptr;
};

/** Ranks of an ordering: for order[i] = n, the result has i at n. */
std::vector<std::uint32_t> Inverse(const std::vector<std::uint32_t>& order);

}  // namespace arf

#endif
