/**
 * The values of one attribute column in the order of the rows, eight bytes for each that is not empty: a text in front,
 * shared by all rows that have it, and the number at the value's end. Identifiers of registers and areas differ in that
 * number only.
 */
#ifndef QXPAF_ARF_BUILD_ATTRIBUTE_VALUES_H
#define QXPAF_ARF_BUILD_ATTRIBUTE_VALUES_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "arf/build/string_pool.h"

namespace arf {

class AttributeValues
{
 public:
  void Reserve(std::size_t rows);
  void Add(std::string_view text);
  /** Takes the rows of another list for which `taken` is true; it has an entry for each. */
  void Append(const AttributeValues& other, const std::vector<bool>& taken);
  /** Keeps the rows for which `keep` is true; it has an entry for each. */
  void Keep(const std::vector<bool>& keep);

  std::size_t Size() const { return rows_; }
  bool IsEmpty() const { return codes_.empty(); }  ///< whether all values are empty
  /** The value of a row in `scratch`. */
  std::string_view TextOf(std::size_t row, std::string& scratch) const { return TextOfCode(CodeOf(row), scratch); }

  /** Equal exactly where the values are; 0 for the empty one. */
  std::uint64_t CodeOf(std::size_t row) const
  {
    const Group& group = groups_[row / kGroupRows];
    const std::uint64_t bit = std::uint64_t{1} << (row % kGroupRows);
    if ((group.filled & bit) == 0) return 0;
    return codes_[group.firstCode + static_cast<std::size_t>(std::popcount(group.filled & (bit - 1)))];
  }
  /** The code of a value, if some row may have it. */
  std::optional<std::uint64_t> FindCode(std::string_view text) const;
  std::string_view TextOfCode(std::uint64_t code, std::string& scratch) const;

  /** What stands in front of the numbers. */
  const StringPool& Fronts() const { return fronts_; }
  static std::uint32_t FrontOf(std::uint64_t code) { return static_cast<std::uint32_t>(code >> kNumberBits); }
  /** 0 where the value does not end in digits, otherwise the number and one. */
  static std::uint64_t NumberOf(std::uint64_t code) { return code & kNumberMask; }
  static std::uint64_t Code(std::uint32_t front, std::uint64_t number);

 private:
  static constexpr unsigned kNumberBits = 37;
  static constexpr std::uint64_t kNumberMask = (std::uint64_t{1} << kNumberBits) - 1;

  static constexpr std::size_t kGroupRows = 64;

  /** Rows that stand together: which of them are filled, and where the codes of these begin. */
  struct Group
  {
    std::uint64_t filled = 0;
    std::uint32_t firstCode = 0;
  };

  void AddCode(std::uint64_t code);

  StringPool fronts_;
  std::size_t rows_ = 0;
  std::vector<Group> groups_;
  std::vector<std::uint64_t> codes_;  ///< of the rows that are filled
};

}  // namespace arf

#endif
